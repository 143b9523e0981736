// An import from the files to the network file. Nothing is written unless all that was read makes
// sense.

#include "host/importazione/importa.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/approssimate/approssimate.h"
#include "host/base/data_ora.h"
#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/file_sicuro.h"
#include "host/base/percorsi.h"
#include "host/base/piattaforma/piattaforma.h"
#include "host/base/suggerimenti.h"
#include "host/base/terminale.h"
#include "host/base/testo_file.h"
#include "host/file_rete/scrittura_toml.h"
#include "host/giudizio/avvertimenti/epsg.h"
#include "host/importazione/completamento_libretto.h"
#include "host/importazione/facce.h"
#include "host/importazione/lettore.h"
#include "host/importazione/resoconto.h"
#include "host/importazione/rete_da_libretto.h"
#include "host/importazione/sqm_libretto.h"
#include "host/importazione/unione.h"

namespace compensa {

namespace {

constexpr std::uintmax_t kMassimoFile = 1U << 28U;  // [bytes]
constexpr double kPartiApprossimate = 1000.0;       // approximate coordinates are written to 1 mm

void RifiutaIngressoComeUscita(const OpzioniImporta& o) {
  if (UscitaStandard(o.Uscita)) return;
  const auto rifiuta = [&](const std::string& ingresso) {
    std::error_code guasto;  // a file that does not exist yet is no input
    if (std::filesystem::equivalent(PercorsoDa(o.Uscita), PercorsoDa(ingresso), guasto))
      throw ErroreUso("l'uscita " + Cita(o.Uscita) +
                      " è un file da importare: non viene sovrascritto");
  };
  for (const std::string& file : o.File) rifiuta(file);
  if (o.Coordinate) rifiuta(*o.Coordinate);
  if (o.Lettura.Mappa) rifiuta(*o.Lettura.Mappa);
}

std::string ElencoFormati() {
  std::string elenco;
  for (const Lettore* lettore : Lettori()) {
    elenco += (elenco.empty() ? "" : ", ") + std::string(lettore->Nome) + " (" +
              std::string(lettore->Descrizione) + ")";
  }
  return elenco;
}

// The reader that --formato names, null if there is no such option.
const Lettore* LettoreScelto(const OpzioniImporta& o) {
  if (!o.Formato) return nullptr;
  if (const Lettore* lettore = LettoreDiNome(*o.Formato)) return lettore;
  throw ErroreUso("formato " + Cita(*o.Formato) + " sconosciuto: serve uno tra " + ElencoFormati());
}

void Approssima(Rete& rete, Resoconto& resoconto) {
  resoconto.Approssimate = CalcolaApprossimate(rete);
  const auto arrotonda = [](double& metri) {
    metri = std::round(metri * kPartiApprossimate) / kPartiApprossimate + 0.0;  // no -0
  };
  for (const int punto : resoconto.Approssimate.PuntiPla) {
    arrotonda(rete.Punti[static_cast<std::size_t>(punto)].Est);
    arrotonda(rete.Punti[static_cast<std::size_t>(punto)].Nord);
  }
  for (const int punto : resoconto.Approssimate.PuntiAlt)
    arrotonda(rete.Punti[static_cast<std::size_t>(punto)].Quota);
}

// Options that were given although no file needs them: they may have been meant for a file that
// was taken for another format.
void AvvisaInutili(const OpzioniImporta& o, unsigned usate, Diagnostica& diario) {
  const OpzioniLettura& l = o.Lettura;
  if (o.Coordinate) usate |= kOpzioneAssi;
  const struct {
    bool Data;
    OpzioneLettura Quale;
    std::string_view Nome, Serve;
  } kOpzioni[] = {
      {l.Angoli.has_value(), kOpzioneAngoli, "--angoli", "ai libretti in CSV"},
      {l.AssiXY.has_value(), kOpzioneAssi, "--assi",
       "ai CSV e alle righe 8 dei libretti catastali"},
      {l.Mappa.has_value(), kOpzioneMappa, "--mappa", "ai libretti in CSV"},
      {l.Stazione.has_value(), kOpzioneStazione, "--stazione", "ai file GSI e CSV"},
      {l.AltezzaStrumento.has_value(), kOpzioneStazione, "--hs", "ai file GSI e CSV"},
      {l.CodiceStazioneGsi.has_value(), kOpzioneCodiceGsi, "--gsi-codice-stazione", "ai file GSI"},
      {l.SegnalePersistente, kOpzioneSegnale, "--segnale-persistente", "ai file GSI"},
      {l.IgnoraNonSupportati, kOpzioneIgnora, "--ignora-non-supportati", "ai file gkf"},
  };
  for (const auto& opzione : kOpzioni) {
    if (!opzione.Data || (usate & opzione.Quale) != 0) continue;
    diario.Avviso({opzione.Nome, 0, 0},
                  {.Problema = "opzione senza effetto: serve solo " + std::string(opzione.Serve)});
  }
}

class Importazione {
 public:
  explicit Importazione(const OpzioniImporta& opzioni) : O(opzioni) {}

