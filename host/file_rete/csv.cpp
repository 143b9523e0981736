// CSV tables: lines, fields, quotes, and the header that gives the columns their names.

#include "host/file_rete/csv.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/testi.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr std::string_view kDelimitatori = ";,\t";
constexpr std::string_view kRigaSep = "sep=";
constexpr char kApostrofo = '\'';

// What begins like a formula, or like a name that was kept from being one.
bool DaProteggere(std::string_view nome) { return nome.find_first_of("=+-@\t\r'") == 0; }

}  // namespace

std::string NomeInCsv(std::string_view nome) {
  std::string campo = DaProteggere(nome) ? kApostrofo + std::string(nome) : std::string(nome);
  if (campo.find_first_of(";,\"\r\n\t") == std::string::npos && SenzaBianchi(campo) == campo)
    return campo;
  for (std::size_t i = 0; (i = campo.find('"', i)) != std::string::npos; i += 2)
    campo.insert(i, 1, '"');
  return '"' + campo + '"';
}

LettoreCsv::LettoreCsv(std::string_view testo, std::string_view file,
                       std::span<const ColonnaCsv> colonne, Diagnostica& diagnostica,
                       RiconosciTitolo titoli)
    : Testo(testo),
      NomeFile(file),
      Colonne(colonne),
      Diario(diagnostica),
      Titoli(std::move(titoli)) {}

bool LettoreCsv::FineRiga(std::size_t i) const { return Testo[i] == '\n' || Testo[i] == '\r'; }

Posizione LettoreCsv::DoveInizio(std::size_t inizio) const {
  return {NomeFile, Riga, 1 + ContaCaratteri(Testo.substr(InizioRiga, inizio - InizioRiga))};
}

const LettoreCsv::CampoLetto* LettoreCsv::CampoDi(std::size_t colonna) const {
  const std::optional<std::size_t> posto = Posti[colonna];
  return posto && *posto < Campi.size() ? &Campi[*posto] : nullptr;
}

std::string_view LettoreCsv::Campo(std::size_t colonna) const {
  const CampoLetto* campo = CampoDi(colonna);
  return campo != nullptr ? campo->Valore : std::string_view();
}

std::string_view LettoreCsv::Nome(std::size_t colonna) const {
  const std::string_view campo = Campo(colonna);
  const bool protetto = campo.starts_with(kApostrofo) && DaProteggere(campo.substr(1));
  return campo.substr(protetto ? 1 : 0);
}

Posizione LettoreCsv::Dove(std::size_t colonna) const {
  const CampoLetto* campo = CampoDi(colonna);
  return campo != nullptr ? DoveInizio(campo->Inizio) : DoveRiga();
}

// Reads the field that begins at da; returns where its delimiter or line end stands.
std::size_t LettoreCsv::LeggiCampo(std::size_t da) {
  const auto bianco = [this](std::size_t i) {
    return Testo[i] == ' ' || (Testo[i] == '\t' && Delimitatore != '\t');
  };
  while (da < Testo.size() && bianco(da)) ++da;
  if (da < Testo.size() && Testo[da] == '"') return LeggiCampoFraVirgolette(da);
  std::size_t fine = da;
  while (fine < Testo.size() && Testo[fine] != Delimitatore && !FineRiga(fine)) ++fine;
  std::size_t ultimo = fine;
  while (ultimo > da && bianco(ultimo - 1)) --ultimo;
  Campi.push_back({Testo.substr(da, ultimo - da), da});
  return fine;
}

std::size_t LettoreCsv::LeggiCampoFraVirgolette(std::size_t da) {
  std::size_t fine = da + 1;
  bool doppie = false;
  for (; fine < Testo.size() && !FineRiga(fine); ++fine) {
    if (Testo[fine] != '"') continue;
    if (fine + 1 == Testo.size() || Testo[fine + 1] != '"') break;
    doppie = true;
    ++fine;
  }
  if (fine == Testo.size() || FineRiga(fine)) {
    ErroreVirgolette(da, {.Problema = "virgolette non chiuse"});
    const std::size_t separatore = std::min(Testo.find(Delimitatore, da), fine);
    Campi.push_back({Testo.substr(da + 1, separatore - da - 1), da});
    return separatore;
  }
  std::string_view valore = Testo.substr(da + 1, fine - da - 1);
  if (doppie) {
    std::string& semplice = SenzaDoppie.emplace_back();
    for (std::size_t i = 0; i < valore.size(); ++i) {
      semplice += valore[i];
      if (valore[i] == '"') ++i;
    }
    valore = semplice;
  }
  Campi.push_back({valore, da});
  std::size_t dopo = fine + 1;
  bool altro = false;
  for (; dopo < Testo.size() && Testo[dopo] != Delimitatore && !FineRiga(dopo); ++dopo) {
    altro = altro || Testo[dopo] != ' ';
  }
  if (altro) {
    ErroreVirgolette(fine + 1, {.Problema = "dopo le virgolette chiuse serve il separatore",
                                .Trovato = Cita(Testo.substr(fine + 1, dopo - fine - 1))});
  }
  return dopo;
}

