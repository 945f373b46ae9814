//===- examples/demo/demo_geometry.cpp - Geometry: placing a part --------===//
//
// The host places a part on the bottom side of the board: its position
// becomes a transform, the outline and a pad arc are mapped, and the
// courtyard is cut against a keep-out area.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

namespace {

double mm(long v) { return static_cast<double>(v) / SYS_BaseUnitsPerMm; }
long fromMm(double v) { return sysgeom::round32(v * SYS_BaseUnitsPerMm); }
double degrees(long a) { return static_cast<double>(a) / SYS_AngleUnitsPerDegree; }

void printBox(char const *label, SYS_Box const &b) {
  std::printf("  %-22s (%.3f, %.3f) - (%.3f, %.3f) mm\n", label, mm(b.GetLeft()), mm(b.GetLower()), mm(b.GetRight()),
              mm(b.GetUpper()));
}

void printArc(char const *label, SYS_Arc const &a) {
  std::printf("  %-22s (%.3f, %.3f) -> (%.3f, %.3f) about (%.3f, %.3f), r %.3f, sweep %.1f deg\n", label,
              mm(a.GetStart().GetX()), mm(a.GetStart().GetY()), mm(a.GetEnd().GetX()), mm(a.GetEnd().GetY()),
              mm(a.GetCenter().GetX()), mm(a.GetCenter().GetY()), mm(a.GetRadius()), degrees(a.GetSizeAngle()));
}

}  // namespace

void demoGeometry() {
  demoHeading("Geometry: placing a part");

  // The part in its own coordinates: a 6 x 4 mm body and a round-ended pad on the right.
  SYS_Box const outline(fromMm(-3), fromMm(-2), fromMm(3), fromMm(2));
  SYS_Arc const padEnd(SYS_Point(fromMm(2), fromMm(-0.5)), SYS_Point(fromMm(2), fromMm(0.5)),
                       SYS_Point(fromMm(2), 0), fromMm(0.5));
  std::printf("Part U7, local coordinates:\n");
  printBox("outline", outline);
  printArc("pad end (ccw)", padEnd);
  printBox("pad end box", padEnd.GetBox());

  // Placed at (50, 30) mm, turned 90 degrees, on the bottom side (mirrored after turning).
  SYS_Position const position(fromMm(50), fromMm(30), 90 * SYS_AngleUnitsPerDegree, 1);
  SYS_Transform const place(position, 0, 1, 0);
  std::printf("Placement at (%.3f, %.3f) mm, %.1f deg, mirrored %d: transform orientation %.1f deg, mirrors %d\n",
              mm(position.GetOrigin().GetX()), mm(position.GetOrigin().GetY()), degrees(position.GetOrientation()),
              position.GetMirror(), degrees(place.GetOrientation()), place.GetMirror());

  SYS_Box placedOutline = outline;
  placedOutline.Transform(place);
  printBox("placed outline", placedOutline);

  SYS_Arc placedPad = padEnd;
  placedPad.Transform(place);
  printArc("pad end, points mapped", placedPad);
  // Transforms leave radii alone; a mirror reverses the walking direction, so the host
  // flips the radius sign to keep the same side of the circle.
  if (place.GetMirror()) placedPad.SetRadius(-placedPad.GetRadius());
  printArc("pad end, placed", placedPad);
  printBox("placed pad end box", placedPad.GetBox());
  long angle = padEnd.GetStartAngle(), sweep = padEnd.GetSizeAngle();
  place.Convert(angle, sweep);
  std::printf("  start angle and sweep mapped: %.1f deg, %.1f deg (placed arc says %.1f deg, %.1f deg)\n",
              degrees(angle), degrees(sweep), degrees(placedPad.GetStartAngle()), degrees(placedPad.GetSizeAngle()));

  // The courtyard is the outline grown by 0.25 mm; a keep-out along the board's left
  // edge takes a bite out of it.
  SYS_Box courtyard = placedOutline;
  courtyard.Expand(fromMm(0.25));
  SYS_Box const keepOut(fromMm(40), fromMm(25), fromMm(49), fromMm(40));
  printBox("courtyard", courtyard);
  printBox("keep-out", keepOut);
  SYS_Box pieces[4];
  int const n = keepOut.Clip(courtyard, pieces);
  std::printf("  courtyard outside the keep-out: %d piece%s\n", n, n == 1 ? "" : "s");
  for (int i = 0; i < n; ++i) printBox("  piece", pieces[i]);
  SYS_Box overlap;
  std::printf("  overlap with the keep-out: %s\n", overlap.SetAsIntersection(courtyard, keepOut) ? "yes" : "no");

  // The reference designator travels with the part.
  SYS_TextStyle style;
  style.SetFont("Stroke");
  style.SetHeight(fromMm(1));
  SYS_Text reference;
  reference.SetStyle(style);
  reference.SetString("U7");
  SYS_Position label(0, fromMm(2.5), 0, 0);
  label.Transform(place);
  reference.SetPosition(label);
  SYS_Position const at = reference.GetPosition();
  std::printf("  text %s (%s, %.3f mm) at (%.3f, %.3f) mm, %.1f deg, mirrored %d\n",
              static_cast<char const *>(reference.GetString()), static_cast<char const *>(style.GetFont()),
              mm(reference.GetStyle()->GetHeight()), mm(at.GetOrigin().GetX()), mm(at.GetOrigin().GetY()),
              degrees(at.GetOrientation()), at.GetMirror());
}
