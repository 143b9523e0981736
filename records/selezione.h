#pragma once

// Which records take part in an adjustment, and which of them give an equation. Whoever asks, asks
// here: the builders of the equations, the check, the chapters of the report and the programs
// around the module, so that their counts are always the same.
//
//   angle     a reading at both of two sights of a set-up: the first usable reading is the reference
//             that all later ones count from
//   distance  distance and zenith angle, also of one that is horizontal already; from an eccentric
//             instrument besides a reading above 0: the first without it ends those of its set-up
//   height    zenith angle, distance, target and instrument height, ends in different places on the
//             plane
// each with station and target in use. A point past the last one is treated like a negative index:
// its record is passed over. All functions are pure but for the two that lower roles.

#include <cstddef>
#include <optional>
#include <span>

#include "records/costanti.h"

namespace kzt5cmrg {

using VistaPunti = std::span<const TCoorCr>;
using VistaStazioni = std::span<const TStaCr>;

inline bool Esiste(VistaPunti punti, int punto) {
  return punto >= 0 && static_cast<std::size_t>(punto) < punti.size();
}

// Set-ups in use in plan; in height, those with an instrument height too.
bool StazionePla(VistaPunti punti, const TStaCr& stazione);
bool StazioneAlt(VistaPunti punti, const TStaCr& stazione);

// A reading that can enter an angle.
bool LetturaPla(VistaPunti punti, const TOssCr& osservazione);

// A reading that the reports show and that orients the circle.
bool LetturaElencata(VistaPunti punti, const TOssCr& osservazione);

// A distance that the reports show; it has an equation unless an earlier one stopped its set-up.
bool DistanzaPla(VistaPunti punti, const TOssCr& osservazione);

// A sight that can give a height equation, its set-up being in use: `distanzaQuadra` is the squared
// distance of its ends, in the unit of the coordinates.
bool ZenitAlt(VistaPunti punti, const TStaCr& stazione, const TOssCr& osservazione,
              double& distanzaQuadra);

// Whether a distance of the kind was measured from an eccentric instrument.
constexpr bool TipoFuoriCentro(int tipo) {
  return tipo == kFuoriCentro10 || tipo == kFuoriCentro20 || tipo == kFuoriCentro30;
}

// Such a distance with the direction that brings it to the centre.
bool FuoriCentro(const TOssCr& osservazione);

// One with a direction that tells nothing: it and the later ones of its station are
// lost.
bool NonRiducibile(const TOssCr& osservazione);

// The observation that the angles of a set-up count from; none unless others follow it.
std::optional<std::size_t> Riferimento(VistaPunti punti, const TStaCr& stazione);

// Calls f(riferimento, osservazione), indices in the set-up, for each angle that has an equation.
template <class F>
void PerOgniAngolo(VistaPunti punti, const TStaCr& stazione, F f) {
  const std::optional<std::size_t> r = Riferimento(punti, stazione);
  if (!r) return;
  for (std::size_t k = *r + 1; k < stazione.Osservazioni.size(); ++k)
    if (LetturaPla(punti, stazione.Osservazioni[k])) f(*r, k);
}

// Calls f(osservazione) for each distance that has an equation. Returns the one that cannot be
// reduced and ended them, if any.
template <class F>
std::optional<std::size_t> PerOgniDistanza(VistaPunti punti, const TStaCr& stazione, F f) {
  if (!StazionePla(punti, stazione)) return std::nullopt;
  for (std::size_t k = 0; k < stazione.Osservazioni.size(); ++k) {
    const TOssCr& o = stazione.Osservazioni[k];
    if (!DistanzaPla(punti, o)) continue;
    if (NonRiducibile(o)) return k;
    f(k);
  }
  return std::nullopt;
}

// Calls f(osservazione, distanzaQuadra) for each sight that has a height equation.
template <class F>
void PerOgniDislivello(VistaPunti punti, const TStaCr& stazione, F f) {
  if (!StazioneAlt(punti, stazione)) return;
  for (std::size_t k = 0; k < stazione.Osservazioni.size(); ++k) {
    double distanzaQuadra = 0.0;
    if (ZenitAlt(punti, stazione, stazione.Osservazioni[k], distanzaQuadra)) f(k, distanzaQuadra);
  }
}

// Whether the set-up adds its instrument height to the unknowns.
inline bool StrumentoIncognito(VistaPunti punti, const TStaCr& stazione) {
  return stazione.AltStrumNota == kAltezzaIncognita && StazioneAlt(punti, stazione);
}

// Takes out of an adjustment the points that cannot take part: those without coordinates (in
// height, without a height), and fixed ones that no observation ties to a point in use. Points are
// judged in one pass in index order: who observes a point counts with the role that the earlier
// part of the pass has left.
void AbbassaRuoliPla(std::span<TCoorCr> punti, VistaStazioni stazioni);
void AbbassaRuoliAlt(std::span<TCoorCr> punti, VistaStazioni stazioni);

// Numbers of unknowns and equations of an adjustment whose roles are lowered.
struct Dimensioni {
  int Incognite = 0, Equazioni = 0;
};
Dimensioni DimensioniPla(VistaPunti punti, VistaStazioni stazioni);
Dimensioni DimensioniAlt(VistaPunti punti, VistaStazioni stazioni);

}  // namespace kzt5cmrg
