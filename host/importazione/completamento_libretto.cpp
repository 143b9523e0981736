// Completing a field book. A point that an option names must be there: a name that is not has been
// mistyped, and a network with one fixed point less would be computed without a word.

#include "host/importazione/completamento_libretto.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/base/numeri.h"
#include "host/base/suggerimenti.h"
#include "host/base/testi.h"
#include "host/importazione/angoli.h"
#include "host/importazione/csv/coordinate_csv.h"
#include "host/importazione/unione.h"
#include "host/rete/campi.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

// The name of the record is worded only when it is needed.
template <class NomeRecord>
void Controlla(std::optional<double>& valore, const RegolaNumero& regola, const Posizione& dove,
               NomeRecord nome, Diagnostica& diario) {
  if (!valore || Ammesso(regola, *valore)) return;
  diario.Errore(dove, GuastoNumero(nome(), regola, NumeroBreve(*valore), *valore));
  valore.reset();
}

void PortaNelGiro(std::optional<double>& direzione) {
  if (!direzione || !std::isfinite(*direzione) || Ammesso(kDirezione, *direzione)) return;
  direzione = NelGiro(*direzione);
}

// Reports every value outside its range as an error and takes it out of the book, before a mean can
// hide it; brings directions within the circle. Returns how many distances were zero: they are no
// measurements, and are taken out without an error.
int ControllaValori(Libretto& libretto, Diagnostica& diagnostica) {
  int nulle = 0;
  for (PuntoLibretto& p : libretto.Punti) {
    const auto nome = [&] { return NomePunto(p.Nome); };
    Controlla(p.Est, kEst, p.Dove, nome, diagnostica);
    Controlla(p.Nord, kNord, p.Dove, nome, diagnostica);
    Controlla(p.Quota, kQuota, p.Dove, nome, diagnostica);
  }
  for (PostazioneLibretto& s : libretto.Postazioni) {
    const auto nomeStazione = [&] { return NomeStazione(s.Punto); };
    PortaNelGiro(s.EccDirezione);
    Controlla(s.Altezza, kAltezza, s.Dove, nomeStazione, diagnostica);
    Controlla(s.EccDistanza, kEccDistanza, s.Dove, nomeStazione, diagnostica);
    Controlla(s.EccDirezione, kEccDirezione, s.Dove, nomeStazione, diagnostica);
    for (BattutaLibretto& b : s.Battute) {
      const auto nome = [&] { return NomeOsservazione(s.Punto, b.Punto); };
      if (b.Distanza == 0.0) {
        b.Distanza.reset();
        ++nulle;
      }
      PortaNelGiro(b.Direzione);
      Controlla(b.Direzione, kDirezione, b.Dove, nome, diagnostica);
      Controlla(b.Zenit, kZenit, b.Dove, nome, diagnostica);
      Controlla(b.Segnale, kSegnale, b.Dove, nome, diagnostica);
      Controlla(b.Distanza, kDistanza, b.Dove, nome, diagnostica);
    }
  }
  return nulle;
}

class Completamento {
 public:
  Completamento(const OpzioniImporta& opzioni, Libretto& libretto, Diagnostica& diagnostica)
      : O(opzioni), L(libretto), Diario(diagnostica) {}

  EsitoCompletamento Esegui() {
    UnisciPunti(L, Diario);
    if (O.Coordinate) LeggiCoordinateCsv(*O.Coordinate, O.Lettura.AssiXY, L, Diario);
    Nulle = ControllaValori(L, Diario);
    AggiungiPuntiVisti();
    AvvisaMaiuscole();
    SistemaDistanze();
    ScegliCalcolo();
    Fissa(O.Fissi, "--fissi", true, true);
    Fissa(O.FissiPlanimetria, "--fissi-planimetria", true, false);
    Fissa(O.FissiAltimetria, "--fissi-altimetria", false, true);
    Escludi();
    ControllaFissi();
    if (O.Nome) L.DatiProgetto.Nome = *O.Nome;
    if (O.Epsg) L.DatiProgetto.Epsg = O.Epsg;
    if (O.Cartografiche) L.Opzioni.Cartografiche = true;
    return std::move(Esito);
  }

