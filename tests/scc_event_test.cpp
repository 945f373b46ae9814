//===- tests/scc_event_test.cpp - Events, hooks and re-entrant delivery -===//
#include "scc_event.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer runtime's allocation hooks (GCC ships no header declaring them).
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(void const volatile *, std::size_t),
                                                         void (*onFree)(void const volatile *));
#endif

namespace {

typedef std::vector<std::string> Log;

/// A node or hook that logs "name:code" and then runs an optional action.
template <class Base>
struct Logger : Base {
  Logger(Log &log, std::string name) : m_Log(&log), m_Name(std::move(name)) {}
  int OnNotification(int code, int *) override {
    m_Log->push_back(m_Name + ":" + std::to_string(code));
    if (m_Action) m_Action(code);
    return 0;
  }
  Log *m_Log;
  std::string m_Name;
  std::function<void(int)> m_Action;
};

typedef Logger<SCC_EventNode<int>> NodeProbe;

struct Probe : Logger<SCC_EventHook<int>> {
  Probe(Log &log, std::string name, int priority = 0) : Logger(log, std::move(name)) { SetPriority(priority); }
};

/// Reads the protected links of nodes and events.
struct Peek : SCC_Event<int> {
  static SCC_EventNode<int> *next(SCC_EventNode<int> &node) { return node.*(&Peek::m_Next); }
  static SCC_EventNode<int> *prev(SCC_EventNode<int> &node) { return node.*(&Peek::m_Prev); }
};

bool isAlone(SCC_EventNode<int> &node) {
  return !node.IsConnected() && node.GetConnectedEvent() == nullptr && Peek::next(node) == &node &&
         Peek::prev(node) == &node;
}

Log deliver(SCC_Event<int> &event, Log &log, int code = 1) {
  log.clear();
  event.Notify(code, nullptr);
  return log;
}

}  // namespace

