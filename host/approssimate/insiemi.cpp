// Sets of points surveyed in themselves: a set-up that cannot be oriented starts a system of its
// own, the survey is spread in it as far as it goes, and the known points that it reaches bring it
// to its place (a traverse between two known points without orientation, for instance).

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/approssimate/propagazione.h"

namespace compensa {

namespace {

constexpr double kScartoMinimo = 0.5;        // misfit of a tie that is still believed [m]
constexpr double kScartoRelativo = 0.005;    // and in parts of the length of the set
constexpr double kScartoIncredibile = 0.05;  // above this part of its length a set is not placed

}  // namespace

// Forgets what the last set has found, and nothing more than that has been touched.
void Propagazione::Azzera() {
  for (const int p : std::exchange(Toccati, {})) {
    Noti[static_cast<std::size_t>(p)] = 0;
    Esiti[static_cast<std::size_t>(p)].reset();
  }
  for (const int s : std::exchange(StazioniToccate, {}))
    Zeri[static_cast<std::size_t>(s)] = kAssente;
  for (std::vector<int>& attesa : Attesa) {
    for (const int p : attesa) InCoda[static_cast<std::size_t>(p)] = 0;
    attesa.clear();
  }
  for (const int s : std::exchange(DaOrientare, {}))
    StazioneInCoda[static_cast<std::size_t>(s)] = 0;
}

bool Propagazione::AgganciaInsiemi() {
  if (Generale != nullptr) return false;
  std::vector<char> provate(R.Stazioni.size(), 0);
  bool trovato = false;
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    const int punto = R.Stazioni[s].Punto;
    const int viste = V.Inizio[s + 1] - V.Inizio[s];
    if (provate[s] != 0 || viste < 1 || Orientata(static_cast<int>(s))) continue;
    if (Noto(punto) && viste < 2) continue;
    if (Aggancia(static_cast<int>(s), provate)) trovato = true;
  }
  return trovato;
}

bool Propagazione::Aggancia(int stazione, std::vector<char>& provate) {
  if (Locale.empty()) {
    Locale.emplace_back(R, V, K);
    Locale.front().Generale = this;
  }
  Propagazione& l = Locale.front();
  l.Azzera();
  l.Zeri[static_cast<std::size_t>(stazione)] = 0.0;
  l.StazioniToccate.push_back(stazione);
  provate[static_cast<std::size_t>(stazione)] = 1;
  l.Conosci(R.Stazioni[static_cast<std::size_t>(stazione)].Punto, {});
  const auto s = static_cast<std::size_t>(stazione);
  for (int v = V.Inizio[s]; v < V.Inizio[s + 1]; ++v)
    l.Sveglia(V.Tutte[static_cast<std::size_t>(v)].A);
  l.EseguiGiri();

  std::vector<Posto> locali;
  std::vector<Posto> noti;
  std::vector<int> basi;
  Posto minimo{HUGE_VAL, HUGE_VAL};
  Posto massimo{-HUGE_VAL, -HUGE_VAL};
  for (const int p : l.Toccati) {
    const Posto q = l.Luogo(p);
    minimo = {std::min(minimo.Est, q.Est), std::min(minimo.Nord, q.Nord)};
    massimo = {std::max(massimo.Est, q.Est), std::max(massimo.Nord, q.Nord)};
    if (!Noto(p)) continue;
    locali.push_back(q);
    noti.push_back(Luogo(p));
    basi.push_back(p);
  }
  for (const int t : l.StazioniToccate) provate[static_cast<std::size_t>(t)] = 1;
  if (basi.size() < 2 || basi.size() == l.Toccati.size()) return false;
  const double lunghezza = Lunghezza(massimo - minimo);
  const double tolleranza = std::max(kScartoMinimo, kScartoRelativo * lunghezza);
  const auto mossa = Sovrapponi(locali, noti, tolleranza);
  if (!mossa || mossa->ScartoMassimo > std::max(tolleranza, kScartoIncredibile * lunghezza))
    return false;
  constexpr std::size_t kBasiNominate = 3;
  if (basi.size() > kBasiNominate) basi.resize(kBasiNominate);
  for (const int p : l.Toccati)
    if (!Noto(p))
      Fissa(p, {.Luogo = (*mossa)(l.Luogo(p)),
                .Modo = Metodo::Insieme,
                .Basi = basi,
                .Escluse = mossa->Escluse,
                .ScartoMassimo = mossa->ScartoMassimo,
                .Discordi = mossa->ScartoMassimo > tolleranza});
  return true;
}

}  // namespace compensa
