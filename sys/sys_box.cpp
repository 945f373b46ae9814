//===- sys/sys_box.cpp - Cutting a box out of another; box transforms --===//
//
// Clip sweeps each axis separately: the ends of both boxes become marked
// breakpoints (this box +1/-1, the clipped box +2/-2), equal values merge,
// and the running sum of the marks is the coverage of the interval starting
// at each breakpoint: 0 none, 1 only this box, 2 only b, 3 both.
//
//===------------------------------------------------------------------===//
#include "sys_box.h"
#include "sys_transform.h"

namespace {

/// The merged breakpoints of one axis and the coverage of the interval from each to the
/// next. The last breakpoint closes everything (coverage 0).
struct AxisSweep {
  long value[4];
  int coverage[4];
  int count;

  AxisSweep(long thisLo, long thisHi, long bLo, long bHi) : count(0) {
    // The smaller end always opens, so an inverted box counts with its ends exchanged.
    struct Breakpoint {
      long value;
      int mark;
    } points[4] = {{thisLo < thisHi ? thisLo : thisHi, 1},
                   {thisLo < thisHi ? thisHi : thisLo, -1},
                   {bLo < bHi ? bLo : bHi, 2},
                   {bLo < bHi ? bHi : bLo, -2}};
    for (int i = 1; i < 4; ++i)  // insertion sort: four entries
      for (int j = i; j > 0 && points[j].value < points[j - 1].value; --j) {
        Breakpoint const t = points[j];
        points[j] = points[j - 1];
        points[j - 1] = t;
      }
    int sum = 0;
    for (int i = 0; i < 4; ++i) {
      sum += points[i].mark;
      if (count > 0 && value[count - 1] == points[i].value) {
        coverage[count - 1] = sum;
      } else {
        value[count] = points[i].value;
        coverage[count] = sum;
        ++count;
      }
    }
  }
};

bool coversClipped(int coverage) { return coverage == 2 || coverage == 3; }

}  // namespace

int SYS_Box::Clip(SYS_Box const &clipped, SYS_Box *out) const {
  SYS_Box const b(clipped);  // out may alias the clipped box
  AxisSweep const xs(GetLeft(), GetRight(), b.GetLeft(), b.GetRight());
  AxisSweep const ys(GetLower(), GetUpper(), b.GetLower(), b.GetUpper());

  // The y extent of the clipped box, from the first interval covering it to the end of the
  // last; none when it has no height.
  int firstY = -1, lastY = -1;
  for (int j = 0; j + 1 < ys.count; ++j)
    if (coversClipped(ys.coverage[j])) {
      if (firstY < 0) firstY = j;
      lastY = j;
    }
  if (firstY < 0) return 0;

  int n = 0;
  for (int i = 0; i + 1 < xs.count; ++i) {
    long const x1 = xs.value[i], x2 = xs.value[i + 1];
    if (xs.coverage[i] == 2) {
      out[n++] = SYS_Box(x1, ys.value[firstY], x2, ys.value[lastY + 1]);
    } else if (xs.coverage[i] == 3) {
      for (int j = 0; j + 1 < ys.count; ++j)
        if (ys.coverage[j] == 2) out[n++] = SYS_Box(x1, ys.value[j], x2, ys.value[j + 1]);
    }
  }
  return n;
}

void SYS_Box::Transform(SYS_Transform const &t) {
  SYS_Point const corners[4] = {t.Transform(m_lowerLeft), t.Transform(GetLowerRight()), t.Transform(m_upperRight),
                                t.Transform(GetUpperLeft())};
  SYS_Box box(corners[0], corners[0]);
  for (int i = 1; i < 4; ++i) box.Increase(corners[i].GetX(), corners[i].GetY());
  *this = box;
}
