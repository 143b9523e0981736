// Single readings that a point hangs on. With all other points held fixed, the readings that touch a
// point P have the equations, in units of their standard deviations,
//   a_j x      a = (cos A, -sin A) / D of a direction to P, the reverse of one from P,
//              a = (sin A, cos A) of a distance
// and those of a set-up on P its orientation besides, which leaves each of n directions less the
// mean of all, and of an error of one of them the part 1 - 1/n. The redundancy of reading j is
//   r_j = (1 - 1/n) - a_j (sum a a^T)^-1 a_j
// Where it is nothing, an error of the reading moves P and shows nowhere. With the other points free
// there is less control still, so that what is found here is always true. It needs readings, not
// angles: a direction from which all the angles of a set-up count spreads over many of them, each
// well controlled.
// A point that is joined to one other point only, by one direction, controls nothing of that point:
// such ends are taken off one after the other.

#include "host/giudizio/avvertimenti/letture_punti.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "host/rete/sqm.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kControllo = 0.01;  // an r below this shows less than a hundredth of an error
constexpr int kMaiTolto = std::numeric_limits<int>::max();

struct Lettura {
  int Stazione, Osservazione;
};

struct Riga {
  Lettura Letta;
  bool Distanza;
  double Est, Nord;    // a above
  double Parte = 1.0;  // of an error that the orientation does not take
};

class Esame {
 public:
  explicit Esame(const Risultati& risultati)
      : E(risultati),
        Verso(risultati.Punti.size()),
        Sopra(risultati.Punti.size()),
        Vicini(risultati.Punti.size()),
        Tolto(risultati.Punti.size(), kMaiTolto) {}
  std::vector<LetturaSola> Esegui();

 private:
  const RisultatoStazione& Stazione(int s) const { return E.Stazioni[static_cast<std::size_t>(s)]; }
  const RisultatoOsservazione& Osservazione(Lettura l) const {
    return Stazione(l.Stazione).Osservazioni[static_cast<std::size_t>(l.Osservazione)];
  }
  static bool InAngolo(const RisultatoOsservazione& o) {
    return o.Angolo != kNessuno || o.DirezioneRiferimento;
  }
  bool Incognito(int p) const {
    return E.Punti[static_cast<std::size_t>(p)].Ruoli.Pla == kCompensato;
  }
  int TurnoDi(int p) const { return Tolto[static_cast<std::size_t>(p)]; }
  static bool Usata(const RisultatoOsservazione& o) {
    return InAngolo(o) || o.EqDistanza != kNessuno;
  }
  void Raccogli();
  void TogliEstremi();
  void Classifica();
  Riga FaiRiga(Lettura l, int p, bool distanza) const;
  void RigheDaFuori(int p, std::vector<Riga>& righe) const;
  void RigheDaSopra(int p, int stazione, std::vector<Riga>& righe) const;
  LetturaSola Cerca(int p) const;

  const Risultati& E;
  std::vector<std::vector<Lettura>> Verso;  // of each point: what reads it
  std::vector<std::vector<int>> Sopra;      // of each point: its set-ups
  std::vector<std::vector<int>> Vicini;     // of each point, each once
  std::vector<std::pair<int, int>> Primi;   // of each set-up: the two targets that go off last
  std::vector<int> Tolto;                   // turn of each point among the ends
};

void Esame::Raccogli() {
  for (std::size_t s = 0; s < E.Stazioni.size(); ++s) {
    const RisultatoStazione& stazione = E.Stazioni[s];
    const auto da = static_cast<std::size_t>(stazione.Punto);
    Sopra[da].push_back(static_cast<int>(s));
    for (std::size_t i = 0; i < stazione.Osservazioni.size(); ++i) {
      const RisultatoOsservazione& o = stazione.Osservazioni[i];
      if (!Usata(o)) continue;
      const auto a = static_cast<std::size_t>(o.Punto);
      Verso[a].push_back({static_cast<int>(s), static_cast<int>(i)});
      Vicini[a].push_back(stazione.Punto);
      Vicini[da].push_back(o.Punto);
    }
  }
  for (std::vector<int>& suoi : Vicini) {
    std::sort(suoi.begin(), suoi.end());
    suoi.erase(std::unique(suoi.begin(), suoi.end()), suoi.end());
  }
}

void Esame::TogliEstremi() {
  std::vector<std::size_t> grado(Vicini.size());
  std::vector<int> coda;
  for (std::size_t p = 0; p < Vicini.size(); ++p) {
    grado[p] = Vicini[p].size();
    if (grado[p] == 1) coda.push_back(static_cast<int>(p));
  }
  int turno = 0;
  for (std::size_t i = 0; i < coda.size(); ++i) {
    const int p = coda[i];
    const auto direzioni = std::count_if(Verso[static_cast<std::size_t>(p)].begin(),
                                         Verso[static_cast<std::size_t>(p)].end(), [&](Lettura l) {
                                           return InAngolo(Osservazione(l)) &&
                                                  TurnoDi(Stazione(l.Stazione).Punto) == kMaiTolto;
                                         });
    if (!Incognito(p) || direzioni > 1) continue;
    Tolto[static_cast<std::size_t>(p)] = turno++;
    for (const int vicino : Vicini[static_cast<std::size_t>(p)])
      if (--grado[static_cast<std::size_t>(vicino)] == 1) coda.push_back(vicino);
  }
}

