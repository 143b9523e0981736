// The field book in CSV: a row a shot, under titles of our own, their synonyms, or those that a map
// gives.
//
// A set-up is a station and a round (giro). Rows without a round belong together as long as the
// station does not change: when it comes back, its circle may be another one.

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/base/numeri.h"
#include "host/file_rete/riga_csv.h"
#include "host/importazione/angoli.h"
#include "host/importazione/csv/colonne_campagna.h"
#include "host/importazione/csv/mappa_csv.h"
#include "host/importazione/csv/titoli_campagna.h"
#include "host/importazione/csv/titoli_csv.h"
#include "host/importazione/lettore.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr double kCoordinateLontane = 1.0;  // two approximations of the same point [m]
constexpr char kFraChiavi = '\x1F';
constexpr RegolaNumero kHs{"hs", "m"};
constexpr RegolaNumero kHp{"hp", "m"};
constexpr RegolaNumero kDistanzaLetta{"dist", "m", 0.0};

class LettoreCampagna {
 public:
  LettoreCampagna(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
                  std::vector<VoceMappa> mappa, Libretto& libretto, Diagnostica& diagnostica)
      : File(file),
        Opzioni(opzioni),
        Titoli(opzioni, std::move(mappa), libretto),
        Csv(testo, file, kColonneCampagna, diagnostica,
            [this](std::string_view titolo) { return Titoli.Cerca(titolo); }),
        Riga(Csv, diagnostica, [this] { return Record(); }),
        L(libretto),
        Diario(diagnostica),
        Alterati(diagnostica),
        PrimaPostazione(libretto.Postazioni.size()) {}

  void Leggi() {
    const bool letta = Csv.LeggiIntestazione();
    Titoli.ControllaMappa(File, Diario);
    if (!letta) return;
    if (!Csv.Presente(kCStazione) && !Opzioni.Stazione) {
      Diario.Errore(Csv.DoveRiga(),
                    {.Record = "intestazione",
                     .Problema = "manca la colonna \"stazione\"",
                     .Suggerimento = "se la stazione è una sola, dirla con --stazione"});
      return;
    }
    bool qualcuna = false;
    while (Csv.ProssimaRiga()) {
      qualcuna = true;
      if (Csv.RigaIntera()) LeggiBattuta();
    }
    if (!qualcuna) Diario.Errore(Csv.DoveRiga(), {.Problema = "la tabella non ha osservazioni"});
  }

 private:
  // Where what describes a set-up was read.
  struct RigheDate {
    int Altezza = 0, AltezzaNota = 0, EccDistanza = 0, EccDirezione = 0;
  };

  std::string_view Stazione() const {
    return Csv.Presente(kCStazione) ? Csv.Nome(kCStazione) : std::string_view(*Opzioni.Stazione);
  }

  std::string Record() const { return NomeOsservazione(Stazione(), Csv.Nome(kCPunto)); }

  void Errore(std::size_t colonna, Guasto guasto) {
    if (guasto.Record.Nomi.empty()) guasto.Record = Record();
    Diario.Errore(Csv.Dove(colonna), std::move(guasto));
  }

  bool NomiBuoni() {
    const std::string_view punto = Csv.Nome(kCPunto);
    if (Riga.Vuoto(kCPunto) || Stazione().empty()) {
      const bool stazione = Stazione().empty();
      Errore(stazione ? kCStazione : kCPunto,
             {.Campo = stazione ? "stazione" : "a", .Problema = "il nome è vuoto"});
      return false;
    }
    if (Csv.Presente(kCStazione)) Alterati.Controlla(Stazione(), Csv.Dove(kCStazione));
    Alterati.Controlla(punto, Csv.Dove(kCPunto));
    if (punto == Stazione()) {
      Errore(kCPunto, {.Problema = "il punto osservato è la stazione stessa"});
      return false;
    }
    return true;
  }

