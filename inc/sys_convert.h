//===- inc/sys_convert.h - Base units to display units and back ---------===//
//
// Coordinates live in integer base units (38,100,000 per inch, 1,500,000 per
// millimetre); the user sees them in mils, millimetres, inches or
// micrometres. A SYS_Convert holds one user's display choices and formats and
// parses coordinates, lengths, points and angles with them. Numbers are read
// and written with "." as the decimal point whatever locale the host set, and
// `long` values behave as 32-bit integers in both data models.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_CONVERT_H
#define BFC_SYS_CONVERT_H

#include "sys_base.h"
#include "sys_point.h"
#include "sys_stdinterface.h"
#include "sys_string.h"

/// The display units. Their names are the host's texts 45104 to 45107, fetched when the
/// library loads (empty when the host supplies none).
enum SYS_UnitType {
  SYS_UnitMil = 0,         ///< 38,100 base units, 2 decimals by default
  SYS_UnitMillimetre = 1,  ///< 1,500,000 base units, 5 decimals
  SYS_UnitInch = 2,        ///< 38,100,000 base units, 5 decimals
  SYS_UnitMicrometre = 3,  ///< 1,500 base units, 2 decimals
};
constexpr int SYS_UnitTypeCount = 4;

/// One user's display choices (unit, origin, precisions, zero trimming) and the
/// conversions, formatting and parsing that follow from them. A value: copies are free.
class BFC_API SYS_Convert {
public:
  /// The largest precision used; larger ones are taken as this.
  static constexpr int MaxPrecision = 20;
  /// A buffer of this many bytes holds every text that Base2Str and Angle2Str write.
  static constexpr int BufferSize = 40;
  /// What User2Base gives for a value beyond the 32-bit range.
  static constexpr long OverflowValue = -2147483647L - 1;

  /// The unit types for lists in the user interface: handles 1 to 4 stand for the types 0
  /// to 3. Walk it with GetFirst, IsValid, GetNext.
  class BFC_API UnitTypeObj : public SYS_StdInterface {
  public:
    UnitTypeObj() : SYS_StdInterface(SYS_UnitTypeCount) {}
    UnitTypeObj(UnitTypeObj const &other) = default;
    UnitTypeObj &operator=(UnitTypeObj const &other) = default;

    /// The unit type of the current handle (handle - 1); meaningful while IsValid().
    SYS_UnitType GetType() const { return static_cast<SYS_UnitType>(GetHandle() - 1); }
    /// Its display name; empty while not IsValid().
    char const *GetName() const;
  };

  // Construction and settings. Every constructor goes through SetData; a unit type that is
  // not one of the four is ignored wherever it is given (the unit stays, mil at first).
  SYS_Convert();
  explicit SYS_Convert(SYS_UnitType type);
  explicit SYS_Convert(SYS_Point const &origin);
  SYS_Convert(SYS_UnitType type, SYS_Point const &origin);

  /// Sets the unit and origin, turns zero trimming on, and resets every unit precision to
  /// its unit's default and the angle precision to 3.
  void SetData(SYS_UnitType type, SYS_Point const &origin);
  SYS_UnitType GetUnitType() const { return m_UnitType; }
  /// Changes the unit; every unit keeps its own precision.
  void SetUnitType(SYS_UnitType type);
  SYS_Point GetOrigin() const { return m_Origin; }
  void SetOrigin(SYS_Point const &origin) { m_Origin = origin; }
  /// The precision (decimals) of the current unit only.
  int GetUnitPrecision() const { return m_UnitPrecision[m_UnitType]; }
  /// Stores the precision of the current unit, limited to 0 to MaxPrecision.
  void SetUnitPrecision(int precision);
  int GetAnglePrecision() const { return m_AnglePrecision; }
  /// Stores the angle precision, limited to 0 to MaxPrecision.
  void SetAnglePrecision(int precision);
  int IsZeroTrimMode() const { return m_ZeroTrimMode; }
  /// Stored as given; non-zero removes trailing zeros from formatted numbers.
  void SetZeroTrimMode(int mode) { m_ZeroTrimMode = mode; }
  /// The display name of the current unit.
  char const *GetUnitName() const;
  /// The display name of `type`; empty for a value that is not a unit type.
  static char const *GetUnitName(SYS_UnitType type);
  /// The minimum routing grid in base units: 1.
  long GetMinRoutingGrid() const { return 1; }

