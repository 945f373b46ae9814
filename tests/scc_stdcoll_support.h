//===- tests/scc_stdcoll_support.h - A collection over a list, and a listener ===//
#ifndef BFC_TESTS_SCC_STDCOLL_SUPPORT_H
#define BFC_TESTS_SCC_STDCOLL_SUPPORT_H

#include "scc_stdcoll.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// A handle of the test's number space: above 32 bits on LP64, so that a handle cut to an
/// int anywhere shows; the number itself on i386.
inline SYS_Handle handleOf(long n) {
  return sizeof(SYS_Handle) > 4 ? static_cast<SYS_Handle>((static_cast<long long>(n) << 34) | n) : n;
}

/// The handles of the test numbers given.
inline std::vector<SYS_Handle> handles(std::initializer_list<long> numbers) {
  std::vector<SYS_Handle> result;
  for (long n : numbers) result.push_back(handleOf(n));
  return result;
}

/// A collection whose source is a list of handles in the source's own order. The source's
/// slider stands on a handle (0: before the first); the item notifier of a handle is the one
/// `notifierOf` gives, the list's own notifier stands at slider 0. Every _SetSlider is logged.
class ListCollection : public SCC_StdCollection {
public:
  explicit ListCollection(SCC_StdCollection *parent = nullptr) : SCC_StdCollection(parent) {}

  std::vector<SYS_Handle> source;
  SCC_Notifier *listNotifier = nullptr;
  std::function<SCC_Notifier *(SYS_Handle)> notifierOf;
  std::function<SYS_Handle(SYS_Handle)> renumber;  // identity when empty
  std::vector<SYS_Handle> sliderLog;

  using SCC_StdCollection::Reload;
  std::vector<SYS_Handle> Items() {
    std::vector<SYS_Handle> items;
    for (long k = 0; k < GetCount(); ++k) items.push_back(GetAt(k));
    return items;
  }
  std::vector<SYS_Handle> Focus() {
    std::vector<SYS_Handle> focus;
    for (long k = 0; GetFocus(k) != 0; ++k) focus.push_back(GetFocus(k));
    return focus;
  }
  /// The use count of the hook on `notifier`; -1 without one.
  int UseCount(SCC_Notifier *notifier) {
    auto const *entry = m_EventHooks.Lookup(reinterpret_cast<SYS_Handle>(notifier));
    return entry != nullptr ? entry->m_Value.m_UseCount : -1;
  }
  long HookCount() const { return m_EventHooks.GetCount(); }
  std::vector<std::pair<int, SYS_Handle>> Held() {
    std::vector<std::pair<int, SYS_Handle>> held;
    for (long k = 0; k < m_SuspendedEvents.GetCount(); ++k)
      held.emplace_back(m_SuspendedEvents.GetElements()[k].m_Code, m_SuspendedEvents.GetElements()[k].m_Handle);
    return held;
  }

protected:
  SYS_Handle _GetSlider() override { return m_Slider; }
  void _SetSlider(SYS_Handle handle) override {
    sliderLog.push_back(handle);
    m_Slider = handle;
    m_At = std::find(source.begin(), source.end(), handle) - source.begin();
  }
  int _GetFirst() override { return stand(0); }
  /// On from where the slider stands (a source may hold a handle twice).
  int _GetNext() override {
    bool const here = m_At < source.size() && source[m_At] == m_Slider;
    return stand(m_Slider == 0 ? 0 : (here ? m_At : std::find(source.begin(), source.end(), m_Slider) - source.begin()) + 1);
  }
  SCC_Notifier *GetEvent() override {
    if (m_Slider == 0) return listNotifier;
    return notifierOf ? notifierOf(m_Slider) : listNotifier;
  }
  SYS_Handle UpdateHandle(SYS_Handle handle) override { return renumber ? renumber(handle) : handle; }

private:
  int stand(std::size_t at) {
    m_At = at;
    m_Slider = at < source.size() ? source[at] : 0;
    return m_Slider != 0;
  }

  SYS_Handle m_Slider = 0;
  std::size_t m_At = 0;  // where in the source the slider stands
};

/// A listener of a change notifier: logs "code:handle" (handles by their test number) and runs
/// an optional action, which may call back into the collection.
struct CollectionLog : SCC_EventHook<SYS_Handle> {
  int OnNotification(int code, SYS_Handle *param) override {
    SYS_Handle const handle = SCC_Notifier::HandleOf(param);
    log.push_back(std::to_string(code) + ":" + std::to_string(handle & 0x3FFFFFFFF));
    if (action) action(code, handle);
    return 0;
  }
  std::string Take() {
    std::string all;
    for (auto const &entry : log) all += (all.empty() ? "" : " ") + entry;
    log.clear();
    return all;
  }
  std::vector<std::string> log;
  std::function<void(int, SYS_Handle)> action;
};

/// A collection over a list that hears the list's notifier, with a listener on its changes.
struct CollectionTest : ::testing::Test {
  void SetUp() override {
    items.listNotifier = &list;
    items.SetEvent(&list);
    items.SetNotificationHandler(&changes);
  }
  /// Gives the source these handles and lets the collection load them; forgets the codes.
  void Load(std::initializer_list<long> numbers) {
    items.source = handles(numbers);
    items.AllowReload(1);
    changes.Take();
  }
  void Raise(int code, long number) { list.Notify(code, SCC_Notifier::ParamOf(handleOf(number))); }

  SCC_Notifier list;
  ListCollection items;
  CollectionLog changes;
};

#endif