  void LeggiBattuta() {
    if (!NomiBuoni()) return;
    const std::size_t postazione = DellaRiga();
    DescriviPostazione(postazione);
    LeggiCoordinate();
    ContaTralasciati();
    BattutaLibretto battuta;
    battuta.Punto = Csv.Nome(kCPunto);
    battuta.Dove = Csv.DoveRiga();
    battuta.Lato = LeggiFaccia();
    battuta.Direzione = Angolo(kCDir, Rinominata(kDirezione, "dir"));
    battuta.Zenit = Angolo(kCZen, Rinominata(kZenit, "zen"));
    battuta.Segnale = Numero(kCSegnale, kHp);
    LeggiDistanza(battuta);
    battuta.SqmDirezione = Sqm(kSqmDirezioni);
    battuta.SqmDistanza = Sqm(kSqmDistanze);
    if (Riga.Vuoto(kCDir) && Riga.Vuoto(kCZen) && !battuta.Distanza) {
      return L.Tralascia("righe senza letture", "non hanno direzione, zenit né distanza",
                         Csv.DoveRiga().Riga);
    }
    L.Postazioni[postazione].Battute.push_back(std::move(battuta));
  }

  // Index of the set-up of the current row.
  std::size_t DellaRiga() {
    const std::string_view giro = Riga.Vuoto(kCGiro) ? std::string_view() : Csv.Campo(kCGiro);
    std::string chiave(Stazione());
    chiave += kFraChiavi;
    chiave += giro;
    if (chiave == UltimaChiave) return Ultima;
    const auto voce = Postazioni.find(chiave);
    if (voce != Postazioni.end() && !giro.empty()) {
      Ultima = voce->second;
    } else {
      if (voce != Postazioni.end() && Ritornate.emplace(Stazione()).second) {
        Diario.Avviso(Csv.Dove(kCStazione),
                      {.Record = NomeStazione(Stazione()),
                       .Problema = "ritorna dopo altre stazioni senza giro: è una nuova messa in "
                                   "stazione, con il suo cerchio",
                       .Suggerimento = "se è la stessa, dare a tutte le sue righe lo stesso giro"});
      }
      Ultima = L.Postazioni.size();
      PostazioneLibretto& nuova = L.Postazioni.emplace_back();
      nuova.Punto = Stazione();
      nuova.Dove = Csv.DoveRiga();
      if (!Csv.Presente(kCAltezza)) nuova.Altezza = Opzioni.AltezzaStrumento;
      Date.emplace_back();
      Postazioni[chiave] = Ultima;
    }
    UltimaChiave = std::move(chiave);
    return Ultima;
  }

  void DescriviPostazione(std::size_t quale) {
    PostazioneLibretto& p = L.Postazioni[quale];
    RigheDate& date = Date[quale - PrimaPostazione];
    Fondi(p.Altezza, date.Altezza, kCAltezza, Numero(kCAltezza, kHs));
    Fondi(p.EccDistanza, date.EccDistanza, kCEccDist, Numero(kCEccDist, kEccDistanza));
    Fondi(p.EccDirezione, date.EccDirezione, kCEccDir, Angolo(kCEccDir, kEccDirezione));
    if (Riga.Vuoto(kCNota)) return;
    std::optional<bool> nota = date.AltezzaNota > 0 ? std::optional(p.AltezzaNota) : std::nullopt;
    Fondi(nota, date.AltezzaNota, kCNota, Riga.SiNo(kCNota, "altezza_nota"));
    p.AltezzaNota = nota.value_or(true);
  }

  template <class T>
  void Fondi(std::optional<T>& dato, int& riga, std::size_t colonna, std::optional<T> valore) {
    if (!valore || dato == valore) return;
    if (dato) {
      return Errore(colonna, {.Record = NomeStazione(Stazione()),
                              .Campo = std::string(kColonneCampagna[colonna].Nome),
                              .Problema = "valore diverso nella stessa messa in stazione",
                              .Trovato = Cita(Csv.Campo(colonna)),
                              .Voluto = "quello della riga " + std::to_string(riga),
                              .Suggerimento = "una nuova messa in stazione vuole un nuovo giro"});
    }
    dato = valore;
    riga = Csv.DoveRiga().Riga;
  }

  std::optional<double> Numero(std::size_t colonna, const RegolaNumero& regola) {
    const double valore = Riga.Numero(colonna, regola);
    return Assegnato(valore) ? std::optional(valore) : std::nullopt;
  }

