// Classification of the points, numbering of the unknowns, and the check that every unknown point
// can be determined.
//
// A fixed point that no observation ties to a point in use is taken out. Points are judged in one
// pass in index order, with the roles as they stand at that moment: who observes a point counts
// with the role that the earlier part of the pass has left.

#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

// For every point the station points that observe it, in one array cut at `Inizio`, and whether a
// station stands on it. `ammessa(stazione, osservazione)` chooses the observations that count.
class Osservatori {
 public:
  template <class Ammessa>
  Osservatori(const TVettCr<TStaCr>& stazioni, int nPunti, Ammessa ammessa)
      : Occupato(static_cast<std::size_t>(nPunti), false),
        Inizio(static_cast<std::size_t>(nPunti) + 1, 0) {
    const auto visita = [&](auto azione) {
      for (const TStaCr& s : stazioni)
        if (s.Punto >= 0 && s.Punto < nPunti)
          for (const TOssCr& o : s.Osservazioni)
            if (o.Punto >= 0 && o.Punto < nPunti && ammessa(s, o))
              azione(s.Punto, static_cast<std::size_t>(o.Punto));
    };
    for (const TStaCr& s : stazioni)
      if (s.Punto >= 0 && s.Punto < nPunti) Occupato[static_cast<std::size_t>(s.Punto)] = true;
    visita([&](int, std::size_t t) { ++Inizio[t + 1]; });
    for (std::size_t i = 1; i < Inizio.size(); ++i) Inizio[i] += Inizio[i - 1];
    Da.resize(Inizio.back());
    std::vector<std::size_t> libero(Inizio.begin(), Inizio.end() - 1);
    visita([&](int p, std::size_t t) { Da[libero[t]++] = p; });
  }

  // Whether the point carries a station or is observed from a point whose role is in use.
  template <class Usato>
  bool Legato(int punto, Usato usato) const {
    const auto i = static_cast<std::size_t>(punto);
    if (Occupato[i]) return true;
    for (std::size_t k = Inizio[i]; k < Inizio[i + 1]; ++k)
      if (usato(Da[k])) return true;
    return false;
  }

 private:
  std::vector<bool> Occupato;
  std::vector<std::size_t> Inizio;
  std::vector<int> Da;
};

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
  const Osservatori osservatori(*Stazioni, nPunti, [](const TStaCr&, const TOssCr& o) {
    return Dato(o.Direzione) || (Dato(o.Zenit) && Dato(o.Distanza));
  });
  const auto usato = [this](int p) { return Punto(p).TipoPla != kNonUsato; };
  for (int i = 0; i < nPunti; ++i) {
    TCoorCr& p = Punto(i);
    if (Mancante(p.Est) || Mancante(p.Nord)) p.TipoPla = kNonUsato;
    if (p.TipoPla == kFisso && !osservatori.Legato(i, usato)) p.TipoPla = kNonUsato;
    Numera(i, p.TipoPla, IncPla.get(), PuntoDaIncPla.get(), nIncPla, nFissiPla, nNonUsatiPla);
  }
}

void CalcCmpRigVelid1::ClassificaAlt() {
  const Osservatori osservatori(*Stazioni, nPunti, [](const TStaCr& s, const TOssCr& o) {
    return Dato(s.AltStrum) && Dato(o.Zenit) && Dato(o.AltSegnale);
  });
  const auto usato = [this](int p) { return Punto(p).TipoAlt != kNonUsato; };
  for (int i = 0; i < nPunti; ++i) {
    TCoorCr& p = Punto(i);
    if (Mancante(p.Quota)) p.TipoAlt = kNonUsato;
    if (p.TipoAlt == kFisso && !osservatori.Legato(i, usato)) p.TipoAlt = kNonUsato;
    Numera(i, p.TipoAlt, IncAlt.get(), PuntoDaIncAlt.get(), nIncAlt, nFissiAlt, nNonUsatiAlt);
  }
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
    if (!Esiste(s.Punto)) continue;
    Conteggi& nP = conteggi[static_cast<std::size_t>(s.Punto)];
    bool prima = true;
    for (const TOssCr& o : s.Osservazioni) {
      if (!Esiste(o.Punto)) continue;
      Conteggi& nT = conteggi[static_cast<std::size_t>(o.Punto)];
      if (std::exchange(prima, false)) ++nP.Direzioni;
      if (StazionePla(s) && LetturaPla(o)) {
        ++nT.Direzioni;
        ++nP.Direzioni;
      }
      if (StazioneAlt(s) && Dato(o.Zenit) && Dato(o.AltSegnale) &&
          Punto(o.Punto).TipoAlt != kNonUsato) {
        ++nT.Quote;
        ++nP.Quote;
      }
      if (StazionePla(s) && DistanzaPla(o)) {
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
