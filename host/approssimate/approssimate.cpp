// Approximate coordinates: positions first, then the heights.

#include "host/approssimate/approssimate.h"

#include "host/approssimate/motivi.h"
#include "host/approssimate/propagazione.h"
#include "host/approssimate/quote_approssimate.h"

namespace compensa {

namespace {

bool ConPianta(const TCoorCr& p) { return Assegnato(p.Est) && Assegnato(p.Nord); }

// Also the heights need positions: the length of a sight is its weight.
void PropagaPianta(Rete& rete, EsitoApprossimate& esito) {
  std::vector<int> mancanti;
  for (std::size_t i = 0; i < rete.Punti.size(); ++i)
    if (rete.RuoliIniziali[i].Pla != kNonUsato && !ConPianta(rete.Punti[i]))
      mancanti.push_back(static_cast<int>(i));
  if (mancanti.empty()) return;

  const Visuali visuali(rete);
  const Riduzioni riduzioni(rete);
  Propagazione propagazione(rete, visuali, riduzioni);
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) {
    const TCoorCr& p = rete.Punti[i];
    if (rete.RuoliIniziali[i].Pla != kNonUsato && ConPianta(p))
      propagazione.Conosci(static_cast<int>(i), {p.Est, p.Nord});
  }
  propagazione.Esegui();
  for (const int punto : mancanti) {
    const auto p = static_cast<std::size_t>(punto);
    const auto& trovato = propagazione.Trovati()[p];
    if (!trovato || rete.RuoliIniziali[p].Pla != kIncognito) {
      esito.NonRaggiunti.push_back(AvvisoSu(rete.PosizioniPunti[static_cast<std::size_t>(punto)],
                                            MotivoPunto(rete, visuali, propagazione, punto)));
      continue;
    }
    TCoorCr& record = rete.Punti[p];
    if (!Assegnato(record.Est)) record.Est = trovato->Luogo.Est;
    if (!Assegnato(record.Nord)) record.Nord = trovato->Luogo.Nord;
    rete.PiantaCalcolata[p] = 1;
    esito.PuntiPla.push_back(punto);
    esito.Note.push_back(NotaPunto(rete, punto, *trovato));
  }
}

}  // namespace

EsitoApprossimate CalcolaApprossimate(Rete& rete) {
  EsitoApprossimate esito;
  rete.PiantaCalcolata.assign(rete.Punti.size(), 0);
  if (rete.Opzioni.TipoCalcolo == 0) return esito;
  PropagaPianta(rete, esito);
  if ((rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0) PropagaQuote(rete, esito);
  return esito;
}

}  // namespace compensa
