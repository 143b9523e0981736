// Approximate coordinates: each method alone on a square of known points, what cannot be reached and
// why, and whole networks that come back when the coordinates of their unknown points are taken away.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "host/approssimate/approssimate.h"
#include "host/calcolo.h"
#include "host/lettura_rete.h"
#include "host/rapporto.h"

namespace {

constexpr double kGon = M_PI / 200;

// The corners lie on one circle; X inside, Y and Z outside.
const struct { char Nome; double Est, Nord, Quota; } kPunti[] = {
    {'A', 1000, 1000, 100}, {'B', 1400, 1000, 120}, {'C', 1400, 1400, 90}, {'D', 1000, 1400, 101},
    {'X', 1250, 1130, 130}, {'Y', 1700, 1250, 105}, {'Z', 1730, 1600, 140}};

// Set-ups as "A: B=d X=dD; B*: X=D!": d a direction, D a slope distance with its zenith angle, ! one
// that is 100 m too long; * an eccentric instrument, whose distances are horizontal.
Rete Costruisci(const std::string& rilievo, const std::string& incogniti) {
  Rete rete;
  rete.Opzioni.TipoCalcolo = kCalcoloPlanimetria | kCalcoloAltimetria;
  std::map<char, int> indici;
  for (const auto& p : kPunti) {
    const bool incognito = incogniti.find(p.Nome) != std::string::npos;
    indici[p.Nome] = int(rete.Punti.size());
    TCoorCr record{};
    record.Est = record.Nord = record.Quota = kValoreMancante;
    if (!incognito) record.Est = p.Est, record.Nord = p.Nord, record.Quota = p.Quota;
    rete.Punti.push_back(record);
    rete.Nomi.emplace_back(1, p.Nome);
    rete.RuoliIniziali.push_back({incognito ? kIncognito : kFisso, incognito ? kIncognito : kFisso});
  }
  std::istringstream parole(rilievo);
  for (std::string parola; parole >> parola;) {
    const auto& t = kPunti[indici[parola[0]]];
    if (parola.find(':') != std::string::npos) {
      const bool eccentrica = parola[1] == '*';
      rete.Stazioni.push_back({{}, indici[parola[0]], 1.5, 1, eccentrica ? 3.0 : 0.0, 70, {}});
      rete.Osservazioni.emplace_back();
      continue;
    }
    const double zero = 37.0 * double(rete.Stazioni.size());  // azimuth of the circle's zero [gon]
    const TStaCr& s = rete.Stazioni.back();
    const auto& p = kPunti[s.Punto];
    const double az = (zero + s.EccDirezione) * kGon;
    const double dE = t.Est - p.Est + s.EccDistanza * std::sin(az);
    const double dN = t.Nord - p.Nord + s.EccDistanza * std::cos(az);
    const double D = std::hypot(dE, dN), dh = t.Quota - p.Quota - 1.5 + 1.2;
    const auto ha = [&](char c) { return parola.find(c, 2) != std::string::npos; };
    TOssCr o{{}, indici[parola[0]], kValoreMancante, kValoreMancante, 1.2, kValoreMancante, 1};
    if (ha('d')) o.Direzione = std::fmod(std::atan2(dE, dN) / kGon - zero + 4000, 400);
    if (ha('D')) o.Zenit = std::atan2(D, dh) / kGon;
    if (ha('D')) o.Distanza = s.EccDistanza > 0 ? D : std::hypot(D, dh);
    if (s.EccDistanza > 0) o.TipoDist = kFuoriCentro10;
    if (ha('!')) o.Distanza += 100;
    rete.Osservazioni.back().push_back(o);
  }
  for (std::size_t s = 0; s < rete.Stazioni.size(); ++s)
    rete.Stazioni[s].Osservazioni = rete.Osservazioni[s];
  return rete;
}

const struct CasoMetodo {
  const char *Rilievo, *Incogniti, *Testo;  // a piece of a note, or of what stays without
} kMetodi[] = {
    {"A: B=d X=dD", "X", "\"X\": coordinate approssimate da polare da \"A\""},
    {"A: B=d X=dD B: A=d X=dD", "X", "polare da \"A\", \"B\" (media di 2, scarto massimo 0.000 m)"},
    {"A: B=d X=d X: A=D", "X", "da polare da \"A\""},
    {"A*: B=d C=d X=dD", "X", "da polare da \"A\""},
    {"A: B=d Y=dD Y: A=d Z=dD", "YZ", "\"Z\": coordinate approssimate da polare da \"Y\""},
    {"A: B=d X=dD B: A=d X=dD C: A=d X=dD!", "X", "; scartata una determinazione discorde"},
    {"A: B=d X=dD B: A=d X=dD!", "X", "discordano: da controllare"},
    {"A: B=d X=d B: A=d X=d", "X", "intersezione in avanti da \"A\", \"B\""},
    {"A*: B=d C=d X=d B*: A=d C=d X=d", "X", "intersezione in avanti"},
    {"A: B=d X=d X: A=d C=d", "X", "intersezione in avanti da \"A\", \"C\""},
    {"X: A=d B=d C=d", "X", "intersezione inversa su \"A\", \"B\", \"C\""},
    {"X*: A=d B=d C=d", "X", "intersezione inversa su \"A\", \"B\", \"C\""},
    {"D: A=d B=d C=d", "D", "\"D\" senza coordinate: l'intersezione inversa cade vicino al cerchio"},
    {"D: A=d B=d C=d Y=d", "D", "\"D\": coordinate approssimate da intersezione inversa"},
    {"X: A=dD B=dD", "X", "stazione libera su \"A\", \"B\""},
    {"X*: A=dD B=dD", "X", "stazione libera su \"A\", \"B\""},
    {"A: X=D B: X=D", "X", "danno due posizioni, (1250.0, 1130.0) e (1250.0, 870.0), e nulla dice"},
    {"A: X=D B: X=D C: X=D", "X", "intersezione di distanze"},
    {"A: X=D B: X=D X: A=d B=d", "X", "intersezione di distanze"},
    {"X: A=dD Y=dD Y: X=dD Z=dD Z: Y=dD C=dD", "XYZ", "proprio, agganciato a \"A\", \"C\""},
    {"A: X=d", "X", "\"X\" senza coordinate: lo vede solo \"A\", che non è orientata; serve una vis"},
    {"A: B=d X=d", "X", "lo vede solo \"A\", senza distanza; serve un'altra direzione o distanza"},
    {"X: A=d B=d", "X", "dalla sua stazione si vede di noto solo \"A\", \"B\"; serve"},
    {"Y: X=dD", "XY", "lo vede solo \"Y\", che è senza coordinate"},
    {"A: B=d", "X", "\"X\" senza coordinate: nessuna osservazione lo tocca"},
    {"A: B=d X=d", "X", "\"X\" senza quota: nessuna visuale completa"},
    {"A: B=d X=dD B: X=dD", "X", "quota approssimata per dislivelli da \"A\", \"B\" (media di 2"},
};

TEST(Approssimate, OgniMetodo) {
  for (const CasoMetodo& caso : kMetodi) {
    SCOPED_TRACE(caso.Rilievo);
    Rete rete = Costruisci(caso.Rilievo, caso.Incogniti);
    const EsitoApprossimate esito = CalcolaApprossimate(rete);
    std::string testo;
    for (const auto* righe : {&esito.Note, &esito.NonRaggiunti})
      for (const std::string& riga : *righe) testo += riga + "\n";
    EXPECT_NE(testo.find(caso.Testo), std::string::npos) << testo;
    const bool errate = std::string(caso.Rilievo).find('!') != std::string::npos;
    for (const int i : esito.PuntiPla)
      EXPECT_LT(std::hypot(rete.Punti[i].Est - kPunti[i].Est, rete.Punti[i].Nord - kPunti[i].Nord),
                errate ? 60.0 : 1e-5);
    for (const int i : esito.PuntiAlt)
      if (!errate) EXPECT_NEAR(rete.Punti[i].Quota, kPunti[i].Quota, 1e-5);
  }
}

TEST(Approssimate, RuoliECalcolo) {
  Rete rete = Costruisci("A: B=d X=dD X: A=d Y=dD", "XY");
  rete.RuoliIniziali[4] = {kNonUsato, kNonUsato};  // X, through which Y would be found
  EXPECT_EQ(CalcolaApprossimate(rete).NonRaggiunti.size(), 2);
  EXPECT_FALSE(Assegnato(rete.Punti[4].Est) || Assegnato(rete.Punti[5].Est));
  rete.RuoliIniziali[4] = {kFisso, kIncognito};
  rete.Opzioni.TipoCalcolo = kCalcoloPlanimetria;
  const EsitoApprossimate esito = CalcolaApprossimate(rete);
  EXPECT_NE(esito.NonRaggiunti.at(0).find("\"X\" fisso senza coordinate"), std::string::npos);
  EXPECT_FALSE(Assegnato(rete.Punti[4].Est) || Assegnato(rete.Punti[5].Quota));
}

void Spoglia(Rete& rete) {
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) {
    TCoorCr& p = rete.Punti[i];
    if (rete.RuoliIniziali[i].Pla == kIncognito) p.Est = p.Nord = kValoreMancante;
    if (rete.RuoliIniziali[i].Alt == kIncognito) p.Quota = kValoreMancante;
  }
}

