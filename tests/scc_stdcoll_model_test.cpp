//===- tests/scc_stdcoll_model_test.cpp - A collection against a simple model ===//
//
// Random insertions, removals, key changes, renumberings, focus and filter changes,
// suspension and navigation, raised on the list's notifier or on an item's, while a
// listener calls back into the collection. After every step the items, the focus, the
// position, the codes raised and the hooks' use counts must be what the model says.
//
//===------------------------------------------------------------------===//
#include "scc_stdcoll.h"
#include "tests/scc_stdcoll_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace {

typedef std::pair<int, SYS_Handle> Held;

/// What the collection consults: the source, keys, filter mode and renumbering.
struct World {
  explicit World(std::vector<SYS_Handle> &list) : source(list) {}
  std::vector<SYS_Handle> &source;  // the collection's own
  std::map<SYS_Handle, int> keys;
  std::map<SYS_Handle, SYS_Handle> renamed;  // every old handle to its current one
  int filterMode = 0;
  SCC_Notifier list, groups[3];

  static long number(SYS_Handle h) { return static_cast<long>(h & 0x3FFFFFFFF); }
  int key(SYS_Handle h) const { return keys.count(h) ? keys.at(h) : static_cast<int>(number(h)); }
  bool passes(SYS_Handle h) const {
    return filterMode == 0 || (filterMode == 1 ? key(h) % 2 == 0 : number(h) % 3 != 0);
  }
  SYS_Handle renumber(SYS_Handle h) const { return renamed.count(h) ? renamed.at(h) : h; }
  SCC_Notifier *notifierOf(SYS_Handle h) { return &groups[number(h) % 3]; }
};
World *g_World;

int byKey(SYS_Handle const &a, SYS_Handle const &b) {
  int const x = g_World->key(a), y = g_World->key(b);
  return (x > y) - (x < y);
}

struct WorldFilter : SYS_Filter {
  int IsTrue(SYS_Handle item) override { return g_World->passes(item) ? 1 : 0; }
};

/// The rules, over plain vectors.
struct Model {
  explicit Model(World &world) : w(world) {}
  World &w;
  std::vector<SYS_Handle> items, focus;
  long position = SYS_Nowhere;
  bool suspended = false;
  std::vector<Held> held, *replaying = nullptr;
  std::map<SCC_Notifier *, int> uses;
  std::string log;  // the codes raised, as the listener logs them

