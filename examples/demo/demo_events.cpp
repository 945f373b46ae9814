//===- examples/demo/demo_events.cpp - Events: a net list that announces changes ===//
//
// The host keeps its nets in a map keyed by name; the map is a notifier, so the
// ratsnest, the undo log, a one-shot design-rule check and the status bar hook
// into it with different priorities.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

namespace {

struct Net {
  int pins = 0;
};
typedef SCC_Map<SYS_String, Net> NetList;

constexpr int kRatsnestStale = 100;  // the host's own code, raised on the same notifier
int g_Depth = 0;                     // how deeply the delivery being printed is nested

char const *codeName(int code) {
  switch (code) {
    case 1: return "net added";
    case 2: return "net about to go";
    case 6: return "net list emptied";
    case kRatsnestStale: return "ratsnest stale";
    default: return "?";
  }
}

void hear(char const *who, int code) { std::printf("  %*s%-12s hears \"%s\"\n", 4 * g_Depth, "", who, codeName(code)); }

/// Recomputes connections when nets come and go, and tells everyone the drawn
/// ratsnest is stale: a nested delivery on the same notifier.
class Ratsnest {
public:
  explicit Ratsnest(NetList &nets) : m_Nets(nets), m_Hook(this, &Ratsnest::OnChange, 10) { nets.Insert(m_Hook); }

  int OnChange(int code, SYS_Handle *) {
    hear("ratsnest", code);
    if (code == 1 || code == 2) {
      ++g_Depth;
      m_Nets.Notify(kRatsnestStale, nullptr);
      --g_Depth;
    }
    return 0;
  }

private:
  NetList &m_Nets;
  SCC_ObjectEventHook<Ratsnest, SYS_Handle> m_Hook;
};

/// A check the host wants once: it disconnects itself on the first thing it hears.
struct OneShotCheck : SCC_EventHook<SYS_Handle> {
  OneShotCheck() : SCC_EventHook<SYS_Handle>(nullptr, 5) {}
  int OnNotification(int code, SYS_Handle *) override {
    hear("DRC (once)", code);
    Disconnect();
    std::printf("  %*s%-12s disconnects itself\n", 4 * g_Depth, "", "DRC (once)");
    return 0;
  }
};

int undoLog(int code, SYS_Handle *param) {
  hear("undo log", code);
  if (code == 2) std::printf("  %*s%-12s saves a net of %d pins\n", 4 * g_Depth, "", "", NetList::ValueOf(param)->pins);
  return 0;
}

int statusBar(int code, SYS_Handle *) { return hear("status bar", code), 0; }

}  // namespace

void demoEvents() {
  demoHeading("Events: a net list that announces its changes");
  NetList nets(53);
  SCC_EventHook<SYS_Handle> status(statusBar, 0);
  SCC_EventHook<SYS_Handle> undo(undoLog, 5);
  nets.Insert(status);
  nets.Insert(undo);
  Ratsnest ratsnest(nets);
  OneShotCheck drc;
  nets.Insert(drc);  // priority 5 like the undo log, connected later: told first among equals
  std::printf("hooks by priority: ratsnest 10, DRC 5, undo log 5, status bar 0\n");

  std::printf("\nadd net GND (the ratsnest raises \"ratsnest stale\" inside the delivery):\n");
  nets.Insert("GND")->pins = 12;
  std::printf("  -> the DRC heard the nested code first and left; the outer delivery skipped it\n");

  std::printf("\nadd net VCC:\n");
  nets.Insert("VCC")->pins = 8;

  std::printf("\nadd GND again: already present, nothing is announced (%s)\n",
              nets.Insert("GND") == nullptr ? "insert gives null" : "inserted?");

  std::printf("\nremove net GND:\n");
  nets.Remove("GND");

  std::printf("\nsuspend the notifier and remove VCC: nobody hears it\n");
  nets.Disable();
  nets.Remove("VCC");
  nets.Enable();
  std::printf("nets left: %ld\n", nets.GetCount());

  std::printf("\nthe board is cleared:\n");
  nets.RemoveAll();
}
