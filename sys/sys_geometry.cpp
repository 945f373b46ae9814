//===- sys/sys_geometry.cpp - Default answers of the geometry bases -----===//
#include "sys_geometry.h"

SYS_GeometryType SYS_GeomIterator::GetObjectType() { return SYS_NoGeometry; }
SYS_Point *SYS_GeomIterator::GetPointValue() { return nullptr; }
SYS_DoublePoint *SYS_GeomIterator::GetDoublePointValue() { return nullptr; }
SYS_Location *SYS_GeomIterator::GetLocationValue() { return nullptr; }
SYS_Circle *SYS_GeomIterator::GetCircleValue() { return nullptr; }
SYS_Segment *SYS_GeomIterator::GetSegmentValue() { return nullptr; }
SYS_Arc *SYS_GeomIterator::GetArcValue() { return nullptr; }
SYS_Box *SYS_GeomIterator::GetRectangleValue() { return nullptr; }

SYS_GeometryType SYS_Geometry::GetGeometry() { return SYS_NoGeometry; }
int SYS_Geometry::IsValid() const { return 0; }