  Stato Esegui() {
    if (O.File.empty()) throw ErroreUso("manca il file da importare");
    RifiutaIngressoComeUscita(O);
    const Lettore* scelto = LettoreScelto(O);
    for (const std::string& file : O.File) Leggi(file, scelto);
    AvvisaInutili(O, OpzioniUsate, Diario);
    if (!Diario.HaErrori()) RifiutaVuoto();
    if (Diario.HaErrori()) return Rinuncia();
    const std::optional<Rete> rete = PreparaRete(O, Unito, Resa, Diario);
    if (!rete) return Rinuncia();
    // Made while there is still nothing to undo.
    const std::string detto = O.Quieto ? std::string()
                                       : TestoMessaggi(Diario) + TestoFacce(Resa.Facce) +
                                             SommarioImportazione(Resa, *rete, O.Uscita);
    Scrivi(*rete);
    ScriviErrori(detto);
    return kStatoRiuscito;
  }

 private:
  Stato Rinuncia() {
    MostraMessaggi(Diario);
    return kStatoRete;
  }

  void Leggi(const std::string& percorso, const Lettore* lettore) {
    Libretto parte;
    const std::string_view file = parte.NomiFile.emplace_back(percorso);
    Diario.NominaFile(file);
    const std::optional<std::string> testo =
        LeggiTesto(PercorsoDa(percorso), kMassimoFile, {file, 0, 0}, "", Diario);
    if (!testo) return;
    if (testo->find_first_not_of(" \t\r\n") == std::string::npos)
      return Diario.Errore({file, 0, 0}, {.Problema = "il file è vuoto"});
    if (lettore == nullptr) lettore = RiconosciFormato(*testo);
    if (lettore == nullptr && O.Lettura.Mappa) lettore = &kLettoreCampagna;
    if (lettore == nullptr) {
      Diario.Errore({file, 0, 0}, {.Problema = "formato non riconosciuto",
                                   .Voluto = "uno tra " + ElencoFormati(),
                                   .Suggerimento = "con --formato si sceglie quale; con --mappa si "
                                                   "traducono i titoli di una tabella CSV"});
      return;
    }
    OpzioniUsate |= lettore->Opzioni;
    Resa.File.push_back({percorso, std::string(lettore->Descrizione)});
    lettore->Leggi(*testo, file, O.Lettura, parte, Diario);
    Unisci(Unito, std::move(parte), Diario);
  }

  void RifiutaVuoto() {
    for (const PostazioneLibretto& postazione : Unito.Postazioni)
      if (!postazione.Battute.empty()) return;
    Diario.Errore({Unito.NomiFile.front(), 0, 0}, {.Problema = "non contiene osservazioni"});
  }

  void Scrivi(const Rete& rete) {
    const std::string momento = DataOraCorrente();
    Resa.Data = momento.substr(0, momento.find(' '));
    FileSicuro uscita(O.Uscita);
    ScriviRete(rete, Intestazione(Resa, rete), [&](std::string_view byte) { uscita.Scrivi(byte); });
    uscita.Conferma();
  }

  const OpzioniImporta& O;
  Diagnostica Diario;
  unsigned OpzioniUsate = 0;  // by the readers of the files
  Libretto Unito;
  Resoconto Resa;
};

}  // namespace

std::optional<Rete> PreparaRete(const OpzioniImporta& opzioni, Libretto& libretto,
                                Resoconto& resoconto, Diagnostica& diagnostica) {
  resoconto.Assunti = CompletaLibretto(opzioni, libretto, diagnostica).Assunti;
  Diagnostica ripetuti;  // said again once the faces are joined
  const SqmLetture singole = ScegliSqm(opzioni, libretto, ripetuti).DiUnaLettura();
  resoconto.Facce = RiduciFacce(libretto, opzioni.Facce, opzioni.Medie, singole, diagnostica);
  resoconto.Sqm = ScegliSqm(opzioni, libretto, diagnostica);
  resoconto.Esclusi = libretto.Esclusi;
  resoconto.Note = libretto.Note;
  if (opzioni.Coordinate) resoconto.File.push_back({*opzioni.Coordinate, "coordinate"});
  std::optional<Rete> rete =
      ReteDaLibretto(libretto, resoconto.Sqm, opzioni.Curvatura, diagnostica);
  if (!rete) return rete;
  if (!opzioni.SenzaApprossimate) Approssima(*rete, resoconto);
  for (Rilievo& r : ControllaEpsg(*rete)) diagnostica.Avviso(r.Dove, std::move(r.Cosa));
  return rete;
}

Stato Importa(const OpzioniImporta& opzioni) { return Importazione(opzioni).Esegui(); }

}  // namespace compensa