 private:
  void AggiungiPuntiVisti() {
    for (std::size_t i = 0; i < L.Punti.size(); ++i) Indici.try_emplace(L.Punti[i].Nome, i);
    std::size_t nuovi = 0;
    const auto aggiungi = [&](const std::string& nome, const Posizione& dove) {
      if (!Indici.try_emplace(nome, L.Punti.size()).second) return;
      PuntoLibretto punto;
      punto.Nome = nome;
      punto.Dove = dove;
      L.Punti.push_back(std::move(punto));
      ++nuovi;
    };
    for (const PostazioneLibretto& postazione : L.Postazioni) {
      aggiungi(postazione.Punto, postazione.Dove);
      for (const BattutaLibretto& battuta : postazione.Battute)
        aggiungi(battuta.Punto, battuta.Dove);
    }
    if (nuovi == 0) return;
    Esito.Assunti.push_back(
        Conta(nuovi, "punto che il libretto nomina solo nelle letture è incognito.",
              "punti che il libretto nomina solo nelle letture sono incogniti."));
  }

  void AvvisaMaiuscole() {
    std::unordered_map<std::string, const PuntoLibretto*> visti;
    for (const PuntoLibretto& punto : L.Punti) {
      const auto [voce, nuovo] = visti.try_emplace(Minuscole(punto.Nome), &punto);
      if (nuovo) continue;
      Diario.Avviso(punto.Dove,
                    {.Record = NomePunto(punto.Nome),
                     .Problema = "il nome differisce solo per le maiuscole da " +
                                 Cita(voce->second->Nome) + ": sono due punti diversi"});
    }
  }

  void SistemaDistanze() {
    int completate = 0, senzaZenit = 0;
    const BattutaLibretto* prima = nullptr;
    for (PostazioneLibretto& postazione : L.Postazioni) {
      for (BattutaLibretto& b : postazione.Battute) {
        if (!b.Distanza || b.Zenit) continue;
        if (Inclinata(b.TipoDist)) {
          if (senzaZenit++ == 0) prima = &b;
          continue;
        }
        b.Zenit = kOrizzonte;
        b.Segnale.reset();  // a made-up zenith angle is no height
        ++completate;
      }
    }
    if (Nulle > 0) {
      Esito.Assunti.push_back(Conta(Nulle, "distanza uguale a zero vale come non misurata.",
                                    "distanze uguali a zero valgono come non misurate."));
    }
    if (completate > 0) {
      Esito.Assunti.push_back(
          Conta(completate, "distanza orizzontale senza zenit ha",
                "distanze orizzontali senza zenit hanno") +
          " zenit = 100.0, per entrare nella planimetria, e nessun segnale, per non entrare "
          "nell'altimetria.");
    }
    if (senzaZenit == 0) return;
    Diario.Avviso(prima->Dove,
                  {.Record = Conta(senzaZenit, "distanza inclinata", "distanze inclinate"),
                   .Problema = "senza zenit non si riducono all'orizzonte: il calcolo non "
                               "le userà (questa è la prima)"});
  }

  bool ConDislivelli() const {
    return std::any_of(L.Postazioni.begin(), L.Postazioni.end(), [](const PostazioneLibretto& p) {
      return p.Altezza && std::any_of(p.Battute.begin(), p.Battute.end(), [](const auto& b) {
               return b.Zenit && b.Segnale && b.Distanza;
             });
    });
  }

  void ScegliCalcolo() {
    if (O.TipoCalcolo) L.Opzioni.TipoCalcolo = O.TipoCalcolo;
    if (L.Opzioni.TipoCalcolo) return;
    L.Opzioni.TipoCalcolo = kCalcoloPlanimetria | kCalcoloAltimetria;
    if (ConDislivelli()) return;
    L.Opzioni.TipoCalcolo = kCalcoloPlanimetria;
    Esito.Assunti.emplace_back(
        "Si compensa la sola planimetria: nessuna visuale ha zenit, distanza e altezze dello "
        "strumento e del segnale.");
  }

