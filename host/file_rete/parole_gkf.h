#pragma once

// The words of .gkf files, an XML of another adjustment program, that their reader and their writer
// share.

namespace compensa::gkf {

// Elements, from the root inwards.
inline constexpr char kRoot[] = "gama-local", kNetwork[] = "network",
                      kDescription[] = "description";
inline constexpr char kParameters[] = "parameters", kObservations[] = "points-observations";
inline constexpr char kPoint[] = "point", kObs[] = "obs", kHeights[] = "height-differences";
inline constexpr char kDirection[] = "direction", kAngle[] = "angle", kZAngle[] = "z-angle";
inline constexpr char kSDistance[] = "s-distance", kDistance[] = "distance", kDh[] = "dh";

// Attributes: axes and sense of the circle; a point and its roles; the ends of a sight and the
// heights above them, its value.
inline constexpr char kAxes[] = "axes-xy", kSense[] = "angles";
inline constexpr char kClockwise[] = "left-handed", kAnticlockwise[] = "right-handed";
inline constexpr char kId[] = "id", kFix[] = "fix", kAdj[] = "adj";
inline constexpr char kFrom[] = "from", kTo[] = "to", kBs[] = "bs", kFs[] = "fs";
inline constexpr char kFromHeight[] = "from_dh", kToHeight[] = "to_dh";
inline constexpr char kVal[] = "val", kStdev[] = "stdev";

}  // namespace compensa::gkf
