//===- inc/sys_transform.h - Affine transforms between coordinate spaces -===//
//
// An affine matrix in doubles plus the bookkeeping that lets integer angles,
// arc sweeps and lengths follow it: an angle factor (-1 when mirroring), the
// rotation in radians and in angle units, a sweep factor and offsets, and a
// length scale. Setters replace the transform; AddConv chains them.
//
// Two fields are deliberately not kept in step: SetRotate(p, long) and
// SetMirror(p, long) leave the rotation in radians as it was, so equal
// matrices built by different setters may compare unequal.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_TRANSFORM_H
#define BFC_SYS_TRANSFORM_H

#include "sys_arc.h"
#include "sys_location.h"

/// A two-dimensional coordinate transform: move, rotate, mirror, scale, change of
/// coordinate system, fit into a box, or a part's placement; composed and inverted.
class BFC_API SYS_Transform {
public:
  /// The identity.
  SYS_Transform() { setIdentity(); }
  SYS_Transform(SYS_Transform const &) = default;
  /// The placement of `position`: move its origin to (0, 0) (skipped when noMoveToOrigin
  /// is non-zero), mirror in the y axis first when mirrorFirst is non-zero, rotate by the
  /// orientation, mirror afterwards when mirrorFirst is 0, and move back by the origin
  /// (skipped when noMoveBack is non-zero). With noMoveToOrigin set and noMoveBack clear,
  /// a part's local point p lands on origin + R·M·p.
  SYS_Transform(SYS_Position const &position, int mirrorFirst, int noMoveToOrigin, int noMoveBack);
  SYS_Transform(SYS_Point const &origin, long orientation, int mirror, int mirrorFirst, int noMoveToOrigin,
                int noMoveBack);
  SYS_Transform(long x, long y, long orientation, int mirror, int mirrorFirst, int noMoveToOrigin, int noMoveBack);

  // Setters: each replaces the whole transform, except where it says a field is kept.
  void SetMove(double dx, double dy);
  void SetMove(long dx, long dy) { SetMove(static_cast<double>(dx), static_cast<double>(dy)); }
  /// `int` offsets are the long ones (without this, SetMove(1, 2) would be ambiguous).
  void SetMove(int dx, int dy) { SetMove(static_cast<long>(dx), static_cast<long>(dy)); }
  /// Counter-clockwise rotation about p by `angle` angle units; the orientation is the
  /// angle as given (not reduced); the rotation in radians is kept as it was.
  void SetRotate(SYS_Point const &p, long angle);
  /// Rotation about p to the direction (c, s), normalized; (nearly) zero gives (1, 0).
  /// The rotation is the direction angle in radians, the orientation that angle in angle
  /// units truncated toward zero.
  void SetRotate(SYS_Point const &p, double c, double s);
  /// Reflection in the line through p at `angle`; the orientation is twice the angle (not
  /// reduced); the rotation in radians is kept as it was.
  void SetMirror(SYS_Point const &p, long angle);
  /// Reflection in the line through p with the direction (c, s), normalized; the
  /// rotation is the direction angle of the doubled direction.
  void SetMirror(SYS_Point const &p, double c, double s);
  /// Uniform scale by s about p; a negative s is also a half turn (orientation 324,000,000).
  void SetScale(SYS_Point const &p, double s);
  /// Into the coordinate system at p turned by `angle`: rotation about p by -angle, then a
  /// move by -p.
  void SetCoordSys(SYS_Point const &p, long angle);
  /// As above with a direction; the rotation is taken with (-s, -c), the two values
  /// negated and exchanged.
  void SetCoordSys(SYS_Point const &p, double c, double s);
  /// Fits the span p1..p2 uniformly into box, centred on the box's center: the scale is
  /// the smaller of width / dx and height / dy compared with their signs. p1 and p2 must
  /// differ on both axes.
  void SetBoxConv(SYS_Point const &p1, SYS_Point const &p2, SYS_Box const &box);

  // Composition and inversion.
  /// This becomes: this first, then t.
  void AddConv(SYS_Transform const &t);
  /// This becomes: this first, then the inverse of t (the identity if t has none).
  void SubConv(SYS_Transform const &t);
  /// Writes the inverse into out: 1 on success; 0, with out the identity, when the
  /// determinant, angle factor, sweep factor or scale is below 1e-12 in magnitude.
  short SetRConv(SYS_Transform &out) const;
  /// This becomes its own inverse, or the identity when it has none.
  void RConv();
  SYS_Transform operator+(SYS_Transform const &t) const {
    SYS_Transform r(*this);
    r.AddConv(t);
    return r;
  }
  SYS_Transform operator-(SYS_Transform const &t) const {
    SYS_Transform r(*this);
    r.SubConv(t);
    return r;
  }
  /// Copies every field; returns a copy of the result.
  SYS_Transform operator=(SYS_Transform const &t) {
    copyFrom(t);
    return *this;
  }
  /// Copies every field of *t; a null t leaves this transform as it is.
  SYS_Transform operator=(SYS_Transform const *t) {
    if (t) copyFrom(*t);
    return *this;
  }
  /// Exact comparison of every field, the rotation in radians included.
  short operator==(SYS_Transform const &t) const;
  short operator!=(SYS_Transform const &t) const { return !(*this == t); }

