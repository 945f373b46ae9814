//===- tests/ui_dynamic_replay_test.cpp - Replaying the XOR layer -------===//
#include "tests/ui_log_surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

using uitest::LogSurface;
using uitest::OpenLayer;
using uitest::str;
using uitest::wordsOf;

namespace {

typedef std::vector<std::string> Log;

/// Replays `layer` and returns what its surface was told.
Log replay(OpenLayer &layer, LogSurface &surface) {
  surface.log.clear();
  layer.replay();
  return surface.log;
}

}  // namespace

// The notification codes 0 and 1 replay the layer; others do nothing; the answer is 0.
TEST(DynamicReplay, NotificationCodes) {
  LogSurface surface;
  CDynamic layer(&surface);
  layer.PenColor(1);
  for (int code : {0, 1, 3, -1, 100}) {
    SCOPED_TRACE(code);
    surface.log.clear();
    EXPECT_EQ(layer.OnNotification(code, nullptr), 0);
    bool const replays = code == 0 || code == 1;
    EXPECT_EQ(surface.log, (replays ? Log{"GetPenMode", "PenColor(1)", "PenMode(13)"} : Log{}));
  }
  EXPECT_EQ(layer.OnNotification(2, nullptr), 0);
  EXPECT_EQ(layer.GetDrawArea(), nullptr);
}

