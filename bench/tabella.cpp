// One table of whole jobs against the unit U, the time of LAPACK's dpotrf + dpotri at order 4000 on
// one thread, measured first. Every job runs in a process of its own, so that its peak memory is
// its own.
//   bench_tabella [COMPENSA CARTELLA]    with these, also the whole program on CARTELLA/rete.toml

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/rete_sintetica.h"
#include "host/calcolo/rapporto.h"
#include "kzt5cmrg.h"

using namespace compensa;

extern "C" {
void dpotrf_(const char* parte, const int* n, double* a, const int* lda, int* esito);
void dpotri_(const char* parte, const int* n, double* a, const int* lda, int* esito);
void openblas_set_num_threads(int n);
}

namespace {

constexpr int kOrdineUnita = 4000;
constexpr int kPunti[] = {50, 200, 500, 1000, 2000, 5000, 20000, 50000};
constexpr double kDurataMinima = 0.3;  // short jobs are repeated for as long [s]

double Adesso() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double Unita() {
  openblas_set_num_threads(1);
  const auto n = static_cast<std::size_t>(kOrdineUnita);
  std::mt19937_64 motore(7);
  std::uniform_real_distribution<double> caso(-1.0, 1.0);
  std::vector<double> matrice(n * n);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i; j < n; ++j)
      matrice[i * n + j] = matrice[j * n + i] = caso(motore) + (i == j ? kOrdineUnita : 0.0);
  double migliore = HUGE_VAL;
  for (int volta = 0; volta < 3; ++volta) {
    std::vector<double> a = matrice;
    int esito = 0;
    const double inizio = Adesso();
    dpotrf_("L", &kOrdineUnita, a.data(), &kOrdineUnita, &esito);
    dpotri_("L", &kOrdineUnita, a.data(), &kOrdineUnita, &esito);
    migliore = std::min(migliore, Adesso() - inizio);
  }
  return migliore;
}

double Lavoro(int n) {
  const ReteSintetica modello = GeneraRete(n);
  double migliore = HUGE_VAL;
  const double fine = Adesso() + kDurataMinima;
  do {
    std::vector<TCoorCr> registri = modello.Punti;
    std::vector<TStaCr> postazioni = modello.Stazioni;
    TVettCr<TCoorCr> punti(registri);
    TVettCr<TStaCr> stazioni(postazioni);
    Rapporto rapporto;
    const double inizio = Adesso();
    {
      CalcCmpRigVelid1 calcolo(&modello.Opzioni, &punti, &stazioni, &modello.CurvaturaRifrazione,
                               &rapporto);
      if (!calcolo.Esegui()) return NAN;
    }
    migliore = std::min(migliore, Adesso() - inizio);
  } while (Adesso() < fine);
  return migliore;
}

struct Misura {
  double Tempo;    // [s]
  double Memoria;  // peak [MB]
};

// Runs a piece of work in a process of its own, which writes its time into a pipe.
template <class Opera>
Misura InUnProcesso(Opera opera) {
  int tubo[2];
  if (pipe(tubo) != 0) return {NAN, NAN};
  const pid_t figlio = fork();
  if (figlio == 0) {
    const double tempo = opera();
    const bool scritto = write(tubo[1], &tempo, sizeof tempo) == sizeof tempo;
    _exit(scritto ? 0 : 1);
  }
  close(tubo[1]);
  Misura m{NAN, NAN};
  if (read(tubo[0], &m.Tempo, sizeof m.Tempo) != sizeof m.Tempo) m.Tempo = NAN;
  close(tubo[0]);
  rusage uso{};
  wait4(figlio, nullptr, 0, &uso);
  m.Memoria = static_cast<double>(uso.ru_maxrss) / 1024.0;
  return m;
}

double Programma(const char* compensa, const std::string& rete) {
  const double inizio = Adesso();
  const pid_t figlio = fork();
  if (figlio == 0) {
    execl(compensa, compensa, rete.c_str(), "-q", "-o", "/dev/null", nullptr);
    _exit(127);
  }
  int stato = 0;
  waitpid(figlio, &stato, 0);
  return WIFEXITED(stato) && WEXITSTATUS(stato) == 0 ? Adesso() - inizio : NAN;
}

}  // namespace

int main(int argc, char** argv) {
  const double unita = Unita();
  std::printf("U = %.3f s   (dpotrf + dpotri, order %d, one thread)\n\n", unita, kOrdineUnita);
  std::printf("  points   time [s]        in U   exponent   peak [MB]\n");
  Misura prima{NAN, NAN};
  int puntiPrima = 0;
  for (const int n : kPunti) {
    const Misura m = InUnProcesso([n] { return Lavoro(n); });
    std::printf("%8d %10.4f %11.4f ", n, m.Tempo, m.Tempo / unita);
    if (puntiPrima == 0)
      std::printf("%10s", "");
    else
      std::printf("%10.2f",
                  std::log(m.Tempo / prima.Tempo) / std::log(static_cast<double>(n) / puntiPrima));
    std::printf(" %11.0f\n", m.Memoria);
    std::fflush(stdout);
    prima = m;
    puntiPrima = n;
  }
  if (argc == 3) {
    const double tempo = Programma(argv[1], std::string(argv[2]) + "/rete.toml");
    std::printf("\ncompensa on the last network in CSV: %.3f s, %.2f U, %.0f %% outside Esegui\n",
                tempo, tempo / unita, 100.0 * (1.0 - prima.Tempo / tempo));
  }
}
