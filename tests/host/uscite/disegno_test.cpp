// Drawing, page and labels of a network whose every position and factor is worked out on paper.

#include <gtest/gtest.h>

#include <optional>
#include <regex>

#include "host/rete/sistema_riferimento.h"
#include "host/uscite/html/html.h"

using namespace compensa;

namespace {

int Quante(const std::string& testo, const std::string& pezzo) {
  int n = 0;
  for (auto i = testo.find(pezzo); i != testo.npos; i = testo.find(pezzo, i + 1)) ++n;
  return n;
}

std::string Pagina(const Risultati& r, std::vector<Messaggio> avvisi = {}) {
  std::string html;
  ScriviHtml({r, "", std::move(avvisi), {}, "", {}},
             [&](std::string_view pezzo) { html += pezzo; });
  return html;
}

// A and B fixed, 860 m apart along a parallel, C adjusted, 430 m North of their middle: by passo.
Risultati Triangolo(double passo = 1) {
  Risultati r;
  for (const auto& [nome, est, nord, ruolo] :
       {std::tuple("A", 0, 0, kFisso), {"B", 860, 0, kFisso}, {"C", 430, 430, kCompensato}}) {
    RisultatoPunto& p = r.Punti.emplace_back();
    p.Nome = nome, p.Est = 100000 + est * passo, p.Nord = 200000 + nord * passo;
    p.Quota = 10, p.Ruoli = {ruolo, kNonUsato};
  }
  RisultatoPunto& c = r.Punti[2];
  c.EstIniziale = c.Est + 0.0125, c.NordIniziale = c.Nord - 1.5, c.SqmEst = c.SqmNord = 0.0158;
  c.EllAsseMag = 0.02, c.EllAsseMin = 0.01, c.EllAzimut = 50;
  r.Planimetria.Fine = Esito::Riuscita, r.Planimetria.SigmaZero = 1e-6;
  r.Planimetria.Equazioni = 4, r.Planimetria.Incognite = 2, r.Planimetria.SigmaZeroRapporto = 1;
  return r;
}

// One pixel of a sheet 1000 wide is a metre: 70 of them beside the points, 50 above, 70 below.
// Ellipses: 4 % of 860 m over 20 mm is 1720, 2000 in round numbers. The factor of 95 % with two
// degrees of freedom: sqrt(2 F), F = 0.05^-1 - 1 = 19. Scale bars: at most a fifth of the width.
TEST(Disegno, PostiEllissiEScala) {
  const std::string svg = Pagina(Triangolo());
  for (const char* pezzo :
       {"viewBox=\"-70.0 -50.0 1000.0 550.0\"",
        "translate(0.0 430.0)scale(1.00000)\"><title>A (fisso): Est 100000.0000, Nord 200000.0000",
        "translate(430.0 0.0)scale(1.00000)\"><title>C (compensato): Est 100430.0000, Nord 200430",
        "<ellipse rx=\"20.0\" ry=\"40.0\" transform=\"translate(430.0 0.0)rotate(45.00)\">",
        "<title>C, ellisse standard: a = 20.0 mm, b = 10.0 mm, azimut di a dal Nord = 50.0 gon",
        "<ellipse rx=\"123.3\" ry=\"246.6\" transform=\"translate(430.0 0.0)rotate(45.00)\">",
        "ellisse 95 %: a = 123.3 mm, b = 61.6 mm", "a posteriori), ingrandita × 2000</li>",
        "(standard × 6.16), ingrandita × 2000</li>", "id=\"nord\" transform=\"translate(900.0 0"})
    EXPECT_EQ(Quante(svg, pezzo), 1) << pezzo;
  const std::pair<double, const char*> scale[] = {{4, "0H125.0V-5\"/><text y=\"-9\">500 m<"},
                                                  {10, "0H200.0V-5\"/><text y=\"-9\">2 km<"},
                                                  {7e-4, "0H142.9V-5\"/><text y=\"-9\">0.1 m<"}};
  for (const auto& [passo, barra] : scale)
    EXPECT_EQ(Quante(Pagina(Triangolo(passo)), barra), 1) << barra;
}

// Shots between A and B: d direction, D distance, r reference of angles, ! back from B; their w.
TEST(Disegno, Visuali) {
  const struct {
    std::vector<std::pair<std::string, double>> Tiri;
    std::string Classi, Parole;
  } casi[] = {
      {{{"dD", 1}}, "v v0", "A – B: direzione e distanza; |w| massimo 1.00"},
      {{{"d", 2}}, "v v1 vd", "A – B: sola direzione; |w| massimo 2.00"},
      {{{"D", 3.29}}, "v v1 vs", "A – B: sola distanza; |w| massimo 3.29"},
      {{{"d", 1}, {"D", 4}, {"d", 3}}, "v v2", "A – B: direzione e distanza; |w| massimo 4"},
      {{{"!D", 1}, {"d", 1}}, "v v0 vv", "B – A: direzione e distanza, nei due versi; |w"},
      {{{"!d", 1}, {"!d", 1.9}}, "v v0 vd", "B – A: sola direzione; |w| massimo 1.90"},
      {{{"dr", kAssente}}, "v v0 vd", "A – B: sola direzione</"},
      {{{"d", kAssente}}, "v vn", "A – B: sola direzione; non usata</"}};
  for (const auto& [tiri, classi, parole] : casi) {
    Risultati r = Triangolo();
    for (const auto& [letture, w] : tiri) {
      const auto c = [&l = letture](char lettura) { return l.find(lettura) != l.npos; };
      const int stazione = c('!') ? 1 : 0;
      RisultatoOsservazione o{.Punto = 1 - stazione,
                              .Direzione = c('d') ? 0 : kAssente,
                              .Distanza = c('D') ? 1 : kAssente,
                              .DirezioneRiferimento = c('r')};
      if (Presente(w)) {
        o.EqDistanza = static_cast<int>(r.Equazioni.size());
        r.Equazioni.push_back({TipoEquazione::Distanza, static_cast<int>(r.Stazioni.size()), 0});
        r.Equazioni.back().W = w;
      }
      r.Stazioni.push_back({.Punto = stazione, .Osservazioni = {o}});
    }
    const std::string html = Pagina(r), a = "0.0 430.0", b = "860.0 430.0";
    const std::string linea = parole[0] == 'A' ? a + "L" + b : b + "L" + a;
    EXPECT_EQ(Quante(html, classi + "\" d=\"M" + linea + "\"><title>" + parole), 1) << parole;
    EXPECT_EQ(Quante(html, "translate(430.0 430.0)scale(1.00000)\"><use href=\"#w"),
              Quante(classi, "1") + Quante(classi, "2"));
    const bool freccia = Quante(classi, "vv") + Quante(classi, "vn") == 0;
    const std::string verso = parole[0] == 'A'
                                  ? "translate(550.4 430.0)scale(1.00000)rotate(0.0)"
                                  : "translate(309.6 430.0)scale(1.00000)rotate(180.0)";
    EXPECT_EQ(Quante(html, verso + "\"><use class=\"fr fr"), freccia) << parole;
    EXPECT_EQ(Quante(html, "#fr\""), 1 + freccia) << parole;
  }
}

// Limits of sigma zero: the roots of q / 2 at 2.5 and 97.5 %, with q(p; 2) = -2 ln(1 - p).
TEST(PaginaAMano, CorrezioniETestGlobale) {
  Risultati r = Triangolo();
  const std::string html = std::regex_replace(Pagina(r), std::regex("<[^>]*>"), "|"),
                    riga =
                        "C|100430.0000|15.8|200430.0000|15.8|10.0000|-|-0.0125|1.5000|-|20.0|"
                        "10.0|50.0000|compensato|escluso\n";
  EXPECT_EQ(Quante(html, riga), 1);
  r.Stazioni = {{.Punto = 0, .Osservazioni = {{.Punto = 2}}}};
  r.Equazioni = {{.Stazione = 0, .Osservazione = 0, .Riferimento = 0, .SqmPriori = 0.001}};
  const std::pair<double, const char*> casi[] = {
      {0.159, "<dd>non superato (sigma zero 0.159, l"},
      {0.160, "<dd>superato (sigma"},
      {1.920, "<dd>superato (sigma"},
      {1.921, "<dd>non superato (sigma zero 1.921, limiti 0.1"}};
  for (const auto& [sigma, esito] : casi) {
    r.Planimetria.SigmaZeroRapporto = sigma;
    EXPECT_EQ(Quante(Pagina(r), esito), 1) << sigma;
  }
}

// Green only where nothing is left to look at.
TEST(PaginaAMano, ColoreDellEsito) {
  using Mano = void (*)(Risultati&);
  const Mano niente = [](Risultati&) {};
  const std::optional<Codice> nessuno;
  const std::tuple<const char*, std::optional<Codice>, Mano> casi[] = {
      {"bene\">", nessuno, niente},
      {"bene\">", Codice::DislivelloNonTorna, niente},
      {"bene\">", Codice::AltezzaStrumentoInverosimile, niente},
      {"bene\">", Codice::AltezzaSegnaleInverosimile, niente},
      {"bene\">", Codice::RaggioInverosimile, niente},
      {"attenzione\">", Codice::TriangoloNonChiude, niente},
      {"attenzione\">", Codice::SigmaZeroGrande, niente},
      {"attenzione\">", Codice::Altro, niente},
      {"attenzione\">", nessuno, [](Risultati& r) { r.Equazioni[0].Ridondanza = 0.05; }},
      {"attenzione\">", nessuno, [](Risultati& r) { r.Equazioni[0].W = 3.3; }},
      {"attenzione\">", nessuno, [](Risultati& r) { r.Planimetria.SigmaZeroRapporto = 2; }},
      {"attenzione\">", nessuno, [](Risultati& r) { r.Planimetria.PuntiNonCalcolati = {2}; }},
      {"male\">", nessuno,
       [](Risultati& r) { r.Planimetria.PuntiNonCalcolati = {2}, r.Planimetria.Incogniti = 0; }}};
  for (const auto& [classe, avviso, cambia] : casi) {
    Risultati r = Triangolo();
    r.Planimetria.Incogniti = 1;
    r.Stazioni = {{.Punto = 0, .Osservazioni = {{.Punto = 1}, {.Punto = 2}}}};
    r.Equazioni = {{.Stazione = 0,
                    .Osservazione = 1,
                    .Riferimento = 0,
                    .SqmPriori = 0.001,
                    .Ridondanza = 0.5}};
    cambia(r);
    // The words say nothing: a point may have any name.
    std::vector<Messaggio> avvisi;
    if (avviso)
      avvisi = {{.Cosa = {.Quale = *avviso, .Problema = "dislivello, angolo in planimetria"}}};
    EXPECT_EQ(Quante(Pagina(r, avvisi), std::string("scheda ") + classe), 1)
        << classe << (avviso ? VoceDi(*avviso).Parola : "");
  }
}

// Of heights and plan the card of the heights leaves alone what only the plan suffers from; of
// heights alone it counts a wrong distance.
TEST(PaginaAMano, AvvisiDelleQuote) {
  const std::tuple<Codice, int, int> casi[] = {
      // yellow cards with and without the plan
      {Codice::RaggioInverosimile, 1, 1}, {Codice::DislivelloNonTorna, 1, 1},
      {Codice::DistanzaNonTorna, 1, 1},   {Codice::Altro, 2, 1},
      {Codice::TriangoloNonChiude, 1, 1}, {Codice::CoordinateDiscordi, 1, 1},
      {Codice::VersoSbagliato, 1, 1},     {Codice::SqmInverosimile, 1, 1}};
  for (const auto& [codice, tutte, sole] : casi) {
    const Messaggio messaggio{.Livello = Gravita::Avviso, .Cosa = {.Quale = codice}};
    const std::string_view nome = VoceDi(codice).Parola;
    Risultati r = Triangolo();
    r.Altimetria = r.Planimetria;
    EXPECT_EQ(Quante(Pagina(r), "scheda bene\""), 2);
    EXPECT_EQ(Quante(Pagina(r, {messaggio}), "scheda attenzione\""), tutte) << nome;
    r.Planimetria.Fine = Esito::NonRichiesta;
    EXPECT_EQ(Quante(Pagina(r, {messaggio}), "scheda attenzione\""), sole) << nome;
  }
}

// UTM: the central meridian of zone z is 6 z - 183 degrees from Greenwich.
TEST(Sistema, Scelta) {
  const std::tuple<std::optional<int>, double, int, const char*> casi[] = {
      {{}, 1.5e6, 3003, "Ovest riconosciuto dal falso Est"},
      {{}, 2.52e6, 3004, "Est riconosciuto dal falso Est"},
      {{}, 5e5, 0, "il fuso non si può sapere"},
      {{}, 0, 0, "manca epsg"},
      {4326, 1.5e6, 0, "EPSG 4326 del file"},
      {-1, 0, 0, "EPSG -1 del file"},
      {31468, 5e5, 31468, "EPSG:31468; codice dato dal file della rete|"},
      {32632, 5e5, 32632, "_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563,AUTHORITY"},
      {3003, 1.5e6, 3003, "Italy zone 1; codice dato dal file della rete|PROJCS"},
      {3003, 2.52e6, 3003, "un falso Est di 2520000 m, il codice di 1500000 m|PROJCS"},
      {6709, 5e5, 6709, "nelle geometrie x resta l'Est e y il Nord|PROJCS"},
      {3004, 2.52e6, 3004, "15],PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",2"},
      {23034, 5e5, 23034, "21],PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",5"},
      {7792, 5e5, 7792, "_meridian\",15]"},
      {6707, 5e5, 6707, "],AXIS[\"Northing\",NORTH],AX"}};
  for (const auto& [epsg, falsoEst, codice, testo] : casi) {
    Risultati r;
    r.DatiProgetto.Epsg = epsg, r.FalsoEst = falsoEst;
    const SistemaRiferimento s = RiconosciSistema(r);
    EXPECT_EQ(s.Codice, codice) << testo;
    EXPECT_EQ(Quante(TestoSistema(s) + "|" + s.Definizione, testo), 1) << s.Nota << s.Definizione;
  }
}

}  // namespace
