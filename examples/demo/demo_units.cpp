//===- examples/demo/demo_units.cpp - Units: showing and reading coordinates ===//
//
// The host ships its unit names as data (demo.strings beside the program),
// which the library reads while it loads, and registers its messages at run
// time. Then it shows a coordinate in every unit, reads what a user typed as
// coordinates, lengths and angles, and fills a unit list.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

#include <initializer_list>

namespace {

void showHostTexts() {
  SYS_String const file = PLAT_GetProgramStringFile();
  std::printf("Texts read at load from: %s\n",
              file.IsEmpty() ? "(none: the unit names are empty)" : static_cast<char const *>(file));
  // Messages are registered once the host runs; a real host might read a translated file.
  PLAT_StringEntry const messages[] = {
      {45103, "File error %d."},
      {46000, "%s is outside the board by %s."},
  };
  PLAT_RegisterStrings(messages, 2);
  SYS_String error;
  error.Format(TR(45103), 24);
  std::printf("Message 45103 registered at run time: \"%s\"\n", static_cast<char const *>(error));
  std::printf("Unknown message 45999: \"%s\"; a literal: \"%s\"\n", static_cast<char const *>(TR(45999)),
              static_cast<char const *>(TR("as given")));
}

void showCoordinate() {
  SYS_Point const pad(40005000, -2250000);
  std::printf("Pad at (%ld,%ld) base units, origin (1500000,0), default precisions:\n", pad.GetX(), pad.GetY());
  for (int t = 0; t < SYS_UnitTypeCount; ++t) {
    SYS_Convert const conv(static_cast<SYS_UnitType>(t), SYS_Point(1500000, 0));
    SYS_Convert untrimmed(conv);
    untrimmed.SetZeroTrimMode(0);
    std::printf("  %-22s untrimmed %-26s in %s\n", static_cast<char const *>(conv.Point2String(pad)),
                static_cast<char const *>(untrimmed.Point2String(pad)), conv.GetUnitName());
  }
  SYS_Convert const mm(SYS_UnitMillimetre);
  std::printf("  -1 base unit in mm: \"%s\"; the angle 45 degrees + 900 units: \"%s\"\n",
              static_cast<char const *>(mm.Base2Str(-1L)), static_cast<char const *>(mm.Angle2Str(81000900L)));
}

/// Prints the value a parse gave, or that it refused the text.
void showParse(int ok, long value) {
  if (ok) {
    std::printf(" %-13ld", value);
  } else {
    std::printf(" %-13s", "refused");
  }
}

void parseInput() {
  SYS_Convert const inch(SYS_UnitInch);
  SYS_Convert const mm(SYS_UnitMillimetre);
  std::printf("What the user typed, in base units (coordinates limited to 28 inches):\n");
  std::printf("  %-11s %-13s %-13s %-13s %-13s %s\n", "input", "coord inch", "length inch", "coord mm",
              "length mm", "angle units");
  for (char const *typed : {"12.5", " 3", "28", "28.0001", "-1", "", "   ", "1.5 ", "90", "0.0000001"}) {
    std::printf("  %-11s", FormattedString("\"%s\"", typed).operator char const *());
    long value = 0;
    int ok = inch.Str2Base(typed, &value);
    showParse(ok, value);
    ok = inch.Str2Measure(typed, &value);
    showParse(ok, value);
    ok = mm.Str2Base(typed, &value);
    showParse(ok, value);
    ok = mm.Str2Measure(typed, &value);
    showParse(ok, value);
    ok = SYS_Convert::Str2Angle(typed, &value);
    showParse(ok, value);
    std::printf("\n");
  }
}

void listUnits() {
  std::printf("Unit list for a drop-down:");
  SYS_Convert::UnitTypeObj units;
  for (units.GetFirst(nullptr); units.IsValid(); units.GetNext())
    std::printf(" [%ld] %s", static_cast<long>(units.GetHandle()), units.GetName());
  std::printf("\n");
  PLAT_RegisterStrings(nullptr, 0);
}

}  // namespace

void demoUnits() {
  demoHeading("Units");
  showHostTexts();
  showCoordinate();
  parseInput();
  listUnits();
}
