// Approximate coordinates: each method alone on a square of known points, what cannot be reached
// and why, and whole networks that come back when their unknown points lose their coordinates.

#include "host/approssimate/approssimate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"

using namespace compensa;

namespace {

// The corners A to D lie on one circle; X inside, Y and Z outside.
constexpr char kNomi[] = "ABCDXYZ";
constexpr double kPunti[][3] = {{1000, 1000, 100}, {1400, 1000, 120}, {1400, 1400, 90},
                                {1000, 1400, 101}, {1250, 1130, 130}, {1700, 1250, 105},
                                {1730, 1600, 140}};
constexpr double kGon = M_PI / 200, kNo = kValoreMancante;

// Set-ups as "A: B=d X=dD B*: X=D!": d a direction, D a slope distance with its zenith angle, ! one
// that is 100 m too long; * an eccentric instrument, whose distances are horizontal. Points without
// coordinates are unknown, in lower case excluded.
Rete Costruisci(const std::string& rilievo, const std::string& incogniti) {
  Rete rete;
  rete.Opzioni.TipoCalcolo = kCalcoloPlanimetria | kCalcoloAltimetria;
  for (int i = 0; i < 7; ++i) {
    const double* p = kPunti[i];
    const bool escluso = incogniti.find(char(kNomi[i] + 32)) != std::string::npos;
    const bool noto = !escluso && incogniti.find(kNomi[i]) == std::string::npos;
    rete.Punti.push_back(noto ? TCoorCr{"", p[0], p[1], p[2]} : TCoorCr{"", kNo, kNo, kNo});
    rete.Nomi.emplace_back(1, kNomi[i]);
    const int ruolo = noto ? kFisso : escluso ? kNonUsato : kIncognito;
    rete.RuoliIniziali.push_back({ruolo, ruolo});
  }
  std::istringstream parole(rilievo);
  for (std::string parola; parole >> parola;) {
    const int punto = int(std::string(kNomi).find(parola[0]));
    const auto ha = [&](char c) { return parola.find(c, 1) != std::string::npos; };
    if (ha(':')) {
      rete.Stazioni.push_back({{}, punto, 1.5, 1, ha('*') ? 3.0 : 0.0, 70, {}});
      rete.Osservazioni.emplace_back();
      continue;
    }
    const TStaCr& s = rete.Stazioni.back();
    const double *t = kPunti[punto], *p = kPunti[s.Punto], e = s.EccDistanza;
    const double zero = 37.0 * double(rete.Stazioni.size());  // azimuth of the circle's zero [gon]
    const double dE = t[0] - p[0] + e * std::sin((zero + s.EccDirezione) * kGon);
    const double dN = t[1] - p[1] + e * std::cos((zero + s.EccDirezione) * kGon);
    const double D = std::hypot(dE, dN), dh = t[2] - p[2] - 1.5 + 1.2;
    TOssCr o{{}, punto, kNo, kNo, 1.2, kNo, e > 0 ? kFuoriCentro10 : kInclinata};
    if (ha('d')) o.Direzione = std::fmod(std::atan2(dE, dN) / kGon - zero + 4000, 400);
    if (ha('D')) o.Zenit = std::atan2(D, dh) / kGon;
    if (ha('D')) o.Distanza = (e > 0 ? D : std::hypot(D, dh)) + (ha('!') ? 100 : 0);
    rete.Osservazioni.back().push_back(o);
  }
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s)
    rete.Stazioni[s].Osservazioni = rete.Osservazioni[s];
  rete.PosizioniPunti.resize(rete.Punti.size());
  return rete;
}