  // Numbers; f is the current unit's size in base units.
  /// u × f rounded half away from zero; OverflowValue when abs(u) > 2,147,483,647 / f (or u
  /// is not a number).
  long User2Base(double u) const;
  /// u × f.
  double User2BaseDouble(double u) const;
  /// b / f.
  double Base2User(double b) const;
  double Base2User(long b) const;
  double Base2User(int b) const { return Base2User(static_cast<long>(b)); }

  // Parsing. Each returns 1 and stores the value, or returns 0 and leaves `*value` as it
  // was. A range error held in errno is cleared first; other errno values are left alone.
  // Leading white space is skipped; any character after the number, a trailing blank
  // included, fails; so does a number out of range (errno is then the range error). The
  // empty text succeeds with 0, a text of blanks fails. Null `text` is the empty text; a
  // null `value` only receives nothing.
  /// A decimal floating-point number (no hexadecimal, "inf" or "nan").
  static int Str2Double(char const *text, double *value);
  /// A decimal integer within the 32-bit range.
  static int Str2Long(char const *text, long *value);
  /// A number in the current unit, in base units within -1,066,800,000 to 1,066,800,000
  /// inclusive.
  int Str2Base(char const *text, long *value) const;
  /// A length in the current unit, in base units; fails for a negative number and when
  /// the conversion overflows (no coordinate limit).
  int Str2Measure(char const *text, long *value) const;
  /// Degrees in angle units: the number × 1,800,000 truncated toward zero; no range check
  /// (beyond the 32-bit range the result is OverflowValue).
  static int Str2Angle(char const *text, long *value);
  /// Removes trailing zeros in place when the text has a decimal point, and then the point
  /// when it ends the text: "1.500" to "1.5", "2.000" to "2", "120" stays. Returns `number`.
  static char *TrimStrNumber(char *number);

  // Formatting: "%.*f" with the precision, trimmed when zero-trim mode is on. The forms
  // with a buffer write into `buffer` (BufferSize bytes suffice) and return it; null
  // writes nothing and gives null. The twins with a prefix return the prefix followed by
  // the same text.
  /// Base2User(b) at the current unit's precision.
  char *Base2Str(char *buffer, long b) const;
  SYS_String Base2Str(long b) const;
  /// A length: Base2Str(b), no origin.
  SYS_String Measure2String(long b) const { return Base2Str(b); }
  SYS_String Measure2String(SYS_String const &prefix, long b) const;
  /// x - origin x, and y - origin y (32-bit differences).
  SYS_String CoordX2String(long x) const;
  SYS_String CoordX2String(SYS_String const &prefix, long x) const;
  SYS_String CoordY2String(long y) const;
  SYS_String CoordY2String(SYS_String const &prefix, long y) const;
  /// "(x,y)" of the two coordinate texts.
  SYS_String Point2String(SYS_Point const &p) const;
  SYS_String Point2String(SYS_String const &prefix, SYS_Point const &p) const;
  /// Degrees at the angle precision, computed as a × 5.555555555555555e-07 (which lies a
  /// little below a / 1,800,000: 2,700 gives "0.001" at precision 3).
  char *Angle2Str(char *buffer, long a) const;
  SYS_String Angle2Str(long a) const;

  // The minimum routing grid.
  /// v moved to the nearest multiple of the grid; half a step off moves away from zero.
  long AlignToMinRoutingGrid(long v) const;
  SYS_Point AlignToMinRoutingGrid(SYS_Point const &p) const;
  /// 1 when v (both coordinates of p) is a multiple of the grid.
  int IsAlignedToMinRoutingGrid(long v) const;
  int IsAlignedToMinRoutingGrid(SYS_Point const &p) const;

private:
  /// Formats the text of Base2Str into `text` (BufferSize bytes); returns its length.
  int formatBase(char *text, long b) const;
  int formatAngle(char *text, long a) const;

  // m_UnitType is always one of the four types: it indexes m_UnitPrecision.
  SYS_UnitType m_UnitType;
  SYS_Point m_Origin;
  int m_ZeroTrimMode;
  int m_UnitPrecision[SYS_UnitTypeCount];
  int m_AnglePrecision;
};

#endif
