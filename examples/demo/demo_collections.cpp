//===- examples/demo/demo_collections.cpp - A net list and the pins of its selected net ===//
//
// The board owns nets and pins; the host's panels are collections over them.
// The net list is sorted by name and follows the board's net notifier; the pin
// list is its child and shows the pins of the selected net, hooking each net's
// own pin notifier.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "scc_stdcoll.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

/// The board's data: nets and pins by handle; the net order lists the nets on the board
/// (a removed net keeps its record, as for undo).
struct Board {
  struct Net {
    std::string name;
    SCC_Notifier *pinEvents;  // what the net says about its pins
  };
  std::map<SYS_Handle, Net> nets;
  std::vector<SYS_Handle> netOrder;
  std::map<SYS_Handle, std::pair<std::string, SYS_Handle>> pins;  // pin -> (name, net)
  std::map<SYS_Handle, SYS_Handle> renumbered;                      // old net handle -> new
  SCC_Notifier netEvents;
  SCC_Notifier pinEvents[8];
  int usedPinEvents = 0;

  SYS_Handle AddNet(SYS_Handle handle, char const *name) {
    nets[handle] = Net{name, &pinEvents[usedPinEvents++ % 8]};
    netOrder.push_back(handle);
    return handle;
  }
  std::string NameOf(SYS_Handle handle) const {
    auto const net = nets.find(handle);
    if (net != nets.end()) return net->second.name;
    auto const pin = pins.find(handle);
    return pin != pins.end() ? pin->second.first : "#" + std::to_string(static_cast<long>(handle));
  }
};
Board *g_Board = nullptr;

int byName(SYS_Handle const &a, SYS_Handle const &b) { return g_Board->NameOf(a).compare(g_Board->NameOf(b)); }

/// The slider of a source held as a list of handles.
class ListSource {
public:
  SYS_Handle Slider() const { return m_Slider; }
  void Set(SYS_Handle handle) { m_Slider = handle; }
  int First(std::vector<SYS_Handle> const &list) { return (m_Slider = list.empty() ? 0 : list.front()) != 0; }
  /// From 0 (before the first) to the first.
  int Next(std::vector<SYS_Handle> const &list) {
    if (m_Slider == 0) return First(list);
    auto at = std::find(list.begin(), list.end(), m_Slider);
    m_Slider = at != list.end() && at + 1 != list.end() ? *(at + 1) : 0;
    return m_Slider != 0;
  }

private:
  SYS_Handle m_Slider = 0;
};

/// The net list panel: every net of the board, by name.
class NetList : public SCC_StdCollection {
public:
  explicit NetList(Board &board) : m_Board(board) {
    SetEvent(&board.netEvents);
    SetSort(&byName, 0);
  }

protected:
  SYS_Handle _GetSlider() override { return m_Source.Slider(); }
  void _SetSlider(SYS_Handle handle) override { m_Source.Set(handle); }
  int _GetFirst() override { return m_Source.First(m_Board.netOrder); }
  int _GetNext() override { return m_Source.Next(m_Board.netOrder); }
  SYS_Handle UpdateHandle(SYS_Handle handle) override {
    auto const to = m_Board.renumbered.find(handle);
    return to != m_Board.renumbered.end() ? to->second : handle;
  }

private:
  Board &m_Board;
  ListSource m_Source;
};

/// The pin panel: the pins of the net selected in its parent; each pin is heard through its
/// net's pin notifier.
class PinList : public SCC_StdCollection {
public:
  PinList(Board &board, SCC_StdCollection &nets) : SCC_StdCollection(&nets), m_Board(board), m_Nets(nets) {}

protected:
  SYS_Handle _GetSlider() override { return m_Source.Slider(); }
  void _SetSlider(SYS_Handle handle) override { m_Source.Set(handle); }
  int _GetFirst() override { return m_Source.First(pinsOfSelectedNet()); }
  int _GetNext() override { return m_Source.Next(pinsOfSelectedNet()); }
  SCC_Notifier *GetEvent() override {
    auto const pin = m_Board.pins.find(m_Source.Slider());
    return pin != m_Board.pins.end() ? m_Board.nets[pin->second.second].pinEvents : nullptr;
  }

private:
  std::vector<SYS_Handle> pinsOfSelectedNet() const {
    std::vector<SYS_Handle> pins;
    for (auto const &pin : m_Board.pins)
      if (pin.second.second == m_Nets.GetFocus(0)) pins.push_back(pin.first);
    return pins;
  }