  long find(SYS_Handle h) const {
    auto at = std::find(items.begin(), items.end(), h);
    return at != items.end() ? at - items.begin() : -1;
  }
  long upper(SYS_Handle h) const {
    return std::upper_bound(items.begin(), items.end(), h, [](SYS_Handle a, SYS_Handle b) { return byKey(a, b) < 0; }) -
           items.begin();
  }
  void connect(SYS_Handle h, int step) {
    SCC_Notifier *const n = w.notifierOf(h);
    if (step > 0) ++uses[n];
    if (step < 0 && uses.count(n) && --uses[n] <= 0) uses.erase(n);
  }
  bool removeFocus(SYS_Handle h) {
    auto at = std::lower_bound(focus.begin(), focus.end(), h);
    if (at == focus.end() || *at != h) return false;
    focus.erase(at);
    return true;
  }
  /// The listener's part: on code 1 it adds handles whose number ends in 0 or 5 to the focus.
  void emit(int code, SYS_Handle h) {
    log += (log.empty() ? "" : " ") + std::to_string(code) + ":" + std::to_string(World::number(h));
    if (code == 1 && World::number(h) % 5 == 0) focus.insert(std::upper_bound(focus.begin(), focus.end(), h), h);
  }
  void add(SYS_Handle h) {
    items.insert(items.begin() + upper(h), h);
    connect(h, 1);
    emit(1, h);
  }
  bool inOrder(long i) const {
    long const n = static_cast<long>(items.size());
    return n == 1 || ((i == 0 || byKey(items[i], items[i - 1]) >= 0) && (i == n - 1 || byKey(items[i], items[i + 1]) <= 0));
  }
  void reload() {
    std::vector<SYS_Handle> fresh;
    for (SYS_Handle h : w.source) {
      if (w.passes(h) && std::find(fresh.begin(), fresh.end(), h) == fresh.end()) fresh.push_back(h);
      connect(h, 1);
    }
    std::stable_sort(fresh.begin(), fresh.end(), [](SYS_Handle a, SYS_Handle b) { return byKey(a, b) < 0; });
    position = SYS_Nowhere;
    if (fresh == items) return;
    items = fresh;
    focus.erase(std::remove_if(focus.begin(), focus.end(), [&](SYS_Handle h) { return find(h) < 0; }), focus.end());
    emit(5, 0);
  }
  void notify(int code, SYS_Handle h) {
    bool const passing = h == 0 || w.passes(h);
    long const found = h == 0 ? -1 : find(h);
    if ((h != 0 && !passing && found < 0) || (h == 0 && (code == 1 || code == 3))) return;
    if (suspended) {
      if (code != 5 && code != 6) {
        if (held.empty() || held.back() != Held(code, h)) held.emplace_back(code, h);
        return;
      }
      held.clear();
    }
    long const saved = position;
    if (code == 1 || (code == 3 && found < 0)) {
      add(h);
    } else if (code == 2) {
      removeFocus(h);
      if (found >= 0) connect(h, -1), emit(2, h), items.erase(items.begin() + found);
    } else if (code == 3 && w.passes(h) && inOrder(found)) {
      emit(3, h);
    } else if (code == 3) {
      bool const focused = removeFocus(h);
      emit(2, h);
      connect(h, -1);
      items.erase(items.begin() + found);
      if (passing) {
        items.insert(items.begin() + upper(h), h);
        connect(h, 1);
        if (focused) focus.insert(std::upper_bound(focus.begin(), focus.end(), h), h);
        emit(1, h);
      }
    } else if (code == 4) {
      emit(4, h);
    } else if (code == 5) {
      reload();
    } else if (code == 6) {
      emit(6, h), uses.clear(), items.clear(), focus.clear();
    } else if (code == 7) {
      for (auto *all : {&items, &focus})
        for (SYS_Handle &x : *all) x = w.renumber(x);
      for (auto *queue : {&held, replaying})
        if (queue != nullptr)
          for (Held &e : *queue) e.second = w.renumber(e.second);
      std::sort(focus.begin(), focus.end());
      std::stable_sort(items.begin(), items.end(), [](SYS_Handle a, SYS_Handle b) { return byKey(a, b) < 0; });
      emit(7, 0);
    }
    position = saved >= 0 && saved < static_cast<long>(items.size()) ? find(items[saved]) : SYS_Nowhere;
  }
  void resume() {
    suspended = false;
    while (!held.empty()) {
      std::vector<Held> batch;
      batch.swap(held);
      replaying = &batch;
      std::set<SYS_Handle> done;
      for (long k = static_cast<long>(batch.size()) - 1; k >= 0; --k) {
        Held const e = batch[k];
        if (done.insert(e.second).second) notify(e.first, e.second);
      }
      replaying = nullptr;
    }
  }
};