void Esame::Classifica() {
  Primi.assign(E.Stazioni.size(), {kNessuno, kNessuno});
  for (std::size_t s = 0; s < E.Stazioni.size(); ++s)
    for (const RisultatoOsservazione& o : E.Stazioni[s].Osservazioni) {
      auto& [primo, secondo] = Primi[s];
      if (!InAngolo(o) || o.Punto == primo || o.Punto == secondo) continue;
      if (primo == kNessuno || TurnoDi(o.Punto) > TurnoDi(primo))
        secondo = primo, primo = o.Punto;
      else if (secondo == kNessuno || TurnoDi(o.Punto) > TurnoDi(secondo))
        secondo = o.Punto;
    }
}

Riga Esame::FaiRiga(Lettura l, int p, bool distanza) const {
  const RisultatoOsservazione& o = Osservazione(l);
  const RisultatoPunto& da = E.Punti[static_cast<std::size_t>(Stazione(l.Stazione).Punto)];
  const RisultatoPunto& a = E.Punti[static_cast<std::size_t>(o.Punto)];
  const Posto lato{a.Est - da.Est, a.Nord - da.Nord};
  const double D = Lunghezza(lato);
  const double segno = o.Punto == p ? 1.0 : -1.0;
  if (!(D > 0.0)) return {l, distanza, 0.0, 0.0};
  if (distanza) {
    const double sqm = E.Equazioni[static_cast<std::size_t>(o.EqDistanza)].SqmPriori;
    const double k = segno / (D * OAltrimenti(sqm, kSqmDistanzaIgnota));
    return {l, true, k * lato.Est, k * lato.Nord};
  }
  const double k = segno / (D * D * SqmDirezione(E.Opzioni) * kRadPerGon);
  return {l, false, k * lato.Nord, -k * lato.Est};
}

// Readings of the point from set-ups that another point orients.
void Esame::RigheDaFuori(int p, std::vector<Riga>& righe) const {
  for (const Lettura l : Verso[static_cast<std::size_t>(p)]) {
    const RisultatoStazione& s = Stazione(l.Stazione);
    if (TurnoDi(s.Punto) < TurnoDi(p)) continue;
    const RisultatoOsservazione& o = Osservazione(l);
    if (o.EqDistanza != kNessuno) righe.push_back(FaiRiga(l, p, true));
    if (!InAngolo(o)) continue;
    const auto& [primo, secondo] = Primi[static_cast<std::size_t>(l.Stazione)];
    const int orienta = primo == p ? secondo : primo;
    const bool orientata = orienta != kNessuno && TurnoDi(orienta) >= TurnoDi(p);
    if (orientata) righe.push_back(FaiRiga(l, p, false));
  }
}

void Esame::RigheDaSopra(int p, int stazione, std::vector<Riga>& righe) const {
  const RisultatoStazione& s = Stazione(stazione);
  std::vector<Riga> giro;
  for (std::size_t i = 0; i < s.Osservazioni.size(); ++i) {
    const RisultatoOsservazione& o = s.Osservazioni[i];
    if (TurnoDi(o.Punto) < TurnoDi(p)) continue;
    const Lettura l{stazione, static_cast<int>(i)};
    if (o.EqDistanza != kNessuno) righe.push_back(FaiRiga(l, p, true));
    if (InAngolo(o)) giro.push_back(FaiRiga(l, p, false));
  }
  if (giro.size() < 2) return;
  const auto n = static_cast<double>(giro.size());
  double est = 0.0, nord = 0.0;
  for (const Riga& r : giro) est += r.Est / n, nord += r.Nord / n;
  for (Riga& r : giro) {
    r.Est -= est, r.Nord -= nord, r.Parte = 1.0 - 1.0 / n;
    righe.push_back(r);
  }
}

// Without a reading where there is none such.
LetturaSola Esame::Cerca(int p) const {
  std::vector<Riga> righe;
  RigheDaFuori(p, righe);
  for (const int s : Sopra[static_cast<std::size_t>(p)]) RigheDaSopra(p, s, righe);
  double ee = 0.0, en = 0.0, nn = 0.0;
  for (const Riga& r : righe) ee += r.Est * r.Est, en += r.Est * r.Nord, nn += r.Nord * r.Nord;
  const double determinante = ee * nn - en * en;
  if (!(determinante > 0.0)) return {};
  LetturaSola sola{.Tutte = true};
  for (const Riga& r : righe) {
    const double q =
        (nn * r.Est * r.Est - 2.0 * en * r.Est * r.Nord + ee * r.Nord * r.Nord) / determinante;
    if (r.Parte - q > kControllo * r.Parte)
      sola.Tutte = false;
    else if (sola.Punto == kNessuno)
      sola = {p, r.Letta.Stazione, r.Letta.Osservazione, r.Distanza, sola.Tutte};
  }
  return sola;
}

std::vector<LetturaSola> Esame::Esegui() {
  Raccogli();
  TogliEstremi();
  Classifica();
  std::vector<LetturaSola> sole;
  for (std::size_t p = 0; p < E.Punti.size(); ++p) {
    if (!Incognito(static_cast<int>(p))) continue;
    const LetturaSola sola = Cerca(static_cast<int>(p));
    if (sola.Punto != kNessuno) sole.push_back(sola);
  }
  return sole;
}

}  // namespace

std::vector<LetturaSola> CercaLettureSole(const Risultati& risultati) {
  return Esame(risultati).Esegui();
}

}  // namespace compensa