  std::optional<double> Angolo(std::size_t colonna, const RegolaNumero& regola) {
    if (Riga.Vuoto(colonna)) return std::nullopt;
    const std::string_view campo = Csv.Campo(colonna);
    const UnitaAngoli unita = Opzioni.Angoli.value_or(UnitaAngoli::Gon);
    const auto gon = LeggiAngolo(campo, unita, Csv.VirgolaDecimale());
    if (gon && Ammesso(regola, *gon)) return gon;
    if (unita != UnitaAngoli::Gon) {
      Errore(colonna, {.Campo = std::string(regola.Nome),
                       .Problema = gon ? "angolo fuori dal giro" : "angolo che non si legge",
                       .Trovato = Cita(campo),
                       .Voluto = Scrittura(unita)});
      return std::nullopt;
    }
    Guasto guasto = GuastoCampo(Record(), regola, campo, LeggiNumero(campo, Csv.VirgolaDecimale()),
                                kVoglionoIlPunto);
    if (LeggiAngolo(campo, UnitaAngoli::GradiPrimi, true))
      guasto.Suggerimento = "gli angoli in gradi, primi e secondi si leggono con --angoli";
    Errore(colonna, std::move(guasto));
    return std::nullopt;
  }

  static std::string Scrittura(UnitaAngoli unita) {
    switch (unita) {
      case UnitaAngoli::GradiCompatti:
        return "gradi, primi e secondi come 57.32284, da 0 a 360, primi e secondi sotto 60";
      case UnitaAngoli::GradiPrimi:
        return "gradi, primi e secondi come 57-32-28.4, da 0 a 360, primi e secondi sotto 60";
      default: return "gradi decimali da 0 a 360";
    }
  }

  Faccia LeggiFaccia() {
    if (Riga.Vuoto(kCFaccia)) return Faccia::Ignota;
    const std::string_view campo = Csv.Campo(kCFaccia);
    if (const auto lato = CercaParola(kParoleFaccia, campo))
      return *lato == 1 ? Faccia::Prima : Faccia::Seconda;
    Errore(kCFaccia,
           GuastoParola(Record(), "faccia", kParoleFaccia, campo, "I o II, 1 o 2, CS o CD"));
    return Faccia::Ignota;
  }

  // The measured distance is the slope one where a row has both: the other follows from it.
  void LeggiDistanza(BattutaLibretto& battuta) {
    int trovate = 0;
    for (const std::size_t colonna : {kCDist, kCDistIncl, kCDistOrizz}) {
      const RegolaNumero regola = Rinominata(kDistanzaLetta, kColonneCampagna[colonna].Nome);
      const std::optional<double> distanza = Numero(colonna, regola);
      if (!distanza || *distanza == 0.0 || ++trovate > 1) continue;
      battuta.Distanza = distanza;
      battuta.TipoDist = colonna == kCDistOrizz ? kOrizzontale : kInclinata;
      if (colonna == kCDist) battuta.TipoDist = Tipo();
    }
    if (trovate > 1) {
      L.Tralascia("distanze accanto a un'altra della stessa riga",
                  "vale la prima tra dist, inclinata e orizzontale", Csv.DoveRiga().Riga);
    }
  }

  int Tipo() {
    if (Riga.Vuoto(kCTipo)) {
      if (!std::exchange(DettoTipo, true)) {
        Diario.Avviso(
            Csv.DoveRiga(),
            {.Record = Record(),
             .Problema = "distanza senza tipo: presa come inclinata, questa e le altre",
             .Suggerimento = "la colonna tipo dice i (inclinata) oppure o (orizzontale)"});
      }
      return kInclinata;
    }
    if (const auto breve = CercaParola(kParoleTipoBrevi, Csv.Campo(kCTipo))) return *breve;
    return Riga.Tipo(kCTipo, kInclinata);
  }

  template <std::size_t N>
  std::optional<double> Sqm(const std::array<ColonnaSqm, N>& colonne) {
    for (const ColonnaSqm& colonna : colonne) {
      const std::optional<double> valore = Numero(colonna.Quale, colonna.Regola);
      if (!valore) continue;
      if (*valore <= colonna.Massimo) return *valore * colonna.Unita;
      Errore(colonna.Quale,
             {.Campo = std::string(colonna.Regola.Nome),
              .Problema = "troppo grande per uno s.q.m. in " + std::string(colonna.Regola.Unita),
              .Trovato = Cita(Csv.Campo(colonna.Quale)),
              .Suggerimento = "la colonna dice l'unità: sqm_dir (gon), sqm_dir_mgon, sqm_dir_cc, "
                              "sqm_dist (m), sqm_dist_mm"});
    }
    return std::nullopt;
  }

