// Values that are possible but improbable: zenith angles of the second face, vertical angles taken
// for zenith angles, heights in centimetres, heights that are missing.

#include <cmath>

#include "host/approssimate/visuali.h"
#include "host/campi.h"
#include "host/numeri.h"
#include "host/verifica/rilievi.h"

namespace {

constexpr double kZenitMassimo = 200.0;       // of the first face [gon]
constexpr double kQuasiOrizzonte = 30.0;      // a vertical angle is nearer to 0 than this [gon]
constexpr double kAltezzaInverosimile = 4.0;  // of an instrument on its tripod [m]
constexpr double kSegnaleInverosimile = 30.0;
constexpr double kCentimetri = 50.0;  // from here on a height looks like centimetres

std::string Metri(double valore) { return NumeroFisso(valore, 3) + " m"; }

std::string ForseCentimetri(double valore) {
  constexpr double kCentimetriPerMetro = 100.0;
  return valore >= kCentimetri ? "in centimetri? sarebbe " + Metri(valore / kCentimetriPerMetro)
                               : std::string();
}

class Esame {
 public:
  explicit Esame(const Rete& rete)
      : R(rete), Alt((rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0) {}
  void EsaminaStazione(std::size_t s);
  Rilievi Trovati;

 private:
  void EsaminaAltezza(std::size_t s);
  void EsaminaZenit(std::size_t s);
  void EsaminaSegnali(std::size_t s);
  const std::string& Nome(int i) const { return R.Nomi[static_cast<std::size_t>(i)]; }
  void Aggiungi(const Posizione& dove, std::string record, std::string problema,
                std::string forse = {}) {
    Trovati.push_back({dove,
                       {.Record = std::move(record),
                        .Problema = std::move(problema),
                        .Suggerimento = std::move(forse)}});
  }

  const Rete& R;
  bool Alt;
};

void Esame::EsaminaAltezza(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  const std::string record = NomeStazione(Nome(stazione.Punto));
  if (Assegnato(stazione.AltStrum)) {
    if (std::abs(stazione.AltStrum) > kAltezzaInverosimile)
      Aggiungi(R.PosizioniStazioni[s], record,
               "altezza dello strumento di " + Metri(stazione.AltStrum),
               ForseCentimetri(stazione.AltStrum));
    return;
  }
  int visuali = 0;
  for (const TOssCr& o : stazione.Osservazioni)
    visuali += Assegnato(o.Zenit) && Assegnato(o.Distanza) && Assegnato(o.AltSegnale) ? 1 : 0;
  if (Alt && visuali > 0)
    Aggiungi(R.PosizioniStazioni[s], record,
             "manca l'altezza dello strumento: " + std::to_string(visuali) +
                 (visuali == 1 ? " visuale non dà" : " visuali non danno") + " dislivelli",
             "se non è stata misurata si dà approssimata, con altezza_nota = false");
}

void Esame::EsaminaZenit(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  int letti = 0;
  int presso0 = 0;
  for (const TOssCr& o : stazione.Osservazioni) {
    if (!Assegnato(o.Zenit)) continue;
    ++letti;
    if (std::abs(std::remainder(o.Zenit, kGiroGon)) < kQuasiOrizzonte) ++presso0;
  }
  const bool verticali = 2 * presso0 > letti && (letti > 1 || R.Stazioni.size() == 1);
  if (verticali)
    Aggiungi(R.PosizioniStazioni[s], NomeStazione(Nome(stazione.Punto)),
             std::to_string(presso0) + " zenit su " + std::to_string(letti) + " vicini a 0",
             "angoli verticali, contati dall'orizzonte?");
  for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
    const TOssCr& o = stazione.Osservazioni[i];
    if (!Assegnato(o.Zenit) || verticali || o.Zenit <= kZenitMassimo) continue;
    Aggiungi(
        R.PosizioniOsservazioni[s][i], NomeOsservazione(Nome(stazione.Punto), Nome(o.Punto)),
        "zenit " + NumeroFisso(o.Zenit, 4) + ", oltre 200 gon",
        "lettura al cerchio destro non ridotta? sarebbe " + NumeroFisso(kGiroGon - o.Zenit, 4));
  }
}

void Esame::EsaminaSegnali(std::size_t s) {
  const TStaCr& stazione = R.Stazioni[s];
  int mancanti = 0;
  for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
    const TOssCr& o = stazione.Osservazioni[i];
    if (Assegnato(o.AltSegnale)) {
      if (std::abs(o.AltSegnale) > kSegnaleInverosimile)
        Aggiungi(R.PosizioniOsservazioni[s][i],
                 NomeOsservazione(Nome(stazione.Punto), Nome(o.Punto)),
                 "altezza del segnale di " + Metri(o.AltSegnale), ForseCentimetri(o.AltSegnale));
    } else if (Assegnato(o.Zenit) && Assegnato(o.Distanza)) {
      ++mancanti;
    }
  }
  if (Alt && mancanti > 0 && Assegnato(stazione.AltStrum))
    Aggiungi(R.PosizioniStazioni[s], NomeStazione(Nome(stazione.Punto)),
             mancanti == 1 ? "una visuale con zenit e distanza è senza altezza del segnale"
                           : std::to_string(mancanti) +
                                 " visuali con zenit e distanza sono senza altezza del segnale");
}

void Esame::EsaminaStazione(std::size_t s) {
  EsaminaAltezza(s);
  EsaminaZenit(s);
  EsaminaSegnali(s);
}

}  // namespace

Rilievi ControllaLetture(const Rete& rete) {
  Esame esame(rete);
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) esame.EsaminaStazione(s);
  return std::move(esame.Trovati);
}