// The points in the opposite order.
void Rovescia(Rete& rete) {
  const int ultimo = int(rete.Punti.size()) - 1;
  std::reverse(rete.Punti.begin(), rete.Punti.end());
  std::reverse(rete.Nomi.begin(), rete.Nomi.end());
  std::reverse(rete.RuoliIniziali.begin(), rete.RuoliIniziali.end());
  for (TStaCr& s : rete.Stazioni) s.Punto = ultimo - s.Punto;
  for (auto& osservazioni : rete.Osservazioni)
    for (TOssCr& o : osservazioni) o.Punto = ultimo - o.Punto;
}

const struct CasoEsempio {
  const char* Nome;
  double Pianta, Quota;  // how far from the adjusted ones [m]
} kEsempi[] = {{"altezze_strumentali", 0.5, 0.3}, {"fuori_centro", 0.5, 0.5},
               {"gauss_boaga_ovest", 1.0, 0.3},   {"ghilani_wolf", 0.1, 0},
               {"stazione_libera", 0.05, 0.02},   {"zeman", 0.2, 0.1}};

TEST(Approssimate, GliEsempiTornano) {
  for (const CasoEsempio& caso : kEsempi) {
    SCOPED_TRACE(caso.Nome);
    const auto carica = [&] {
      Diagnostica diario;
      return *LeggiRete(std::string(CARTELLA_ESEMPI "/") + caso.Nome + ".toml", diario);
    };
    Rete data = carica(), spoglia = carica(), rovescia = carica();
    Rapporto rapporto, altro;
    const Risultati attesi = Compensa(data, rapporto);
    Spoglia(spoglia);
    Spoglia(rovescia);
    Rovescia(rovescia);
    EXPECT_TRUE(CalcolaApprossimate(spoglia).NonRaggiunti.empty());
    CalcolaApprossimate(rovescia);
    const std::size_t n = spoglia.Punti.size();
    for (std::size_t i = 0; i < n; ++i) {
      const TCoorCr& p = spoglia.Punti[i];
      EXPECT_NEAR(p.Est, attesi.Punti[i].Est, caso.Pianta);
      EXPECT_NEAR(p.Nord, attesi.Punti[i].Nord, caso.Pianta);
      EXPECT_NEAR(p.Est, rovescia.Punti[n - 1 - i].Est, 1e-6);
      EXPECT_NEAR(p.Nord, rovescia.Punti[n - 1 - i].Nord, 1e-6);
      if (caso.Quota > 0) EXPECT_NEAR(p.Quota, attesi.Punti[i].Quota, caso.Quota);
    }
    const Risultati ottenuti = Compensa(spoglia, altro);
    ASSERT_TRUE(TutteRiuscite(ottenuti));
    for (std::size_t i = 0; i < n; ++i) {
      EXPECT_NEAR(ottenuti.Punti[i].Est, attesi.Punti[i].Est, 5e-4);
      EXPECT_NEAR(ottenuti.Punti[i].Nord, attesi.Punti[i].Nord, 5e-4);
      if (caso.Quota > 0) EXPECT_NEAR(ottenuti.Punti[i].Quota, attesi.Punti[i].Quota, 5e-4);
    }
  }
}

}  // namespace
