// The warnings of a run, before the adjustment and after it.

#include "host/giudizio/avvertimenti/avvertimenti.h"

#include <iterator>
#include <utility>

#include "host/giudizio/avvertimenti/dopo.h"
#include "host/giudizio/avvertimenti/epsg.h"
#include "host/giudizio/avvertimenti/prima.h"

namespace compensa {

namespace {

constexpr std::size_t kChiusureElencate = 5;
// One good closure in some hundreds is beyond its limit, which one who looks a network over may well
// see, but who adjusts it need not.
constexpr double kMargineChiusure = 1.5;

struct EsamePlausibilita {
  Rilievi Trovati;
  bool Regolare = true;  // coordinates, readings as a whole and options are as they should be
};

EsamePlausibilita Plausibilita(const Rete& rete) {
  EsamePlausibilita esame{.Trovati = ControllaCoordinate(rete)};
  Rilievi diTutta = ControllaVersoScala(rete);
  Rilievi opzioni = ControllaOpzioni(rete);
  const bool lettureRegolari = diTutta.empty() && !ZenitVerticali(rete);
  esame.Regolare = esame.Trovati.empty() && lettureRegolari && opzioni.empty();
  const bool pianta = (rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0;
  if (pianta && lettureRegolari) Accoda(esame.Trovati, ControllaScarti(rete));
  Accoda(esame.Trovati, std::move(diTutta));
  Accoda(esame.Trovati, std::move(opzioni));
  Accoda(esame.Trovati, ControllaEpsg(rete));
  return esame;
}

// Many of them have one cause.
Rilievi Chiusure(const Rete& rete) {
  ChiusureControllate fatte;
  Rilievi trovati = ControllaChiusure(
      rete, &fatte, {.Calcolo = rete.Opzioni.TipoCalcolo, .Margine = kMargineChiusure});
  if (trovati.size() <= kChiusureElencate) return trovati;
  Riguardo riguarda{};
  for (const Rilievo& r : trovati) riguarda = riguarda | RiguardoDi(r.Cosa);
  const int tutte = fatte.Distanze + fatte.Dislivelli + fatte.Triangoli;
  return {{trovati.front().Dove,
           {.Quale = Codice::ChiusureNonTornano,
            .Riguarda = riguarda,
            .Record = TipoSoggetto::Rete,
            .Problema = "non tornano più di " + std::to_string(kChiusureElencate) +
                        " chiusure su " + std::to_string(tutte) +
                        " (distanze e dislivelli misurati nei due versi, triangoli), come " +
                        trovati.front().Cosa.Record.Testo() + ", " + trovati.front().Cosa.Problema,
            .Suggerimento = "compensa verifica le elenca; tipo delle distanze, s.q.m. o rifrazione "
                            "sbagliati?"}}};
}

void Riferisci(Rilievi trovati, Diagnostica& diagnostica) {
  for (Rilievo& r : trovati) diagnostica.Avviso(r.Dove, std::move(r.Cosa));
}

}  // namespace

Rilievi ControllaPlausibilita(const Rete& rete) { return Plausibilita(rete).Trovati; }

void AvvertiPrima(const Rete& rete, Diagnostica& diagnostica) {
  EsamePlausibilita esame = Plausibilita(rete);
  Accoda(esame.Trovati, ControllaLetture(rete));
  Accoda(esame.Trovati, ControllaRipetizioni(rete));
  if (esame.Regolare) Accoda(esame.Trovati, Chiusure(rete));
  Riferisci(std::move(esame.Trovati), diagnostica);
}

void AvvertiDopo(const Rete& rete, const Risultati& risultati, Diagnostica& diagnostica) {
  Rilievi trovati = ControllaSigmaZero(rete, risultati);
  Accoda(trovati, ControllaQuote(rete, risultati));
  Accoda(trovati, ControllaPunti(rete, risultati));
  Accoda(trovati, ControllaTipiDistanza(rete, risultati));
  Riferisci(std::move(trovati), diagnostica);
}

}  // namespace compensa