  // Coordinates of the target: the first that it gets. Zeros stand for unknown ones.
  void LeggiCoordinate() {
    const auto est = Numero(kCEst, kEst);
    const auto nord = Numero(kCNord, kNord);
    const auto quota = Numero(kCQuota, kQuota);
    const bool pianta = est && nord && (*est != 0.0 || *nord != 0.0);
    if (!pianta && (est || nord)) {
      return L.Tralascia("coordinate incomplete o 0, 0", "non sono un'approssimazione",
                         Csv.DoveRiga().Riga);
    }
    if (!pianta && !quota) return;
    const std::string_view nome = Csv.Nome(kCPunto);
    const auto [voce, nuovo] = Punti.try_emplace(std::string(nome), L.Punti.size());
    if (nuovo) L.Punti.push_back({std::string(nome), {}, {}, {}, {}, Csv.DoveRiga()});
    PuntoLibretto& punto = L.Punti[voce->second];
    if (pianta && punto.Est &&
        (std::abs(*punto.Est - *est) > kCoordinateLontane ||
         std::abs(*punto.Nord - *nord) > kCoordinateLontane)) {
      Diario.Avviso(Csv.Dove(kCEst), {.Record = NomePunto(nome),
                                      .Problema = "coordinate lontane da quelle alla riga " +
                                                  std::to_string(punto.Dove.Riga) +
                                                  ", che restano le approssimate"});
    }
    if (pianta && !punto.Est) {
      punto.Est = est;
      punto.Nord = nord;
    }
    if (!punto.Quota) punto.Quota = quota;
  }

  void ContaTralasciati() {
    const int riga = Csv.DoveRiga().Riga;
    if (!Riga.Vuoto(kCCommento) || !Riga.Vuoto(kCCodice))
      L.Tralascia("note e codici delle battute", "la rete non li porta", riga);
    if (!Riga.Vuoto(kCSqmZen))
      L.Tralascia("s.q.m. dello zenit", "in quota pesano le distanze", riga);
  }

  std::string_view File;
  const OpzioniLettura& Opzioni;
  TitoliCampagna Titoli;
  LettoreCsv Csv;
  RigaCsv Riga;
  Libretto& L;
  Diagnostica& Diario;
  NomiAlterati Alterati;
  std::size_t PrimaPostazione;                              // of this file in the book
  std::vector<RigheDate> Date;                              // of the set-ups of this file
  std::unordered_map<std::string, std::size_t> Postazioni;  // by station and round
  std::unordered_set<std::string> Ritornate;                // stations already warned of
  std::unordered_map<std::string, std::size_t> Punti;       // with coordinates in this file
  std::string UltimaChiave;
  std::size_t Ultima = 0;
  bool DettoTipo = false;
};

bool Riconosce(std::string_view testo) {
  Diagnostica muta;
  LettoreCsv csv(testo, "", kColonneCampagna, muta, [](std::string_view titolo) {
    return TitoloCsv{.Colonna = CercaSinonimo(TitoloSemplice(titolo), kSinonimiCampagna)};
  });
  csv.LeggiIntestazione();
  const bool misure = csv.Presente(kCDir) || csv.Presente(kCZen);  // the station may be an option
  return csv.Presente(kCPunto) && (csv.Presente(kCStazione) || misure);
}

void Leggi(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
           Libretto& libretto, Diagnostica& diagnostica) {
  std::optional<std::vector<VoceMappa>> mappa(std::in_place);
  if (opzioni.Mappa)
    mappa = LeggiMappaCsv(*opzioni.Mappa, kColonneCampagna, kSinonimiCampagna, diagnostica);
  if (!mappa) return;
  LettoreCampagna(testo, file, opzioni, std::move(*mappa), libretto, diagnostica).Leggi();
}

}  // namespace

const Lettore kLettoreCampagna = {"csv", "libretto di campagna in CSV",
                                  kOpzioneAngoli | kOpzioneAssi | kOpzioneMappa | kOpzioneStazione,
                                  Riconosce, Leggi};

}  // namespace compensa
