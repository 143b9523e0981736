// Options whose value is possible but far from what instruments and the earth have: most often a
// value in another unit.

#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/prima.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

// What a standard deviation can be: from the best instruments in a laboratory to a compass or a
// tape drawn by hand.
constexpr double kSqmDirMinimo = 0.00001, kSqmDirMassimo = 0.1;    // [gon]
constexpr double kSqmDistMinimo = 0.00005, kSqmDistMassimo = 0.5;  // constant part [m]
constexpr double kSqmPropMinimo = 0.00005, kSqmPropMassimo = 0.1;  // [m/km]
// Of refraction, even along a sight that grazes warm ground.
constexpr double kRifrazioneMassima = 1.0;
// Radii of curvature of the ellipsoid lie between 6335 and 6400 km.
constexpr double kRaggioMinimo = 6.3e6, kRaggioMassimo = 6.45e6;  // [m]

// Without an exponent.
std::string InDecimali(double valore) {
  constexpr int kDecimali = 5;
  return NumeroFisso(valore, kDecimali);
}
std::string FuoriDa(double minimo, double massimo) {
  return "fuori da " + NumeroFisso(minimo, 0) + " … " + NumeroFisso(massimo, 0);
}

class Esame {
 public:
  explicit Esame(const Rete& rete) : R(rete), O(rete.Opzioni), D(rete.DoveOpzioni) {}
  Rilievi Esegui();

 private:
  void EsaminaSqm();
  void EsaminaCurvatura();
  void Aggiungi(Codice codice, const Posizione& dove, std::string_view record,
                const RegolaNumero& regola, double valore, const std::string& limite,
                std::string forse) {
    const std::string unita = regola.Unita.empty() ? "" : " " + std::string(regola.Unita);
    Trovati.push_back({dove,
                       {.Quale = codice,
                        .Record = {TipoSoggetto::Opzione, {std::string(record)}},
                        .Campo = std::string(regola.Nome),
                        .Problema = NumeroBreve(valore) + unita + ", " + limite + unita,
                        .Suggerimento = std::move(forse)}});
  }

  const Rete& R;
  const TOpzCr& O;
  const PosizioniOpzioni& D;
  Rilievi Trovati;
};

void Esame::EsaminaSqm() {
  bool direzioni = false;
  bool distanze = false;
  for (const TStaCr& s : R.Stazioni)
    for (const TOssCr& o : s.Osservazioni) {
      direzioni = direzioni || Assegnato(o.Direzione);
      distanze = distanze || (Assegnato(o.Distanza) && Assegnato(o.Zenit));
    }
  if (direzioni && O.SqmDir > kSqmDirMassimo)
    Aggiungi(Codice::SqmInverosimile, D.SqmDirezione, "opzioni", kSqmDirezione, O.SqmDir,
             "più di " + NumeroBreve(kSqmDirMassimo),
             "in milligon o in secondi? serve in gon: 1 mgon = 0.001 gon, 1\" = 0.00031 gon");
  if (direzioni && O.SqmDir < kSqmDirMinimo)
    Aggiungi(Codice::SqmInverosimile, D.SqmDirezione, "opzioni", kSqmDirezione, O.SqmDir,
             "meno di " + InDecimali(kSqmDirMinimo),
             "in radianti? serve in gon: nessuno strumento è così preciso");
  if (distanze && O.SqmDistCost > kSqmDistMassimo)
    Aggiungi(Codice::SqmInverosimile, D.SqmDistCostante, "opzioni", kSqmDistCostante, O.SqmDistCost,
             "più di " + NumeroBreve(kSqmDistMassimo),
             "in millimetri? sarebbe " + NumeroBreve(O.SqmDistCost / kMmPerMetro) + " m");
  if (distanze && O.SqmDistCost < kSqmDistMinimo && O.SqmDistProp < kSqmPropMinimo)
    Aggiungi(Codice::SqmInverosimile, D.SqmDistCostante, "opzioni", kSqmDistCostante, O.SqmDistCost,
             "meno di " + InDecimali(kSqmDistMinimo),
             "in chilometri? serve in m: nessun distanziometro è così preciso");
  if (distanze && O.SqmDistProp > kSqmPropMassimo)
    Aggiungi(Codice::SqmInverosimile, D.SqmDistProporzionale, "opzioni", kSqmDistProporzionale,
             O.SqmDistProp, "più di " + NumeroBreve(kSqmPropMassimo),
             "in ppm, cioè mm/km? sarebbe " + NumeroBreve(O.SqmDistProp / kMmPerMetro) + " m/km");
}

void Esame::EsaminaCurvatura() {
  const CCalcDsOr& c = R.CurvaturaRifrazione;
  if (c.CorrCurvRifr == 0) return;
  constexpr std::string_view kRecord = "curvatura_rifrazione";
  if (!(c.CoeffRifr >= -kRifrazioneMassima && c.CoeffRifr <= kRifrazioneMassima))
    Aggiungi(Codice::RifrazioneInverosimile, D.Coefficiente, kRecord, kCoefficiente, c.CoeffRifr,
             FuoriDa(-kRifrazioneMassima, kRifrazioneMassima), "di solito è 0.13");
  if (c.RaggioTerra >= kRaggioMinimo && c.RaggioTerra <= kRaggioMassimo) return;
  const double metri = c.RaggioTerra * kMetriPerKm;
  const bool chilometri = metri >= kRaggioMinimo && metri <= kRaggioMassimo;
  Aggiungi(
      Codice::RaggioInverosimile, D.Raggio, kRecord, kRaggio, c.RaggioTerra,
      FuoriDa(kRaggioMinimo, kRaggioMassimo),
      chilometri ? "in chilometri? sarebbe " + NumeroBreve(metri) + " m" : "di solito è 6378000");
}

Rilievi Esame::Esegui() {
  if ((O.TipoCalcolo & kCalcoloPlanimetria) != 0) EsaminaSqm();
  if ((O.TipoCalcolo & kCalcoloAltimetria) != 0) EsaminaCurvatura();
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaOpzioni(const Rete& rete) { return Esame(rete).Esegui(); }

}  // namespace compensa
