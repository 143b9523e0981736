// Faults of the operating system in Italian: the system's own texts follow the locale.

#include "host/base/errori.h"

#include <cerrno>
#include <utility>

namespace compensa {

namespace {

constexpr std::pair<int, std::string_view> kMotivi[] = {
    {EACCES, "permesso negato"},
    {EPERM, "operazione non permessa"},
    {ENOENT, "la cartella non esiste"},
    {ENOTDIR, "una parte del percorso non è una cartella"},
    {EISDIR, "è una cartella"},
    {ENOSPC, "spazio esaurito sul disco"},
#ifdef EDQUOT  // not on every system
    {EDQUOT, "quota di disco esaurita"},
#endif
    {EFBIG, "il file supera la grandezza permessa"},
    {EROFS, "il disco è di sola lettura"},
    {EIO, "errore di lettura o scrittura del dispositivo"},
    {EPIPE, "chi riceveva i dati ha smesso di leggere"},
    {EBADF, "l'uscita è chiusa"},
    {ELOOP, "troppi collegamenti simbolici"},
    {ENAMETOOLONG, "nome troppo lungo"},
    {EMFILE, "troppi file aperti"},
    {ENXIO, "nessuno legge dall'altra parte"},
    {ETXTBSY, "file in uso come programma"},
    {EBUSY, "file occupato dal sistema"},
};

}  // namespace

std::string Motivo(int codice) {
  for (const auto& [noto, testo] : kMotivi)
    if (noto == codice) return std::string(testo);
  return "errore di sistema " + std::to_string(codice);
}

ErroreUscita::ErroreUscita(std::string_view azione, const std::string& nome, int codice)
    : std::runtime_error("non si può " + std::string(azione) + " " + nome + ": " + Motivo(codice)),
      CodiceErrno(codice) {}

}  // namespace compensa
