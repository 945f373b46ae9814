//===- inc/sys_textobj.h - Text styles, attributes and placed texts -----===//
//
// Plain values describing a text in the drawing; drawing them is the host's
// business. Attributes point to their style without owning it: copies share
// the style, which must outlive them.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_TEXTOBJ_H
#define BFC_SYS_TEXTOBJ_H

#include "sys_location.h"
#include "sys_string.h"

/// A font name and a character size in base units.
class BFC_API SYS_TextStyle {
public:
  SYS_TextStyle() : m_height(0), m_width(0) {}

  SYS_String GetFont() const { return m_font; }
  /// Every setter stores its value as given and returns 1.
  int SetFont(SYS_String const &font) {
    m_font = font;
    return 1;
  }
  long GetHeight() const { return m_height; }
  long GetWidth() const { return m_width; }
  int SetHeight(long height) {
    m_height = sysgeom::cut32(height);
    return 1;
  }
  int SetWidth(long width) {
    m_width = sysgeom::cut32(width);
    return 1;
  }

private:
  SYS_String m_font;
  long m_height, m_width;
};

/// Which style a text uses and where it stands: origin, orientation and mirror.
class BFC_API SYS_TextAttributes {
public:
  SYS_TextAttributes() : m_style(nullptr) {}

  /// The style given last, or null.
  SYS_TextStyle const *GetStyle() const { return m_style; }
  /// Keeps the address of `style`, which must outlive these attributes and their copies.
  int SetStyle(SYS_TextStyle const &style) {
    m_style = &style;
    return 1;
  }
  SYS_Position GetPosition() const { return m_position; }
  /// Copies the position as given; returns 1.
  int SetPosition(SYS_Position const &position) {
    m_position = position;
    return 1;
  }

private:
  SYS_TextStyle const *m_style;  // not owned
  SYS_Position m_position;
};

/// A placed text: its attributes and the string itself.
class BFC_API SYS_Text : public SYS_TextAttributes {
public:
  SYS_String GetString() const { return m_string; }
  /// Stores the string; returns 1.
  int SetString(SYS_String const &text) {
    m_string = text;
    return 1;
  }

private:
  SYS_String m_string;
};

#endif
