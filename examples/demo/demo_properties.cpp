//===- examples/demo/demo_properties.cpp - A property panel and saved handles ===//
//
// The host's property panel edits the width of the selected tracks as one value:
// it reads their common width, checks what the user types against a range in the
// current unit and writes the accepted width back to every selected track. A set
// of saved handles remembers highlighted tracks and follows the board when it
// renumbers, deletes or resets its tracks.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "scc_property.h"
#include "scc_savedhandles.h"
#include "scc_stdcoll.h"
#include "sys_convert.h"
#include "sys_exception.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

/// The board's tracks: name and width (base units) by handle, and the notifier that
/// announces their changes.
struct Board {
  struct Track {
    std::string name;
    long width;
  };
  std::map<SYS_Handle, Track> tracks;
  std::vector<SYS_Handle> order;
  std::map<SYS_Handle, SYS_Handle> renumbered;  // old handle -> new, during a renumbering
  SCC_Notifier events;

  std::string NameOf(SYS_Handle handle) const {
    auto const track = tracks.find(handle);
    return track != tracks.end() ? track->second.name : "?";
  }
  SYS_Handle NewHandle(SYS_Handle handle) const {
    auto const to = renumbered.find(handle);
    return to != renumbered.end() ? to->second : handle;
  }
  /// Gives every track a new handle and tells the listeners (code 7).
  void Renumber(std::map<SYS_Handle, SYS_Handle> const &moves) {
    renumbered = moves;
    std::map<SYS_Handle, Track> moved;
    for (auto const &track : tracks) moved[NewHandle(track.first)] = track.second;
    tracks.swap(moved);
    for (SYS_Handle &handle : order) handle = NewHandle(handle);
    events.Notify(7, nullptr);
    renumbered.clear();
  }
  void Remove(SYS_Handle handle) {
    order.erase(std::remove(order.begin(), order.end(), handle), order.end());
    events.Notify(2, SCC_Notifier::ParamOf(handle));
    tracks.erase(handle);
  }
};

/// The track panel: every track of the board in the board's order.
class TrackList : public SCC_StdCollection {
public:
  explicit TrackList(Board &board) : m_Board(board) { SetEvent(&board.events); }

protected:
  SYS_Handle _GetSlider() override { return m_Slider; }
  void _SetSlider(SYS_Handle handle) override { m_Slider = handle; }
  int _GetFirst() override { return (m_Slider = m_Board.order.empty() ? 0 : m_Board.order.front()) != 0; }
  int _GetNext() override {
    auto const at = std::find(m_Board.order.begin(), m_Board.order.end(), m_Slider);
    m_Slider = at != m_Board.order.end() && at + 1 != m_Board.order.end() ? *(at + 1) : 0;
    return m_Slider != 0;
  }
  SYS_Handle UpdateHandle(SYS_Handle handle) override { return m_Board.NewHandle(handle); }

private:
  Board &m_Board;
  SYS_Handle m_Slider = 0;
};

/// Widths as the user sees them: direction 1 from base units to the current unit, 0 back.
class UnitConvertor : public SCC_Convertor {
public:
  explicit UnitConvertor(SYS_Convert const &units) : m_Units(units) {}
  SCC_Variant Convert(SCC_Variant value, int direction) override {
    return direction == 1 ? SCC_Variant(m_Units.Base2User(static_cast<double>(value)))
                          : SCC_Variant(m_Units.User2Base(static_cast<double>(value)));
  }

private:
  SYS_Convert const &m_Units;
};

/// The width of a track, read and written in base units.
class WidthProperty : public SCC_StdProperty {
public:
  using SCC_StdProperty::GetValue;
  using SCC_StdProperty::SetValue;

  explicit WidthProperty(Board &board) : m_Board(board) {}
  int GetValue(SYS_Handle handle, SCC_Variant &value) override {
    auto const track = m_Board.tracks.find(handle);
    if (track == m_Board.tracks.end()) return 0;
    value = SCC_Variant(track->second.width);
    return 1;
  }
  int SetValue(SYS_Handle handle, SCC_Variant &value, int) override {
    auto const track = m_Board.tracks.find(handle);
    if (track == m_Board.tracks.end()) return 0;
    track->second.width = static_cast<long>(value);
    return 1;
  }
  int HasSetMethod() override { return 1; }

private:
  Board &m_Board;
};

/// A highlighted track: hears the board's notifier and follows its renumbering.
class TrackEntry : public SCC_HandleWithEvent {
public:
  TrackEntry(SYS_Handle handle, SCC_SavedHandles *owner, Board &board)
      : SCC_HandleWithEvent(handle, 1, owner), m_Board(board) {}
  SCC_Notifier *GetChangeEvent() override { return &m_Board.events; }
  void OnUpdatePointers() override { m_Handle = m_Board.NewHandle(m_Handle); }

private:
  Board &m_Board;
};

