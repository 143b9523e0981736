#pragma once

// The records by which a host describes a network and reads the results back.
//
// The host owns and lays out every record; the job reads them in place and writes only into the
// points. The records and the two types below stand in the global namespace, all else in kzt5cmrg.
// The records have no constructors and no initialisers, so that a host in any language can
// lay them out: the offsets below are part of the interface.
//
// Lengths, heights and coordinates are in metres, directions and zenith angles in gon (400 to the
// circle, directions clockwise). A double above kNonDato means "not given".

#include <cstddef>
#include <span>
#include <string_view>
#include <type_traits>

// The host's text: single-byte characters, Windows-1252.
using TTestoCr = std::string_view;
// The host's vector: element count and element access.
template <class T>
using TVettCr = std::span<T>;

namespace kzt5cmrg {

inline constexpr double kNonDato = 8.5e199;         // limit between a given value and a missing one
inline constexpr double kValoreMancante = 9.0e199;  // what a host may store where nothing is given

// Role of a point, the same codes in plan and in height. A host gives 0, 1 or 2; a run writes 2 on
// a point that cannot take part and 3 on an adjusted one.
enum Ruolo : int { kIncognito = 0, kFisso = 1, kNonUsato = 2, kCompensato = 3 };

// Kinds of measured distance. Any other value is a horizontal distance used as it stands.
enum TipoDistanza : int {
  kOrizzontale = 0,
  kInclinata = 1,       // slope distance, reduced to the horizontal by its zenith angle
  kPiana = 3,           // already on the projection plane: no ellipsoid and no scale reduction
  kInclinataTipo6 = 6,  // slope distances with a fixed instrument and prism geometry
  kInclinataTipo7 = 7,
  kFuoriCentro10 = 10,  // horizontal distances from an eccentric instrument, reduced to the centre
  kFuoriCentro20 = 20,
  kFuoriCentro30 = 30,
};

// What TOpzCr::TipoCalcolo asks for; the bits add up.
enum Calcolo : int { kCalcoloPlanimetria = 1, kCalcoloAltimetria = 2 };

// TStaCr::AltStrumNota. Any other value: no unknown, and the height does not enter the equations.
enum AltezzaStrumento : int { kAltezzaIncognita = 0, kAltezzaNota = 1 };

}  // namespace kzt5cmrg

// A point of the network. A run adjusts its coordinates, height and roles in place.
struct TCoorCr {
  TTestoCr Nome;
  double Est;    // [m]; in kilometres during a run; may be not given
  double Nord;   // [m]; likewise
  double Quota;  // height [m]; may be not given
  double
      Orientamento;   // result: mean orientation of the station that has this record's index [rad]
  int TipoPla;        // Ruolo in plan
  int TipoAlt;        // Ruolo in height
  double EllAsseMag;  // result: semi-major axis of the standard error ellipse, a posteriori [m]
  double EllAsseMin;  // result: semi-minor axis [m]
  double EllTeta;     // result: orientation of the ellipse as the report prints it [gon]
};

// An observation read at a station: any of its values may be not given.
struct TOssCr {
  unsigned char RiservatoOspite[16];  // the host's own, neither read nor written
  int Punto;                          // index of the target point; negative = passed over
  double Direzione;                   // reading of the horizontal circle [gon]
  double Zenit;                       // zenith angle [gon]; every distance and height needs it
  double AltSegnale;                  // height of the target above its point [m]
  double Distanza;                    // measured distance [m]
  int TipoDist;                       // TipoDistanza
};

// A set-up of the instrument, with its own circle. A point may carry several.
struct TStaCr {
  unsigned char RiservatoOspite[16];  // the host's own, neither read nor written
  int Punto;                          // index of the station point; negative = passed over
  double AltStrum;                    // instrument height [m]; not given = no heights from here
  int AltStrumNota;                   // AltezzaStrumento
  double EccDistanza;                 // distance of the instrument from the station point [m]
  double EccDirezione;                // reading from the instrument towards the station point [gon]
  TVettCr<TOssCr> Osservazioni;       // in reading order
};

// Options of a run.
struct TOpzCr {
  double SqmDistCost;  // standard deviation of a distance, constant part [m]
  double SqmDistProp;  // part proportional to the distance [m/km]
  double SqmDir;       // standard deviation of a direction, used for an angle as it is [gon]
  int MaxIter;         // iteration limit in plan; at least one iteration runs
  int TipoCalcolo;     // bits of Calcolo
  unsigned char Cartografiche;  // nonzero = map coordinates: observations are reduced to the plane
};

// Earth curvature and refraction in trigonometric heighting.
struct CCalcDsOr {
  unsigned char CorrCurvRifr;  // nonzero = apply the term
  double CoeffRifr;            // refraction coefficient k
  double RaggioTerra;          // radius of the earth [m]
};

static_assert(sizeof(int) == 4 && sizeof(double) == 8);
static_assert(sizeof(TTestoCr) == 16 && sizeof(TVettCr<TOssCr>) == 16);
static_assert(std::is_standard_layout_v<TCoorCr> && std::is_standard_layout_v<TStaCr>);

static_assert(sizeof(TCoorCr) == 80);
static_assert(offsetof(TCoorCr, Nome) == 0 && offsetof(TCoorCr, Est) == 16);
static_assert(offsetof(TCoorCr, Nord) == 24 && offsetof(TCoorCr, Quota) == 32);
static_assert(offsetof(TCoorCr, Orientamento) == 40 && offsetof(TCoorCr, TipoPla) == 48);
static_assert(offsetof(TCoorCr, TipoAlt) == 52 && offsetof(TCoorCr, EllAsseMag) == 56);
static_assert(offsetof(TCoorCr, EllAsseMin) == 64 && offsetof(TCoorCr, EllTeta) == 72);

static_assert(sizeof(TOssCr) == 64);
static_assert(offsetof(TOssCr, Punto) == 16 && offsetof(TOssCr, Direzione) == 24);
static_assert(offsetof(TOssCr, Zenit) == 32 && offsetof(TOssCr, AltSegnale) == 40);
static_assert(offsetof(TOssCr, Distanza) == 48 && offsetof(TOssCr, TipoDist) == 56);

static_assert(sizeof(TStaCr) == 72);
static_assert(offsetof(TStaCr, Punto) == 16 && offsetof(TStaCr, AltStrum) == 24);
static_assert(offsetof(TStaCr, AltStrumNota) == 32 && offsetof(TStaCr, EccDistanza) == 40);
static_assert(offsetof(TStaCr, EccDirezione) == 48 && offsetof(TStaCr, Osservazioni) == 56);

static_assert(sizeof(TOpzCr) == 40);
static_assert(offsetof(TOpzCr, SqmDistCost) == 0 && offsetof(TOpzCr, SqmDistProp) == 8);
static_assert(offsetof(TOpzCr, SqmDir) == 16 && offsetof(TOpzCr, MaxIter) == 24);
static_assert(offsetof(TOpzCr, TipoCalcolo) == 28 && offsetof(TOpzCr, Cartografiche) == 32);

static_assert(sizeof(CCalcDsOr) == 24);
static_assert(offsetof(CCalcDsOr, CorrCurvRifr) == 0 && offsetof(CCalcDsOr, CoeffRifr) == 8);
static_assert(offsetof(CCalcDsOr, RaggioTerra) == 16);
