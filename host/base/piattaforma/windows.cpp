// The operating system on Windows. Files are opened by their wide names, and so that a temporary
// file can be removed, and its folder emptied, while it is still open: the console runs its handler
// in a thread of its own. Faults of the system's own calls are turned into errno by a table.

// The second needs the first.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "host/base/piattaforma/piattaforma.h"

namespace compensa {

namespace {

constexpr std::pair<DWORD, int> kErroriSistema[] = {
    {ERROR_FILE_NOT_FOUND, ENOENT},
    {ERROR_PATH_NOT_FOUND, ENOENT},
    {ERROR_INVALID_NAME, ENOENT},
    {ERROR_BAD_NETPATH, ENOENT},
    {ERROR_ACCESS_DENIED, EACCES},
    {ERROR_SHARING_VIOLATION, EBUSY},
    {ERROR_LOCK_VIOLATION, EBUSY},
    {ERROR_WRITE_PROTECT, EROFS},
    {ERROR_DISK_FULL, ENOSPC},
    {ERROR_HANDLE_DISK_FULL, ENOSPC},
    {ERROR_NOT_ENOUGH_QUOTA, ENOSPC},
    {ERROR_FILE_EXISTS, EEXIST},
    {ERROR_ALREADY_EXISTS, EEXIST},
    {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
    {ERROR_TOO_MANY_OPEN_FILES, EMFILE},
    {ERROR_BROKEN_PIPE, EPIPE},
    {ERROR_NO_DATA, EPIPE},
    {ERROR_INVALID_HANDLE, EBADF},
};

int ErrnoDi(DWORD codice) {
  const auto* noto = std::find_if(std::begin(kErroriSistema), std::end(kErroriSistema),
                                  [&](const auto& voce) { return voce.first == codice; });
  return noto == std::end(kErroriSistema) ? EIO : noto->second;
}

struct ChiudiManiglia {
  void operator()(void* maniglia) const { CloseHandle(maniglia); }
};
using Maniglia = std::unique_ptr<void, ChiudiManiglia>;  // null = none

// A handle for what is on the disk or a device, also of a folder.
Maniglia Apri(const std::filesystem::path& percorso, DWORD accesso, DWORD modo) {
  void* maniglia =
      CreateFileW(percorso.c_str(), accesso, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, modo, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  return Maniglia(maniglia == INVALID_HANDLE_VALUE ? nullptr : maniglia);
}

// The descriptor that takes the handle over; -1 with errno.
int DescrittoreDi(Maniglia maniglia) {
  if (!maniglia) {
    errno = ErrnoDi(GetLastError());
    return kNessunDescrittore;
  }
  const int descrittore =
      _open_osfhandle(reinterpret_cast<std::intptr_t>(maniglia.get()), _O_BINARY | _O_WRONLY);
  if (descrittore >= 0) static_cast<void>(maniglia.release());
  return descrittore;
}

std::string Utf8(std::wstring_view testo) {
  const auto lunghezza = static_cast<int>(testo.size());
  std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, testo.data(), lunghezza,
                                                                nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_UTF8, 0, testo.data(), lunghezza, utf8.data(),
                      static_cast<int>(utf8.size()), nullptr, nullptr);
  return utf8;
}

// The names that a pattern stands for, in order; the pattern itself if there is none.
std::vector<std::string> NomiDelModello(const std::wstring& modello) {
  WIN32_FIND_DATAW trovato;
  void* ricerca = FindFirstFileW(modello.c_str(), &trovato);
  if (ricerca == INVALID_HANDLE_VALUE) return {Utf8(modello)};
  const std::size_t barra = modello.find_last_of(L"/\\:");
  const std::wstring cartella = barra == std::wstring::npos ? L"" : modello.substr(0, barra + 1);
  std::vector<std::string> nomi;
  do {
    if ((trovato.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
      nomi.push_back(Utf8(cartella + trovato.cFileName));
  } while (FindNextFileW(ricerca, &trovato) != 0);
  FindClose(ricerca);
  std::sort(nomi.begin(), nomi.end());
  return nomi.empty() ? std::vector{Utf8(modello)} : nomi;
}

// What the console's handler calls, and the lock by which the program holds it back.
void (*puliziaAlSegnale)() = nullptr;
CRITICAL_SECTION sospensione;
UINT codificaConsole = 0;  // to be given back to the console; 0 = there is none

BOOL WINAPI Gestore(DWORD /*segnale*/) {
  EnterCriticalSection(&sospensione);  // for good: nothing new is begun
  puliziaAlSegnale();
  if (codificaConsole != 0) SetConsoleOutputCP(codificaConsole);
  return FALSE;  // on to the handler that ends the program
}

}  // namespace

void PreparaProcesso() {
  for (const int descrittore : {kIngressoStandard, kUscitaStandard, kErroriStandard}) {
    if (_get_osfhandle(descrittore) < 0)
      static_cast<void>(_wsopen(L"NUL", _O_RDONLY | _O_BINARY, _SH_DENYNO, 0));
    _setmode(descrittore, _O_BINARY);
  }
  codificaConsole = GetConsoleOutputCP();
  if (codificaConsole == 0) return;
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(codificaConsole); });
}

std::vector<std::string> ArgomentiUtf8(int /*argc*/, const char* const* /*argv*/) {
  int quanti = 0;
  wchar_t** parole = CommandLineToArgvW(GetCommandLineW(), &quanti);
  if (parole == nullptr) return {};
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> custode(parole, LocalFree);
  std::vector<std::string> argomenti;
  for (int i = 0; i < quanti; ++i) {
    const std::wstring parola = parole[i];
    const bool modello = i > 0 && parola.find_first_of(L"*?") != std::wstring::npos;
    if (modello && !parola.starts_with(L'-')) {
      for (std::string& nome : NomiDelModello(parola)) argomenti.push_back(std::move(nome));
    } else {
      argomenti.push_back(Utf8(parola));
    }
  }
  return argomenti;
}

int NumeroProcesso() { return static_cast<int>(GetCurrentProcessId()); }

void AlSegnale(void (*pulizia)()) {
  puliziaAlSegnale = pulizia;
  InitializeCriticalSection(&sospensione);
  SetConsoleCtrlHandler(Gestore, TRUE);
}

SegnaliSospesi::SegnaliSospesi() : Liberi(puliziaAlSegnale != nullptr ? 1 : 0) {
  if (Liberi != 0) EnterCriticalSection(&sospensione);
}

SegnaliSospesi::~SegnaliSospesi() {
  if (Liberi != 0) LeaveCriticalSection(&sospensione);
}

bool TerminaleCapace(int descrittore) {
  void* console = reinterpret_cast<void*>(_get_osfhandle(descrittore));
  DWORD modo = 0;
  return GetConsoleMode(console, &modo) != 0 &&
         SetConsoleMode(console, modo | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::ptrdiff_t ScriviParte(int descrittore, std::string_view testo) {
  constexpr std::size_t kMassimo = std::size_t{1} << 30;
  const int scritti =
      _write(descrittore, testo.data(), static_cast<unsigned>(std::min(testo.size(), kMassimo)));
  // No error and yet fewer bytes: the disk is full.
  if (scritti == 0 && !testo.empty()) errno = ENOSPC;
  if (scritti < 0 && errno == EINVAL) errno = ErrnoDi(_doserrno);
  return scritti == 0 && !testo.empty() ? -1 : scritti;
}

int Consolida(int descrittore) {
  return _commit(descrittore) != 0 && errno != EBADF && errno != EINVAL ? errno : 0;
}

int ChiudiDescrittore(int descrittore) { return _close(descrittore) != 0 ? errno : 0; }

int ApriDispositivo(const std::filesystem::path& percorso) {
  std::error_code guasto;
  if (std::filesystem::is_directory(percorso, guasto)) {
    errno = EISDIR;
    return kNessunDescrittore;
  }
  return DescrittoreDi(Apri(percorso, GENERIC_WRITE, OPEN_EXISTING));
}

int CreaFile(const std::filesystem::path& percorso) {
  return DescrittoreDi(Apri(percorso, GENERIC_WRITE, CREATE_NEW));
}

int PermessoDiScrivere(const std::filesystem::path& percorso) {
  return Apri(percorso, GENERIC_WRITE, OPEN_EXISTING) ? 0 : ErrnoDi(GetLastError());
}

// The new file has those of its folder, like all others there.
void CopiaPermessi(int /*descrittore*/, const std::filesystem::path& /*da*/) {}

int Sostituisci(const std::filesystem::path& da, const std::filesystem::path& a) {
  constexpr DWORD kModo = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  return MoveFileExW(da.c_str(), a.c_str(), kModo) != 0 ? 0 : ErrnoDi(GetLastError());
}

void Rimuovi(const wchar_t* percorso) noexcept { DeleteFileW(percorso); }

bool EsisteNonRegolare(const std::filesystem::path& percorso) {
  std::error_code guasto;
  if (std::filesystem::is_directory(percorso, guasto)) return true;
  const Maniglia file = Apri(percorso, 0, OPEN_EXISTING);  // devices: NUL, CON, LPT1, \\.\pipe\...
  return file && GetFileType(file.get()) != FILE_TYPE_DISK;
}

std::string IdentitaEsistente(const std::filesystem::path& percorso) {
  const Maniglia file = Apri(percorso, 0, OPEN_EXISTING);
  BY_HANDLE_FILE_INFORMATION dati;
  if (!file || GetFileInformationByHandle(file.get(), &dati) == 0) return {};
  return std::to_string(dati.dwVolumeSerialNumber) + ":" + std::to_string(dati.nFileIndexHigh) +
         ":" + std::to_string(dati.nFileIndexLow);
}

// Names that differ in the case of letters alone are the same.
std::string NomeUniforme(const std::filesystem::path& percorso) {
  std::wstring nome = std::filesystem::path(percorso).make_preferred().wstring();
  CharUpperBuffW(nome.data(), static_cast<DWORD>(nome.size()));
  return Utf8(nome);
}

bool OraLocale(std::time_t momento, std::tm& ora) { return localtime_s(&ora, &momento) == 0; }

bool OraUniversale(std::time_t momento, std::tm& ora) { return gmtime_s(&ora, &momento) == 0; }

}  // namespace compensa
