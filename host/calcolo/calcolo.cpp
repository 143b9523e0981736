// One run of the module: the job, and the observer between it and the report.

#include "host/calcolo/calcolo.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "host/giudizio/indeterminazione/indeterminazione.h"
#include "records/costanti.h"

namespace compensa {

namespace {

// An equation holds six coefficients with the numbers of their unknowns, two row pointers, its
// known term, residual and weight, and the w of the report.
constexpr std::uint64_t kByteEquazione =
    6 * (sizeof(double) + sizeof(int)) + 2 * sizeof(void*) + 4 * sizeof(double);
constexpr std::uint64_t kEquazioniPerOsservazione = 2;

// A sparse factor of a network, whose points see only their neighbours, holds about this many
// numbers an unknown and doubling of their count; as many again wait on the way.
constexpr std::uint64_t kElementiPerRaddoppio = 12;
constexpr std::uint64_t kCopieSparse = 2;

std::uint64_t ByteNormale(std::uint64_t incognite) {
  if (incognite <= kOrdineDenso) return incognite * incognite * sizeof(double);
  return kCopieSparse * kElementiPerRaddoppio * std::bit_width(incognite) * incognite *
         sizeof(double);
}

// The job leaves out an unknown point without coordinates and goes on with the others.
void NotaNonCalcolati(Risultati& r) {
  const auto nota = [&](RisultatoCompensazione& c, int RuoliPunto::*quale) {
    if (c.Fine == Esito::NonRichiesta) return;
    for (std::size_t i = 0; i < r.Punti.size(); ++i)
      if (r.Punti[i].RuoliIniziali.*quale == kIncognito && r.Punti[i].Ruoli.*quale == kNonUsato)
        c.PuntiNonCalcolati.push_back(static_cast<int>(i));
  };
  nota(r.Planimetria, &RuoliPunto::Pla);
  nota(r.Altimetria, &RuoliPunto::Alt);
}

// Division by the sine of a vertical sight, or values beyond all measure, leave no numbers behind.
void NotaNonFinite(Risultati& r) {
  const auto nota = [&](RisultatoCompensazione& c, int RuoliPunto::*quale, bool quote) {
    if (!c.Compiuta()) return;
    const auto guasto = [&](const RisultatoPunto& p) {
      if (p.Ruoli.*quale == kNonUsato) return false;
      return quote ? !std::isfinite(p.Quota) : !std::isfinite(p.Est) || !std::isfinite(p.Nord);
    };
    const auto guasta = [&](const Equazione& e) {
      return (e.Tipo == TipoEquazione::Dislivello) == quote && !std::isfinite(e.Residuo);
    };
    if (std::ranges::any_of(r.Punti, guasto) || std::ranges::any_of(r.Equazioni, guasta))
      c.Fine = Esito::NonFinita, c.EquazioneWMassimo = kNessuno;
  };
  nota(r.Planimetria, &RuoliPunto::Pla, false);
  nota(r.Altimetria, &RuoliPunto::Alt, true);
}

}  // namespace

Risultati Compensa(Rete& rete, CFileOutTmp& rapporto, const Ascolto& ascolto) {
  Risultati risultati = RisultatiIniziali(rete);
  const TVettCr<TCoorCr> punti(rete.Punti);
  const TVettCr<TStaCr> stazioni(rete.Stazioni);
  OsservatoreCalcolo osservatore(rapporto, risultati, ascolto.Iterazione);
  CalcCmpRigVelid1 calcolo(&rete.Opzioni, &punti, &stazioni, &rete.CurvaturaRifrazione,
                           &osservatore);
  osservatore.Osserva(calcolo);
  if (ascolto.Classificati) ascolto.Classificati();
  osservatore.Concludi(calcolo.Esegui());
  NotaNonCalcolati(risultati);
  NotaNonFinite(risultati);
  SpiegaIndeterminazione(rete, risultati);
  return risultati;
}

Fabbisogno StimaFabbisogno(const Rete& rete) {
  const auto calcola = [&](int quale) { return (rete.Opzioni.TipoCalcolo & quale) != 0; };
  const auto conta = [](const auto& record, int valore, auto campo) {
    return static_cast<std::uint64_t>(std::ranges::count(record, valore, campo));
  };
  const std::uint64_t pla =
      calcola(kCalcoloPlanimetria) ? 2 * conta(rete.Punti, kIncognito, &TCoorCr::TipoPla) : 0;
  const std::uint64_t alt =
      (calcola(kCalcoloAltimetria) ? conta(rete.Punti, kIncognito, &TCoorCr::TipoAlt) : 0) +
      conta(rete.Stazioni, kAltezzaIncognita, &TStaCr::AltStrumNota);
  const std::uint64_t incognite = std::max(pla, alt);
  std::uint64_t osservazioni = 0;
  for (const TStaCr& s : rete.Stazioni) osservazioni += s.Osservazioni.size();
  const std::uint64_t equazioni = kEquazioniPerOsservazione * osservazioni;
  const std::uint64_t normale = ByteNormale(incognite);
  return {static_cast<int>(incognite), static_cast<int>(equazioni), normale,
          normale + equazioni * kByteEquazione};
}

}  // namespace compensa
