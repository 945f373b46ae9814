//===- tools/svg_drawarea.cpp - Drawing calls written as SVG elements ---===//
//
// The elements sit in a group flipped on y, so their coordinates are the base
// units given; texts flip back so that they read upright. A pen of width 0 is
// one pixel wide.
//
//===------------------------------------------------------------------===//
#include "svg_drawarea.h"

#include "ui_dynamic.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>

namespace {

constexpr int kXorPenMode = 2;
constexpr long kDefaultTextHeight = SYS_BaseUnitsPerMm;
constexpr double kPi = 3.141592653589793;

/// A number as SVG wants it: integers without a point, others to a tenth of a unit.
std::string number(double v) {
  char text[40];
  if (v == std::floor(v) && std::fabs(v) < 1e15)
    std::snprintf(text, sizeof text, "%.0f", v);
  else
    std::snprintf(text, sizeof text, "%.1f", v);
  return text;
}

std::string colourText(int colour) {
  char text[8];
  std::snprintf(text, sizeof text, "#%06x", static_cast<unsigned>(colour) & 0xFFFFFFu);
  return text;
}

/// Bytes that are no valid UTF-8, and control characters XML forbids, become U+FFFD.
std::string escapeText(char const *text) {
  std::string out;
  auto const *p = reinterpret_cast<unsigned char const *>(text);
  while (*p != 0) {
    unsigned char const b = *p;
    int length = 1;
    bool valid = true;
    if (b < 0x80) {
      valid = b >= 0x20 || b == '\t' || b == '\n';
    } else {
      length = b >= 0xC2 && b <= 0xDF ? 2 : b >= 0xE0 && b <= 0xEF ? 3 : b >= 0xF0 && b <= 0xF4 ? 4 : 0;
      for (int k = 1; k < length && valid; ++k) valid = (p[k] & 0xC0) == 0x80;
      // No overlong forms, surrogates or values above U+10FFFF.
      if (valid && length == 3) valid = !(b == 0xE0 && p[1] < 0xA0) && !(b == 0xED && p[1] > 0x9F);
      if (valid && length == 4) valid = !(b == 0xF0 && p[1] < 0x90) && !(b == 0xF4 && p[1] > 0x8F);
      if (length == 0) valid = false, length = 1;
      if (!valid) length = 1;
    }
    if (!valid) {
      out += "\xEF\xBF\xBD";
    } else if (b == '&') {
      out += "&amp;";
    } else if (b == '<') {
      out += "&lt;";
    } else if (b == '>') {
      out += "&gt;";
    } else {
      out.append(reinterpret_cast<char const *>(p), static_cast<size_t>(length));
    }
    p += length;
  }
  return out;
}

/// The characters of UTF-8 text: every byte but continuation bytes.
long characterCount(char const *text) {
  long count = 0;
  for (auto const *p = reinterpret_cast<unsigned char const *>(text); *p != 0; ++p) count += (*p & 0xC0) != 0x80;
  return count;
}

SYS_Box normalized(SYS_Box box) {
  box.Normalize();
  return box;
}

}  // namespace

SvgDrawArea::SvgDrawArea(SYS_Box view, int widthPixels) : m_View(normalized(view)), m_WidthPixels(widthPixels) {
  if (m_View.GetDX() == 0) m_View.SetRight(m_View.GetLeft() + SYS_BaseUnitsPerMm);
  if (m_View.GetDY() == 0) m_View.SetUpper(m_View.GetLower() + SYS_BaseUnitsPerMm);
  if (m_WidthPixels < 1) m_WidthPixels = 1;
  m_PixelsPerUnit = static_cast<double>(m_WidthPixels) / static_cast<double>(m_View.GetDX());
}

SvgDrawArea::~SvgDrawArea() {
  RedrawBlock block{m_View};
  m_RedrawEvent.Notify(2, &block);
}

int SvgDrawArea::GetHeightPixels() const {
  return std::max(1, static_cast<int>(std::lround(m_View.GetDY() * m_PixelsPerUnit)));
}

std::string SvgDrawArea::GetDocument() const {
  std::string const left = number(m_View.GetLeft()), lower = number(m_View.GetLower());
  std::string const width = number(m_View.GetDX()), height = number(m_View.GetDY());
  std::string doc = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  // y up: the group flips the base-unit plane, so the view box spans -upper to -lower.
  doc += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(m_WidthPixels) + "\" height=\"" +
         std::to_string(GetHeightPixels()) + "\" viewBox=\"" + left + " " + number(-static_cast<double>(m_View.GetUpper())) +
         " " + width + " " + height + "\">\n";
  doc += "<g transform=\"scale(1 -1)\">\n";
  doc += "<rect x=\"" + left + "\" y=\"" + lower + "\" width=\"" + width + "\" height=\"" + height + "\" fill=\"" +
         colourText(m_BackColour) + "\"/>\n";
  for (auto const &element : m_Elements) doc += element.markup + "\n";
  doc += "</g>\n</svg>\n";
  return doc;
}