const struct CasoMetodo {
  const char *Rilievo, *Incogniti, *Testo;  // a piece of a note, or of what stays without
} kMetodi[] = {
    {"A: B=d X=dD B: A=d X=dD", "X", "polare da \"A\", \"B\" (media di 2, scarto massimo 0.000 m)"},
    {"A: B=d X=d X: A=D", "X", "da polare da \"A\""},
    {"A*: B=d C=d X=dD", "X", "da polare da \"A\""},
    {"A: B=d X=dD B: A=d X=dD C: A=d X=dD!", "X", "; scartata una determinazione discorde"},
    {"A: B=d X=dD B: A=d X=dD!", "X", "discordano: da controllare"},
    {"A*: B=d C=d X=d B*: A=d C=d X=d", "X", "intersezione in avanti"},
    {"A: B=d X=d X: A=d C=d", "X", "intersezione in avanti da \"A\", \"C\""},
    {"X*: A=d B=d C=d", "X", "intersezione inversa su \"A\", \"B\", \"C\""},
    {"D: A=d B=d C=d", "D", "\"D\": senza coordinate: l'intersezione inversa cade vicino al cerc"},
    {"D: A=d B=d C=d Y=d", "D", "\"D\": coordinate approssimate da intersezione inversa"},
    {"X: A=dD B=dD", "X", "stazione libera su \"A\", \"B\""},
    {"A: X=D B: X=D", "X", "danno due posizioni, (1250.0, 1130.0) e (1250.0, 870.0), e nulla dice"},
    {"A: X=D B: X=D C: X=D", "X", "intersezione di distanze"},
    {"A: X=D B: X=D X: A=d B=d", "X", "intersezione di distanze"},
    {"X: A=dD Y=dD Y: X=dD Z=dD Z: Y=dD C=dD", "XYZ", "proprio, agganciato a \"A\", \"C\""},
    {"A: X=d", "X", "\"X\": senza coordinate: lo vede solo \"A\", che non è orientata; serve una"},
    {"X: A=d B=d", "X", "dalla sua stazione si vede di noto solo \"A\", \"B\"; serve"},
    {"Y: X=dD", "XY", "lo vede solo \"Y\", che è senza coordinate"},
    {"A: B=d X=dD X: A=d Y=dD", "xY", "\"Y\": senza coordinate: nessuna osservazione lo tocca"},
    {"A: B=d X=d", "X", "\"X\": senza quota: nessuna visuale completa"},
    {"A: X=D", "X", "lo vede solo \"A\", con la sola distanza; serve un'altra direzione o dist"},
    {"A: B=d X=d", "X", "lo vede solo \"A\", senza distanza; serve un'altra"},
    {"X: Y=dD", "XY", "\"X\": senza coordinate: dalla sua stazione non si vede nessun punto noto"},
    {"A: X=d B: X=d C: X=d D: X=d", "X", "\"C\", che non è orientata; e altre; serve una visuale"},
    {"Y: X=dD", "XY", "\"X\": senza quota: le sue visuali vanno solo a punti senza quota"},
    {"A: B=d X=dD B: X=dD", "X", "quota approssimata per dislivelli da \"A\", \"B\" (media di 2"},
};

TEST(Approssimate, OgniMetodo) {
  for (const CasoMetodo& caso : kMetodi) {
    Rete rete = Costruisci(caso.Rilievo, caso.Incogniti);
    const EsitoApprossimate esito = CalcolaApprossimate(rete);
    std::string testo = caso.Rilievo;
    for (const auto& righe : {esito.Note, Testi(esito.NonRaggiunti)})
      for (const std::string& riga : righe) testo += "\n" + riga;
    EXPECT_NE(testo.find(caso.Testo), std::string::npos) << testo;
    if (testo.find("discord") != std::string::npos) continue;
    for (const int i : esito.PuntiPla)
      EXPECT_LT(std::hypot(rete.Punti[i].Est - kPunti[i][0], rete.Punti[i].Nord - kPunti[i][1]),
                1e-5)
          << testo;
    for (const int i : esito.PuntiAlt) EXPECT_NEAR(rete.Punti[i].Quota, kPunti[i][2], 1e-5);
  }
}

// How far the approximations may be from the adjusted points, and the adjustments from each other
// [m]: the heights with which distances come to the map are approximate too.
const struct {
  const char* Nome;
  double Pianta, Quota, Uguale;
} kEsempi[] = {{"altezze_strumentali", 0.5, 0.1, 2e-4}, {"fuori_centro", 0.5, 0.3, 1e-3},
               {"gauss_boaga_ovest", 0.8, 0.2, 2e-3},   {"ghilani_wolf", 0.1, 0, 2e-4},
               {"stazione_libera", 0.05, 0.02, 2e-4},   {"zeman", 0.2, 0.1, 2e-4}};

// An example without the coordinates of its unknown points, and these in the opposite order.
Rete Leggi(const char* nome, bool spoglia, bool rovescia = false) {
  Diagnostica diario;
  Rete rete = *LeggiRete(std::string(CARTELLA_ESEMPI "/") + nome + ".toml", diario);
  for (std::size_t i = 0; spoglia && i < rete.Punti.size(); ++i) {
    TCoorCr& p = rete.Punti[i];
    if (p.TipoPla == kIncognito) p.Est = p.Nord = kNo;
    if (p.TipoAlt == kIncognito) p.Quota = kNo;
  }
  if (!rovescia) return rete;
  std::reverse(rete.Punti.begin(), rete.Punti.end());
  std::reverse(rete.RuoliIniziali.begin(), rete.RuoliIniziali.end());
  const auto scambia = [&](int& punto) { punto = int(rete.Punti.size()) - 1 - punto; };
  for (TStaCr& s : rete.Stazioni) {
    scambia(s.Punto);
    for (TOssCr& o : s.Osservazioni) scambia(o.Punto);
  }
  return rete;
}

double Distanza(const auto& p, const auto& q) { return std::hypot(p.Est - q.Est, p.Nord - q.Nord); }

