// Readings against coordinates, under other hypotheses than the one that the file stands for. With
// dr the difference of two neighbouring readings of a set-up and da that of their azimuths from the
// coordinates, the median over the network of
//   |da - dr|             is small if all is as it should be,
//   |da + dr|             if East and North are exchanged, or readings grow counterclockwise,
//   |da - dr 400 / 360|   if the circle was in degrees.
// The median of D measured / D computed is 1, or the unit of the distances is another one.
// Approximate coordinates make all this coarse; a wrong hypothesis misses by far more.

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/prima.h"
#include "host/rete/campi.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

// Fewer tell nothing of a whole network. Two angles do: by chance they fit a hypothesis once in
// twenty thousand times; two wrong distances are in the same proportion far more often.
constexpr std::size_t kAngoliMinimi = 2;
constexpr std::size_t kDistanzeMinime = 3;
constexpr double kSenoMinimo = 0.15;         // an angle near 0 or 200 gon is its own mirror image
constexpr double kTorna = 1.0 * kRadPerGon;  // a hypothesis fits [rad]
constexpr double kNonTorna = 3.0 * kRadPerGon;
constexpr double kLatoMinimo = 1.0;      // coordinates of nearer points tell no direction [m]
constexpr double kScalaTorna = 0.01;     // scatter of the ratios of distances, relative
constexpr double kScalaNonTorna = 0.05;  // their distance from 1

struct Unita {
  double Rapporto;  // of a value in it to the same in metres
  std::string_view Nome;
};
constexpr std::array<Unita, 5> kUnita{{{1.0 / kMetriPerKm, "in chilometri"},
                                       {kCmPerMetro, "in centimetri"},
                                       {kMmPerMetro, "in millimetri"},
                                       {3.280839895, "in piedi"},
                                       {10.0, "con la virgola spostata"}}};

class Esame {
 public:
  explicit Esame(const Rete& rete) : R(rete), V(rete), K(rete) {}
  Rilievi Esegui();

 private:
  bool Misurabile(const Visuale& v, Posto& lato) const;
  void Raccogli();
  void EsaminaAngoli();
  void EsaminaDistanze();
  void Aggiungi(Codice codice, std::string problema, std::string forse) {
    Trovati.push_back({R.PosizioniStazioni.front(),
                       {.Quale = codice,
                        .Record = TipoSoggetto::Rete,
                        .Problema = std::move(problema),
                        .Suggerimento = std::move(forse)}});
  }

  const Rete& R;
  Visuali V;
  Riduzioni K;
  std::vector<double> Dritti, Speculari, InGradi;  // what the angles miss by [rad]
  std::vector<double> Rapporti;
  Rilievi Trovati;
};

bool Esame::Misurabile(const Visuale& v, Posto& lato) const {
  const TCoorCr& p = R.Punti[static_cast<std::size_t>(v.Da)];
  const TCoorCr& t = R.Punti[static_cast<std::size_t>(v.A)];
  if (!Assegnato(p.Est) || !Assegnato(p.Nord) || !Assegnato(t.Est) || !Assegnato(t.Nord))
    return false;
  lato = {t.Est - p.Est, t.Nord - p.Nord};
  return Lunghezza(lato) > kLatoMinimo;
}

void Esame::Raccogli() {
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    double primaLetta = kAssente;
    double primoAzimut = 0.0;
    for (int i = V.Inizio[s]; i < V.Inizio[s + 1]; ++i) {
      const Visuale& v = V.Tutte[static_cast<std::size_t>(i)];
      Posto lato;
      if (!Misurabile(v, lato)) continue;
      if (v.ConDistanza()) Rapporti.push_back(v.Distanza / Lunghezza(lato));
      if (!v.ConDirezione()) continue;
      const double letta = RiduciAlCentro(R.Stazioni[s], v.Direzione, Lunghezza(lato));
      const double azimut = Azimut(lato);
      const double da = azimut - std::exchange(primoAzimut, azimut);
      const double dr = letta - std::exchange(primaLetta, letta);
      if (!Presente(dr) || std::abs(std::sin(da)) < kSenoMinimo) continue;
      Dritti.push_back(std::abs(MezzoGiro(da - dr)));
      Speculari.push_back(std::abs(MezzoGiro(da + dr)));
      InGradi.push_back(std::abs(MezzoGiro(da - dr * kGiroGon / kGiroGradi)));
    }
  }
}

void Esame::EsaminaAngoli() {
  if (Dritti.size() < kAngoliMinimi) return;
  const std::string quanti = std::to_string(Dritti.size());
  const double dritti = Mediana(std::move(Dritti));
  if (dritti < kNonTorna) return;
  const std::string scostano = quanti + " angoli si scostano in mediana di " +
                               NumeroFisso(dritti / kRadPerGon, 2) +
                               " gon da quelli delle coordinate, ma solo di ";
  const double speculari = Mediana(std::move(Speculari));
  const double inGradi = Mediana(std::move(InGradi));
  if (speculari < kTorna)
    Aggiungi(Codice::VersoSbagliato,
             scostano + NumeroFisso(speculari / kRadPerGon, 2) + " gon se si cambia verso",
             "Est e Nord scambiati in tutti i punti, o direzioni antiorarie?");
  else if (inGradi < kTorna)
    Aggiungi(Codice::DirezioniInGradi,
             scostano + NumeroFisso(inGradi / kRadPerGon, 2) + " gon se le direzioni sono in gradi",
             "gradi sessagesimali invece di gon? si moltiplicano per 10/9");
}

void Esame::EsaminaDistanze() {
  if (Rapporti.size() < kDistanzeMinime) return;
  const double rapporto = Mediana(Rapporti);
  if (std::abs(rapporto - 1.0) < kScalaNonTorna) return;
  const std::string quante = std::to_string(Rapporti.size());
  for (double& r : Rapporti) r = std::abs(r / rapporto - 1.0);
  if (Mediana(std::move(Rapporti)) > kScalaTorna) return;
  const auto* unita = std::find_if(kUnita.begin(), kUnita.end(), [&](const Unita& u) {
    return std::abs(rapporto / u.Rapporto - 1.0) < kScalaNonTorna;
  });
  constexpr int kDecimali = 4;
  Aggiungi(Codice::ScalaDistanze,
           "le " + quante + " distanze sono in mediana " + NumeroFisso(rapporto, kDecimali) +
               " volte quelle delle coordinate",
           unita == kUnita.end() ? "distanze e coordinate non sono nella stessa unità?"
                                 : "distanze " + std::string(unita->Nome) + "? servono in metri");
}

Rilievi Esame::Esegui() {
  Raccogli();
  EsaminaAngoli();
  EsaminaDistanze();
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaVersoScala(const Rete& rete) {
  const bool pianta = (rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0;
  return pianta && !rete.Stazioni.empty() ? Esame(rete).Esegui() : Rilievi{};
}

}  // namespace compensa
