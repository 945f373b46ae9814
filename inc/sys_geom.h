//===- inc/sys_geom.h - Units, limits and rounding of the geometry values -===//
//
// Coordinates, lengths, radii and angles are `long` values that behave as
// signed 32-bit integers in both data models: every value stored in a
// geometry field is cut to 32 bits, and sums, differences and products wrap
// in 32 bits (computed in uint32_t), so the LP64 build gives exactly the
// results of the 32-bit one.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_GEOM_H
#define BFC_SYS_GEOM_H

#include "sys_base.h"

#include <cmath>
#include <cstdint>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// A coordinate is within the limit when strictly between -SYS_CoordLimit and SYS_CoordLimit.
constexpr long SYS_CoordLimit = 1066800000L;
/// Base units per inch and per millimetre.
constexpr long SYS_BaseUnitsPerInch = 38100000L;
constexpr long SYS_BaseUnitsPerMm = 1500000L;

/// Angles count counter-clockwise from the positive x axis, 1,800,000 units per degree.
constexpr long SYS_AngleUnitsPerDegree = 1800000L;
constexpr long SYS_QuarterTurn = 162000000L;
constexpr long SYS_HalfTurn = 324000000L;
constexpr long SYS_FullTurn = 648000000L;

/// The constants with which angles move between radians and angle units; the exact
/// integer results at quarter turns depend on these very values.
constexpr double SYS_Pi = 3.141592653589793;
constexpr double SYS_InvPi = 0.3183098861837907;

/// Integer helpers of the geometry values: 32-bit wrap-around and the rounding rules.
namespace sysgeom {

/// The low 32 bits of `v` as a signed value (the identity on the 32-bit model).
inline long cut32(long v) { return static_cast<int32_t>(static_cast<uint32_t>(v)); }
inline long add32(long a, long b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline long sub32(long a, long b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
inline long mul32(long a, long b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}
inline long neg32(long a) { return static_cast<int32_t>(0u - static_cast<uint32_t>(a)); }
/// abs in 32 bits: the most negative value stays itself, as it does in 32-bit arithmetic.
inline long abs32(long a) { return a < 0 ? neg32(a) : a; }

/// Truncates toward zero to a 32-bit integer. A value outside the 32-bit range, and NaN,
/// give -2,147,483,648 (the processor's "integer indefinite"), never undefined behaviour.
inline long truncate32(double v) {
#if defined(__SSE2__)
  return _mm_cvttsd_si32(_mm_set_sd(v));
#else
  return (v > -2147483649.0 && v < 2147483648.0) ? static_cast<long>(static_cast<int32_t>(v))
                                                 : static_cast<long>(INT32_MIN);
#endif
}

/// Rounds half away from zero: adds 0.5 to a positive value and subtracts it from any
/// other, then truncates toward zero (2.5 gives 3, -2.5 gives -3, -0.4 gives 0).
inline long round32(double v) { return truncate32(v + std::copysign(0.5, v)); }

/// Remainder of the truncating division by a full turn: keeps the sign of `a`, so the
/// result lies strictly between -SYS_FullTurn and SYS_FullTurn.
inline long reduceAngle(long a) { return cut32(a) % SYS_FullTurn; }

/// An angle in radians: angle × π × (1/half turn), multiplied in that order.
inline double angleToRadians(long angle) { return static_cast<double>(angle) * SYS_Pi * (1.0 / 324000000.0); }
/// Radians in angle units: × half turn × (1/π), truncated toward zero.
inline long radiansToAngle(double radians) { return truncate32(radians * 324000000.0 * SYS_InvPi); }

/// 1 when `v` is strictly inside the coordinate limit on both sides.
inline int isWithinLimit(long v) { return v > -SYS_CoordLimit && v < SYS_CoordLimit; }
inline int isWithinLimit(double v) {
  return v > -static_cast<double>(SYS_CoordLimit) && v < static_cast<double>(SYS_CoordLimit);
}

}  // namespace sysgeom

#endif
