// Free motions are sought at the coordinates of the file, where they are those of the network's
// plan; where none is found, at those that the last iteration has left: a network may come to a
// critical place only then. Where there is none at all, the weakest motion is named if its standard
// deviation is beyond all use. Motions at the last coordinates of iterations that took the points
// far away tell of bad approximations, not of observations that are missing.

#include "host/giudizio/indeterminazione/indeterminazione.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>
#include <string>

#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/giudizio/indeterminazione/correzioni.h"
#include "host/giudizio/indeterminazione/parole.h"

namespace compensa {

namespace {

constexpr std::size_t kMotiElencati = 100;
constexpr double kSqmDebole = 1.0;  // from here on a motion is hardly controlled [m]

// Roots of a cofactor that no real network has [km/rad, m]. The module takes a pivot for positive
// that is only rounding, where the coefficients are large; what comes out is no result.
constexpr double kRadiceCofattorePla = 1e3;
constexpr double kRadiceCofattoreAlt = 1e4;

bool Sospetta(const Risultati& r, const RisultatoCompensazione& c) {
  if (c.Fine == Esito::NonConvergente || !(c.SigmaZero > 0.0)) return true;
  const bool pla = &c == &r.Planimetria;
  return std::ranges::any_of(r.Punti, [&](const RisultatoPunto& p) {
    return pla ? std::max(p.SqmEst, p.SqmNord) > kRadiceCofattorePla * kMetriPerKm * c.SigmaZero
               : p.SqmQuota > kRadiceCofattoreAlt * c.SigmaZero;
  });
}

// An adjustment that waits for the other one may have free motions too: all are told at once.
bool DaSpiegare(const Risultati& r, const RisultatoCompensazione& c) {
  return c.Fine != Esito::NonRichiesta && (!c.Compiuta() || Sospetta(r, c));
}

class Spiegazione {
 public:
  Spiegazione(const Risultati& risultati, const SistemaLibero& sistema,
              RisultatoCompensazione& compensazione)
      : R(risultati), S(sistema), C(compensazione) {}

  // False without free motions.
  bool Moti();
  void MotoPiuDebole();

 private:
  void Aggiungi(const MotoInsieme& insieme, double sqm = kAssente) {
    if (C.MotiLiberi.size() < kMotiElencati)
      C.MotiLiberi.push_back(S.Passo == 1 ? MotoDiQuote(R, S, insieme, sqm)
                                          : MotoDiInsieme(R, S, insieme, sqm));
  }

  const Risultati& R;
  const SistemaLibero& S;
  RisultatoCompensazione& C;
};

bool Spiegazione::Moti() {
  Nucleo nucleo = CalcolaNucleo(S);
  for (const ParteLibera& parte : nucleo.Parti)
    C.GradiLiberi += static_cast<int>(parte.Moti.size());
  for (const NodoLibero& libero : nucleo.Nodi) C.GradiLiberi += libero.Gradi;
  for (ParteLibera& parte : nucleo.Parti)
    for (const MotoInsieme& insieme : Scomponi(S, std::move(parte))) Aggiungi(insieme);
  for (const NodoLibero& libero : nucleo.Nodi) {
    if (C.MotiLiberi.size() == kMotiElencati) break;
    if (S.Passo == 1)
      Aggiungi({{libero.Nodo}, {1.0}, {}, {}});
    else
      C.MotiLiberi.push_back(MotoDiPunto(R, S, libero));
  }
  return C.GradiLiberi > 0;
}

void Spiegazione::MotoPiuDebole() {
  if (C.Fine != Esito::NormaleSingolare) return;
  const MotoDebole debole = CercaMotoDebole(S);
  if (Presente(debole.Sqm) && debole.Sqm > kSqmDebole) Aggiungi(ComeInsieme(S, debole), debole.Sqm);
}

bool Finito(const SistemaLibero& s) {
  return std::ranges::all_of(s.Luoghi,
                             [](Posto p) { return std::isfinite(p.Est) && std::isfinite(p.Nord); });
}

// Free motions that only the last coordinates have. Where the iterations have gone astray these are
// those of no network, and what one would measure against them would change nothing.
void AttribuisciAlleApprossimate(Risultati& r, std::ptrdiff_t passi) {
  std::vector<MotoLibero>& moti = r.Planimetria.MotiLiberi;
  const std::string dove = "l'iterazione " + std::to_string(passi);
  const std::optional<CorrezioneEccessiva> eccessiva = CercaCorrezioneEccessiva(r);
  if (!eccessiva || moti.empty()) {
    for (MotoLibero& moto : moti) moto.Parole += " (alle coordinate a cui è giunta " + dove + ")";
    return;
  }
  constexpr int kDecimali = 1;
  r.Planimetria.ApprossimateLontane = true;
  r.Planimetria.GradiLiberi = 0;
  moti.resize(1);
  moti.front().Parole =
      "coordinate approssimate troppo lontane dal vero: le osservazioni bastano, ma l'iterazione " +
      std::to_string(eccessiva->Iterazione) + " ha corretto " +
      Cita(r.Punti[static_cast<std::size_t>(eccessiva->Punto)].Nome) + " di " +
      NumeroFisso(eccessiva->Correzione, kDecimali) + " m, e alle coordinate a cui è giunta " +
      dove + " il calcolo non può proseguire; servono approssimate migliori, non altre misure";
}

void SpiegaPlanimetria(const Rete& rete, Risultati& r) {
  const SistemaLibero iniziale = EquazioniPlanimetria(rete, r, Coordinate::DelFile);
  if (!Finito(iniziale)) return;
  if (Spiegazione(r, iniziale, r.Planimetria).Moti()) return;
  const auto passi = std::ssize(r.Planimetria.Iterazioni) -
                     (r.Planimetria.Fine == Esito::NormaleSingolare ? 1 : 0);
  if (passi > 0) {
    const SistemaLibero finale = EquazioniPlanimetria(rete, r, Coordinate::Finali);
    if (Finito(finale) && Spiegazione(r, finale, r.Planimetria).Moti()) {
      AttribuisciAlleApprossimate(r, passi);
      return;
    }
  }
  Spiegazione(r, iniziale, r.Planimetria).MotoPiuDebole();
}

void SpiegaAltimetria(const Rete& rete, Risultati& r) {
  const SistemaLibero sistema = EquazioniAltimetria(rete, r);
  Spiegazione spiegazione(r, sistema, r.Altimetria);
  if (!spiegazione.Moti()) spiegazione.MotoPiuDebole();
}

}  // namespace

void SpiegaIndeterminazione(const Rete& rete, Risultati& r) {
  try {
    if (DaSpiegare(r, r.Planimetria)) SpiegaPlanimetria(rete, r);
    if (DaSpiegare(r, r.Altimetria)) SpiegaAltimetria(rete, r);
  } catch (const std::bad_alloc&) {  // the outcome itself is worth more
    for (RisultatoCompensazione* c : {&r.Planimetria, &r.Altimetria}) {
      c->MotiLiberi.clear();
      c->GradiLiberi = 0;
    }
  }
}

}  // namespace compensa
