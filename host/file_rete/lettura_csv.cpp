// Points and observations from CSV tables: the columns of each, and the set-ups that rows share.

#include "host/file_rete/lettura_csv.h"

#include <array>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/base/numeri.h"
#include "host/file_rete/campi_rete.h"
#include "host/file_rete/csv.h"
#include "host/file_rete/riga_csv.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

enum ColonnaPunti : std::size_t { kCNome, kCEst, kCNord, kCQuota, kCPla, kCAlt };
constexpr std::array<ColonnaCsv, 6> kColonnePunti{{
    {"nome", true},
    {"est", true},
    {"nord", true},
    {"quota"},
    {"planimetria"},
    {"altimetria"},
}};

enum ColonnaOss : std::size_t {
  kCStazione,
  kCGiro,
  kCAltezza,
  kCAltezzaNota,
  kCEccDistanza,
  kCEccDirezione,
  kCPunto,
  kCDirezione,
  kCZenit,
  kCSegnale,
  kCDistanza,
  kCTipo,
};
constexpr std::array<ColonnaCsv, 12> kColonneOss{{
    {"stazione", true},
    {"giro"},
    {"altezza"},
    {"altezza_nota"},
    {"ecc_distanza"},
    {"ecc_direzione"},
    {"punto", true},
    {"direzione"},
    {"zenit"},
    {"segnale"},
    {"distanza"},
    {"tipo"},
}};

constexpr auto kNomeColonna = [](const ColonnaCsv& colonna) { return colonna.Nome; };
static_assert(StessiCampi(SezioneRete::PuntiCsv, kColonnePunti, kNomeColonna));
static_assert(StessiCampi(SezioneRete::OsservazioniCsv, kColonneOss, kNomeColonna));

// The set-ups of an observation table, found by their station and round.
class Postazioni {
 public:
  Postazioni(LettoreCsv& lettore, RigaCsv& riga, CostruttoreRete& rete, Diagnostica& diagnostica)
      : Lettore(lettore), Riga(riga), Rete(rete), Diario(diagnostica) {}

  // Set-up of the current row, with what the row says of it; a new one on the first row of its kind.
  int DellaRiga() {
    Chiave.assign(Lettore.Nome(kCStazione));
    Chiave += kFraChiavi;
    Chiave += Lettore.Campo(kCGiro);
    if (Ultima < 0 || Chiave != UltimaChiave) {
      const auto voce = IndiceDaChiave.find(Chiave);
      Ultima = voce != IndiceDaChiave.end() ? voce->second : Apri();
      UltimaChiave = Chiave;
    }
    StazioneLetta& letta = Rete.Stazione(Ultima);
    FondiNumero(letta.Altezza, kCAltezza, kAltezza);
    FondiNumero(letta.EccDistanza, kCEccDistanza, kEccDistanza);
    FondiNumero(letta.EccDirezione, kCEccDirezione, kEccDirezione);
    if (!Riga.Vuoto(kCAltezzaNota)) {
      Fondi(letta.AltezzaNota, Riga.SiNo(kCAltezzaNota, "altezza_nota"), kCAltezzaNota);
    }
    return Ultima;
  }

 private:
  int Apri() {
    StazioneLetta nuova;
    nuova.Nome = Lettore.Nome(kCStazione);
    nuova.Dove = Lettore.DoveRiga();
    nuova.Punto =
        Rete.TrovaPunto(nuova.Nome, Lettore.Dove(kCStazione), NomeStazione(nuova.Nome), "stazione");
    return IndiceDaChiave[Chiave] = Rete.AggiungiStazione(std::move(nuova));
  }

  void FondiNumero(Letto<double>& dato, std::size_t colonna, const RegolaNumero& regola) {
    if (Riga.Vuoto(colonna)) return;
    const double valore = Riga.Numero(colonna, regola);
    Fondi(dato, Assegnato(valore) ? std::optional(valore) : std::nullopt, colonna);
  }

