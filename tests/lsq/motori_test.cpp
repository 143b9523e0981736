// The two engines under the solver: the dense kernels of every instruction set against LAPACK, and
// the sparse engine against the dense one.

#include <gtest/gtest.h>
#include <lapacke.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "bench/rete_sintetica.h"
#include "lsq/nuclei.h"
#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

struct Quadrata {
  explicit Quadrata(int n) : Dati(n * n) { Collega(n); }
  Quadrata(const Quadrata& altra) : Dati(altra.Dati) {
    Collega(static_cast<int>(std::ssize(altra.Righe)));
  }
  void Collega(int n) {
    for (int i = 0; i < n; ++i) Righe.push_back(&Dati[i * n]);
  }
  std::vector<double> Dati;
  std::vector<double*> Righe;
};

Quadrata Definita(int n) {
  Caso caso(n);
  Quadrata a(n);
  for (int i = 0; i < n; ++i)
    for (int j = i; j < n; ++j) a.Righe[i][j] = a.Righe[j][i] = caso.Reale(-1, 1) + (i == j) * n;
  return a;
}

// The upper triangle of the first rows.
double Distanza(const Quadrata& a, const Quadrata& b, int righe, int n) {
  double massima = 0;
  for (int i = 0; i < righe; ++i)
    for (int j = i; j < n; ++j)
      massima = std::max(massima, std::abs(a.Righe[i][j] - b.Righe[i][j]));
  return massima;
}

struct Fronte {
  int Larghezza, Ordine;
};

// LAPACK's factor holds that of the front in its first rows, and its inverse that of the front.
TEST(Motori, Nuclei) {
  constexpr Fronte kFronti[] = {{1, 1},     {3, 3},    {5, 9},     {2, 40},    {16, 16},
                                {17, 17},   {20, 50},  {72, 73},   {100, 100}, {40, 300},
                                {301, 301}, {96, 640}, {530, 530}, {24, 1600}};
  for (const auto [w, n] : kFronti) {
    SCOPED_TRACE(std::to_string(w) + " of " + std::to_string(n));
    const Quadrata N = Definita(n);
    Quadrata fattore = N;
    LAPACKE_dpotrf(LAPACK_ROW_MAJOR, 'U', n, fattore.Dati.data(), n);
    Quadrata inversa = fattore;
    LAPACKE_dpotri(LAPACK_ROW_MAJOR, 'U', n, inversa.Dati.data(), n);
    std::vector<double> conFma;
    for (const Nuclei* nuclei : NucleiDisponibili()) {
      SCOPED_TRACE(nuclei->Nome);
      LavoroNuclei lavoro;
      Quadrata a = N;
      ASSERT_EQ(nuclei->Elimina(a.Righe.data(), w, n, lavoro.Per(w, n)), kEliminato);
      EXPECT_LT(Distanza(a, fattore, w, n), 1e-14 * n);
      Quadrata q = inversa;
      for (int i = 0; i < w; ++i) std::copy_n(a.Righe[i], n, q.Righe[i]);
      nuclei->Inverti(q.Righe.data(), w, n, lavoro.Per(w, n));
      EXPECT_LT(Distanza(q, inversa, n, n), 1e-14);
      for (int i = 0; i < n; ++i)
        ASSERT_EQ(std::memcmp(a.Righe[i], N.Righe[i], i * sizeof(double)), 0) << "lower, row " << i;
      if (!std::string(nuclei->Nome).starts_with("avx")) continue;
      a.Dati.insert(a.Dati.end(), q.Dati.begin(), q.Dati.end());
      EXPECT_TRUE(conFma.empty() || a.Dati == conFma);
      conFma = a.Dati;
    }
  }
}