  // The point of an option; null with an error if there is none.
  PuntoLibretto* Trova(const std::string& nome, std::string_view opzione) {
    if (const auto voce = Indici.find(nome); voce != Indici.end()) return &L.Punti[voce->second];
    Guasto guasto{.Record = NomePunto(nome), .Problema = "non è tra i punti"};
    if (Nomi.empty())
      for (const PuntoLibretto& punto : L.Punti) Nomi.push_back(punto.Nome);
    const std::string_view vicino = Diario.Colma() ? std::string_view() : PiuVicino(nome, Nomi);
    if (!vicino.empty()) guasto.Suggerimento = "forse " + Cita(vicino) + "?";
    Diario.Errore({opzione, 0, 0}, std::move(guasto));
    return nullptr;
  }

  // An option that fixes in both senses fixes the height only where there is one.
  void Fissa(const std::vector<std::string>& nomi, std::string_view opzione, bool pianta,
             bool quota) {
    const int calcolo = *L.Opzioni.TipoCalcolo;
    for (const std::string& nome : nomi) {
      PuntoLibretto* punto = Trova(nome, opzione);
      if (punto == nullptr) continue;
      const bool conPianta = punto->Est && punto->Nord;
      const bool conQuota = punto->Quota.has_value();
      const bool mancaPianta =
          pianta && !conPianta && ((calcolo & kCalcoloPlanimetria) != 0 || !quota);
      const bool mancaQuota = quota && !conQuota && (!pianta || !conPianta);
      if (mancaPianta || mancaQuota) {
        Diario.Errore({opzione, 0, 0},
                      {.Record = NomePunto(nome),
                       .Problema = mancaPianta ? "mancano le coordinate est e nord a cui fissarlo"
                                               : "manca la quota a cui fissarlo",
                       .Suggerimento = "si danno con --coordinate punti.csv"});
        continue;
      }
      if (pianta && conPianta) punto->Ruoli.Pla = kFisso;
      if (quota && conQuota) punto->Ruoli.Alt = kFisso;
    }
  }

  void Escludi() {
    for (const std::string& nome : O.Escludi) {
      PuntoLibretto* punto = Trova(nome, "--escludi");
      if (punto == nullptr) continue;
      const auto fra = [&](const std::vector<std::string>& nomi) {
        return std::find(nomi.begin(), nomi.end(), nome) != nomi.end();
      };
      if (fra(O.Fissi) || fra(O.FissiPlanimetria) || fra(O.FissiAltimetria)) {
        Diario.Errore({"--escludi", 0, 0}, {.Record = NomePunto(nome),
                                            .Problema = "non può essere insieme fisso ed escluso"});
      }
      punto->Ruoli = {kNonUsato, kNonUsato};
    }
  }

  // A role that the book or the table gives without the coordinates that belong to it.
  void ControllaFissi() {
    for (const PuntoLibretto& punto : L.Punti) {
      const bool pianta = punto.Ruoli.Pla == kFisso && !(punto.Est && punto.Nord);
      const bool quota = punto.Ruoli.Alt == kFisso && !punto.Quota;
      if (!pianta && !quota) continue;
      Diario.Errore(punto.Dove, {.Record = NomePunto(punto.Nome),
                                 .Problema = std::string("è fisso ma ") +
                                             (pianta ? "mancano le sue coordinate est e nord"
                                                     : "manca la sua quota"),
                                 .Suggerimento = "si danno con --coordinate punti.csv"});
    }
  }

  const OpzioniImporta& O;
  Libretto& L;
  Diagnostica& Diario;
  EsitoCompletamento Esito;
  int Nulle = 0;                                        // distances of zero
  std::unordered_map<std::string, std::size_t> Indici;  // of the points, by name
  std::vector<std::string_view> Nomi;                   // for suggestions, once needed
};

}  // namespace

EsitoCompletamento CompletaLibretto(const OpzioniImporta& opzioni, Libretto& libretto,
                                    Diagnostica& diagnostica) {
  return Completamento(opzioni, libretto, diagnostica).Esegui();
}

}  // namespace compensa
