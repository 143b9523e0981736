// Sights reduced to the horizontal and to the station centre.
//   slope distance D', zenith z         D = D' |sin z|
//   eccentric instrument (e, phi)       D^2 = d^2 + e^2 - 2 e d cos(phi - alpha)
//   scale of the map around easting y   k = k0 + y^2 / (2 R^2) - H / R
//   arc to chord                        (N_A - N_B) (2 y_A + y_B) / (6 R^2)
// (Bezoari, Monti, Selvini, Topografia generale; Bomford, Geodesy.)

#include "host/rete/visuali.h"

#include <algorithm>
#include <cmath>

#include "host/rete/zone.h"
#include "records/selezione.h"

namespace compensa {

namespace {

constexpr double kSemiampiezza = 500000.0;  // of a zone around its own [m]
constexpr double kSbraccio = 0.16;          // prism offset of the instruments of types 6 and 7 [m]
constexpr double kSenoMinimo = 1e-6;        // a sight along the vertical has no horizontal distance

// On the horizontal of the instrument [m]; the constants of types 6 and 7, a few centimetres, are
// left to the adjustment.
double Orizzontale(const TOssCr& o) {
  if (!Assegnato(o.Distanza)) return kAssente;
  if (!Inclinata(o.TipoDist)) return o.Distanza;
  if (!Assegnato(o.Zenit)) return kAssente;
  const double seno = std::abs(std::sin(o.Zenit * kRadPerGon));
  if (seno < kSenoMinimo) return kAssente;
  const double braccio =
      o.TipoDist == kInclinata ? 0.0 : kSbraccio * std::cos(o.Zenit * kRadPerGon);
  return (o.Distanza + (o.TipoDist == kInclinataTipo6 ? braccio : 0.0)) * seno;
}

double AlCentro(const TStaCr& s, const TOssCr& o, double distanza) {
  if (!TipoFuoriCentro(o.TipoDist) || !(BraccioFuoriCentro(s) > 0.0) || !Assegnato(o.Direzione))
    return distanza;
  const double e = BraccioFuoriCentro(s);
  const double angolo = (s.EccDirezione - o.Direzione) * kRadPerGon;
  return std::sqrt(
      std::max(0.0, distanza * distanza + e * e - 2.0 * e * distanza * std::cos(angolo)));
}

Visuale CreaVisuale(const TStaCr& s, const TOssCr& o) {
  Visuale v;
  v.Da = s.Punto;
  v.A = o.Punto;
  v.Piana = o.TipoDist == kPiana;
  if (Assegnato(o.Direzione)) v.Direzione = o.Direzione * kRadPerGon;
  v.Distanza = AlCentro(s, o, Orizzontale(o));
  if (v.ConDirezione() && v.ConDistanza())
    v.DirezioneCentro = RiduciAlCentro(s, v.Direzione, v.Distanza);
  return v;
}

}  // namespace

double RiduciAlCentro(const TStaCr& stazione, double direzione, double distanza) {
  if (!(BraccioFuoriCentro(stazione) > 0.0) || !(distanza > 0.0)) return direzione;
  const double x = direzione - stazione.EccDirezione * kRadPerGon;
  return direzione +
         std::asin(std::clamp(BraccioFuoriCentro(stazione) * std::sin(x) / distanza, -1.0, 1.0));
}

double Dislivello(const Rete& rete, const Visuale& visuale) {
  const auto s = static_cast<std::size_t>(visuale.Stazione);
  const TStaCr& stazione = rete.Stazioni[s];
  const TOssCr& o = stazione.Osservazioni[static_cast<std::size_t>(visuale.Osservazione)];
  if (!Assegnato(stazione.AltStrum) || !Assegnato(o.Zenit) || !Assegnato(o.Distanza) ||
      !Assegnato(o.AltSegnale))
    return kAssente;
  const double z = o.Zenit * kRadPerGon;
  const bool inclinata = Inclinata(o.TipoDist);
  if (!inclinata && std::abs(std::sin(z)) < kSenoMinimo) return kAssente;
  const double orizzontale = inclinata ? o.Distanza * std::abs(std::sin(z)) : o.Distanza;
  double dislivello = inclinata ? o.Distanza * std::cos(z) : o.Distanza / std::tan(z);
  const CCalcDsOr& cr = rete.CurvaturaRifrazione;
  if (cr.CorrCurvRifr != 0 && cr.RaggioTerra > 0.0)
    dislivello += orizzontale * orizzontale * (1.0 - cr.CoeffRifr) / (2.0 * cr.RaggioTerra);
  return dislivello + stazione.AltStrum - o.AltSegnale;
}

Riduzioni::Riduzioni(const Rete& rete, bool carta) : Carta(carta) {
  if (!Carta) return;
  double sommaQuote = 0.0;
  double sommaEst = 0.0;
  int quote = 0;
  int est = 0;
  for (const TCoorCr& p : rete.Punti) {
    if (Assegnato(p.Quota)) sommaQuote += p.Quota, ++quote;
    if (DiceLaZona(p.Est)) sommaEst += p.Est, ++est;
  }
  if (quote > 0) QuotaMedia = sommaQuote / quote;
  if (est > 0) EstMedio = sommaEst / est;
  const TCoorCr* primo = PuntoDellaZona(rete.Punti);
  const Zona* zona = primo == nullptr ? nullptr : ZonaDi(primo->Est);
  Carta = zona != nullptr;
  if (Carta) FalsoEst = zona->FalsoEst;
}

double Riduzioni::Scala(double est, double quota) const {
  if (!Carta) return 1.0;
  double y = est - FalsoEst;
  if (!(std::abs(y) < kSemiampiezza)) y = EstMedio - FalsoEst;
  const double h = Assegnato(quota) ? quota : QuotaMedia;
  return kScalaCentrale + y * y / (2.0 * kRaggioMedio * kRaggioMedio) - h / kRaggioMedio;
}

double Riduzioni::CordaArco(Posto da, Posto a) const {
  if (!Carta) return 0.0;
  const double yA = da.Est - FalsoEst;
  const double yB = a.Est - FalsoEst;
  return (da.Nord - a.Nord) * (2.0 * yA + yB) / (6.0 * kRaggioMedio * kRaggioMedio);
}

Visuali::Visuali(const Rete& rete, Calcolo quale)
    : Postazioni(rete.Punti.size()), VistoDa(rete.Punti.size()) {
  const auto escluso = [&](int punto) {
    if (punto < 0) return true;
    const RuoliPunto& ruoli = rete.RuoliIniziali[static_cast<std::size_t>(punto)];
    return (quale == kCalcoloPlanimetria ? ruoli.Pla : ruoli.Alt) == kNonUsato;
  };
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s) {
    const TStaCr& stazione = rete.Stazioni[s];
    Inizio.push_back(static_cast<int>(Tutte.size()));
    if (escluso(stazione.Punto)) continue;
    Postazioni[static_cast<std::size_t>(stazione.Punto)].push_back(static_cast<int>(s));
    for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
      const TOssCr& o = stazione.Osservazioni[i];
      if (escluso(o.Punto) || o.Punto == stazione.Punto) continue;
      Visuale v = CreaVisuale(stazione, o);
      v.Stazione = static_cast<int>(s);
      v.Osservazione = static_cast<int>(i);
      VistoDa[static_cast<std::size_t>(o.Punto)].push_back(static_cast<int>(Tutte.size()));
      Tutte.push_back(v);
    }
  }
  Inizio.push_back(static_cast<int>(Tutte.size()));
}

}  // namespace compensa
