// The page: its numbers against tables, its names against geometry, its behaviour in a browser.

#include "host/uscite/html/html.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <regex>

#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/rete/grandezze.h"
#include "host/rete/statistica.h"
#include "host/uscite/html/disegno_etichette.h"
#include "tests/comuni/rete_prova.h"

using namespace compensa;

namespace {

// Computed with 40 digits by bisection of the incomplete gamma function (mpmath).
constexpr double kChiQuadro[][3] = {
    {0.95, 1, 3.84145882069412596},      {0.025, 3, 0.215795282623897868},
    {0.975, 137, 171.294051781888782},   {0.025, 1000, 914.257153799258935},
    {0.975, 10000, 10279.0701798875902}, {0.001, 1, 1.57079714926248988e-6}};

// Closed forms for one and two degrees of freedom; the others integrated numerically.
const double kStudent[][3] = {{0.99, 1, std::tan(std::numbers::pi * 0.49)},
                              {0.9, 2, 0.8 * std::sqrt(2 / (1 - 0.8 * 0.8))},
                              {0.975, 3, 3.182446305284263},
                              {0.995, 5, 4.032142983557536},
                              {0.975, 10, 2.2281388519649385}};

TEST(Statistica, Quantili) {
  for (const auto& [p, n, atteso] : kStudent)
    EXPECT_NEAR(QuantileStudent(p, int(n)), atteso, 1e-10 * atteso) << p << ' ' << n;
  EXPECT_NEAR(LimiteTau(0.1, 1, 2), std::sqrt(2) * std::sin(std::numbers::pi * 0.45), 1e-12);
  EXPECT_NEAR(LimiteTau(0.05, 12, 100'000), std::sqrt(QuantileChiQuadro(1 - 0.05 / 12, 1)), 1e-4);
  for (const auto& [p, n, atteso] : kChiQuadro)
    EXPECT_NEAR(QuantileChiQuadro(p, n), atteso, 1e-10 * atteso) << p << ' ' << n;
  EXPECT_NEAR(FattoreEllisse(0.95, 3), 4.3708339011957798, 1e-12);
  EXPECT_NEAR(FattoreEllisse(0.95, 2'000'000'000), 2.4477468306808161, 1e-8);  // sigma zero known
  EXPECT_TRUE(!Presente(FattoreEllisse(0.95, 0)) && !Presente(QuantileChiQuadro(0.95, 0)));
}

TEST(Disegno, Etichette) {
  Caso caso(7);
  std::vector<PuntoEtichettato> punti;
  std::vector<Rettangolo> presi;  // symbols, then names
  for (int i = 0; i < 100; ++i) {
    const double x = caso.Reale(40, 960), y = caso.Reale(40, 660);
    punti.push_back({x, y, 5, caso.Reale(15, 50), i % 3});
    presi.push_back({x - 5, y - 5, x + 5, y + 5});
  }
  const auto posti = CollocaEtichette(punti, {}, 1000, 700);
  for (int i = 0; i < 100; ++i) {
    if (posti[i].Livello > 0) continue;
    const auto& [x, y, s] = std::tie(punti[i].X, punti[i].Y, posti[i].Posto);
    const Rettangolo nome{x + s.Sinistra, y + s.Alto, x + s.Destra, y + s.Basso};
    for (const Rettangolo& r : presi)
      EXPECT_TRUE(nome.Sinistra >= r.Destra || nome.Destra <= r.Sinistra || nome.Alto >= r.Basso ||
                  nome.Basso <= r.Alto)
          << i;
    presi.push_back(nome);
  }
  EXPECT_GE(presi.size(), 195U);
}

// A network with suspect observations and two troublesome names, and its page.
struct PaginaHtml : testing::Test {
  PaginaHtml() {
    Diagnostica diagnostica;
    Rete rete = *LeggiRete(std::filesystem::path(CARTELLA_ESEMPI "/zeman.toml"), diagnostica);
    Rapporto rapporto;
    Esiti = Compensa(rete, rapporto);
    Esiti.Punti[2].Nome = "<b>\"x\" & 'y'</script>";
    Esiti.Punti[Esiti.Stazioni[3].Punto].Nome = "Città";
    ScriviHtml({Esiti, "R & S\n", {{.Cosa = {.Problema = "<i>"}}}, {}, "", {}},
               [&](auto pezzo) { Pagina += pezzo; });
  }
  auto Quante(const std::string& testo) const {
    const std::regex e(testo);
    return std::distance(std::sregex_iterator(Pagina.begin(), Pagina.end(), e), {});
  }
  Risultati Esiti;
  std::string Pagina;
};

TEST_F(PaginaHtml, Testo) {
  EXPECT_EQ(Quante("<b>|<i>|R & S|(src|href|action)=\"[^#]|url\\(|@import|https?:"), 0);
  EXPECT_GT(Quante("&lt;b&gt;&quot;x&quot; &amp; &#39;y&#39;&lt;/script&gt;"), 3);
  EXPECT_EQ(Quante("</script>"), 2);
  const auto sospette = std::ranges::count_if(Esiti.Equazioni, Sospetta);
  EXPECT_EQ(Quante("<tr class=\"sosp\">[^\n]*<td>sospetta"), sospette + std::min(sospette, 10L));
}

// Sorts the angles by |w|, then filters them; what is seen goes into the title.
constexpr const char* kProva = R"(<script nonce="prova">
const t = document.querySelector('#angoli'), [casella, sospette] = t.querySelectorAll('input');
const righe = () => [...t.querySelectorAll('tbody tr:not([hidden])')];
t.querySelectorAll('th button')[9].click();
const w = righe().map(r => +r.cells[9].textContent);
casella.value = ' CITTA ', casella.dispatchEvent(new Event('input'));
setTimeout(() => {
  const citta = righe().length;
  casella.value = '', sospette.click(), document.querySelector('[data-zoom="0.5"]').click();
  document.title = [w.every((x, i) => !i || w[i - 1] >= x), w[0], citta, righe().length,
    document.querySelectorAll('[aria-sort=descending],svg.z1').length].join();
}, 500);</script></body>)";

TEST_F(PaginaHtml, Navigatore) {
  if (!std::filesystem::exists(CHROMIUM)) GTEST_SKIP() << "no chromium";
  const auto luogo = std::filesystem::temp_directory_path() / ("html-" + std::to_string(getpid()));
  std::filesystem::create_directories(luogo);
  const std::string comando =
      "cd '" + luogo.string() +
      "' && timeout 120 '" CHROMIUM
      "' --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking "
      "--disable-component-update --disable-sync --user-data-dir=profilo --enable-logging=stderr "
      "--virtual-time-budget=3000 p.html > uscita 2> errori ";
  const auto apri = [&](const std::string& pagina, const char* come, const char* uscita) {
    std::ofstream(luogo / "p.html", std::ios::binary) << pagina;
    EXPECT_EQ(std::system((comando + come).c_str()), 0);
    EXPECT_EQ(LeggiFile(luogo / "errori").find("CONSOLE"), std::string::npos);
    return LeggiFile(luogo / uscita);
  };
  std::string prova = Pagina;
  prova.replace(prova.find("script-src"), 10, "script-src 'nonce-prova'");
  prova.replace(prova.rfind("</body>"), 7, kProva);
  // Of the angles 4 stand in, refer to or aim at the renamed point, and 6 are suspect.
  EXPECT_NE(apri(prova, "--dump-dom", "uscita").find("<title>true,4.61,4,6,2<"), prova.npos);
  Pagina = apri(Pagina, "--print-to-pdf=p.pdf", "p.pdf");
  EXPECT_GT(Quante("/Type */Page[^s]"), 5);
  std::filesystem::remove_all(luogo);
}

}  // namespace