TEST(Approssimate, GliEsempiTornano) {
  for (const auto& [nome, pianta, quota, uguale] : kEsempi) {
    SCOPED_TRACE(nome);
    Rete data = Leggi(nome, false), spoglia = Leggi(nome, true), altra = Leggi(nome, true, true);
    EXPECT_TRUE(CalcolaApprossimate(spoglia).NonRaggiunti.empty());
    CalcolaApprossimate(altra);
    Rapporto rapporto, altro;
    const Risultati attesi = Compensa(data, rapporto), ottenuti = Compensa(spoglia, altro);
    ASSERT_TRUE(TutteRiuscite(ottenuti));
    for (std::size_t i = 0; i < spoglia.Punti.size(); ++i) {
      const RisultatoPunto &atteso = attesi.Punti[i], &p = ottenuti.Punti[i];
      const TCoorCr& r = altra.Punti[spoglia.Punti.size() - 1 - i];
      EXPECT_LT(Distanza(r, atteso), pianta);
      EXPECT_LT(std::hypot(r.Est - p.EstIniziale, r.Nord - p.NordIniziale), 1e-6);
      EXPECT_LT(Distanza(p, atteso), uguale);
      if (quota > 0) EXPECT_NEAR(r.Quota, atteso.Quota, quota);
      if (quota > 0) EXPECT_NEAR(p.Quota, atteso.Quota, 1e-3);
    }
  }
}

// Twelve points at random in a square of 600 m, set-ups that see some of them, and some of them
// without coordinates: what is found is where it is, and of every other point it is said why not.
TEST(Approssimate, RetiACaso) {
  constexpr int kPuntiACaso = 12;
  std::size_t trovati = 0, mancati = 0;
  for (unsigned seme = 0; seme < 400; ++seme) {
    SCOPED_TRACE(seme);
    std::mt19937 motore(seme);
    const auto caso = [&](double massimo) { return massimo * double(motore()) / 4294967296.0; };
    const auto capita = [&](double parte) { return caso(1) < parte; };
    Rete rete;
    rete.Opzioni.TipoCalcolo = kCalcoloPlanimetria | kCalcoloAltimetria;
    std::vector<TCoorCr> veri;
    const double noti = 0.25 + caso(0.6);
    for (int i = 0; i < kPuntiACaso; ++i) {
      veri.push_back({"", 1000 + caso(600), 5000 + caso(600), 100 + caso(40)});
      const int ruolo = capita(0.5) ? kFisso : kIncognito;
      rete.Punti.push_back(veri.back());
      rete.Nomi.push_back("P" + std::to_string(i));
      rete.RuoliIniziali.push_back({ruolo, ruolo});
      if (ruolo == kIncognito && !capita(noti)) rete.Punti[i].Est = rete.Punti[i].Nord = kNo;
      if (ruolo == kIncognito && !capita(noti)) rete.Punti[i].Quota = kNo;
    }
    const double distanze = caso(1), direzioni = 0.5 + caso(0.5), visti = 0.1 + caso(0.5);
    for (int da = 0; da < kPuntiACaso; ++da) {
      if (!capita(0.6)) continue;
      const double zero = caso(400), hs = 1.4 + caso(0.4);
      rete.Stazioni.push_back({{}, da, hs, 1, 0, 0, {}});
      rete.Osservazioni.emplace_back();
      for (int a = 0; a < kPuntiACaso; ++a) {
        if (a == da || !capita(visti)) continue;
        const double dE = veri[a].Est - veri[da].Est, dN = veri[a].Nord - veri[da].Nord;
        const double D = std::hypot(dE, dN), dh = veri[a].Quota + 1.5 - veri[da].Quota - hs;
        TOssCr o{{}, a, kNo, kNo, 1.5, kNo, kInclinata};
        if (capita(direzioni)) o.Direzione = std::fmod(std::atan2(dE, dN) / kGon - zero + 800, 400);
        if (capita(distanze)) o.Zenit = std::atan2(D, dh) / kGon, o.Distanza = std::hypot(D, dh);
        rete.Osservazioni.back().push_back(o);
      }
    }
    for (std::size_t s = 0; s < rete.Stazioni.size(); ++s)
      rete.Stazioni[s].Osservazioni = rete.Osservazioni[s];
    rete.PosizioniPunti.resize(rete.Punti.size());
    const std::vector<TCoorCr> dati = rete.Punti;
    const EsitoApprossimate esito = CalcolaApprossimate(rete);
    std::string testo;
    for (const auto& righe : {esito.Note, Testi(esito.NonRaggiunti)})
      for (const std::string& riga : righe) testo += riga + "\n";
    for (int i = 0; i < kPuntiACaso; ++i) {
      const TCoorCr &p = rete.Punti[i], &vero = veri[i];
      const bool conPianta = Assegnato(p.Est) && Assegnato(p.Nord), conQuota = Assegnato(p.Quota);
      EXPECT_TRUE(!conPianta || std::hypot(p.Est - vero.Est, p.Nord - vero.Nord) < 1e-3) << testo;
      EXPECT_TRUE(!conQuota || std::abs(p.Quota - vero.Quota) < 1e-6) << testo;
      const std::string senza = "punto \"" + rete.Nomi[i] + "\": senza ";
      EXPECT_EQ(testo.find(senza + "coordinate: ") != testo.npos, !conPianta) << testo;
      EXPECT_EQ(testo.find(senza + "quota: ") != testo.npos, !conQuota) << testo;
      trovati += conPianta && !Assegnato(dati[i].Est) ? 1 : 0;
      mancati += conPianta ? 0 : 1;
    }
  }
  EXPECT_GT(trovati, 400U);  // of 4800 points; both outcomes are put to the test
  EXPECT_GT(mancati, 200U);
}

}  // namespace