int SvgDrawArea::WriteFile(char const *path) const {
  if (path == nullptr) return 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  std::string const doc = GetDocument();
  file.write(doc.data(), static_cast<std::streamsize>(doc.size()));
  file.close();
  return file ? 1 : 0;
}

void SvgDrawArea::Erase() {
  m_Elements.clear();
  for (auto &layer : m_Layers) layer.second = false;
}

int SvgDrawArea::Scale2ScreenX(long length) {
  double const v = static_cast<double>(length) * m_PixelsPerUnit;
  return static_cast<int>(sysgeom::round32(v));
}

int SvgDrawArea::Scale2ScreenY(long length) { return Scale2ScreenX(length); }

double SvgDrawArea::GetScale(SYS_Point *) { return m_PixelsPerUnit; }

void SvgDrawArea::Redraw() {
  Erase();
  RedrawBlock block{m_View};
  m_RedrawEvent.Notify(1, &block);
  // Every installed layer is connected, so each has drawn itself again.
  for (auto &layer : m_Layers) layer.second = true;
}

void SvgDrawArea::InstallDynamic(CDynamic *layer) {
  if (layer == nullptr) return;
  m_RedrawEvent.Append(*layer);
  // A new layer may live where an old one did: its drawing is not shown yet either way.
  auto const found = std::find_if(m_Layers.begin(), m_Layers.end(), [layer](auto const &l) { return l.first == layer; });
  if (found != m_Layers.end())
    found->second = false;
  else
    m_Layers.emplace_back(layer, false);
}

void SvgDrawArea::RedrawDynamic(CDynamic *layer, SYS_Box *, int appear) {
  if (layer != nullptr) showLayer(layer, appear != 0);
}

void SvgDrawArea::showLayer(CDynamic *layer, bool shown) {
  auto const found = std::find_if(m_Layers.begin(), m_Layers.end(), [layer](auto const &l) { return l.first == layer; });
  if (found != m_Layers.end()) {
    if (found->second == shown) return;
    found->second = shown;
  }
  // The replay is the layer's own, reached through the surface interface; in XOR it adds
  // the drawing when hidden and takes it away when shown.
  static_cast<UI_DrawArea &>(*layer).Redraw();
}

void SvgDrawArea::LayerEvent::OnDisconnect(SCC_EventNode<RedrawBlock> *node) {
  SCC_Event<RedrawBlock>::OnDisconnect(node);
  auto &layers = m_Surface.m_Layers;
  layers.erase(std::remove_if(layers.begin(), layers.end(),
                              [node](auto const &l) { return static_cast<SCC_EventNode<RedrawBlock> *>(l.first) == node; }),
               layers.end());
}

void SvgDrawArea::RegisterRedrawHook(SCC_EventHook<RedrawBlock> *hook) {
  if (hook != nullptr) m_RedrawEvent.Insert(*hook);
}

void SvgDrawArea::draw(std::string markup, bool isXor) {
  if (isXor) {
    for (auto it = m_Elements.rbegin(); it != m_Elements.rend(); ++it) {
      if (it->isXor && it->markup == markup) {
        m_Elements.erase(std::next(it).base());
        return;
      }
    }
  }
  m_Elements.push_back(Element{std::move(markup), isXor});
}

std::string SvgDrawArea::stroke(int colour, long width) const {
  static char const *const caps[] = {"round", "square", "butt"};
  std::string s = " fill=\"none\" stroke=\"" + colourText(colour) + "\" stroke-linecap=\"" +
                  caps[m_PenCap >= 0 && m_PenCap <= 2 ? m_PenCap : 0] + "\"";
  // A hairline is one pixel wide at the picture's scale.
  double const units = width > 0 ? static_cast<double>(width) : std::max(1.0, std::round(1.0 / m_PixelsPerUnit));
  s += " stroke-width=\"" + number(units) + "\"";
  return s;
}

void SvgDrawArea::FillRect(SYS_Box box, int colour) {
  box.Normalize();
  draw("<rect x=\"" + number(box.GetLeft()) + "\" y=\"" + number(box.GetLower()) + "\" width=\"" +
           number(box.GetDX()) + "\" height=\"" + number(box.GetDY()) + "\" fill=\"" + colourText(colour) + "\"/>",
       m_PenMode == kXorPenMode);
}

void SvgDrawArea::DrawXorBox(SYS_Box box) {
  box.Normalize();
  draw("<rect x=\"" + number(box.GetLeft()) + "\" y=\"" + number(box.GetLower()) + "\" width=\"" +
           number(box.GetDX()) + "\" height=\"" + number(box.GetDY()) + "\"" + stroke(m_PenColour, m_PenSize) + "/>",
       true);
}

void SvgDrawArea::DrawXorBox(SYS_Point corner1, SYS_Point corner2) { DrawXorBox(SYS_Box(corner1, corner2)); }