void LettoreCsv::ErroreVirgolette(std::size_t inizio, Guasto guasto) {
  VirgoletteSbagliate = true;
  Diario.Errore(DoveInizio(inizio), std::move(guasto));
}

// Reads the line at Posto into Campi; false at the end of the text.
bool LettoreCsv::LeggiRiga() {
  if (Posto >= Testo.size()) return false;
  Campi.clear();
  SenzaDoppie.clear();
  VirgoletteSbagliate = false;
  InizioRiga = Posto;
  ++Riga;
  std::size_t i = LeggiCampo(Posto);
  while (i < Testo.size() && Testo[i] == Delimitatore) i = LeggiCampo(i + 1);
  const bool crLf = i + 1 < Testo.size() && Testo[i] == '\r' && Testo[i + 1] == '\n';
  Posto = i + (crLf ? 2 : 1);
  return true;
}

bool LettoreCsv::RigaVuota() const {
  return std::all_of(Campi.begin(), Campi.end(),
                     [](const CampoLetto& c) { return c.Valore.empty(); });
}

// The one that occurs most often in the line at Posto, outside quotes.
void LettoreCsv::TrovaDelimitatore() {
  std::array<std::size_t, kDelimitatori.size()> conteggi{};
  bool fraVirgolette = false;
  for (std::size_t i = Posto; i < Testo.size() && !FineRiga(i); ++i) {
    if (Testo[i] == '"') fraVirgolette = !fraVirgolette;
    const std::size_t quale = kDelimitatori.find(Testo[i]);
    if (!fraVirgolette && quale != std::string_view::npos) ++conteggi[quale];
  }
  const auto massimo = std::max_element(conteggi.begin(), conteggi.end());
  Delimitatore = kDelimitatori[static_cast<std::size_t>(massimo - conteggi.begin())];
}

void LettoreCsv::ErroreColonna(std::size_t campo, std::string problema) {
  Diario.Errore(DoveInizio(Campi[campo].Inizio),
                {.Record = "intestazione", .Problema = std::move(problema)});
}

TitoloCsv LettoreCsv::NomeNoto(std::string_view titolo) const {
  std::vector<std::string_view> note;
  for (const ColonnaCsv& colonna : Colonne) note.push_back(colonna.Nome);
  const auto nota = std::find(note.begin(), note.end(), Minuscole(titolo));
  if (nota != note.end()) return {.Colonna = static_cast<std::size_t>(nota - note.begin())};
  return {.Cosa = ChiaveSconosciuta("intestazione", "colonna", titolo, note)};
}

bool LettoreCsv::LeggiIntestazione() {
  const std::size_t errori = Diario.Errori();
  Posti.assign(Colonne.size(), std::nullopt);
  do {
    TrovaDelimitatore();
    if (!LeggiRiga()) {
      Diario.Errore({NomeFile, 1, 1}, {.Problema = "il file è vuoto",
                                       .Voluto = "una prima riga con i nomi delle colonne"});
      return false;
    }
  } while (RigaVuota() || Minuscole(Testo.substr(InizioRiga, kRigaSep.size())) == kRigaSep);
  NCampi = Campi.size();
  for (std::size_t i = 0; i < NCampi && !Diario.Colma(); ++i) {  // a suggestion takes its time
    const std::string_view valore = Campi[i].Valore;
    if (valore.empty()) continue;
    TitoloCsv titolo = Titoli ? Titoli(valore) : NomeNoto(valore);
    if (titolo.Cosa) {
      Diario.Errore(DoveInizio(Campi[i].Inizio), std::move(*titolo.Cosa));
    } else if (titolo.Colonna && Posti[*titolo.Colonna]) {
      ErroreColonna(i, "colonna " + Cita(valore) + " ripetuta");
    } else if (titolo.Colonna) {
      Posti[*titolo.Colonna] = i;
    }
  }
  for (std::size_t i = 0; i < Colonne.size(); ++i) {
    if (!Colonne[i].Necessaria || Posti[i]) continue;
    Diario.Errore(DoveRiga(), {.Record = "intestazione",
                               .Problema = "manca la colonna " + Cita(Colonne[i].Nome)});
  }
  return Diario.Errori() == errori;
}

bool LettoreCsv::ProssimaRiga() {
  do {
    if (!LeggiRiga()) return false;
  } while (RigaVuota());
  if (!RigaIntera() && !VirgoletteSbagliate) {
    const bool decimali = Delimitatore == ',' && Campi.size() > NCampi;
    Diario.Errore(DoveRiga(), {.Problema = "numero di campi sbagliato",
                               .Trovato = std::to_string(Campi.size()),
                               .Voluto = std::to_string(NCampi) + " come nell'intestazione",
                               .Suggerimento = decimali ? std::string(kVoglionoIlPunto) : ""});
  }
  return true;
}

}  // namespace compensa