void runModel(unsigned seed, int steps) {
  ListCollection coll;
  World world(coll.source);
  g_World = &world;
  Model model(world);
  WorldFilter filter;
  CollectionLog changes;
  coll.listNotifier = &world.list;
  coll.notifierOf = [&](SYS_Handle h) { return world.notifierOf(h); };
  coll.renumber = [&](SYS_Handle h) { return world.renumber(h); };
  coll.SetEvent(&world.list);
  coll.SetNotificationHandler(&changes);
  coll.SetSort(&byKey, 0);
  coll.SetFilter(&filter);
  coll.AllowReload(1);
  changes.action = [&](int code, SYS_Handle h) {
    if (code == 1 || code == 2) {
      EXPECT_GE(coll.GetPositionByHandle(h), 0) << "the item is there while told";
    }
    if (code == 1 && World::number(h) % 5 == 0) coll.SetFocus(h, true);
    if (code == 1) coll.GetNext();
    if (code == 2) coll.GetFirst();  // moves the position; the collection puts it back
  };

  std::mt19937 random(seed);
  auto pick = [&](long n) { return static_cast<long>(random() % static_cast<unsigned>(n)); };
  long next = 1;
  auto raise = [&](int code, SYS_Handle h) {
    bool const onList = h == 0 || pick(2) == 0;
    SCC_Notifier *const n = onList ? &world.list : world.notifierOf(h);
    if (onList || model.uses.count(n)) model.notify(code, h);  // an item notifier is heard through its hook
    n->Notify(code, SCC_Notifier::ParamOf(h));
  };
  auto anyHandle = [&]() { return world.source.empty() || pick(8) == 0 ? handleOf(next + pick(3)) : world.source[pick(static_cast<long>(world.source.size()))]; };

  for (int step = 0; step < steps; ++step) {
    int const op = static_cast<int>(pick(20));
    if (op < 5 && world.source.size() < 40) {
      SYS_Handle const h = pick(10) == 0 && !world.source.empty() ? anyHandle() : handleOf(next++);
      if (std::find(world.source.begin(), world.source.end(), h) == world.source.end()) {
        world.keys[h] = static_cast<int>(pick(6));
        world.source.insert(world.source.begin() + pick(static_cast<long>(world.source.size()) + 1), h);
      }
      raise(1, h);
    } else if (op < 8 && !world.source.empty()) {
      SYS_Handle const h = anyHandle();
      raise(2, h);
      world.source.erase(std::remove(world.source.begin(), world.source.end(), h), world.source.end());
    } else if (op < 11) {
      SYS_Handle const h = anyHandle();
      world.keys[h] = static_cast<int>(pick(6));
      raise(3, h);
    } else if (op == 11) {
      raise(pick(8) == 0 ? 6 : 4, anyHandle());
    } else if (op == 12) {
      for (SYS_Handle &h : world.source) {
        if (pick(3) != 0) continue;
        SYS_Handle const renamed = handleOf(next++);
        for (auto &entry : world.renamed)
          if (entry.second == h) entry.second = renamed;
        world.renamed[h] = renamed;
        world.keys[renamed] = world.key(h);
        h = renamed;
      }
      raise(7, 0);
    } else if (op == 13) {
      SYS_Handle const h = anyHandle();
      bool const add = pick(2) == 0;
      coll.SetFocus(h, add);
      if (model.find(h) < 0) {
        model.focus.clear();
      } else {
        if (!add) model.focus.clear();
        model.focus.insert(std::upper_bound(model.focus.begin(), model.focus.end(), h), h);
        if (!add) model.log += (model.log.empty() ? "3:" : " 3:") + std::to_string(World::number(h));
      }
    } else if (op == 14) {
      world.filterMode = static_cast<int>(pick(3));
      coll.SetFilter(&filter);
      model.reload();
    } else if (op == 15 || op == 16) {
      bool const suspend = op == 15 && pick(2) == 0;
      coll.Suspend(suspend ? 1 : 0);
      if (suspend) model.suspended = true;
      else if (model.suspended) model.resume();
    } else if (op == 17 && !model.items.empty()) {
      long const at = pick(static_cast<long>(model.items.size()));
      coll.SetPosition(at);
      model.position = at;
    } else if (op == 18) {
      coll.GetNext();
      if (model.position >= 0 && model.position < static_cast<long>(model.items.size())) ++model.position;
    } else if (op == 19) {
      raise(5, 0);
    }

    SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step) + ", op " + std::to_string(op));
    ASSERT_EQ(changes.Take(), model.log);
    model.log.clear();
    ASSERT_EQ(coll.Items(), model.items);
    ASSERT_EQ(coll.Focus(), model.focus);
    ASSERT_EQ(coll.GetPosition(), model.position);
    for (SCC_Notifier &group : world.groups)
      ASSERT_EQ(coll.UseCount(&group), model.uses.count(&group) ? model.uses[&group] : -1);
  }
}

}  // namespace

TEST(CollectionModel, RandomNotificationsAgainstModel) {
  for (unsigned seed : {1u, 2u, 3u}) runModel(seed, 2500);
}