SYS_Box SvgDrawArea::DrawXorText(char const *text, int height, int align, long x, long y, int flag) {
  if (text == nullptr) text = "";
  long const h = height > 0 ? height : kDefaultTextHeight;
  // A stroke font's advance is about 0.6 of its height.
  long const width = std::lround(0.6 * static_cast<double>(h) * static_cast<double>(characterCount(text)));
  long const left = align == 1 ? x - width / 2 : align == 2 ? x - width : x;
  if (flag != 0) {
    static char const *const anchors[] = {"start", "middle", "end"};
    // Renderers choke on fonts millions of units high: the text is set 100 high and scaled
    // to its height, flipped back upright at its baseline.
    draw("<text transform=\"translate(" + number(x) + " " + number(y) + ") scale(" + number(h / 100.0) + " " +
             number(-h / 100.0) + ")\" font-family=\"sans-serif\" font-size=\"100\" text-anchor=\"" +
             anchors[align >= 0 && align <= 2 ? align : 0] + "\" fill=\"" + colourText(m_PenColour) + "\">" +
             escapeText(text) + "</text>",
         true);
  }
  return SYS_Box(left, y, left + width, y + h);
}

SYS_Box SvgDrawArea::DrawXorText(char const *text, int height, int align, SYS_Point position, int flag) {
  return DrawXorText(text, height, align, position.GetX(), position.GetY(), flag);
}

void SvgDrawArea::FastLineTo(SYS_Point const &p) {
  draw("<line x1=\"" + number(m_Cursor.GetX()) + "\" y1=\"" + number(m_Cursor.GetY()) + "\" x2=\"" + number(p.GetX()) +
           "\" y2=\"" + number(p.GetY()) + "\"" + stroke(m_PenColour, m_PenSize) + "/>",
       m_PenMode == kXorPenMode);
  m_Cursor = p;
}

void SvgDrawArea::FastFrameOval(SYS_Box const &given) {
  SYS_Box const box = normalized(given);
  draw("<ellipse cx=\"" + number((static_cast<double>(box.GetLeft()) + box.GetRight()) / 2) + "\" cy=\"" +
           number((static_cast<double>(box.GetLower()) + box.GetUpper()) / 2) + "\" rx=\"" +
           number(box.GetDX() / 2.0) + "\" ry=\"" + number(box.GetDY() / 2.0) + "\"" +
           stroke(m_PenColour, m_PenSize) + "/>",
       m_PenMode == kXorPenMode);
}

void SvgDrawArea::FastPolyPolyline(SYS_Point *points, unsigned long const *counts, int count) {
  if (points == nullptr || counts == nullptr) return;
  SYS_Point const *p = points;
  for (int i = 0; i < count; ++i) {
    std::string list;
    for (unsigned long k = 0; k < counts[i]; ++k, ++p)
      list += (k != 0 ? " " : "") + number(p->GetX()) + "," + number(p->GetY());
    draw("<polyline points=\"" + list + "\"" + stroke(m_PenColour, m_PenSize) + "/>", m_PenMode == kXorPenMode);
  }
}

void SvgDrawArea::FastFrameArc(SYS_Box const &given, SYS_Point const &from, SYS_Point const &to) {
  SYS_Box const box = normalized(given);
  double const cx = (static_cast<double>(box.GetLeft()) + box.GetRight()) / 2;
  double const cy = (static_cast<double>(box.GetLower()) + box.GetUpper()) / 2;
  double const rx = box.GetDX() / 2.0, ry = box.GetDY() / 2.0;
  if (rx == 0 || ry == 0) {
    DrawLine(from, to, m_PenSize, m_PenColour);
    return;
  }
  // The ends lie where the rays from the centre through the two points meet the ellipse;
  // the arc runs counter-clockwise (y up) from the first to the second.
  auto angleOf = [&](SYS_Point const &p) { return std::atan2((p.GetY() - cy) / ry, (p.GetX() - cx) / rx); };
  double const a1 = angleOf(from), a2 = angleOf(to);
  double sweep = a2 - a1;
  while (sweep <= 0) sweep += 2 * kPi;
  auto at = [&](double a) { return number(cx + rx * std::cos(a)) + " " + number(cy + ry * std::sin(a)); };
  std::string const radii = number(rx) + " " + number(ry);
  std::string d = "M " + at(a1);
  if (sweep >= 2 * kPi) {
    // A full turn is two half arcs: one arc cannot start and end at the same point.
    d += " A " + radii + " 0 0 1 " + at(a1 + kPi) + " A " + radii + " 0 0 1 " + at(a1);
  } else {
    d += " A " + radii + " 0 " + (sweep > kPi ? "1" : "0") + " 1 " + at(a2);
  }
  draw("<path d=\"" + d + "\"" + stroke(m_PenColour, m_PenSize) + "/>", m_PenMode == kXorPenMode);
}

void SvgDrawArea::DrawLine(SYS_Point const &from, SYS_Point const &to, long width, int colour) {
  draw("<line x1=\"" + number(from.GetX()) + "\" y1=\"" + number(from.GetY()) + "\" x2=\"" + number(to.GetX()) +
           "\" y2=\"" + number(to.GetY()) + "\"" + stroke(colour, width) + "/>",
       m_PenMode == kXorPenMode);
}