// Plain nodes rank above every hook: a hook goes in front of one only with the
// top priority; appending always goes last.
TEST(SccEvent, PlainNodesRankAboveHooks) {
  struct Case { char const *name; int hookPriority; Log expected; } const cases[] = {
      {"low hook after node", 0, {"node:1", "hook:1", "tail:1"}},
      {"negative hook after node", -7, {"node:1", "hook:1", "tail:1"}},
      {"top hook before node", 0x7FFFFFFF, {"hook:1", "node:1", "tail:1"}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    Log log;
    NodeProbe node(log, "node");
    Probe hook(log, "hook", c.hookPriority), tail(log, "tail", 99);
    SCC_Event<int> event;
    event.Append(node);
    event.Insert(hook);
    event.Append(tail);  // an append ignores priorities
    EXPECT_EQ(node.GetPriority(), 0x7FFFFFFF);
    EXPECT_EQ(deliver(event, log), c.expected);
  }
}

// Connecting a connected node first takes it out of its old event; disconnecting or
// destroying the event leaves a node unconnected and pointing at itself.
TEST(SccEvent, ConnectingLeavesThePreviousEvent) {
  Log log;
  Probe a(log, "a"), b(log, "b");
  SCC_Event<int> second;
  {
    SCC_Event<int> first;
    first.Append(a);
    first.Append(b);
    second.Insert(a);
    EXPECT_EQ(a.GetConnectedEvent(), &second);
    EXPECT_EQ(deliver(first, log), (Log{"b:1"}));
    EXPECT_EQ(deliver(second, log), (Log{"a:1"}));
  }
  EXPECT_TRUE(isAlone(b));
  a.Disconnect();
  EXPECT_TRUE(isAlone(a));
  EXPECT_EQ(deliver(second, log), Log{});
}

// Handlers that change the event during a delivery: a node disconnected behind the cursor is gone, the next node when
// disconnected is not told, a node reconnected ahead is told again, nested deliveries run to their end first, and
// disabling ends every delivery. Each node is left either connected or alone, and the record is cleared.
TEST(SccEventReentrancy, HandlersChangingTheEvent) {
  typedef std::function<void(SCC_Event<int> &, Probe &, Probe &, Probe &)> Setup;
  struct Case { char const *name; Setup setup; Log first, second; int connected; } const cases[] = {
      {"b disconnects itself", [](auto &, auto &, auto &b, auto &) { b.m_Action = [&b](int) { b.Disconnect(); }; },
       {"a:1", "b:1", "c:1"}, {"a:1", "c:1"}, 2},
      {"a disconnects the next node", [](auto &, auto &a, auto &b, auto &) {
         a.m_Action = [&b](int) { b.Disconnect(); };
       }, {"a:1", "c:1"}, {"a:1", "c:1"}, 2},
      {"b disconnects every node", [](auto &e, auto &, auto &b, auto &) {
         b.m_Action = [&e](int) { e.DisconnectAll(); };
       }, {"a:1", "b:1"}, {}, 0},
      {"a reconnects itself ahead once", [](auto &e, auto &a, auto &, auto &) {
         a.m_Action = [&e, &a, calls = 0](int) mutable {
           if (++calls == 1) e.Append(a);
         };
       }, {"a:1", "b:1", "c:1", "a:1"}, {"b:1", "c:1", "a:1"}, 3},
      {"nested two and three deep", [](auto &e, auto &, auto &b, auto &) {
         b.m_Action = [&e](int code) {
           if (code < 3) e.Notify(code + 1, nullptr);
         };
       }, {"a:1", "b:1", "a:2", "b:2", "a:3", "b:3", "c:3", "c:2", "c:1"},
       {"a:1", "b:1", "a:2", "b:2", "a:3", "b:3", "c:3", "c:2", "c:1"}, 3},
      {"nested delivery disconnects the outer cursor", [](auto &e, auto &a, auto &b, auto &) {
         b.m_Action = [&e](int code) {
           if (code == 1) e.Notify(2, nullptr);
         };
         a.m_Action = [&b](int code) {
           if (code == 2) b.Disconnect();  // b is the outer cursor, not the inner one
         };
       }, {"a:1", "b:1", "a:2", "c:2", "c:1"}, {"a:1", "c:1"}, 2},
      {"disabled: nobody told, nodes kept", [](auto &e, auto &, auto &, auto &) { e.Disable(); }, {}, {}, 3},
      {"disabling inside a delivery", [](auto &e, auto &, auto &b, auto &) {
         b.m_Action = [&e](int) { e.Disable(); };
       }, {"a:1", "b:1"}, {}, 3},
      {"disabling inside a nested delivery", [](auto &e, auto &a, auto &b, auto &) {
         a.m_Action = [&e](int code) {
           if (code == 1) e.Notify(2, nullptr);
         };
         b.m_Action = [&e](int) { e.Disable(); };
       }, {"a:1", "a:2", "b:2"}, {}, 3},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    Log log;
    Probe a(log, "a"), b(log, "b"), last(log, "c");
    SCC_Event<int> event;
    for (Probe *p : {&a, &b, &last}) event.Append(*p);
    c.setup(event, a, b, last);
    EXPECT_EQ(deliver(event, log), c.first);
    EXPECT_EQ(event.GetConnectedEvent(), nullptr);
    EXPECT_EQ(deliver(event, log), c.second);
    int connected = 0;
    for (Probe *p : {&a, &b, &last}) {
      connected += p->IsConnected();
      EXPECT_TRUE(p->IsConnected() || isAlone(*p));
    }
    EXPECT_EQ(connected, c.connected);
  }
}

// Nodes connected during a delivery are told when they land ahead of the cursor
// (right after it, or last) and not when they land in the part already passed.
TEST(SccEventReentrancy, ConnectionsAheadAndBehindTheCursor) {
  Log log;
  Probe top(log, "top", 9), cur(log, "cur", 5), low(log, "low", 1);
  Probe passed(log, "passed", 7), rightBehind(log, "behind", 5), after(log, "after", 3), last(log, "last", 0);
  SCC_Event<int> event;
  for (Probe *p : {&top, &cur, &low}) event.Insert(*p);
  cur.m_Action = [&](int) {
    event.Insert(passed);       // between top and cur: already passed
    event.Insert(rightBehind);  // equal priority: just in front of cur, passed too
    event.Insert(after);        // right after cur: ahead
    event.Insert(last);         // after low: ahead
  };
  EXPECT_EQ(deliver(event, log), (Log{"top:1", "cur:1", "after:1", "low:1", "last:1"}));
  cur.m_Action = nullptr;
  EXPECT_EQ(deliver(event, log), (Log{"top:1", "passed:1", "behind:1", "cur:1", "after:1", "low:1", "last:1"}));
}

// While a delivery runs, the event names its innermost record: a nested delivery has a
// record of its own, the outer one is back when it returns, and a throwing handler leaves
// the record as it was before its delivery, so an outer delivery that catches goes on.
TEST(SccEventReentrancy, ConnectedEventNamesTheInnermostDelivery) {
  Log log;
  Probe a(log, "a"), b(log, "b"), c(log, "c");
  SCC_Event<int> event;
  for (Probe *p : {&a, &b, &c}) event.Append(*p);
  SCC_EventNode<int> *outer = nullptr;
  int nested = 0;
  b.m_Action = [&](int code) {
    if (code != 2) return;
    ++nested;
    EXPECT_NE(event.GetConnectedEvent(), nullptr);
    EXPECT_NE(event.GetConnectedEvent(), outer);
    throw std::runtime_error("inner");
  };
  EXPECT_THROW(event.Notify(2, nullptr), std::runtime_error);
  EXPECT_EQ(event.GetConnectedEvent(), nullptr);

  a.m_Action = [&](int code) {
    if (code != 1) return;
    outer = event.GetConnectedEvent();
    EXPECT_THROW(event.Notify(2, nullptr), std::runtime_error);
    EXPECT_EQ(event.GetConnectedEvent(), outer);
  };
  c.m_Action = [&](int) { EXPECT_EQ(event.GetConnectedEvent(), outer); };
  EXPECT_EQ(deliver(event, log, 1), (Log{"a:1", "a:2", "b:2", "b:1", "c:1"}));
  EXPECT_NE(outer, nullptr);
  EXPECT_EQ(nested, 2);
  EXPECT_EQ(event.GetConnectedEvent(), nullptr);
}

// An event destroyed by one of its handlers: the delivery stops there, nested
// ones included, without touching the dead event.
TEST(SccEventLifetime, EventDestroyedDuringDelivery) {
  Log log;
  Probe a(log, "a"), b(log, "b"), c(log, "c");
  auto *event = new SCC_Event<int>;
  for (Probe *p : {&a, &b, &c}) event->Append(*p);
  a.m_Action = [&](int code) {
    if (code == 1) event->Notify(2, nullptr);
  };
  b.m_Action = [&](int code) {
    if (code == 2) {
      delete event;
      event = nullptr;
    }
  };
  event->Notify(1, nullptr);
  EXPECT_EQ(log, (Log{"a:1", "a:2", "b:2"}));
  for (Probe *p : {&a, &b, &c}) EXPECT_TRUE(isAlone(*p));
}

// A node destroyed by another node's handler is skipped; one that destroys itself does not stop the delivery.
TEST(SccEventLifetime, NodesDestroyedDuringDelivery) {
  struct SelfDestroying : SCC_EventNode<int> {
    explicit SelfDestroying(Log &log) : m_Log(&log) {}
    int OnNotification(int, int *) override {
      m_Log->push_back("self");
      delete this;
      return 0;
    }
    Log *m_Log;
  };
  Log log;
  Probe a(log, "a"), d(log, "d");
  auto *b = new Probe(log, "b");
  SCC_Event<int> event;
  event.Append(a);
  event.Append(*b);
  event.Append(*new SelfDestroying(log));
  event.Append(d);
  a.m_Action = [&](int) {
    delete b;
    b = nullptr;
  };
  EXPECT_EQ(deliver(event, log), (Log{"a:1", "self", "d:1"}));
  EXPECT_EQ(deliver(event, log), (Log{"a:1", "d:1"}));
}

// Assignment drops the target's own nodes, takes the source's, and keeps the target's enabled flag.
TEST(SccEventCopy, AssignmentKeepsTheTargetsEnabledFlag) {
  Log log;
  Probe mine(log, "mine"), theirs(log, "theirs");
  SCC_Event<int> target, source;
  target.Append(mine);
  source.Append(theirs);
  source.Disable();
  target = source;
  EXPECT_TRUE(target.IsEnabled());
  EXPECT_FALSE(source.IsEnabled());
  EXPECT_TRUE(isAlone(mine));
  EXPECT_EQ(theirs.GetConnectedEvent(), &target);
  EXPECT_EQ(deliver(target, log), (Log{"theirs:1"}));
  target = target;  // self-assignment changes nothing
  EXPECT_EQ(deliver(target, log), (Log{"theirs:1"}));
}

// A delivery running on an event that is copied away ends: the source has no
// nodes left, and the copy's nodes are not told twice.
TEST(SccEventCopy, CopyDuringDeliveryEndsTheSourcesDelivery) {
  Log log;
  Probe a(log, "a"), b(log, "b");
  SCC_Event<int> source;
  source.Append(a);
  source.Append(b);
  SCC_Event<int> *copy = nullptr;
  a.m_Action = [&](int) {
    if (copy == nullptr) copy = new SCC_Event<int>(source);
  };
  EXPECT_EQ(deliver(source, log), (Log{"a:1"}));
  a.m_Action = nullptr;
  EXPECT_EQ(deliver(*copy, log), (Log{"a:1", "b:1"}));
  delete copy;
}

// A copied hook starts unconnected, with priority 0 and no handler; assigning a hook connects it just in front of the
// source and takes the source's priority, keeping its own handler.
TEST(SccEventCopy, HookCopyAndAssignment) {
  static Log *s_Log;
  Log log;
  s_Log = &log;
  auto handlerA = [](int code, int *) { return s_Log->push_back("A:" + std::to_string(code)), 0; };
  auto handlerB = [](int code, int *) { return s_Log->push_back("B:" + std::to_string(code)), 0; };
  SCC_EventHook<int> a(handlerA, 4), b(handlerB, 1), tail(nullptr, 0);
  SCC_Event<int> event;
  event.Insert(a);
  event.Insert(tail);

  SCC_EventHook<int> copy(a);
  EXPECT_TRUE(isAlone(copy));
  EXPECT_EQ(copy.GetPriority(), 0);
  EXPECT_EQ(copy.GetHandler(), nullptr);
  EXPECT_EQ(copy.OnNotification(3, nullptr), 0);

  b = a;
  EXPECT_EQ(b.GetConnectedEvent(), &event);
  EXPECT_EQ(b.GetPriority(), 4);
  EXPECT_EQ(Peek::next(b), &a);
  EXPECT_EQ(deliver(event, log), (Log{"B:1", "A:1"}));

  SCC_EventHook<int> loose(handlerA, 8);
  b = loose;  // assigning an unconnected hook leaves the target unconnected
  EXPECT_TRUE(isAlone(b));
}

// An object hook calls its member function with the code and parameter and returns its result; a copy calls nothing.
TEST(SccEventHook, ObjectHookCallsTheMethod) {
  struct Counter {
    int total = 0;
    int add(int code, int *param) { return total += code * *param; }
  } counter;
  SCC_ObjectEventHook<Counter, int> hook(&counter, &Counter::add, 2);
  int param = 5;
  EXPECT_EQ(hook.OnNotification(3, &param), 15);
  SCC_Event<int> event;
  event.Insert(hook);
  event.Notify(2, &param);
  EXPECT_EQ(counter.total, 25);
  SCC_ObjectEventHook<Counter, int> copy(hook);
  EXPECT_EQ(copy.GetObject(), nullptr);
  EXPECT_EQ(copy.OnNotification(3, &param), 0);
}

// Delivery allocates nothing, however many nodes and however deep it nests.
TEST(SccEventPerformance, DeliveryAllocatesNothing) {
#if defined(__SANITIZE_ADDRESS__)
  static int s_Allocations;
  s_Allocations = 0;
  SCC_Event<int> event;
  static int s_Depth;
  s_Depth = 0;
  struct Nesting : SCC_EventHook<int> {
    explicit Nesting(SCC_Event<int> &event) : m_pEvent(&event) {}
    int OnNotification(int code, int *) override {
      if (code < 3) m_pEvent->Notify(code + 1, nullptr);
      ++s_Depth;
      return 0;
    }
    SCC_Event<int> *m_pEvent;
  } nesting(event);
  SCC_EventHook<int> plain[3];
  for (auto &hook : plain) event.Insert(hook);
  event.Insert(nesting);
  // Both hooks must be given for the runtime to take them; they stay installed (the
  // runtime cannot remove them) and only count.
  ASSERT_NE(__sanitizer_install_malloc_and_free_hooks([](void const volatile *, std::size_t) { ++s_Allocations; },
                                                      [](void const volatile *) {}),
            0);
  event.Notify(1, nullptr);
  int const duringDelivery = s_Allocations;
  int *volatile probe = new int(1);  // the counter does see allocations
  delete probe;
  EXPECT_EQ(duringDelivery, 0);
  EXPECT_GT(s_Allocations, duringDelivery);
  EXPECT_EQ(s_Depth, 3);
#else
  GTEST_SKIP() << "allocations are counted through the address sanitizer's hooks";
#endif
}
