// The rounds: set-ups on known points that see a known point get their orientation, then the best
// method that finds anything places all the points that it can.

#include "host/approssimate/propagazione.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/base/unita.h"
#include "host/rete/statistica.h"

namespace compensa {

namespace {

constexpr double kVicini = 0.05;           // a shorter sight does not orient [m]
constexpr double kScartoMinimo = 0.30;     // positions nearer than this agree [m]
constexpr double kScartoRelativo = 0.002;  // and those nearer than this part of the sight

}  // namespace

std::optional<Determinazione> Media(const std::vector<Posto>& luoghi, const std::vector<int>& basi,
                                    Metodo metodo, double portata) {
  if (luoghi.empty()) return std::nullopt;
  std::vector<double> est;
  std::vector<double> nord;
  for (const Posto p : luoghi) est.push_back(p.Est), nord.push_back(p.Nord);
  const Posto mediana{Mediana(est), Mediana(nord)};
  const double tolleranza = std::max(kScartoMinimo, kScartoRelativo * portata);
  Determinazione d;
  d.Modo = metodo;
  d.Media = 0;
  Posto somma;
  std::vector<Posto> tenuti;
  for (std::size_t i = 0; i < luoghi.size(); ++i) {
    if (luoghi.size() > 2 && Lunghezza(luoghi[i] - mediana) > tolleranza) {
      ++d.Escluse;
      continue;
    }
    somma = somma + luoghi[i];
    tenuti.push_back(luoghi[i]);
    if (std::find(d.Basi.begin(), d.Basi.end(), basi[i]) == d.Basi.end()) d.Basi.push_back(basi[i]);
  }
  d.Media = static_cast<int>(tenuti.size());
  if (tenuti.empty()) {  // no two of them agree
    d = {.Luogo = mediana, .Modo = metodo, .Basi = basi, .Media = static_cast<int>(luoghi.size())};
    tenuti = luoghi;
  } else {
    d.Luogo = (1.0 / d.Media) * somma;
  }
  for (const Posto p : tenuti) d.ScartoMassimo = std::max(d.ScartoMassimo, Lunghezza(p - d.Luogo));
  d.Discordi = d.ScartoMassimo > tolleranza;
  return d;
}

Propagazione::Propagazione(const Rete& rete, const Visuali& visuali, const Riduzioni& riduzioni)
    : R(rete),
      V(visuali),
      K(riduzioni),
      Noti(rete.Punti.size(), 0),
      Luoghi(rete.Punti.size()),
      Zeri(rete.Stazioni.size(), kAssente),
      Esiti(rete.Punti.size()),
      Ostacoli(rete.Punti.size()),
      InCoda(rete.Punti.size(), 0),
      StazioneInCoda(rete.Stazioni.size(), 0) {}

void Propagazione::Conosci(int punto, Posto luogo) {
  Noti[static_cast<std::size_t>(punto)] = 1;
  Luoghi[static_cast<std::size_t>(punto)] = luogo;
  Toccati.push_back(punto);
  const auto p = static_cast<std::size_t>(punto);
  for (const int s : V.Postazioni[p]) SvegliaStazione(s);
  for (const int v : V.VistoDa[p]) {
    const Visuale& visuale = V.Tutte[static_cast<std::size_t>(v)];
    if (Noto(visuale.Da))
      SvegliaStazione(visuale.Stazione);
    else
      Sveglia(visuale.Da);
  }
}

void Propagazione::Fissa(int punto, Determinazione determinazione) {
  const Posto luogo = determinazione.Luogo;
  Esiti[static_cast<std::size_t>(punto)] = std::move(determinazione);
  Conosci(punto, luogo);
}

// A set-up whose point is known, or whose sights have changed: it may be oriented now, and what it
// sees is nearer to being found.
void Propagazione::SvegliaStazione(int s) {
  const auto i = static_cast<std::size_t>(s);
  if (Generale != nullptr && Generale->Orientata(s)) return;
  if (StazioneInCoda[i] != 0 || Orientata(s)) return;
  StazioneInCoda[i] = 1;
  DaOrientare.push_back(s);
}

void Propagazione::Sveglia(int punto) {
  const auto p = static_cast<std::size_t>(punto);
  if (Noti[p] != 0) return;
  for (int m = 0; m < kMetodiSingoli; ++m) {
    const auto segno = static_cast<char>(1 << m);
    if ((InCoda[p] & segno) != 0) continue;
    InCoda[p] = static_cast<char>(InCoda[p] | segno);
    Attesa[m].push_back(punto);
  }
}

void Propagazione::OrientaInAttesa() {
  for (const int s : std::exchange(DaOrientare, {})) {
    StazioneInCoda[static_cast<std::size_t>(s)] = 0;
    OrientaStazione(s);
  }
}

void Propagazione::OrientaStazione(int s) {
  const auto i = static_cast<std::size_t>(s);
  const TStaCr& stazione = R.Stazioni[i];
  const Posto qui = Luogo(stazione.Punto);
  std::vector<double> zeri;
  for (int v = V.Inizio[i]; v < V.Inizio[i + 1]; ++v) {
    const Visuale& visuale = V.Tutte[static_cast<std::size_t>(v)];
    if (!Noto(visuale.A)) continue;
    if (!visuale.ConDirezione()) continue;
    const Posto lato = Luogo(visuale.A) - qui;
    const double D = Lunghezza(lato);
    if (D < kVicini) continue;
    zeri.push_back(MezzoGiro(Azimut(lato) - RiduciAlCentro(stazione, visuale.Direzione, D)));
  }
  if (!zeri.empty()) {
    Zeri[i] = Orienta(zeri).Zero;
    StazioniToccate.push_back(s);
  }
  for (int v = V.Inizio[i]; v < V.Inizio[i + 1]; ++v)
    Sveglia(V.Tutte[static_cast<std::size_t>(v)].A);
}

// The measured distance of a sight on the plane, reduced at the place of its known end.
double Propagazione::Distanza(const Visuale& v, int noto) const {
  const double quota = R.Punti[static_cast<std::size_t>(noto)].Quota;
  return v.Distanza * K.Scala(v, Luogo(noto).Est, quota);
}

// Where the instrument of an oriented set-up stands.
Posto Propagazione::Strumento(int s) const {
  const TStaCr& stazione = R.Stazioni[static_cast<std::size_t>(s)];
  const Posto centro = Luogo(stazione.Punto);
  if (!(BraccioFuoriCentro(stazione) > 0.0)) return centro;
  const double azimut = Zeri[static_cast<std::size_t>(s)] + stazione.EccDirezione * kRadPerGon;
  return centro + -BraccioFuoriCentro(stazione) * Versore(azimut);
}

Propagazione::Esito Propagazione::Prova(Metodo metodo, int punto) {
  switch (metodo) {
    case Metodo::Polare: return Polare(punto);
    case Metodo::StazioneLibera: return StazioneLibera(punto);
    case Metodo::InAvanti: return InAvanti(punto);
    case Metodo::Inversa: return Inversa(punto);
    case Metodo::Distanze: return Distanze(punto);
    case Metodo::Insieme: break;
  }
  return std::nullopt;
}

bool Propagazione::Applica(Metodo metodo) {
  const int m = static_cast<int>(metodo);
  std::vector<std::pair<int, Determinazione>> trovati;
  for (const int punto : std::exchange(Attesa[m], {})) {
    const auto p = static_cast<std::size_t>(punto);
    InCoda[p] = static_cast<char>(InCoda[p] & ~(1 << m));
    if (Noti[p] != 0) continue;
    if (Esito esito = Prova(metodo, punto)) trovati.emplace_back(punto, std::move(*esito));
  }
  for (auto& [punto, determinazione] : trovati) Fissa(punto, std::move(determinazione));
  return !trovati.empty();
}

void Propagazione::EseguiGiri() {
  constexpr Metodo kOrdine[kMetodiSingoli] = {Metodo::Polare, Metodo::StazioneLibera,
                                              Metodo::InAvanti, Metodo::Inversa, Metodo::Distanze};
  bool trovato = true;
  while (trovato) {
    OrientaInAttesa();
    trovato = std::any_of(std::begin(kOrdine), std::end(kOrdine),
                          [&](Metodo metodo) { return Applica(metodo); });
  }
}

void Propagazione::Esegui() {
  do EseguiGiri();
  while (AgganciaInsiemi());
  Locale.clear();
}

}  // namespace compensa