// The rows before the failing one are factored over their whole length; it holds its reduced pivot.
TEST(Motori, PivotNonPositivo) {
  for (const int guasta : {0, 7, 16, 33, 150, 299}) {
    const int n = 300;
    Quadrata N = Definita(n), fattore = N;
    LAPACKE_dpotrf(LAPACK_ROW_MAJOR, 'U', n, fattore.Dati.data(), n);
    const double pivot = fattore.Righe[guasta][guasta] * fattore.Righe[guasta][guasta];
    N.Righe[guasta][guasta] -= pivot + 1;
    for (const Nuclei* nuclei : NucleiDisponibili()) {
      SCOPED_TRACE(nuclei->Nome);
      LavoroNuclei lavoro;
      Quadrata a = N;
      EXPECT_EQ(nuclei->Elimina(a.Righe.data(), n, n, lavoro.Per(n, n)), guasta);
      EXPECT_LT(Distanza(a, fattore, guasta, n), 1e-12);
      EXPECT_NEAR(a.Righe[guasta][guasta], -1, 1e-11);
    }
  }
}

// Cofactors of unknowns that meet in an equation, and the whole report.
void Confronta(const ReteProva& rete) {
  for (const int calcolo : {kCalcoloPlanimetria, kCalcoloAltimetria}) {
    ReteProva una = rete.Con(calcolo), altra = rete.Con(calcolo);
    ProvaCalcolo densa(una, 1 << 20), sparsa(altra, -1);
    ASSERT_EQ(densa.Esegui(), sparsa.Esegui());
    EXPECT_EQ(densa.Rapporto.Testo, sparsa.Rapporto.Testo);
    if (!densa.Contiene("CORRETTE") || densa.Contiene("Ridondanza         0")) continue;
    for (int r = 0; r < densa.MaxEquaz; ++r)
      for (int k = 0; k < 36; ++k) {
        const int i = densa.Indici[r][k / 6], j = densa.Indici[r][k % 6];
        if (i < 0 || j < 0) continue;
        const double scala = std::sqrt(densa.Cofattore(i, i) * densa.Cofattore(j, j));
        ASSERT_NEAR(densa.Cofattore(i, j), sparsa.Cofattore(i, j), 1e-9 * scala) << i << ' ' << j;
      }
  }
}

TEST(Motori, ReteSparsa) {
  for (const auto& file : std::filesystem::directory_iterator(CARTELLA_PROVE "/reti")) {
    if (file.path().extension() != ".net") continue;
    SCOPED_TRACE(file.path().stem());
    Confronta(CaricaRete(file.path().stem()));
  }
  for (unsigned seme = 0; seme < 20; ++seme) {
    SCOPED_TRACE(seme);
    Confronta(ReteCasuale(seme));
  }
  const ReteSintetica grande = GeneraRete(400);
  ReteProva rete;
  rete.Opzioni = grande.Opzioni;
  rete.DsOr = grande.CurvaturaRifrazione;
  rete.Punti = grande.Punti;
  rete.Stazioni = grande.Stazioni;
  rete.Osservazioni = grande.Osservazioni;
  rete.Nomi.assign(grande.Nomi.begin(), grande.Nomi.end());
  Confronta(rete);
}

// Three stations see 150 points, which see nothing: the third is met in every equation of its own.
ReteProva Stella() {
  ReteProva r = LeggiRete(
      "OPZ 0.003 0.002 0.001 9 3 0\nDSOR 0 0.13 6378000\nPT A|-900 0 100 1 1\nPT B|900 50 100 1 1\n"
      "PT H|10 900 100 0 0\nST 0 1.5 1 0 0\nST 1 1.5 1 0 0\nST 2 1.5 1 0 0");
  for (int i = 0; i < 150; ++i) {
    r.Punti.push_back({{}, 20.0 * i - 1500, 2000.0 + 30 * (i % 7), 100, 0, 0, 0, 0, 0, 0});
    r.Nomi.push_back("Z");
  }
  for (int s = 0; s < 3; ++s)
    for (int t = 2; t < std::ssize(r.Punti); ++t) {
      const TCoorCr &p = r.Punti[s], &q = r.Punti[t];
      const double d = std::hypot(q.Est - p.Est, q.Nord - p.Nord) + 1e-3 * (t % 5);
      if (t != s)
        r.Osservazioni[s].push_back({{}, t, kValoreMancante, 100 + 1e-4 * (t % 3), 1.5, d, 0});
    }
  return r;
}