  template <class T>
  void Fondi(Letto<T>& dato, std::optional<T> valore, std::size_t colonna) {
    if (dato.Presente && dato.Valore == valore) return;
    const Posizione dove = Lettore.Dove(colonna);
    if (dato.Valore && valore) {
      Diario.Errore(dove, {.Record = NomeStazione(Lettore.Nome(kCStazione)),
                           .Campo = std::string(kColonneOss[colonna].Nome),
                           .Problema = "valore diverso per la stessa stazione e lo stesso giro",
                           .Trovato = Cita(Lettore.Campo(colonna)),
                           .Suggerimento = "alla riga " + std::to_string(dato.Dove.Riga) + " c'è " +
                                           Cita(Scritto(*dato.Valore))});
    }
    dato = {valore, true, dove};
  }

  static std::string Scritto(double valore) { return NumeroBreve(valore); }
  static std::string Scritto(bool valore) { return valore ? "si" : "no"; }

  static constexpr char kFraChiavi = '\x1F';

  LettoreCsv& Lettore;
  RigaCsv& Riga;
  CostruttoreRete& Rete;
  Diagnostica& Diario;
  std::unordered_map<std::string, int> IndiceDaChiave;
  std::string Chiave;
  std::string UltimaChiave;
  int Ultima = -1;
};

}  // namespace

void LeggiPuntiCsv(std::string_view testo, std::string_view file, CostruttoreRete& rete,
                   Diagnostica& diagnostica) {
  LettoreCsv lettore(testo, file, kColonnePunti, diagnostica);
  if (!lettore.LeggiIntestazione()) return rete.PuntiIncompleti();
  RigaCsv riga(lettore, diagnostica, [&] { return NomePunto(lettore.Nome(kCNome)); });
  bool qualcuno = false;
  while (lettore.ProssimaRiga()) {
    qualcuno = true;
    if (!lettore.RigaIntera()) {  // its name, if there is one, is no unknown point elsewhere
      if (!riga.Vuoto(kCNome)) {
        rete.AggiungiPunto({.Nome = lettore.Nome(kCNome),
                            .Dove = lettore.DoveRiga(),
                            .DoveNome = lettore.Dove(kCNome)});
      }
      continue;
    }
    rete.AggiungiPunto(
        {.Nome = lettore.Nome(kCNome),
         .Dove = lettore.DoveRiga(),
         .DoveNome = lettore.Dove(kCNome),
         .Est = riga.Numero(kCEst, kEst),
         .Nord = riga.Numero(kCNord, kNord),
         .Quota = riga.Numero(kCQuota, kQuota),
         .Ruoli = {riga.Ruolo(kCPla, "planimetria"), riga.Ruolo(kCAlt, "altimetria")}});
  }
  if (!qualcuno) {
    diagnostica.Errore(lettore.DoveRiga(), {.Problema = "la tabella non ha punti"});
    rete.PuntiIncompleti();
  }
}

void LeggiOsservazioniCsv(std::string_view testo, std::string_view file, CostruttoreRete& rete,
                          Diagnostica& diagnostica) {
  LettoreCsv lettore(testo, file, kColonneOss, diagnostica);
  if (!lettore.LeggiIntestazione()) return;
  const auto record = [&] {
    return NomeOsservazione(lettore.Nome(kCStazione), lettore.Nome(kCPunto));
  };
  RigaCsv riga(lettore, diagnostica, record);
  Postazioni postazioni(lettore, riga, rete, diagnostica);
  bool qualcuna = false;
  while (lettore.ProssimaRiga()) {
    qualcuna = true;
    if (!lettore.RigaIntera()) continue;
    const int stazione = postazioni.DellaRiga();
    TOssCr osservazione{};
    osservazione.Punto = rete.CercaPunto(lettore.Nome(kCPunto));
    if (osservazione.Punto < 0) {
      rete.PuntoSconosciuto(lettore.Nome(kCPunto), lettore.Dove(kCPunto), record());
    }
    osservazione.Direzione = riga.Numero(kCDirezione, kDirezione);
    osservazione.Zenit = riga.Numero(kCZenit, kZenit);
    osservazione.AltSegnale = riga.Numero(kCSegnale, kSegnale);
    osservazione.Distanza = riga.Numero(kCDistanza, kDistanza);
    osservazione.TipoDist = riga.Tipo(kCTipo);
    rete.AggiungiOsservazione(stazione, osservazione, lettore.DoveRiga());
  }
  if (!qualcuna) {
    diagnostica.Errore(lettore.DoveRiga(), {.Problema = "la tabella non ha osservazioni"});
  }
}

}  // namespace compensa
