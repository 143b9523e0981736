// One survey of known truth, written as every instrument and program would write it, imported and
// adjusted: the records must be what was observed, and the points where they are.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "host/approssimate/approssimate.h"
#include "host/calcolo.h"
#include "host/importazione/importa.h"
#include "host/lettura_rete.h"
#include "host/numeri.h"
#include "host/rapporto.h"

namespace {

constexpr double kGon = std::numbers::pi / 200, kPiedeMetri = 0.3048;
constexpr double kCollimazione = 0.0003, kIndice = 0.0006;

// The first three are fixed; one name has a blank, one is the digit that pads the others.
const struct { std::string Nome; double Est, Nord, Quota; } kPunti[] = {
    {"A", 1000, 2000, 100}, {"B", 1200, 2150, 104}, {"C", 1150, 1900, 98.5},
    {"P 1", 1090.123, 2080.456, 101.2}, {"0", 1240.5, 1985.25, 99.7}};

struct Mira { int Punto; double Hp; };  // Hp 0 = only the direction is read
struct Messa { int Punto; double Hs, Zero; std::vector<Mira> Mire; };  // Hs 0 = not measured
using Rilievo = std::vector<Messa>;
const Rilievo kRilievo = {
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

double Giro(double gon) { return std::fmod(gon + 800, 400); }

Letta Vera(const Messa& m, const Mira& mira) {
  const auto &p = kPunti[m.Punto], &q = kPunti[mira.Punto];
  const double dE = q.Est - p.Est, dN = q.Nord - p.Nord, D = std::hypot(dE, dN);
  const double dh = q.Quota + mira.Hp - p.Quota - m.Hs;
  return {q.Nome, mira.Hp > 0, Giro(std::atan2(dE, dN) / kGon - m.Zero), std::atan2(D, dh) / kGon,
          std::hypot(D, dh), mira.Hp, 1};
}

// The readings of a set-up, there on face I and back on face II.
std::vector<Letta> Letture(const Messa& m, bool dueFacce = true) {
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

std::string Fisso(double valore, int decimali) { return NumeroFisso(valore, decimali); }
std::string Sinistra(std::string testo, std::size_t n) { return testo.append(n - testo.size(), ' '); }
std::string Destra(const std::string& testo, std::size_t n, char riempi = ' ') {
  return std::string(n - testo.size(), riempi) + testo;
}

// Degrees, minutes, seconds with so many decimals, parted as the format wants; packed without a
// separator between minutes and seconds.
std::string Gms(double gon, int decimali, const std::string& primo, const std::string& secondo,
                const std::string& terzo) {
  const auto parti = static_cast<long long>(std::pow(10, decimali));
  const long long n = std::llround(gon * 3240 * static_cast<double>(parti)) % (1296000 * parti);
  const auto due = [](long long v) { return Destra(std::to_string(v), 2, '0'); };
  return std::to_string(n / parti / 3600) + primo + due(n / parti / 60 % 60) + secondo +
         due(n / parti % 60) + terzo +
         Destra(std::to_string(n % parti), static_cast<std::size_t>(decimali), '0');
}

template <std::size_t Cifre, char UnitaAngolo, char UnitaLunghezza>
std::string Gsi(const Rilievo& rilievo) {
  std::string testo;
  int blocco = 0;
  const auto dati = [](std::string cifre) { return Destra(cifre, Cifre, '0') + ' '; };
  const auto nome = [&](const std::string& n) {
    if (!testo.empty()) testo += '\n';
    testo += (Cifre == 16 ? "*11" : "11") + Destra(std::to_string(++blocco), 4, '0') + '+' + dati(n);
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
std::string Sdr(const Rilievo& rilievo) {
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

std::string Catasto(const Rilievo& rilievo) {
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
std::string Csv(const Rilievo& rilievo) {
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
      testo += inizio + l.A + separa + (l.Faccia == 2 ? "II" : "I") + separa + angolo(l.Dir) + separa;
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
std::string Gkf(const Rilievo& rilievo) {
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
      const std::string hp = "' to_dh='" + Fisso(l.Hp, 3) + "'/>";
      if (l.Completa)
        testo += "<z-angle to='" + l.A + "' val='" + Fisso(l.Zen, 5) + hp + "<s-distance to='" +
                 l.A + "' val='" + Fisso(l.Dist, 4) + hp;
      testo += '\n';
    }
    testo += "</obs>\n";
  }
  return testo + "</points-observations></network></gama-local>\n";
}

const std::filesystem::path kCartella =
    std::filesystem::temp_directory_path() / ("rilievo-" + std::to_string(getpid()));

std::string Scrivi(const std::string& nome, const std::string& testo) {
  std::filesystem::create_directories(kCartella);
  std::ofstream(kCartella / nome, std::ios::binary) << testo;
  return kCartella / nome;
}

std::string Tavola() {
  return Scrivi("punti.csv",
                "nome;est;nord;quota;ruolo\nA;1000;2000;100;fisso\n"
                "B;1200;2150;104;fisso\nC;1150;1900;98,5;fisso\n");
}

OpzioniImporta Opzioni() {
  OpzioniImporta o;
  o.SqmDirezione = 0.0015, o.SqmDistCostante = 0.002, o.SqmDistProporzionale = 0.002;
  o.Uscita = kCartella / "rete.toml";
  return o;
}

// The network file that an import writes, read again; with what was said on the standard error.
Rete Importata(const OpzioniImporta& opzioni, std::string& detto) {
  testing::internal::CaptureStderr();
  const Stato stato = Importa(opzioni);
  detto = testing::internal::GetCapturedStderr();
  Diagnostica diario;
  std::optional<Rete> rete = LeggiRete(opzioni.Uscita, diario);
  EXPECT_TRUE(stato == kStatoRiuscito && rete && diario.Righe().empty()) << detto;
  std::filesystem::remove(opzioni.Uscita);
  return rete ? *std::move(rete) : Rete();
}

// Within half a unit of the last digit of the format [gon, m].
void ConfrontaLetture(const Rete& rete, double angolo, double lunghezza) {
  ASSERT_EQ(rete.Stazioni.size(), kRilievo.size());
  for (std::size_t s = 0; s < kRilievo.size(); ++s) {
    const Messa& m = kRilievo[s];
    const TStaCr& stazione = rete.Stazioni[s];
    EXPECT_EQ(rete.Nomi[stazione.Punto], kPunti[m.Punto].Nome);
    if (m.Hs > 0) {
      EXPECT_NEAR(stazione.AltStrum, m.Hs, lunghezza);
    }
    ASSERT_EQ(stazione.Osservazioni.size(), m.Mire.size());
    for (std::size_t i = 0; i < m.Mire.size(); ++i) {
      const TOssCr& o = stazione.Osservazioni[i];
      const Letta l = Vera(m, m.Mire[i]);
      EXPECT_EQ(rete.Nomi[o.Punto], l.A);
      EXPECT_NEAR(std::remainder(o.Direzione - l.Dir, 400), 0, angolo) << s << ' ' << i;
      EXPECT_EQ(Assegnato(o.Zenit) && Assegnato(o.Distanza), l.Completa);
      if (!l.Completa) continue;
      EXPECT_NEAR(o.Zenit, l.Zen, angolo);
      EXPECT_NEAR(o.Distanza, l.Dist, lunghezza);
      EXPECT_NEAR(o.AltSegnale, l.Hp, lunghezza);
      EXPECT_EQ(o.TipoDist, kInclinata);
    }
  }
}

void ConfrontaPunti(Rete& rete, double tolleranza) {
  CalcolaApprossimate(rete);  // those that the import was not to compute
  Rapporto rapporto;
  const Risultati esito = Compensa(rete, rapporto);
  ASSERT_TRUE(TutteRiuscite(esito));
  int quanti = 0;
  for (const RisultatoPunto& p : esito.Punti)
    for (const auto& vero : kPunti) {
      if (p.Nome != vero.Nome || p.RuoliIniziali.Pla == kNonUsato) continue;
      ++quanti;
      EXPECT_LT(std::hypot(p.Est - vero.Est, p.Nord - vero.Nord), tolleranza) << p.Nome;
      EXPECT_NEAR(p.Quota, vero.Quota, tolleranza) << p.Nome;
    }
  EXPECT_GE(quanti, 4);
}

void ConMappa(OpzioniImporta& o) {
  o.Lettura.Angoli = UnitaAngoli::GradiCompatti;
  o.Lettura.Mappa = Scrivi("mappa.toml",
                           "stazione = \"Staz\"\ngiro = \"Messa\"\nhs = \"Strum\"\na = \"Visto\"\n"
                           "faccia = \"Lato\"\ndir = \"Azim\"\nzen = \"Vert\"\n"
                           "dist_inclinata = \"Incl\"\nhp = \"Prisma\"\n");
  o.Formato = "csv";
}

int Quanti(const std::string& testo, std::string_view pezzo) {
  int quanti = 0;
  for (std::size_t i = testo.find(pezzo); i != testo.npos; i = testo.find(pezzo, i + 1)) ++quanti;
  return quanti;
}

enum Da { kTavola, kLibro, kRuoli };  // where the fixed points come from
constexpr const char* kSdr20 = "il posto non è certo";
constexpr double kDecimoSecondo = 0.1 / 3240;

const struct {
  const char* Nome;
  std::string (*Scritto)(const Rilievo&);
  double Angolo, Lunghezza;  // of the last digit
  Da Fissi;
  void (*Cambia)(OpzioniImporta&) = [](OpzioniImporta&) {};
  const char* Avviso = nullptr;  // the only one, if there is one
} kFormati[] = {
    {"GSI-8, gon, mm", Gsi<8, '2', '0'>, 1e-5, 1e-3, kLibro},
    {"GSI-8, gradi, piedi", Gsi<8, '3', '1'>, 1e-5 / 0.9, 3.1e-4, kLibro},
    {"GSI-16, gradi e primi, 0.1 mm", Gsi<16, '4', '6'>, kDecimoSecondo, 1e-4, kLibro},
    {"GSI-16, mil, piedi", Gsi<16, '5', '7'>, 1e-4 / 16, 3.1e-5, kLibro},
    {"GSI-16, gon, 0.01 mm", Gsi<16, '2', '8'>, 1e-5, 1e-5, kLibro},
    {"SDR33, gon", Sdr<true, 2, 1, 2, 1>, 1e-6, 1e-4, kLibro},
    {"SDR33, gradi, piedi, orizzonte", Sdr<true, 1, 2, 1, 2>, 1e-6 / 0.9, 3.1e-5, kLibro},
    {"SDR20, mil", Sdr<false, 4, 1, 1, 1>, 1e-5 / 16, 1e-4, kLibro, [](OpzioniImporta&) {}, kSdr20},
    {"SDR20, gradi, orizzonte", Sdr<false, 1, 1, 2, 2>, 1e-5 / 0.9, 1e-4, kLibro,
     [](OpzioniImporta&) {}, kSdr20},
    {"catasto", Catasto, 1e-4, 1e-3, kTavola},
    {"CSV nostro", Csv<false>, 1e-5, 1e-4, kTavola},
    {"CSV estraneo", Csv<true>, kDecimoSecondo, 1e-4, kTavola, ConMappa},
    {"gkf en", Gkf<'e', 'n', true>, 1e-5, 1e-4, kRuoli},
    {"gkf sw antiorario", Gkf<'s', 'w', false>, 1e-5, 1e-4, kRuoli},
};

TEST(Rilievo, OgniFormatoDaGliStessiRecord) {
  for (const auto& formato : kFormati) {
    for (const std::string fineRiga : {"\n", "\r\n", "\r"}) {
      SCOPED_TRACE(formato.Nome);
      std::string testo;
      for (const char c : formato.Scritto(kRilievo)) testo += c == '\n' ? fineRiga : std::string(1, c);
      OpzioniImporta opzioni = Opzioni();
      opzioni.File = {Scrivi("libro.dat", (fineRiga == "\r\n" ? "\xEF\xBB\xBF" : "") + testo + '\x1A')};
      if (formato.Fissi == kTavola) opzioni.Coordinate = Tavola();
      if (formato.Fissi == kLibro) opzioni.Fissi = {"A", "B", "C"};
      formato.Cambia(opzioni);
      std::string detto;
      Rete rete = Importata(opzioni, detto);
      EXPECT_EQ(Quanti(detto, "avviso: "), formato.Avviso == nullptr ? 0 : 1) << detto;
      EXPECT_TRUE(formato.Avviso == nullptr || Quanti(detto, formato.Avviso) == 1) << detto;
      EXPECT_EQ(detto.find("Tralasciato"), detto.npos) << detto;
      ConfrontaLetture(rete, formato.Angolo / 2 + 1e-8, formato.Lunghezza / 2 + 1e-6);
      ConfrontaPunti(rete, 1e-3);
    }
  }
  std::filesystem::remove_all(kCartella);
}

TEST(Rilievo, DiviseFraPiuFileLeMesseTornanoInOrdine) {
  OpzioniImporta opzioni = Opzioni();
  opzioni.File = {Scrivi("a.gsi", Gsi<8, '2', '0'>({kRilievo[0]})),
                  Scrivi("b.csv", Csv<false>({kRilievo[1]})),
                  Scrivi("c.sdr", Sdr<true, 2, 1, 2, 1>({kRilievo[2]})),
                  Scrivi("d.dat", Catasto({kRilievo[3]}))};
  opzioni.Coordinate = Tavola();
  opzioni.Lettura.SegnalePersistente = opzioni.Lettura.IgnoraNonSupportati = true;
  std::ofstream(opzioni.File[3], std::ios::app) << "4|1|2|\n7|3|\n7|4|\n";
  std::string detto;
  Rete rete = Importata(opzioni, detto);
  EXPECT_EQ(Quanti(detto, "avviso: "), 1) << detto;
  EXPECT_EQ(Quanti(detto, "--ignora-non-supportati: avviso: opzione senza effetto"), 1) << detto;
  EXPECT_EQ(Quanti(detto, "righe 7 (contorni) (2, dalla riga 7 di \"" + opzioni.File[3]), 1);
  ConfrontaLetture(rete, 5.1e-5, 5.1e-4);
  ConfrontaPunti(rete, 1e-3);
  // A file that says nothing of use, one that is wrong and one that is not there: all are named,
  // with their lines, and nothing is written.
  opzioni.File.push_back(Scrivi("e.gsi", "110001+0000000A 21.102+0000000\n"));
  opzioni.File.push_back(kCartella / "manca.gsi");
  opzioni.File.push_back(Scrivi("vuoto.gsi", ""));
  testing::internal::CaptureStderr();
  EXPECT_EQ(Importa(opzioni), kStatoRete);
  detto = testing::internal::GetCapturedStderr();
  for (const char* atteso : {"e.gsi:1:17: errore: ", "manca.gsi: errore: ", "vuoto.gsi: errore: "})
    EXPECT_EQ(Quanti(detto, atteso), 1) << detto;
  EXPECT_FALSE(std::filesystem::exists(opzioni.Uscita));
  std::filesystem::remove_all(kCartella);
}

// What the options make of the same book: how many sights are left, and where the points fall.
const struct {
  const char* Nome;
  void (*Cambia)(OpzioniImporta&);
  int Osservazioni;
  double Tolleranza;  // a face left alone keeps its collimation
  const char* Detto;
} kOpzioni[] = {
    {"--facce media", [](OpzioniImporta&) {}, 14, 1e-3, "10 coppie di letture coniugate mediate"},
    {"--facce separate", [](OpzioniImporta& o) { o.Facce = ModoFacce::Separate; }, 24, 2e-3,
     "10 letture al cerchio destro riportate al sinistro senza media"},
    {"--medie", [](OpzioniImporta& o) { o.Medie = true; }, 13, 1e-3, "2 letture ripetute sono div"},
    {"--facce separate --medie",
     [](OpzioniImporta& o) { o.Facce = ModoFacce::Separate, o.Medie = true; }, 13, 1e-3,
     "20 letture ripetute sono diventate 9 medie"},
    {"--escludi", [](OpzioniImporta& o) { o.Escludi = {"0"}; }, 14, 1e-3,
     "in altimetria 3 fissi, 1 incognito, 1 escluso"},
    {"--fissi-planimetria",
     [](OpzioniImporta& o) {
       o.Fissi = {}, o.FissiPlanimetria = {"A", "B"}, o.FissiAltimetria = {"C"};
     },
     14, 2e-3, "in planimetria 2 fissi, 3 incogniti\n                in altimetria 1 fisso, 4"},
    {"senza approssimate", [](OpzioniImporta& o) { o.SenzaApprossimate = true; }, 14, 1e-3,
     "le coordinate approssimate di 2 punti: \"P 1\", \"0\""},
};

TEST(Rilievo, LeOpzioniFannoCioCheDicono) {
  for (const auto& caso : kOpzioni) {
    SCOPED_TRACE(caso.Nome);
    OpzioniImporta opzioni = Opzioni();
    opzioni.File = {Scrivi("libro.gsi", Gsi<16, '2', '8'>(kRilievo))};
    opzioni.Fissi = {"A", "B", "C"};
    caso.Cambia(opzioni);
    std::string detto;
    Rete rete = Importata(opzioni, detto);
    EXPECT_EQ(Quanti(detto, caso.Detto), 1) << detto;
    int osservazioni = 0;
    for (const TStaCr& s : rete.Stazioni) osservazioni += static_cast<int>(s.Osservazioni.size());
    EXPECT_EQ(osservazioni, caso.Osservazioni);
    ConfrontaPunti(rete, caso.Tolleranza);
  }
  std::filesystem::remove_all(kCartella);
}

}  // namespace
