// Whole jobs on synthetic networks: from the records to the end of the report, plane and height.

#include <benchmark/benchmark.h>

#include "bench/rete_sintetica.h"
#include "host/calcolo/rapporto.h"
#include "kzt5cmrg.h"

using namespace compensa;

namespace {

void Lavoro(benchmark::State& stato) {
  const int n = static_cast<int>(stato.range(0));
  const ReteSintetica modello = GeneraRete(n);
  for (auto giro : stato) {
    stato.PauseTiming();
    ReteSintetica rete;
    rete.Punti = modello.Punti;
    rete.Stazioni = modello.Stazioni;
    TVettCr<TCoorCr> punti(rete.Punti);
    TVettCr<TStaCr> stazioni(rete.Stazioni);
    Rapporto rapporto;
    stato.ResumeTiming();
    CalcCmpRigVelid1 calcolo(&modello.Opzioni, &punti, &stazioni, &modello.CurvaturaRifrazione,
                             &rapporto);
    benchmark::DoNotOptimize(calcolo.Esegui());
  }
  stato.SetComplexityN(n);
}

}  // namespace

BENCHMARK(Lavoro)
    ->Arg(9)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Arg(500)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(5000)
    ->Arg(20000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

BENCHMARK_MAIN();
