//===- inc/sys_geometry.h - Geometry iterators and geometry objects -----===//
//
// Generic code asks the host's geometry for its shapes through these two
// bases. The library answers "nothing" everywhere; the host overrides what
// its objects hold.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_GEOMETRY_H
#define BFC_SYS_GEOMETRY_H

#include "sys_base.h"
#include "sys_stdinterface.h"

class SYS_Point;
class SYS_DoublePoint;
class SYS_Location;
class SYS_Circle;
class SYS_Segment;
class SYS_Arc;
class SYS_Box;

/// The kind of a geometry; 0 means none, the host numbers the others.
enum SYS_GeometryType : int { SYS_NoGeometry = 0 };

/// A cursor over the host's geometry that answers the value of its current element in each
/// shape type. The eight value operations follow the cursor's own in the virtual table, in
/// the order declared here; each returns 0 or null in the library.
class BFC_API SYS_GeomIterator : public SYS_StdInterface {
public:
  SYS_GeomIterator() : SYS_StdInterface(0) {}
  SYS_GeomIterator(SYS_GeomIterator const &other) = default;
  SYS_GeomIterator &operator=(SYS_GeomIterator const &other) = default;

  virtual SYS_GeometryType GetObjectType();
  virtual SYS_Point *GetPointValue();
  virtual SYS_DoublePoint *GetDoublePointValue();
  virtual SYS_Location *GetLocationValue();
  virtual SYS_Circle *GetCircleValue();
  virtual SYS_Segment *GetSegmentValue();
  virtual SYS_Arc *GetArcValue();
  virtual SYS_Box *GetRectangleValue();
};

/// The base of the host's objects that report their geometry type. It has no data; the
/// library's answers are 0.
class BFC_API SYS_Geometry {
public:
  SYS_Geometry() = default;
  SYS_Geometry(SYS_Geometry const &) = default;
  SYS_Geometry &operator=(SYS_Geometry const &) = default;

  virtual SYS_GeometryType GetGeometry();
  virtual int IsValid() const;
};

#endif