// Words that are no command are skipped one by one; a command cut short by the end of the
// list, or whose counts cannot be read whole, ends the walk; the pen mode is restored.
TEST(DynamicReplay, MalformedLists) {
  struct Case { char const *name; std::vector<int32_t> words; Log drawn; } const cases[] = {
      {"unknown words", {10, -1, 0, 4}, {"PenColor(4)"}},
      {"a known code as operand of an unknown one", {42, 1, 7}, {"PenSize(7)"}}, {"pen colour cut short", {0}, {}},
      {"box cut short", {0, 1, 2, 1, 2, 3}, {"PenColor(1)"}}, {"fill without its colour", {4, 0, 0, 1, 1}, {}},
      {"line cut short", {6, 0, 0, 1, 1, 1}, {}}, {"arc cut short", {7, 0, 0, 1, 1, 1, 1, 1, 1, 1}, {}},
      {"text longer than the list", {5, 0, 0, 0, 0, 3, 97, 0}, {}},
      {"text with a negative length", {5, 0, 0, 0, 0, -1, 0, 0}, {}},
      {"text without its 0 gets one", {5, 0, 0, 0, 0, 2, 97, 98}, {"DrawXorTextAt(ab,0,0,0,0,1)"}},
      {"text with an early 0", {5, 0, 0, 0, 0, 3, 97, 0, 98, 0, 1}, {"DrawXorTextAt(a,0,0,0,0,1)", "PenColor(1)"}},
      {"polylines cut short", {9, 1, 2, 0, 0, 1}, {}}, {"polylines with a negative count", {9, 1, -1, 0, 0}, {}},
      {"polylines with a negative n", {9, -1, 0, 1}, {}}, {"polylines: counts past the end", {9, 3, 1}, {}},
      {"a whole command after garbage", {99, 2, 1, 2, 3, 4}, {"DrawXorBox(1,2,3,4)"}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    LogSurface surface;
    OpenLayer layer(&surface);
    layer.append(c.words);
    Log expected{"GetPenMode"};
    expected.insert(expected.end(), c.drawn.begin(), c.drawn.end());
    expected.push_back("PenMode(13)");
    EXPECT_EQ(replay(layer, surface), expected);
  }
}

// A text of more than 1,024 words (possible only in a crafted list) is replayed whole.
TEST(DynamicReplay, LongCraftedText) {
  LogSurface surface;
  OpenLayer layer(&surface);
  std::vector<int32_t> words{5, 1, 2, 3, 4, 2001};
  words.insert(words.end(), 2000, 'z');
  words.push_back(0);
  layer.append(words);
  Log const log = replay(layer, surface);
  ASSERT_EQ(log.size(), 3u);
  EXPECT_EQ(log[1], "DrawXorTextAt(" + std::string(2000, 'z') + ",3,4,1,2,1)");
}

// A surface that records into the layer while it is replayed moves the layer's words; the replay reads them afresh and
// also draws what was added. One that clears the layer ends the replay, and the pen mode is still put back.
TEST(DynamicReplay, SurfaceRecordsOrClearsDuringReplay) {
  LogSurface surface;
  OpenLayer layer(&surface);
  layer.DrawXorBox(SYS_Box(0, 0, 1, 1));
  bool added = false;
  surface.onCall = [&](std::string const &entry) {
    if (entry.rfind("DrawXorBox(", 0) == 0 && !added) {
      added = true;
      for (int i = 0; i < 1000; ++i) layer.PenCap(i);  // grows the list past its block
    }
  };
  Log const log = replay(layer, surface);
  ASSERT_EQ(log.size(), 1003u);
  EXPECT_EQ(log[2], "PenCap(0)");
  EXPECT_EQ(log[1001], "PenCap(999)");
  EXPECT_EQ(log.back(), "PenMode(13)");

  surface.onCall = [&](std::string const &entry) {
    if (entry == "PenCap(1)") layer.Clear();
  };
  Log const cleared = replay(layer, surface);
  EXPECT_EQ(cleared[cleared.size() - 2], "RedrawDynamic(0,0,0,1,1)");
  EXPECT_EQ(cleared.back(), "PenMode(13)");
  EXPECT_TRUE(layer.GetCommands().IsEmpty());
}

namespace {

/// A random primitive: what it records and what its replay draws, written independently
/// of the layer from the rules of each command.
struct Model {
  std::vector<int32_t> words;
  Log drawn;
  SYS_Box bounds;
  bool hasBounds = false;

  void grow(SYS_Box b) {
    b.Normalize();
    if (!hasBounds || (bounds.GetLeft() == bounds.GetRight() && bounds.GetLower() == bounds.GetUpper()))
      bounds = b;
    else
      bounds = SYS_Box(std::min(bounds.GetLeft(), b.GetLeft()), std::min(bounds.GetLower(), b.GetLower()),
                       std::max(bounds.GetRight(), b.GetRight()), std::max(bounds.GetUpper(), b.GetUpper()));
    hasBounds = true;
  }
};

}  // namespace

// Random sequences of primitives with a fixed seed record the words and bounds a plain
// model expects, and replay back into the same primitives in order, in pen mode 2 for
// ovals, fills, lines and arcs, between saving and restoring the surface's pen mode.
TEST(DynamicReplay, RandomRoundTrip) {
  std::mt19937 random(20261124);
  auto coord = [&] { return static_cast<long>(static_cast<int32_t>(random() % 2001) - 1000); };
  for (int round = 0; round < 50; ++round) {
    SCOPED_TRACE(round);
    LogSurface surface;
    surface.unitsPerPixel = 100;  // so that small ovals and arcs fall back
    OpenLayer layer(&surface);
    Model m;
    for (int step = 0; step < 20; ++step) {
      SYS_Box box(coord(), coord(), coord(), coord());
      SYS_Box norm = box;
      norm.Normalize();
      SYS_Point const p1(coord(), coord()), p2(coord(), coord());
      int const colour = static_cast<int>(random() % 16);
      long const width = static_cast<long>(random() % 50);
      bool const big = norm.GetDX() / 100 >= 2 && norm.GetDY() / 100 >= 2;
      std::string const sx = "Scale2ScreenX(" + std::to_string(norm.GetDX()) + ")";
      std::string const sy = "Scale2ScreenY(" + std::to_string(norm.GetDY()) + ")";
      switch (random() % 8) {
        case 0: {
          int const pen = static_cast<int>(random() % 3);  // colour, size or cap
          char const *const names[] = {"PenColor(", "PenSize(", "PenCap("};
          pen == 0 ? layer.PenColor(colour) : pen == 1 ? layer.PenSize(colour - 8) : layer.PenCap(colour);
          int32_t const operand = pen == 1 ? colour - 8 : colour;
          m.words.insert(m.words.end(), {pen == 2 ? 8 : pen, operand});
          m.drawn.push_back(names[pen] + std::to_string(operand) + ")");
          break;
        }
        case 1:
          layer.DrawXorBox(p1, p2);
          m.words.insert(m.words.end(), {2, int32_t(p1.GetX()), int32_t(p1.GetY()), int32_t(p2.GetX()), int32_t(p2.GetY())});
          m.drawn.push_back("DrawXorBox(" + str(p1) + "," + str(p2) + ")");
          m.grow(SYS_Box(p1, p2));
          break;
        case 2:
          layer.DrawXorOval(box);
          m.words.insert(m.words.end(), {3, int32_t(norm.GetLeft()), int32_t(norm.GetLower()), int32_t(norm.GetRight()),
                                         int32_t(norm.GetUpper())});
          m.drawn.push_back(sx), m.drawn.push_back(sy);
          if (big) m.drawn.push_back("PenMode(2)");
          m.drawn.push_back((big ? "FastFrameOval(" : "DrawXorBox(") + str(norm) + ")");
          m.grow(norm);
          break;
        case 3:
          layer.FillRect(box, colour);
          m.words.insert(m.words.end(), {4, int32_t(norm.GetLeft()), int32_t(norm.GetLower()), int32_t(norm.GetRight()),
                                         int32_t(norm.GetUpper()), colour});
          m.drawn.insert(m.drawn.end(), {"PenMode(2)", "FillRect(" + str(norm) + "," + std::to_string(colour) + ")"});
          m.grow(norm);
          break;
        case 4:
          layer.DrawLine(p1, p2, width, colour);
          m.words.insert(m.words.end(), {6, int32_t(p1.GetX()), int32_t(p1.GetY()), int32_t(p2.GetX()), int32_t(p2.GetY()),
                                         int32_t(width), colour});
          m.drawn.insert(m.drawn.end(), {"PenMode(2)", "PenColor(" + std::to_string(colour) + ")",
                                         "PenSize(" + std::to_string(width) + ")",
                                         "DrawLine(" + str(p1) + "," + str(p2) + "," + std::to_string(width) + "," +
                                             std::to_string(colour) + ")"});
          m.grow(SYS_Box(p1, p2));
          break;
        case 5:
          layer.DrawArc(box, p1, p2, width, colour);
          m.words.insert(m.words.end(), {7, int32_t(norm.GetLeft()), int32_t(norm.GetLower()), int32_t(norm.GetRight()),
                                         int32_t(norm.GetUpper()), int32_t(p1.GetX()), int32_t(p1.GetY()),
                                         int32_t(p2.GetX()), int32_t(p2.GetY()), int32_t(width), colour});
          m.drawn.insert(m.drawn.end(), {"PenMode(2)", "PenColor(" + std::to_string(colour) + ")",
                                         "PenSize(" + std::to_string(width) + ")", sx, sy,
                                         big ? "FastFrameArc(" + str(norm) + "," + str(p1) + "," + str(p2) + ")"
                                             : "DrawLine(" + str(p1) + "," + str(p2) + "," + std::to_string(width) +
                                                   "," + std::to_string(colour) + ")"});
          m.grow(norm);
          break;
        case 6: {
          std::string text;
          for (int k = static_cast<int>(random() % 5); k > 0; --k) text += static_cast<char>(0x41 + random() % 26);
          text += "\xC3\xA9";
          layer.DrawXorText(text.c_str(), colour, int(width), p1, 0);
          m.words.insert(m.words.end(), {5, int32_t(p1.GetX()), int32_t(p1.GetY()), colour, int32_t(width),
                                         int32_t(text.size() + 1)});
          for (char ch : text) m.words.push_back(static_cast<signed char>(ch));
          m.words.push_back(0);
          m.drawn.push_back("DrawXorTextAt(" + text + "," + std::to_string(colour) + "," + std::to_string(width) +
                            "," + str(p1) + ",1)");
          m.grow(surface.textBox);
          break;
        }
        default: {
          std::vector<SYS_Point> pts{p1, p2, SYS_Point(coord(), coord())};
          unsigned long counts[] = {2, 0, 1};
          layer.FastPolyPolyline(pts.data(), counts, 3);
          m.words.insert(m.words.end(), {9, 3, 2, 0, 1});
          std::string entry = "FastPolyPolyline(3;" + str(pts[0]) + " " + str(pts[1]) + ";;" + str(pts[2]) + ")";
          SYS_Box span(pts[0], pts[0]);
          for (auto const &p : pts) {
            m.words.insert(m.words.end(), {int32_t(p.GetX()), int32_t(p.GetY())});
            span.Increase(p.GetX(), p.GetY());
          }
          m.drawn.push_back(entry);
          m.grow(span);
          break;
        }
      }
    }
    EXPECT_EQ(wordsOf(layer), m.words);
    EXPECT_EQ(layer.GetBounds(), m.hasBounds ? m.bounds : SYS_Box());
    Log expected{"GetPenMode"};
    expected.insert(expected.end(), m.drawn.begin(), m.drawn.end());
    expected.push_back("PenMode(13)");
    EXPECT_EQ(replay(layer, surface), expected);
  }
}