// Networks on which an engine can stumble. The report of the dense one tells where it ends.
TEST(Motori, RetiDifficili) {
  const std::string quadrato = LeggiFile(CARTELLA_PROVE "/reti/quadrato.net");
  // C on the base A - B after one step, where both distances fix East alone.
  const double alto = 300, lato = std::hypot(500, alto), misura = lato - alto * alto / lato;
  const std::string sullaBase =
      "OPZ 0.003 0.002 0.001 9 1 0\nDSOR 0 0.13 6378000\nPT A|0 0 0 1 2\nPT B|1000 0 0 1 2\n"
      "PT C|500 300 0 0 2\nST 0 1.5 1 0 0\nOS 2 - 100 1.5 0 0\nST 1 1.5 1 0 0\nOS 2 - 100 1.5 0 0";
  const struct {
    const char* Nome;
    std::function<void(ReteProva&)> Cambia;
    std::vector<std::string> Contiene;
    const char* Manca;
  } casi[] = {{"in two parts",
               [&](ReteProva& r) {
                 const ReteProva altra = LeggiRete(quadrato);
                 for (TCoorCr p : altra.Punti)
                   p.Est += 7e4, r.Punti.push_back(p), r.Nomi.push_back("Z");
                 for (TStaCr s : altra.Stazioni) s.Punto += 4, r.Stazioni.push_back(s);
                 for (auto giro : altra.Osservazioni) {
                   for (TOssCr& o : giro) o.Punto += 4;
                   r.Osservazioni.push_back(giro);
                 }
               },
               {"Incognite       8\n", "Ridondanza        32\n", "RISUTATI"},
               "*** ERRORE"},
              {"a hub",
               [](ReteProva& r) { r = Stella(); },
               {"Incognite     302\n", "Ridondanza       150\n", "QUOTE COMPENSATE"},
               "*** ERRORE"},
              {"nothing in plan reaches D",
               [](ReteProva& r) {  // but a reading that has no other beside it
                 for (auto& giro : r.Osservazioni)
                   std::erase_if(giro, [](const TOssCr& o) { return o.Punto == 3; });
                 r.Osservazioni[3].resize(1), r.Osservazioni[3][0].Distanza = kValoreMancante;
               },
               {"N.   1\n"},
               "FINE"},
              {"nothing in height reaches D",
               [](ReteProva& r) {  // but a zenith angle without distance
                 for (auto& giro : r.Osservazioni)
                   std::erase_if(giro, [](const TOssCr& o) { return o.Punto == 3; });
                 for (TOssCr& o : r.Osservazioni[3]) o.Distanza = kValoreMancante;
               },
               {"IMPOSSIBILE ESEGUIRE IL CALCOLO IN ALTIMETRIA"},
               "QUOTE COMPENSATE"},
              {"no redundancy",
               [](ReteProva& r) {
                 r.Punti[3].TipoPla = r.Punti[3].TipoAlt = kNonUsato;
                 r.Stazioni.resize(1), r.Osservazioni.resize(1), r.Osservazioni[0].resize(2);
                 r.Osservazioni[0][0].Distanza = kValoreMancante;
               },
               {"Sigma zero =  0.000 * 10-6"},
               "ELLISSI"},
              {"failure at the second step",
               [&](ReteProva& r) {
                 r = LeggiRete(sullaBase);
                 for (auto& giro : r.Osservazioni) giro[0].Distanza = misura;
               },
               {"N.   2\n"},
               "FINE"}};
  for (const auto& c : casi) {
    SCOPED_TRACE(c.Nome);
    ReteProva rete = LeggiRete(quadrato);
    c.Cambia(rete);
    Confronta(rete);
    ProvaCalcolo job(rete, -1);
    EXPECT_TRUE(job.Esegui());
    for (const auto& testo : c.Contiene) EXPECT_TRUE(job.Contiene(testo)) << job.Rapporto.Testo;
    EXPECT_FALSE(job.Contiene(c.Manca)) << job.Rapporto.Testo;
  }
}

}  // namespace
