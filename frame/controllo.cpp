// Classification of the points, numbering of the unknowns, and the check that every unknown point
// can be determined.

#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "kzt5cmrg.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

// Counts a point by its role and numbers it when it is unknown.
void Numera(int punto, int ruolo, int* daPunto, int* aPunto, int& incogniti, int& fissi,
            int& nonUsati) {
  daPunto[punto] = kSlotVuoto;
  if (ruolo == kIncognito) {
    aPunto[incogniti] = punto;
    daPunto[punto] = incogniti++;
  } else {
    ++(ruolo == kFisso ? fissi : nonUsati);
  }
}

constexpr int kDirezioniMinime = 2;  // that fix a point without distances
constexpr int kQuoteMinime = 1;      // height sights to or from a point

}  // namespace

void CalcCmpRigVelid1::ContaVariabili() {
  nIncPla = nFissiPla = nNonUsatiPla = 0;
  nIncAlt = nFissiAlt = nNonUsatiAlt = 0;
  if ((Opzioni->TipoCalcolo & kCalcoloPlanimetria) != 0) ClassificaPla();
  if ((Opzioni->TipoCalcolo & kCalcoloAltimetria) != 0) ClassificaAlt();

  std::size_t osservazioni = 0;
  for (const TStaCr& s : *Stazioni) osservazioni += s.Osservazioni.size();
  if (osservazioni > std::numeric_limits<int>::max() / 2) throw std::bad_alloc();
  MaxEquaz = 2 * static_cast<int>(osservazioni);
}

void CalcCmpRigVelid1::ClassificaPla() {
  AbbassaRuoliPla(*Punti, *Stazioni);
  for (int i = 0; i < nPunti; ++i)
    Numera(i, Punto(i).TipoPla, IncPla.get(), PuntoDaIncPla.get(), nIncPla, nFissiPla,
           nNonUsatiPla);
}

void CalcCmpRigVelid1::ClassificaAlt() {
  AbbassaRuoliAlt(*Punti, *Stazioni);
  for (int i = 0; i < nPunti; ++i)
    Numera(i, Punto(i).TipoAlt, IncAlt.get(), PuntoDaIncAlt.get(), nIncAlt, nFissiAlt,
           nNonUsatiAlt);
}

// Counts for every point the observations that could fix it. The first observation of a station
// counts as a direction of its point: it carries the orientation.
bool CalcCmpRigVelid1::Controllo() {
  if (nPunti == 0) return false;
  struct Conteggi {
    long long Direzioni = 0, Distanze = 0, Quote = 0;
  };
  std::vector<Conteggi> conteggi(static_cast<std::size_t>(nPunti));

  for (const TStaCr& s : *Stazioni) {
    if (!Esiste(*Punti, s.Punto)) continue;
    Conteggi& nP = conteggi[static_cast<std::size_t>(s.Punto)];
    bool prima = true;
    for (const TOssCr& o : s.Osservazioni) {
      if (!Esiste(*Punti, o.Punto)) continue;
      Conteggi& nT = conteggi[static_cast<std::size_t>(o.Punto)];
      if (std::exchange(prima, false)) ++nP.Direzioni;
      if (StazionePla(*Punti, s) && LetturaPla(*Punti, o)) {
        ++nT.Direzioni;
        ++nP.Direzioni;
      }
      if (StazioneAlt(*Punti, s) && Dato(o.Zenit) && Dato(o.AltSegnale) &&
          Punto(o.Punto).TipoAlt != kNonUsato) {
        ++nT.Quote;
        ++nP.Quote;
      }
      if (StazionePla(*Punti, s) && DistanzaPla(*Punti, o)) {
        ++nT.Distanze;
        ++nP.Distanze;
        DistanzePresenti = kConDistanze;
      }
    }
  }

  bool determinabile = true;
  const auto segnala = [&](int punto, unsigned testo) {
    ScriviNonDeterminabile(punto, testo);
    determinabile = false;
  };
  for (int i = 0; i < nPunti; ++i) {
    const TCoorCr& p = Punto(i);
    const Conteggi& n = conteggi[static_cast<std::size_t>(i)];
    if (p.TipoPla == kIncognito && (Opzioni->TipoCalcolo & kCalcoloPlanimetria) != 0 &&
        n.Direzioni < kDirezioniMinime && n.Distanze == 0)
      segnala(i, kNonDeterminabilePla);
    if (p.TipoAlt == kIncognito && (Opzioni->TipoCalcolo & kCalcoloAltimetria) != 0 &&
        n.Quote < kQuoteMinime)
      segnala(i, kNonDeterminabileAlt);
  }
  Out->SaltaRiga(1);
  return determinabile;
}

void CalcCmpRigVelid1::ScriviNonDeterminabile(int punto, unsigned testo) {
  Out->SaltaRiga(1);
  ScriviTesto(kErroreControllo);
  Out->SaltaRiga(2);
  ScriviTesto(kPuntoNumero);
  Out->ScriviNumero(punto + 1, 4, 0);
  ScriviTesto(testo);
  Out->SaltaRiga(2);
}
