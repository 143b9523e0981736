// The coefficients of every kind of row against central differences of what the module itself
// computes: an angle or a distance moves with its known term, a height with that of the same
// network in which all heights are known.

#include <gtest/gtest.h>

#include "records/selezione.h"
#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

using Colonna = std::vector<double>;

// The known terms that `forma` writes at the records as they stand.
template <class Forma>
Colonna Noti(ProvaCalcolo& job, Forma forma) {
  job.AzzeraEquazioni();
  forma(job);
  return {job.TermineNoto.get(), job.TermineNoto.get() + job.MaxEquaz};
}

// What the coefficients on a value should be: the known terms fall as it grows.
template <class Forma>
Colonna Differenze(ProvaCalcolo& job, double& valore, double passo, Forma forma) {
  const double origine = valore;
  valore = origine + passo;
  Colonna d = Noti(job, forma);
  valore = origine - passo;
  const Colonna prima = Noti(job, forma);
  valore = origine;
  for (std::size_t r = 0; r < d.size(); ++r) d[r] = (prima[r] - d[r]) / (2 * passo);
  return d;
}

// One column of the equations as the job holds them.
Colonna Scritta(const ProvaCalcolo& job, int c) {
  Colonna a(job.MaxEquaz);
  for (int r = 0; r < job.MaxEquaz; ++r)
    for (int k = 0; k < kSlot; ++k) a[r] += job.Indici[r][k] == c ? job.Coeff[r][k] : 0;
  return a;
}

void Confronta(const Colonna& scritta, const Colonna& attesa, double tolleranza) {
  for (std::size_t r = 0; r < scritta.size(); ++r)
    EXPECT_NEAR(scritta[r], attesa[r], tolleranza * (1 + std::abs(attesa[r]))) << "row " << r;
}

TEST(Coefficienti, Pianta) {
  const auto forma = [](ProvaCalcolo& job) {
    int righe = 0;
    job.CreaEquazAng(righe), job.CreaEquazDis(righe);
  };
  for (unsigned seme = 0; seme < 20; ++seme) {
    SCOPED_TRACE("seed " + std::to_string(seme));
    ReteProva rete = ReteCasuale(seme);
    // The reduction to the centre follows the coordinates, its change is no part of a coefficient.
    for (TStaCr& s : rete.Stazioni) s.EccDistanza = kValoreMancante;
    ProvaCalcolo job(rete);
    job.Input();
    int c = 0;
    for (TCoorCr& p : rete.Punti) {
      if (p.TipoPla != kIncognito) continue;
      for (double* x : {&p.Est, &p.Nord}) {
        const Colonna attesa = Differenze(job, *x, 1e-5, forma);
        Noti(job, forma);
        // On the map the reductions follow the coordinates too, and no coefficient says so.
        Confronta(Scritta(job, c++), attesa, rete.Opzioni.Cartografiche != 0 ? 1e-5 : 2e-6);
      }
    }
    EXPECT_GT(c, 0);
  }
}

TEST(Coefficienti, Quote) {
  const auto forma = [](ProvaCalcolo& job) {
    int strumenti = 0;
    job.CreaEquazZe(strumenti);
  };
  for (unsigned seme = 0; seme < 20; ++seme) {
    SCOPED_TRACE("seed " + std::to_string(seme));
    ReteProva rete = ReteCasuale(seme), nota = rete;
    for (TCoorCr& p : nota.Punti) p.TipoAlt = p.TipoAlt == kIncognito ? kFisso : p.TipoAlt;
    for (TStaCr& s : nota.Stazioni) s.AltStrumNota = kAltezzaNota, s.EccDistanza = 0;
    ProvaCalcolo job(rete), tutto(nota);
    job.Input(), tutto.Input();
    Noti(job, forma);
    int c = 0;
    const auto prova = [&](double& valore) {
      Confronta(Scritta(job, c++), Differenze(tutto, valore, 1, forma), 1e-13);
    };
    for (int i = 0; i < std::ssize(rete.Punti); ++i)
      if (rete.Punti[i].TipoAlt == kIncognito) prova(nota.Punti[i].Quota);
    for (int s = 0; s < std::ssize(rete.Stazioni); ++s)
      if (StrumentoIncognito(rete.Punti, rete.Stazioni[s])) prova(nota.Stazioni[s].AltStrum);
    EXPECT_GT(c, 0);
  }
}

}  // namespace
