// Points after the adjustment.
//   control      A redundancy number r says which part of an error of the observation shows in its
//                residual. A point all of whose observations have r near 0 takes every error of
//                theirs unseen, whatever sigma zero says of the rest of the network.
//   correction   The equations are linear around the approximate coordinates. What that leaves out
//                of a sight of length D whose end moves by d is about d^2 / 2D, and beyond a
//                tenth of D the iterations may find another solution than the true one.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "host/avvertimenti/dopo.h"
#include "host/numeri.h"

namespace {

constexpr double kControllo = 0.01;   // an r below this shows less than a hundredth of an error
constexpr double kParteLecita = 0.1;  // of the shortest sight that a first correction may reach
constexpr std::size_t kNominati = 8;
constexpr double kIllimitato = std::numeric_limits<double>::infinity();

class Esame {
 public:
  Esame(const Rete& rete, const Risultati& risultati) : R(rete), E(risultati) {}
  Rilievi Esegui();

 private:
  std::array<int, 3> Toccati(const Equazione& e) const;
  void EsaminaControllo(bool pianta);
  void EsaminaCorrezione();
  double Spostamento(std::size_t i) const;
  const RisultatoPunto& Punto(int i) const { return E.Punti[static_cast<std::size_t>(i)]; }

  const Rete& R;
  const Risultati& E;
  Rilievi Trovati;
};

// The points of an equation, kNessuno for none.
std::array<int, 3> Esame::Toccati(const Equazione& e) const {
  const RisultatoStazione& s = E.Stazioni[static_cast<std::size_t>(e.Stazione)];
  const auto collimato = [&](int i) {
    return i == kNessuno ? kNessuno : s.Osservazioni[static_cast<std::size_t>(i)].Punto;
  };
  return {s.Punto, collimato(e.Osservazione), collimato(e.Riferimento)};
}

void Esame::EsaminaControllo(bool pianta) {
  const RisultatoCompensazione& c = pianta ? E.Planimetria : E.Altimetria;
  if (!c.Compiuta() || c.Ridondanza() <= 0) return;
  std::vector<double> massima(E.Punti.size(), -1.0);  // of the redundancy numbers
  for (const Equazione& e : E.Equazioni) {
    if ((e.Tipo != TipoEquazione::Dislivello) != pianta) continue;
    for (const int p : Toccati(e))
      if (p != kNessuno) {
        double& m = massima[static_cast<std::size_t>(p)];
        m = std::max(m, e.Ridondanza);
      }
  }
  std::size_t quanti = 0;
  std::size_t primo = 0;
  std::string nomi;
  for (std::size_t i = 0; i < E.Punti.size(); ++i) {
    const RuoliPunto& ruoli = E.Punti[i].Ruoli;
    if ((pianta ? ruoli.Pla : ruoli.Alt) != kCompensato || massima[i] < 0.0 ||
        massima[i] > kControllo)
      continue;
    if (quanti == 0) primo = i;
    if (quanti < kNominati) nomi += (quanti == 0 ? "" : ", ") + Cita(E.Punti[i].Nome);
    ++quanti;
  }
  if (quanti == 0) return;
  if (quanti > kNominati) nomi += ", …";
  Trovati.push_back(
      {R.PosizioniPunti[primo],
       {.Record = pianta ? "planimetria" : "altimetria",
        .Problema = (quanti == 1 ? "un punto è determinato"
                                 : std::to_string(quanti) + " punti sono determinati") +
                    std::string(" senza alcun controllo: ") + nomi,
        .Suggerimento = "un errore nelle loro osservazioni non si vedrebbe: aggiungerne, o non "
                        "fidarsene come punti di appoggio"}});
}

// From the approximate to the adjusted coordinates [m].
double Esame::Spostamento(std::size_t i) const {
  const RisultatoPunto& p = E.Punti[i];
  const double d = std::hypot(p.Est - p.EstIniziale, p.Nord - p.NordIniziale);
  return p.Ruoli.Pla == kCompensato && Presente(d) ? d : 0.0;
}

// The first iteration tells the largest correction only; which points are too far for their own
// sights follows from where they have ended.
void Esame::EsaminaCorrezione() {
  const RisultatoCompensazione& c = E.Planimetria;
  if (c.Iterazioni.empty() || c.Iterazioni.front().PuntoMassimo == kNessuno) return;
  const Iterazione& prima = c.Iterazioni.front();
  std::vector<double> corta(E.Punti.size(), kIllimitato);  // the shortest sight of each point [m]
  double minima = kIllimitato;
  for (const Equazione& e : E.Equazioni) {
    if (e.Tipo == TipoEquazione::Dislivello) continue;
    const std::array<int, 3> punti = Toccati(e);
    for (const int collimato : {punti[1], punti[2]}) {
      if (collimato == kNessuno) continue;
      const double D = std::hypot(Punto(collimato).Est - Punto(punti[0]).Est,
                                  Punto(collimato).Nord - Punto(punti[0]).Nord);
      minima = std::min(minima, D);
      for (const int p : {punti[0], collimato}) {
        double& sua = corta[static_cast<std::size_t>(p)];
        sua = std::min(sua, D);
      }
    }
  }
  if (!(prima.CorrezioneMassima > kParteLecita * minima)) return;
  std::size_t quanti = 0;
  std::size_t peggiore = 0;
  double rapporto = 0.0;
  for (std::size_t i = 0; i < E.Punti.size(); ++i) {
    const double suo = Spostamento(i) / corta[i];
    if (!(suo > kParteLecita)) continue;
    ++quanti;
    if (suo > rapporto) rapporto = suo, peggiore = i;
  }
  if (quanti == 0) return;
  constexpr int kDecimali = 3;
  Trovati.push_back(
      {R.PosizioniPunti[peggiore],
       {.Record = NomePunto(E.Punti[peggiore].Nome),
        .Problema = "coordinate approssimate a " + NumeroFisso(Spostamento(peggiore), kDecimali) +
                    " m da quelle compensate, più di un decimo della sua visuale più corta, " +
                    NumeroFisso(corta[peggiore], kDecimali) + " m" +
                    (quanti > 1 ? " (così " + std::to_string(quanti) + " punti)" : "") +
                    "; correzione massima della prima iterazione " +
                    NumeroFisso(prima.CorrezioneMassima, kDecimali) + " m",
        .Suggerimento = "il calcolo può aver trovato un'altra soluzione: scrivere le coordinate "
                        "compensate al posto delle approssimate e ricompensare; se il risultato "
                        "non cambia è buono"}});
}

Rilievi Esame::Esegui() {
  EsaminaControllo(true);
  EsaminaControllo(false);
  EsaminaCorrezione();
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaPunti(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}