/// The highlighted tracks.
class Highlights : public SCC_SavedHandles {
public:
  explicit Highlights(Board &board) : m_Board(board) {}
  std::string Describe() {
    Find(0, 0, nullptr);  // puts the entries in order after a renumbering
    std::string text;
    for (int k = 0; k < GetCount(); ++k) {
      SYS_Handle const handle = GetElements()[k]->GetHandle();
      text += (text.empty() ? "" : ", ") + m_Board.NameOf(handle) + " #" + std::to_string(static_cast<long>(handle));
    }
    return text.empty() ? "(none)" : text;
  }

protected:
  Entry CreateByType(SYS_Handle handle, long) override { return Entry(new TrackEntry(handle, this, m_Board)); }

private:
  Board &m_Board;
};

/// "T1 #11, T2 #12" for the tracks the list has in focus.
std::string selection(Board const &board, TrackList &list) {
  std::string names;
  for (long k = 0; list.GetFocus(k) != 0; ++k) {
    SYS_Handle const handle = list.GetFocus(k);
    names += (names.empty() ? "" : ", ") + board.NameOf(handle) + " #" + std::to_string(static_cast<long>(handle));
  }
  return names;
}

/// Every track with its width in the current unit.
std::string widths(Board const &board, SYS_Convert const &units) {
  std::string text;
  for (SYS_Handle handle : board.order) {
    Board::Track const &track = board.tracks.at(handle);
    text += (text.empty() ? "" : ", ") + track.name + " " + std::string(units.Base2Str(track.width));
  }
  return text;
}

std::string shown(SCC_Variant const &value) { return std::string(static_cast<SYS_String>(value)); }

/// The panel's width field for the selection: the common width in the current unit.
std::string widthField(WidthProperty &width, TrackList &list, SYS_Convert const &units) {
  SCC_Variant common;
  if (!width.GetValue(&list, common)) return "(unreadable)";
  if (common.IsEmpty()) return "(mixed)";
  char text[32];
  std::snprintf(text, sizeof text, "%g %s", static_cast<double>(width.GetConvertor()->Convert(common, 1)),
                units.GetUnitName());
  return text;
}

}  // namespace

void demoProperties() {
  demoHeading("Properties and saved handles");
  Board board;
  SYS_Convert const units(SYS_UnitMillimetre);
  for (auto const &track : {std::make_pair(11, "T1"), std::make_pair(12, "T2"), std::make_pair(13, "T3"),
                            std::make_pair(14, "T4")}) {
    board.tracks[track.first] = Board::Track{track.second, units.User2Base(track.first == 14 ? 0.5 : 0.25)};
    board.order.push_back(track.first);
  }
  TrackList list(board);
  list.AllowReload(1);
  WidthProperty width(board);
  width.SetValidation("[0.1,10]");
  SCC_SharedPointer<SCC_Convertor> const convertor(new UnitConvertor(units));
  width.SetConvertor(convertor);

  auto select = [&](std::initializer_list<SYS_Handle> const &handles) {
    bool add = false;
    for (SYS_Handle handle : handles) {
      list.SetFocus(handle, add);
      add = true;
    }
  };
  std::printf("Tracks: %s (%s)\n", widths(board, units).c_str(), units.GetUnitName());
  for (auto const &handles : {std::initializer_list<SYS_Handle>{11, 12, 14}, {11, 12, 13}}) {
    select(handles);
    std::printf("Selected %s: width %s\n", selection(board, list).c_str(), widthField(width, list, units).c_str());
  }

  // What the user types is in the current unit and is checked there; an accepted width
  // goes back to base units for every selected track.
  for (char const *typed : {"12", "wide", "0.3"}) {
    SCC_Variant value(typed);
    if (!value.Validate(width.GetValidation(), width.GetConvertor())) {
      std::printf("Typed \"%s\" against \"%s\" %s: rejected: %s\n", typed, width.GetValidation(),
                  units.GetUnitName(), shown(value).c_str());
      continue;
    }
    SCC_Variant stored = width.GetConvertor()->Convert(value, 0);
    width.SetValue(&list, stored, 0);
    std::printf("Typed \"%s\": accepted, written as %s base units; tracks: %s\n", typed, shown(stored).c_str(),
                widths(board, units).c_str());
  }
  try {
    static_cast<double>(SCC_Variant("wide"));
  } catch (SYS_Exception const &e) {
    std::printf("Reading \"wide\" as a number throws: %s\n", static_cast<char const *>(e.GetText()));
  }

  Highlights highlights(board);
  for (SYS_Handle handle : {14, 11, 13}) highlights.Save(handle, 1);
  std::printf("Highlighted: %s\n", highlights.Describe().c_str());
  board.Renumber({{11, 31}, {12, 22}, {13, 23}, {14, 34}});
  std::string const followed = highlights.Describe();
  std::printf("After the board renumbers its tracks: %s; the selection follows: %s, width %s\n", followed.c_str(),
              selection(board, list).c_str(), widthField(width, list, units).c_str());
  board.Remove(31);
  std::printf("After T1 is deleted: %s\n", highlights.Describe().c_str());
  board.events.Notify(6, nullptr);
  std::printf("After the board is reset: %s\n", highlights.Describe().c_str());
}
