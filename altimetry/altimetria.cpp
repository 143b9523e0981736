// The altimetric adjustment: heights from zenith angles in one linear solution. The unknowns are
// the heights of the unknown points, then the instrument heights that are not known, in station
// order. A sight of length D [km] has the weight kPesoUnitario / D^2: the error of a zenith angle
// grows with it.

#include <cmath>
#include <vector>

#include "kzt5cmrg.h"
#include "lsq/sparso.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {
constexpr double kPesoUnitario = 0.001;
}  // namespace

// False when there are more unknowns than equations.
bool CalcCmpRigVelid1::CalcCompZe() {
  ScriviSezione(kTitoloAltimetria);
  Sparso.reset();
  ScriviConteggi(nNonUsatiAlt, nFissiAlt, nIncAlt);
  Out->SaltaRiga(1);

  std::vector<double> w(static_cast<std::size_t>(MaxEquaz), 0.0);
  AzzeraEquazioni();
  int strumenti = 0;
  const int equazioni = CreaEquazZe(strumenti);
  const int incognite = nIncAlt + strumenti;
  ScriviDimensioni(incognite, equazioni);
  Out->SaltaRiga(2);
  if (Indeterminato(incognite, equazioni)) return false;

  MinQua2(equazioni, incognite);
  if (StatoCalcolo == kSolutoreFallito) {
    ScriviTesto(kAltimetriaImpossibile);
    Out->SaltaRiga(4);
    return true;
  }
  if (incognite < equazioni) {
    InvertiNormale(equazioni, incognite);
    Baarda(Peso.get(), Coeff.Puntatori(), Indici.Puntatori(), Normale.Puntatori(), equazioni,
           Residui.get(), w.data(), SigmaZero);
  } else {
    SigmaZero = 0.0;
  }
  ScriviQuoteCompensate();
  Out->SaltaRiga(2);
  RisultatiAlt(w.data());
  return true;
}

// Builds one equation for every usable zenith observation and returns their number; `strumenti`
// gets the number of stations in use whose instrument height is unknown, counted even when none of
// their observations is usable.
int CalcCmpRigVelid1::CreaEquazZe(int& strumenti) {
  int riga = 0;
  strumenti = 0;
  for (const TStaCr& s : *Stazioni) {
    if (StrumentoIncognito(*Punti, s)) ++strumenti;
    PerOgniDislivello(*Punti, s, [&](std::size_t k, double distanzaQuadra) {
      const TOssCr& o = s.Osservazioni[k];
      Peso[static_cast<std::size_t>(riga)] = kPesoUnitario / distanzaQuadra;
      double altStrum = s.AltStrum;
      if (Eccentricita(s) > kSogliaEcc)
        ExZet(std::sqrt(distanzaQuadra), s.EccDistanza, s.EccDirezione, s.AltStrum, o.Direzione,
              o.Zenit, altStrum);
      Eoze(riga, s.Punto, o.Punto, strumenti, o.Zenit, s.AltStrumNota, altStrum, o.AltSegnale,
           o.Distanza, o.TipoDist);
      ++riga;
    });
  }
  return riga;
}

void CalcCmpRigVelid1::ScriviQuoteCompensate() {
  ScriviTitolo(kRigaQuote, kQuoteCompensate);
  ScriviTesto(kIntestazioneQuote);
  Out->SaltaRiga(2);
  double somma = 0.0;
  double sommaQuadrati = 0.0;
  for (int j = 0; j < nIncAlt; ++j) {
    const int punto = PuntoDaIncAlt[static_cast<std::size_t>(j)];
    const double sqm = std::sqrt(Cofattore(j, j)) * SigmaZero;
    TCoorCr& p = Punto(punto);
    p.Quota = Soluzione[static_cast<std::size_t>(j)];
    p.TipoAlt = kCompensato;
    Out->ScriviNumero(punto + 1, 5, 0);
    Out->ScriviSpazi(3);
    Out->ScriviStringa(p.Nome, 20);
    Out->ScriviNumero(p.Quota, 10, 4);
    Out->ScriviStringa(kPiuMenoQuota, 0);
    Out->ScriviNumeroLn(sqm, 9, 4);
    somma += sqm;
    sommaQuadrati += sqm * sqm;
  }
  Out->SaltaRiga(2);

  const auto riga = [this](unsigned testo, double valore, int larghezza) {
    ScriviTesto(testo);
    Out->ScriviNumero(valore, larghezza, 3);
    Out->ScriviStringaLn(kMetri, 0);
  };
  riga(kMediaSqmZ, nIncAlt == 0 ? 0.0 : somma / nIncAlt, 9);
  riga(kMediaQuadratica, nIncAlt == 0 ? 0.0 : std::sqrt(sommaQuadrati / nIncAlt), 9);
  riga(kSigmaZeroAlt, SigmaZero, 6);
}
