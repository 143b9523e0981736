#pragma once

// A survey of known truth, and how every instrument and program would write it.

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "host/base/numeri.h"

namespace compensa {

inline constexpr double kGon = std::numbers::pi / 200, kPiedeMetri = 0.3048;
inline constexpr double kCollimazione = 0.0003, kIndice = 0.0006;

// The first three are fixed; one name has a blank, one is the digit that pads the others.
struct PuntoVero {
  std::string Nome;
  double Est, Nord, Quota;
};
inline const PuntoVero kPunti[] = {{"A", 1000, 2000, 100},
                                   {"B", 1200, 2150, 104},
                                   {"C", 1150, 1900, 98.5},
                                   {"P 1", 1090.123, 2080.456, 101.2},
                                   {"0", 1240.5, 1985.25, 99.7}};

struct Mira {
  int Punto;
  double Hp;
};  // Hp 0 = only the direction is read
struct Messa {
  int Punto;
  double Hs, Zero;
  std::vector<Mira> Mire;
};  // Hs 0 = not measured
using Rilievo = std::vector<Messa>;
inline const Rilievo kRilievo = {
    {0, 1.55, 37.1, {{1, 1.6}, {2, 1.3}, {3, 1.6}, {4, 1.45}, {1, 1.6}}},
    {3, 1.62, 211.37, {{0, 1.5}, {1, 1.5}, {4, 1.5}, {2, 0}}},
    {3, 1.48, 5.5, {{0, 1.5}, {4, 1.7}}},
    {1, 0, 300, {{2, 0}, {4, 0}, {3, 0}}}};

struct Letta {
  std::string A;
  bool Completa;
  double Dir, Zen, Dist, Hp;
  int Faccia;
};

inline double Giro(double gon) { return std::fmod(gon + 800, 400); }

inline Letta Vera(const Messa& m, const Mira& mira) {
  const auto &p = kPunti[m.Punto], &q = kPunti[mira.Punto];
  const double dE = q.Est - p.Est, dN = q.Nord - p.Nord, D = std::hypot(dE, dN);
  const double dh = q.Quota + mira.Hp - p.Quota - m.Hs;
  return {q.Nome,
          mira.Hp > 0,
          Giro(std::atan2(dE, dN) / kGon - m.Zero),
          std::atan2(D, dh) / kGon,
          std::hypot(D, dh),
          mira.Hp,
          1};
}

// The readings of a set-up, there on face I and back on face II.
inline std::vector<Letta> Letture(const Messa& m, bool dueFacce = true) {
  std::vector<Letta> lette;
  for (const Mira& mira : m.Mire) lette.push_back(Vera(m, mira));
  if (!dueFacce) return lette;
  for (std::size_t i = m.Mire.size(); i-- > 0;) {
    Letta seconda = lette[i];
    if (!seconda.Completa) continue;
    lette[i].Dir = Giro(seconda.Dir + kCollimazione), lette[i].Zen = seconda.Zen + kIndice;
    seconda.Dir = Giro(seconda.Dir + 200 - kCollimazione);
    seconda.Zen = 400 - seconda.Zen + kIndice;
    seconda.Faccia = 2;
    lette.push_back(seconda);
  }
  return lette;
}

inline std::string Fisso(double valore, int decimali) { return NumeroFisso(valore, decimali); }
inline std::string Sinistra(std::string testo, std::size_t n) {
  return testo.append(n - testo.size(), ' ');
}
inline std::string Destra(const std::string& testo, std::size_t n, char riempi = ' ') {
  return std::string(n - testo.size(), riempi) + testo;
}

// Degrees, minutes, seconds with so many decimals, parted as the format wants; packed without a
// separator between minutes and seconds.
inline std::string Gms(double gon, int decimali, const std::string& primo,
                       const std::string& secondo, const std::string& terzo) {
  const auto parti = static_cast<long long>(std::pow(10, decimali));
  const long long n = std::llround(gon * 3240 * static_cast<double>(parti)) % (1296000 * parti);
  const auto due = [](long long v) { return Destra(std::to_string(v), 2, '0'); };
  return std::to_string(n / parti / 3600) + primo + due(n / parti / 60 % 60) + secondo +
         due(n / parti % 60) + terzo +
         Destra(std::to_string(n % parti), static_cast<std::size_t>(decimali), '0');
}

template <std::size_t Cifre, char UnitaAngolo, char UnitaLunghezza>
inline std::string Gsi(const Rilievo& rilievo) {
  std::string testo;
  int blocco = 0;
  const auto dati = [](const std::string& cifre) { return Destra(cifre, Cifre, '0') + ' '; };
  const auto nome = [&](const std::string& n) {
    if (!testo.empty()) testo += '\n';
    testo +=
        (Cifre == 16 ? "*11" : "11") + Destra(std::to_string(++blocco), 4, '0') + '+' + dati(n);
  };
  const auto intero = [&](const char* wi, char unita, double valore) {
    testo += std::string(wi) + ".10" + unita + '+' + dati(std::to_string(std::llround(valore)));
  };
  const auto lunga = [&](const char* wi, double metri) {
    const double parti = UnitaLunghezza == '8'                            ? 1e5
                         : UnitaLunghezza == '6' || UnitaLunghezza == '7' ? 1e4
                                                                          : 1e3;
    const bool piedi = UnitaLunghezza == '1' || UnitaLunghezza == '7';
    intero(wi, UnitaLunghezza, metri / (piedi ? kPiedeMetri : 1) * parti);
  };
  const auto angolo = [&](const char* wi, double gon) {
    if (UnitaAngolo == '2') intero(wi, '2', gon * 1e5);
    if (UnitaAngolo == '3') intero(wi, '3', gon * 0.9 * 1e5);
    if (UnitaAngolo == '5') intero(wi, '5', gon * 16 * 1e4);
    if (UnitaAngolo == '4') testo += std::string(wi) + ".104+" + dati(Gms(gon, 1, "", "", ""));
  };
  const auto coordinate = [&](const auto& p, const char* e, const char* n, const char* q) {
    lunga(e, p.Est), lunga(n, p.Nord), lunga(q, p.Quota);
  };
  nome("C");
  coordinate(kPunti[2], "81", "82", "83");
  for (const Messa& m : rilievo) {
    nome(kPunti[m.Punto].Nome);
    if (m.Punto < 3) coordinate(kPunti[m.Punto], "84", "85", "86");
    if (m.Hs > 0) lunga("88", m.Hs);
    for (const Letta& l : Letture(m)) {
      nome(l.A);
      angolo("21", l.Dir);
      if (!l.Completa) continue;
      angolo("22", l.Zen), lunga("31", l.Dist), lunga("87", l.Hp);
    }
  }
  return testo + '\n';
}

// Columns of SDR33 (names and numbers of 16) or of SDR20 (4 and 10); with the angles in the unit of
// the code (1 degrees, 2 gon, 4 mil), lengths in feet for 2, East before North for 2, vertical
// angles from the horizon for 2.
template <bool Sdr33, int Angoli, int Lunghezze, int Ordine, int Zero>
inline std::string Sdr(const Rilievo& rilievo) {
  constexpr std::size_t kNome = Sdr33 ? 16 : 4, kNumero = Sdr33 ? 16 : 10;
  const auto campo = [](const std::string& testo) { return Sinistra(testo, kNumero); };
  const auto metri = [&](double v) { return campo(Fisso(v / (Lunghezze == 2 ? 0.3048 : 1), 4)); };
  const auto angolo = [&](double gon) {
    return campo(Fisso(gon * (Angoli == 1 ? 0.9 : Angoli == 4 ? 16 : 1), Sdr33 ? 6 : 5));
  };
  const auto nome = [](const std::string& n) { return Destra(n, kNome); };
  const auto coordinate = [&](const auto& p) {
    return (Ordine == 2 ? metri(p.Est) + metri(p.Nord) : metri(p.Nord) + metri(p.Est)) +
           metri(p.Quota);
  };
  std::string testo = Sinistra(Sdr33 ? "00NMSDR33V04-01" : "00NMSDR20V03-05", 40) +
                      std::to_string(Angoli) + std::to_string(Lunghezze) + "11" +
                      std::to_string(Ordine) + "1\n" + Sinistra("01KI", 50) + std::to_string(Zero) +
                      "\n08KI" + nome("C") + coordinate(kPunti[2]) + '\n';
  for (const Messa& m : rilievo) {
    const auto& p = kPunti[m.Punto];
    testo += "02KI" + nome(p.Nome) + (m.Punto < 3 ? coordinate(p) : std::string(3 * kNumero, ' ')) +
             (m.Hs > 0 ? metri(m.Hs) : "") + '\n';
    for (const Letta& l : Letture(m)) {
      if (l.Completa) testo += "03NM" + metri(l.Hp) + '\n';
      testo += (l.Faccia == 2 ? "09F2" : "09F1") + nome(p.Nome) + nome(l.A);
      const double verticale = Zero == 2 ? Giro(100 - l.Zen) : l.Zen;
      testo += l.Completa ? metri(l.Dist) + angolo(verticale) : std::string(2 * kNumero, ' ');
      testo += angolo(l.Dir) + '\n';
    }
  }
  return testo;
}

inline std::string Catasto(const Rilievo& rilievo) {
  std::string testo = "0|01052026|1|A001|0010|123|ROSSI MARIO|GEOMETRA|MILANO|\n";
  for (const Messa& m : rilievo) {
    testo += "1|" + kPunti[m.Punto].Nome + '|' + (m.Hs > 0 ? Fisso(m.Hs, 3) : "") + "|picchetto|\n";
    for (const Letta& l : Letture(m))
      testo += "2|" + l.A + '|' + Fisso(l.Dir, 4) + '|' +
               (l.Completa ? Fisso(l.Zen, 4) + '|' + Fisso(l.Dist, 3) + '|' + Fisso(l.Hp, 3) : "") +
               "|spigolo|\n";
  }
  return testo;
}

// With a decimal comma and gon, or under foreign titles with degrees packed as ddd.mmsss.
template <bool Estraneo>
inline std::string Csv(const Rilievo& rilievo) {
  std::string testo = Estraneo ? "Staz\tMessa\tStrum\tVisto\tLato\tAzim\tVert\tIncl\tPrisma\n"
                               : "stazione;giro;hs;a;faccia;dir;zen;dist;hp;tipo\n";
  const char separa = Estraneo ? '\t' : ';';
  const auto numero = [](double v, int decimali) {
    std::string cifre = Fisso(v, decimali);
    if (!Estraneo) cifre.replace(cifre.find('.'), 1, ",");
    return cifre;
  };
  const auto angolo = [&](double gon) {
    return Estraneo ? Gms(gon, 1, ".", "", "") : numero(gon, 5);
  };
  int giro = 0;
  for (const Messa& m : rilievo) {
    const std::string inizio = kPunti[m.Punto].Nome + separa + std::to_string(++giro) + separa +
                               (m.Hs > 0 ? numero(m.Hs, 3) : "") + separa;
    for (const Letta& l : Letture(m)) {
      testo +=
          inizio + l.A + separa + (l.Faccia == 2 ? "II" : "I") + separa + angolo(l.Dir) + separa;
      testo += l.Completa ? angolo(l.Zen) + separa + numero(l.Dist, 4) + separa + numero(l.Hp, 3)
                          : std::string(2, separa);
      testo += Estraneo ? "\n" : ";i\n";
    }
  }
  return testo;
}

// Axes as the file names them, "en" to "sw"; the circle clockwise or not; gon, or every other
// reading in degrees, minutes and seconds.
template <char X, char Y, bool Orario>
inline std::string Gkf(const Rilievo& rilievo) {
  const auto asse = [](char c, const auto& p) {
    return Fisso(c == 'e' ? p.Est : c == 'w' ? -p.Est : c == 'n' ? p.Nord : -p.Nord, 4);
  };
  std::string testo = "<?xml version=\"1.0\"?>\n<gama-local xmlns=\"http://x\"><network axes-xy=\"";
  testo += {X, Y};
  testo += std::string("\" angles=\"") + (Orario ? "left" : "right") + "-handed\">\n";
  testo += "<points-observations direction-stdev=\"6\" distance-stdev=\"2 2\">\n";
  for (const auto& p : kPunti)
    testo += "<point id='" + p.Nome + "'" +
             (&p - kPunti < 3 ? " x='" + asse(X, p) + "' y='" + asse(Y, p) + "' z='" +
                                    Fisso(p.Quota, 4) + "' fix='xyz'/>\n"
                              : " adj='xyz'/>\n");
  bool alterna = false;
  for (const Messa& m : rilievo) {
    testo += "<obs from=\"" + kPunti[m.Punto].Nome + "\"" +
             (m.Hs > 0 ? " from_dh=\"" + Fisso(m.Hs, 3) + "\"" : "") + ">\n";
    for (const Letta& l : Letture(m, false)) {
      const double dir = Orario ? l.Dir : Giro(-l.Dir);
      alterna = !alterna;
      testo += "<direction to='" + l.A + "' val='" +
               (alterna ? Fisso(dir, 5) : Gms(dir, 2, "-", "-", ".")) + "'/>";
      const auto elemento = [&](const char* tipo, const std::string& valore) {
        testo += std::string("<") + tipo + " to='" + l.A + "' val='" + valore + "' to_dh='" +
                 Fisso(l.Hp, 3) + "'/>";
      };
      if (l.Completa)
        elemento("z-angle", Fisso(l.Zen, 5)), elemento("s-distance", Fisso(l.Dist, 4));
      testo += '\n';
    }
    testo += "</obs>\n";
  }
  return testo + "</points-observations></network></gama-local>\n";
}

}  // namespace compensa
