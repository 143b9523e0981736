// The warnings in order, and not more of them than one reads.

#include "host/avvertimenti/avvertimenti.h"

#include <iterator>
#include <utility>

#include "host/avvertimenti/dopo.h"
#include "host/avvertimenti/prima.h"

namespace {

constexpr std::size_t kMostrati = 50;

void Accoda(Rilievi& tutti, Rilievi altri) {
  std::move(altri.begin(), altri.end(), std::back_inserter(tutti));
}

void Riferisci(Rilievi trovati, Diagnostica& diagnostica) {
  const std::size_t altri = trovati.size() > kMostrati ? trovati.size() - kMostrati : 0;
  trovati.resize(trovati.size() - altri);
  for (Rilievo& r : trovati) diagnostica.Avviso(r.Dove, std::move(r.Cosa));
  diagnostica.TaciAvvisi(altri);
}

}  // namespace

Rilievi ControllaPlausibilita(const Rete& rete) {
  Rilievi trovati = ControllaCoordinate(rete);
  Rilievi diTutta = ControllaVersoScala(rete);
  const bool pianta = (rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0;
  if (pianta && diTutta.empty()) Accoda(trovati, ControllaScarti(rete));
  Accoda(trovati, std::move(diTutta));
  Accoda(trovati, ControllaOpzioni(rete));
  return trovati;
}

void AvvertiPrima(const Rete& rete, Diagnostica& diagnostica) {
  Rilievi trovati = ControllaPlausibilita(rete);
  Accoda(trovati, ControllaLetture(rete));
  Accoda(trovati, ControllaRipetizioni(rete));
  Riferisci(std::move(trovati), diagnostica);
}

void AvvertiDopo(const Rete& rete, const Risultati& risultati, Diagnostica& diagnostica) {
  Rilievi trovati = ControllaSigmaZero(rete, risultati);
  Accoda(trovati, ControllaPunti(rete, risultati));
  Accoda(trovati, ControllaTipiDistanza(rete, risultati));
  Riferisci(std::move(trovati), diagnostica);
}