  Board &m_Board;
  SCC_StdCollection &m_Nets;
  ListSource m_Source;
};

/// Prints every code a panel raises, with the name of the handle.
struct PanelLog : SCC_EventHook<SYS_Handle> {
  explicit PanelLog(char const *panel) : m_Panel(panel) {}
  int OnNotification(int code, SYS_Handle *param) override {
    static char const *const meaning[] = {"?", "added", "removing", "focus or changed", "passed on", "rebuilt", "dropped", "renumbered"};
    SYS_Handle const handle = SCC_Notifier::HandleOf(param);
    std::printf("    %s raises %d (%s)%s%s\n", m_Panel, code, meaning[code >= 1 && code <= 7 ? code : 0],
                handle != 0 ? " " : "", handle != 0 ? g_Board->NameOf(handle).c_str() : "");
    return 0;
  }
  char const *m_Panel;
};

void show(char const *title, SCC_StdCollection &panel) {
  std::printf("  %-10s", title);
  for (long k = 0; k < panel.GetCount(); ++k) {
    SYS_Handle const h = panel.GetAt(k);
    std::printf(" %s%s", g_Board->NameOf(h).c_str(), panel.IsInFocus(h, nullptr) ? "*" : "");
  }
  std::printf("\n");
}

void tell(SCC_Notifier &event, int code, SYS_Handle handle) { event.Notify(code, SCC_Notifier::ParamOf(handle)); }

}  // namespace

void demoCollections() {
  demoHeading("Collections: a net list and the pins of the selected net");
  Board board;
  g_Board = &board;
  SYS_Handle const vcc = board.AddNet(101, "VCC"), gnd = board.AddNet(102, "GND");
  SYS_Handle const clk = board.AddNet(103, "CLK"), data = board.AddNet(104, "DATA0");
  board.pins = {{1001, {"U1.7", gnd}}, {1002, {"U2.4", gnd}}, {1003, {"U1.14", vcc}}, {1004, {"J1.2", clk}}};

  NetList nets(board);
  PanelLog netLog("net list"), pinLog("pin list");
  nets.SetNotificationHandler(&netLog);
  std::printf("the net list sorts by name; * marks the selection. It loads once the pin list\n"
              "takes it as parent:\n");
  PinList pins(board, nets);
  pins.SetNotificationHandler(&pinLog);
  pins.AllowReload(1);
  show("nets:", nets);

  std::printf("\nselect GND: the pin list follows its parent's focus\n");
  nets.SetFocus(gnd, false);
  show("nets:", nets);
  show("pins:", pins);

  std::printf("\nadd pin U3.1 to GND, announced on GND's own pin notifier\n");
  board.pins[1005] = {"U3.1", gnd};
  tell(*board.nets[gnd].pinEvents, SCC_ItemAdded, 1005);
  show("pins:", pins);

  std::printf("\nwhile the net list is suspended: add RESET, remove CLK, rename DATA0 to ADDR0,\n"
              "renumber every net by +100\n");
  nets.Suspend(1);
  board.AddNet(105, "RESET");
  tell(board.netEvents, SCC_ItemAdded, 105);
  tell(board.netEvents, SCC_ItemRemoving, clk);
  board.netOrder.erase(std::find(board.netOrder.begin(), board.netOrder.end(), clk));
  board.nets[data].name = "ADDR0";
  tell(board.netEvents, SCC_ItemChanged, data);
  std::map<SYS_Handle, Board::Net> moved;
  for (auto &net : board.nets) moved[net.first + 100] = net.second, board.renumbered[net.first] = net.first + 100;
  board.nets.swap(moved);
  for (SYS_Handle &h : board.netOrder) h += 100;
  for (auto &pin : board.pins) pin.second.second += 100;
  tell(board.netEvents, SCC_ItemsRenumbered, 0);
  std::printf("  nothing raised yet; the view still shows the old state\n");

  std::printf("resume: newest first, each net once\n");
  nets.Suspend(0);
  show("nets:", nets);
  std::printf("  the selection followed the renumbering: GND is now handle %ld\n", static_cast<long>(nets.GetFocus(0)));

  std::printf("\nshow power nets only (a filter), then select VCC\n");
  struct PowerNets : SYS_Filter {
    int IsTrue(SYS_Handle net) override { return g_Board->NameOf(net) == "VCC" || g_Board->NameOf(net) == "GND"; }
  } power;
  nets.SetFilter(&power);
  show("nets:", nets);
  nets.SetFocus(vcc + 100, false);
  show("pins:", pins);
  g_Board = nullptr;
}