  // Application.
  /// The point transformed in place, each coordinate rounded half away from zero.
  void Transform(SYS_Point *p) const {
    double const x = static_cast<double>(p->GetX()), y = static_cast<double>(p->GetY());
    p->Set(sysgeom::round32(m_matrix[0][0] * x + m_matrix[0][1] * y + m_matrix[0][2]),
           sysgeom::round32(m_matrix[1][0] * x + m_matrix[1][1] * y + m_matrix[1][2]));
  }
  SYS_Point Transform(SYS_Point const &p) const {
    SYS_Point r(p);
    Transform(&r);
    return r;
  }
  /// In doubles, no rounding.
  void Transform(SYS_DoublePoint *p) const {
    double const x = p->GetX(), y = p->GetY();
    p->Set(m_matrix[0][0] * x + m_matrix[0][1] * y + m_matrix[0][2],
           m_matrix[1][0] * x + m_matrix[1][1] * y + m_matrix[1][2]);
  }
  SYS_DoublePoint Transform(SYS_DoublePoint const &p) const {
    SYS_DoublePoint r(p);
    Transform(&r);
    return r;
  }
  SYS_Point operator+(SYS_Point const &p) const { return Transform(p); }
  /// The inverse applied to p; p unchanged when there is no inverse.
  SYS_Point operator-(SYS_Point const &p) const;
  void Convert(SYS_Point &p) const { Transform(&p); }
  /// A plain length times the scale, rounded half away from zero.
  void Convert(long &length) const { length = *this + length; }
  long operator+(long v) const { return sysgeom::round32(v * m_scale); }
  /// v divided by the scale, rounded half away from zero.
  long operator-(long v) const { return sysgeom::round32(v / m_scale); }
  /// Maps an arc's start angle and sweep. The angle is brought into [0, full turn] (a full
  /// turn itself stays), the orientation added, and the result brought into range again.
  /// Under a mirroring transform (angle factor -1) the angle becomes angle × angle factor
  /// + orientation, rounded half away from zero: the mirrored angle in angle units, the
  /// same rule by which AddConv composes orientations. The sweep becomes sweep × sweep
  /// factor + sweep offset truncated toward zero; any magnitude beyond a full turn gives
  /// +648,000,000, whatever the sign.
  void Convert(long &angle, long &sweep) const;
  long GetOrientation() const { return m_orientation; }

  /// 1 when the transform turns angles: angle factor not 1 (a pure mirror too) or a
  /// non-zero orientation.
  short IsRotate() const { return m_angleFactor != 1.0 || m_orientation != 0; }
  /// 1 when the transform mirrors: sweep factor not 1 or a sweep angle offset.
  short GetMirror() const { return m_sweepFactor != 1.0 || m_sweepAngleOffset != 0; }
  /// 1 when lengths are scaled.
  short IsScale() const { return m_scale != 1.0; }

  /// The matrix row-major: a, b, tx (row 0) and c, d, ty (row 1).
  double GetMatrix(int row, int column) const { return m_matrix[row != 0][column < 0 ? 0 : column > 2 ? 2 : column]; }
  double GetAngleFactor() const { return m_angleFactor; }
  double GetRotation() const { return m_rotation; }
  double GetSweepFactor() const { return m_sweepFactor; }
  double GetSweepOffset() const { return m_sweepOffset; }
  long GetSweepAngleOffset() const { return m_sweepAngleOffset; }
  double GetScale() const { return m_scale; }

private:
  void setIdentity();
  void copyFrom(SYS_Transform const &t);
  /// The matrix of a rotation about p with cosine c and sine s.
  void setRotationMatrix(SYS_Point const &p, double c, double s);
  /// The matrix of a reflection about p with cos φ = c and sin φ = s of the doubled angle.
  void setReflectionMatrix(SYS_Point const &p, double c, double s);
  void setPlacement(SYS_Point const &origin, long orientation, int mirror, int mirrorFirst, int noMoveToOrigin,
                    int noMoveBack);

  double m_matrix[2][3];
  double m_angleFactor;   // 1, or -1 for a mirroring transform
  double m_rotation;      // radians
  long m_orientation;     // angle units, not reduced
  double m_sweepFactor;   // 1, or -1 when mirrored
  double m_sweepOffset;   // 0 after every setter
  long m_sweepAngleOffset;
  double m_scale;
};

#endif
