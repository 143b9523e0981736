// The dense kernels against the plain loops and LAPACK's dpotrf and dpotri: factor and inverse of
// one matrix, order by order. A row-major upper triangle is LAPACK's lower one.

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "lsq/nuclei.h"

using namespace kzt5cmrg;

extern "C" {
void dpotrf_(const char* parte, const int* n, double* a, const int* lda, int* esito);
void dpotri_(const char* parte, const int* n, double* a, const int* lda, int* esito);
void openblas_set_num_threads(int n);
}

namespace {

constexpr int kOrdini[] = {16, 20, 24, 32, 50, 100, 200, 500, 1000, 2000, 3000};

std::vector<double> MatriceDefinita(int n) {
  std::mt19937_64 motore(7);
  std::uniform_real_distribution<double> caso(-1.0, 1.0);
  const auto ordine = static_cast<std::size_t>(n);
  std::vector<double> a(ordine * ordine);
  for (std::size_t i = 0; i < ordine; ++i)
    for (std::size_t j = i; j < ordine; ++j)
      a[i * ordine + j] = a[j * ordine + i] = caso(motore) + (i == j ? n : 0.0);
  return a;
}

void Lapack(benchmark::State& stato) {
  openblas_set_num_threads(1);
  const int n = static_cast<int>(stato.range(0));
  const std::vector<double> matrice = MatriceDefinita(n);
  std::vector<double> a;
  int esito = 0;
  for (auto giro : stato) {
    stato.PauseTiming();
    a = matrice;
    stato.ResumeTiming();
    dpotrf_("L", &n, a.data(), &n, &esito);
    dpotri_("L", &n, a.data(), &n, &esito);
  }
}

void Nostri(benchmark::State& stato, const Nuclei& nuclei) {
  const int n = static_cast<int>(stato.range(0));
  const auto ordine = static_cast<std::size_t>(n);
  const std::vector<double> matrice = MatriceDefinita(n);
  std::vector<double> a = matrice;
  std::vector<double*> righe(ordine);
  for (std::size_t i = 0; i < ordine; ++i) righe[i] = a.data() + i * ordine;
  for (auto giro : stato) {
    stato.PauseTiming();
    std::copy(matrice.begin(), matrice.end(), a.begin());
    stato.ResumeTiming();
    LavoroNuclei lavoro;
    const SpazioNuclei spazio = lavoro.Per(n, n);
    nuclei.Elimina(righe.data(), n, n, spazio);
    nuclei.Inverti(righe.data(), n, n, spazio);
  }
}

}  // namespace

int main(int argc, char** argv) {
  for (const int n : kOrdini) {
    const auto registra = [n](const std::string& nome, auto funzione) {
      benchmark::RegisterBenchmark(nome.c_str(), funzione)->Arg(n)->Unit(benchmark::kMicrosecond);
    };
    registra("lapack", Lapack);
    for (const Nuclei* nuclei : NucleiDisponibili())
      registra(nuclei->Nome, [nuclei](benchmark::State& stato) { Nostri(stato, *nuclei); });
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
