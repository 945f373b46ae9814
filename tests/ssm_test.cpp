//===- tests/ssm_test.cpp - The assertion manager and its records -------===//
#include "plat_error.h"
#include "scc_compare.h"
#include "sccstack.h"
#include "ssm.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

typedef std::vector<std::string> Log;

/// A handler that logs "name:code" and then runs an optional action with the handle it was told.
struct Spy : SCC_EventHook<SYS_Handle> {
  Spy(char const *name, Log &log, int priority = 0) : SCC_EventHook<SYS_Handle>(nullptr, priority), m_Name(name), m_Log(log) {}
  int OnNotification(int code, SYS_Handle *param) override {
    m_Log.push_back(m_Name + ":" + std::to_string(code));
    m_Handles.push_back(SSM::AssertObj::HandleOf(param));
    if (m_Action) m_Action(SSM::AssertObj::HandleOf(param));
    return 0;
  }
  std::string m_Name;
  Log &m_Log;
  std::vector<SYS_Handle> m_Handles;
  std::function<void(SYS_Handle)> m_Action;
};

/// What an action handler does: raises the action of the record it was told.
void choose(SYS_Handle handle, SSM::Action action) {
  SSM::AssertObj record;
  record.SetHandle(handle, nullptr);
  record.SetAction(action);
}

/// The record thrown as SSM::AssertData * by `body`; null when it returns.
SSM::AssertData *thrownRecord(std::function<void()> const &body) {
  try {
    body();
  } catch (SSM::AssertData *record) {
    return record;
  }
  return nullptr;
}

/// "file: message" of the record `body` throws; "nothing thrown" when it returns.
std::string thrownText(std::function<void()> const &body) {
  SSM::AssertData const *const record = thrownRecord(body);
  return record != nullptr ? std::string(record->m_FileName) + ": " + static_cast<char const *>(record->m_Message) : "nothing thrown";
}

/// The record of file/line in `manager`, invalid when there is none.
SSM::AssertObj find(SSM &manager, char const *file, long line) {
  SSM::AssertObj it;
  for (it.GetFirst(&manager); it.IsValid(); it.GetNext())
    if (it.GetFileName() == file && it.GetLineNo() == line) break;
  return it;
}

}  // namespace

// The first report of a site makes its record with count 1; a later one finds the same
// record, counts 2 and replaces only the message.
TEST(SsmRecords, OneRecordPerSite) {
  SSM manager;
  EXPECT_EQ(manager.AssertFailed("first", "geom", 12, SSM_Warning, 7), 1);
  EXPECT_EQ(manager.AssertFailed("second", "geom", 12, SSM_Warning, 9), 1);
  EXPECT_EQ(manager.AssertFailed("other line", "geom", 13, SSM_Warning, 0), 1);
  EXPECT_EQ(manager.GetRecordCount(), 2);
  SSM::AssertObj const site = find(manager, "geom", 12);
  ASSERT_TRUE(site.IsValid());
  EXPECT_STREQ(site.GetMsg(), "second");
  EXPECT_EQ(site.GetCount(), 2);
  EXPECT_EQ(site.GetID(), 7);
}

// The site key is "%s(%lu)" with the line as a 32-bit unsigned number on both data
// models, and the record lives in the bucket of the key's text hash.
TEST(SsmRecords, KeyAndBucket) {
  struct Case { char const *file; int line; char const *key; } cases[] = {
      {"geom", 12, "geom(12)"}, {"geom", -1, "geom(4294967295)"}, {nullptr, 5, "(5)"}, {"scc/scc", 0, "scc/scc(0)"},
  };
  SSM manager;
  for (auto const &c : cases) {
    SCOPED_TRACE(c.key);
    EXPECT_STREQ(SSM::MakeKey(c.file, c.line), c.key);
    manager.AssertFailed("", c.file, c.line, SSM_Warning, 0);
    SSM::AssertObj const site = find(manager, c.file != nullptr ? c.file : "", c.line);
    ASSERT_TRUE(site.IsValid());
    EXPECT_EQ(site.GetBucket(), SCC_Hash(SYS_String(c.key), 53));
    EXPECT_STREQ(site.GetKey(), c.key);
  }
}

// Without handlers a warning continues, an error at depth 0 continues, and a critical failure throws the site's record
// out of the report; through SSM_AssertFailed the last-error code survives a report that returns and not one that
// throws. Handlers are told the record's handle: its address itself, not a pointer to it.
TEST(SsmReport, DefaultsByType) {
  SSM manager;
  Log log;
  Spy reporter("report", log);
  manager.GetReportEvent().Insert(reporter);
  reporter.m_Action = [](SYS_Handle) { PLAT_SetLastError(5); };
  struct Case { SSM_FailureType type; int result; bool throws; } cases[] = {
      {SSM_Warning, 1, false}, {SSM_Error, 1, false}, {SSM_Critical, 0, true},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.type);
    PLAT_SetLastError(24);
    int result = -1;
    SSM::AssertData *const thrown = thrownRecord([&] { result = SSM_AssertFailed("", "sys/test", 10 + c.type, c.type, 0); });
    EXPECT_EQ(thrown != nullptr, c.throws);
    EXPECT_EQ(reporter.m_Handles.back(), manager.GetCurrent().GetHandle());
    if (c.throws) {
      EXPECT_EQ(reinterpret_cast<SYS_Handle>(thrown), manager.GetCurrent().GetHandle());
      EXPECT_STREQ(thrown->m_Message, "Message not available");
      EXPECT_EQ(PLAT_GetLastError(), 5);  // as the handler left it
    } else {
      EXPECT_EQ(result, c.result);
      EXPECT_EQ(PLAT_GetLastError(), 24);
    }
  }
  EXPECT_EQ(log, (Log{"report:0", "report:1", "report:2"}));
  PLAT_SetLastError(0);
}

// Action handlers can only raise the action: ActFail makes the report return 0 and SSM_Throw throw the record; ActThrow
// throws it from the report; ActFatal throws a FatalException, even when a later handler asks for ActThrow.
TEST(SsmReport, HandlersRaiseTheAction) {
  struct Case { char const *name; SSM::Action first, second; int outcome; } cases[] = {
      // outcome: 0 returns 0 and SSM_Throw throws, 1 returns 1, 2 throws the record, 3 fatal
      {"continue", SSM::ActContinue, SSM::ActContinue, 1}, {"fail", SSM::ActFail, SSM::ActContinue, 0},
      {"throw after fail", SSM::ActFail, SSM::ActThrow, 2}, {"fatal then throw", SSM::ActFatal, SSM::ActThrow, 3},
      {"weaker is ignored", SSM::ActThrow, SSM::ActFail, 2},
      {"negative is weaker", static_cast<SSM::Action>(-1), SSM::ActContinue, 1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SSM manager;
    Log log;
    Spy first("first", log, 5), second("second", log, 1);
    first.m_Action = [&c](SYS_Handle h) { choose(h, c.first); };
    second.m_Action = [&c](SYS_Handle h) { choose(h, c.second); };
    manager.GetAssertEvent().Insert(second);
    manager.GetAssertEvent().Insert(first);
    int result = -1;
    int outcome = -1;
    try {
      result = SSM_AssertFailed("boom", "sys/test", 1, SSM_Error, 0);
      outcome = result;
      if (result == 0) {
        EXPECT_EQ(thrownText([] { SSM_Throw(); }), "sys/test: boom");
      }
    } catch (SSM::AssertData *record) {
      outcome = 2;
      EXPECT_EQ(record->m_Action, SSM::ActContinue);  // cleared before throwing
    } catch (SSM::FatalException const &fatal) {
      outcome = 3;
      EXPECT_STREQ(fatal.m_pRecord->m_FileName, "sys/test");
    }
    EXPECT_EQ(outcome, c.outcome);
    EXPECT_EQ(log, (Log{"first:1", "second:1"}));
    EXPECT_EQ(manager.GetDepth(), -1);
  }
}

// An invalid action code is reported as a critical failure of the manager itself,
// which throws while a manager is current; without one it counts as ActContinue.
TEST(SsmReport, InvalidActionCode) {
  auto original = std::make_unique<SSM>();
  Log log;
  Spy bad("bad", log);
  // Written through the handle directly: the copy below is not the current manager.
  bad.m_Action = [](SYS_Handle h) { reinterpret_cast<SSM::AssertData *>(h)->m_Action = static_cast<SSM::Action>(7); };
  original->GetAssertEvent().Insert(bad);
  EXPECT_EQ(thrownText([&] { original->AssertFailed("x", "sys/test", 3, SSM_Warning, 0); }),
            "ssm/ssm: Assert handler encountered invalid action code.");
  EXPECT_EQ(original->GetDepth(), -1);

  // A copy is never current: once the original is gone, the report has nowhere to go.
  SSM copy(*original);
  original.reset();
  ASSERT_EQ(SSM::GetManager(), nullptr);
  EXPECT_EQ(copy.AssertFailed("x", "sys/test", 3, SSM_Warning, 0), 1);
  EXPECT_EQ(log, (Log{"bad:0", "bad:0"}));
}

// Silent mode and disabled sites skip the action handlers (so warnings and errors continue) but not the report
// handlers; only a disabled site skips the log handlers. A critical failure still throws.
TEST(SsmReport, SilentModeAndDisabledSites) {
  struct Case { char const *name; bool silent, disabled; SSM_FailureType type; Log log; bool throws; } cases[] = {
      {"silent warning", true, false, SSM_Warning, {"report:0", "log:0"}, false},
      {"silent error", true, false, SSM_Error, {"report:1", "log:1"}, false},
      {"disabled error", false, true, SSM_Error, {"report:1"}, false},
      {"disabled critical", false, true, SSM_Critical, {"report:2"}, true},
      {"plain error", false, false, SSM_Error, {"action:1", "report:1", "log:1"}, true},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SSM manager;
    manager.AssertFailed("", "sys/test", 1, SSM_Warning, 0);  // makes the record
    SSM::AssertObj site = find(manager, "sys/test", 1);
    site.Disable(c.disabled);
    SSM::SetSilentMode(c.silent);
    EXPECT_EQ(SSM::GetSilentMode(), c.silent ? 1 : 0);
    Log log;
    Spy action("action", log), report("report", log), logger("log", log);
    action.m_Action = [](SYS_Handle h) { choose(h, SSM::ActThrow); };
    manager.GetAssertEvent().Insert(action);
    manager.GetReportEvent().Insert(report);
    manager.GetLogEvent().Insert(logger);
    SSM::AssertData *const thrown = thrownRecord([&] { EXPECT_EQ(manager.AssertFailed("", "sys/test", 1, c.type, 0), 1); });
    EXPECT_EQ(thrown != nullptr, c.throws);
    EXPECT_EQ(log, c.log);
    EXPECT_EQ(site.GetCount(), 2);
  }
  EXPECT_EQ(SSM::GetSilentMode(), 0);  // no manager
  SSM::SetSilentMode(1);               // does nothing
}

// A report made while another is handled runs one level deeper: an error there fails
// by default (depth 1 and 2), a warning continues, and the handlers see the depth.
TEST(SsmNested, ErrorsInsideHandlersFail) {
  SSM manager;
  Log log;
  std::vector<long> depths;
  std::vector<int> results;
  Spy reporter("report", log);
  reporter.m_Action = [&](SYS_Handle h) {
    depths.push_back(manager.GetDepth());
    SSM::AssertObj record;
    record.SetHandle(h, nullptr);
    if (record.GetLineNo() == 1) {
      results.push_back(SSM_AssertFailed("inner", "sys/nested", 100, SSM_Error, 0));
      results.push_back(SSM_AssertFailed("inner", "sys/nested", 200, SSM_Warning, 0));
    }
    if (record.GetLineNo() == 100) results.push_back(SSM_AssertFailed("inner", "sys/nested", 101, SSM_Error, 0));
  };
  manager.GetReportEvent().Insert(reporter);
  EXPECT_EQ(manager.AssertFailed("outer", "sys/outer", 1, SSM_Error, 0), 1);
  EXPECT_EQ(depths, (std::vector<long>{0, 1, 2, 1}));
  EXPECT_EQ(results, (std::vector<int>{0, 0, 1}));  // depth 2, depth 1, the warning
  EXPECT_EQ(manager.GetDepth(), -1);
  // After the outer report the current assertion is the outer record.
  EXPECT_STREQ(manager.GetCurrent().GetFileName(), "sys/outer");
}

// A site that fails again while its own report is handled returns 1 at once: no
// notification, no count. The site reports normally once its report is over.
TEST(SsmNested, SameSiteInsideItsOwnReport) {
  SSM manager;
  Log log;
  std::vector<int> results;
  Spy action("action", log);
  action.m_Action = [&](SYS_Handle) { results.push_back(manager.AssertFailed("again", "sys/self", 1, SSM_Critical, 0)); };
  manager.GetAssertEvent().Insert(action);
  EXPECT_EQ(manager.AssertFailed("once", "sys/self", 1, SSM_Error, 0), 1);
  EXPECT_EQ(results, (std::vector<int>{1}));
  EXPECT_EQ(log, (Log{"action:1"}));
  SSM::AssertObj const site = find(manager, "sys/self", 1);
  EXPECT_EQ(site.GetCount(), 1);
  EXPECT_STREQ(site.GetMsg(), "once");
  action.m_Action = nullptr;
  EXPECT_EQ(manager.AssertFailed("twice", "sys/self", 1, SSM_Error, 0), 1);
  EXPECT_EQ(site.GetCount(), 2);
}

// An exception that leaves a handler passes through the report unchanged, and the depth and active stack are unwound,
// also from two levels deep: the sites report normally afterwards instead of being swallowed as still in progress.
TEST(SsmNested, HandlerThrowUnwindsTheReport) {
  SSM manager;
  Log log;
  Spy reporter("report", log);
  reporter.m_Action = [&](SYS_Handle h) {
    SSM::AssertObj record;
    record.SetHandle(h, nullptr);
    if (record.GetLineNo() == 1) manager.AssertFailed("inner", "sys/throw", 2, SSM_Warning, 0);
    if (record.GetLineNo() == 2 && record.GetCount() == 1) throw 42;
  };
  manager.GetReportEvent().Insert(reporter);
  EXPECT_THROW(manager.AssertFailed("outer", "sys/throw", 1, SSM_Warning, 0), int);
  EXPECT_EQ(manager.GetDepth(), -1);
  EXPECT_EQ(manager.GetCurrent().GetLineNo(), 1);  // the outer record, unwound last
  EXPECT_EQ(manager.GetCurrent().GetAction(), SSM::ActContinue);
  log.clear();
  EXPECT_EQ(manager.AssertFailed("outer", "sys/throw", 1, SSM_Warning, 0), 1);
  EXPECT_EQ(log, (Log{"report:0", "report:0"}));  // outer and inner both told again
  EXPECT_EQ(find(manager, "sys/throw", 2).GetCount(), 2);
  // A critical report inside a handler throws through the outer report the same way.
  reporter.m_Action = [&](SYS_Handle) {
    if (manager.GetDepth() == 0) manager.AssertFailed("inner", "sys/critical", 1, SSM_Critical, 0);
  };
  EXPECT_EQ(thrownText([&] { manager.AssertFailed("", "sys/throw", 1, SSM_Warning, 0); }), "sys/critical: inner");
  EXPECT_EQ(manager.GetDepth(), -1);
}

// A nested report's fatal record ends with it: when a handler catches the
// FatalException of a report it made, the outer report still fails with its own record.
TEST(SsmNested, CaughtFatalStaysInside) {
  SSM manager;
  Log log;
  Spy action("action", log);
  action.m_Action = [&](SYS_Handle h) {
    SSM::AssertObj record;
    record.SetHandle(h, nullptr);
    if (record.GetLineNo() == 2) return record.SetAction(SSM::ActFatal);
    EXPECT_THROW(manager.AssertFailed("inner", "sys/fatal", 2, SSM_Warning, 0), SSM::FatalException);
    record.SetAction(SSM::ActFail);
  };
  manager.GetAssertEvent().Insert(action);
  EXPECT_EQ(manager.AssertFailed("outer", "sys/fatal", 1, SSM_Warning, 0), 0);
  SSM::AssertData *const thrown = thrownRecord([] { SSM_Throw(); });
  ASSERT_NE(thrown, nullptr);
  EXPECT_EQ(thrown->m_Line, 1);
}

// Managers made and destroyed in sequence: the newest is current, destroying any manager leaves none current, the count
// follows every manager, copies included, and a copy never becomes current.
TEST(SsmLifecycle, ManagersInSequence) {
  int const before = SSM::InstanceCount;
  auto first = std::make_unique<SSM>();
  EXPECT_EQ(SSM::GetManager(), first.get());
  auto second = std::make_unique<SSM>();
  EXPECT_EQ(SSM::GetManager(), second.get());
  EXPECT_EQ(SSM::InstanceCount, before + 2);
  {
    SSM copy(*second);
    EXPECT_EQ(SSM::InstanceCount, before + 3);
    EXPECT_EQ(SSM::GetManager(), second.get());
  }
  EXPECT_EQ(SSM::GetManager(), second.get());
  first.reset();
  EXPECT_EQ(SSM::GetManager(), nullptr);
  EXPECT_EQ(SSM_AssertFailed("", "sys/life", 1, SSM_Critical, 0), 0);  // falls through
  EXPECT_EQ(second->GetRecordCount(), 0);
  second.reset();
  EXPECT_EQ(SSM::InstanceCount, before);
  SSM third;
  EXPECT_EQ(SSM::GetManager(), &third);
  EXPECT_EQ(third.GetRecordCount(), 0);
}

// Copying hands the records, handlers and current assertion over to the copy; it is
// refused with a report while a report is in progress.
TEST(SsmLifecycle, CopyTakesOver) {
  SSM manager;
  Log log;
  Spy reporter("report", log);
  manager.GetReportEvent().Insert(reporter);
  manager.AssertFailed("kept", "sys/copy", 1, SSM_Warning, 0);
  SYS_Handle const handle = manager.GetCurrent().GetHandle();
  SSM copy(manager);
  EXPECT_EQ(manager.GetRecordCount(), 0);
  EXPECT_FALSE(manager.GetCurrent().IsValid());
  EXPECT_EQ(copy.GetRecordCount(), 1);
  EXPECT_EQ(copy.GetCurrent().GetHandle(), handle);
  copy.AssertFailed("", "sys/copy", 1, SSM_Warning, 0);
  EXPECT_EQ(log, (Log{"report:0", "report:0"}));
  EXPECT_EQ(copy.GetCurrent().GetCount(), 2);

  SSM assigned;  // now the current manager
  reporter.m_Action = [&](SYS_Handle) { assigned = copy; };
  EXPECT_EQ(thrownText([&] { copy.AssertFailed("", "sys/copy", 1, SSM_Warning, 0); }),
            "ssm/ssm: SSM copied while a report is in progress.");
  EXPECT_EQ(copy.GetRecordCount(), 1);
  EXPECT_EQ(copy.GetDepth(), -1);
}

// Records are listed bucket by bucket, each bucket from its latest record, and named by handles that are their full
// addresses: a handle round-trips, a foreign or null one designates nothing.
TEST(SsmAssertObj, ListingAndHandles) {
  SSM manager;
  std::multimap<long, int> byBucket;  // bucket -> line, in report order
  for (int line = 1; line <= 120; ++line) {
    manager.AssertFailed("", "sys/list", line, SSM_Warning, 0);
    byBucket.emplace(SCC_Hash(SSM::MakeKey("sys/list", line), 53), line);
  }
  std::vector<int> expected;
  for (auto it = byBucket.begin(); it != byBucket.end();) {
    auto const range = byBucket.equal_range(it->first);
    std::vector<int> chain;
    for (auto entry = range.first; entry != range.second; ++entry) chain.insert(chain.begin(), entry->second);
    expected.insert(expected.end(), chain.begin(), chain.end());
    it = range.second;
  }
  std::vector<int> listed;
  SSM::AssertObj it;
  for (it.GetFirst(nullptr); it.IsValid(); it.GetNext()) {
    listed.push_back(static_cast<int>(it.GetLineNo()));
    SSM::AssertObj again;
    again.SetHandle(it.GetHandle(), &manager);
    EXPECT_EQ(again.GetHandle(), it.GetHandle());
    EXPECT_EQ(again.GetHandle(), reinterpret_cast<SYS_Handle>(&it.GetValue()));
  }
  EXPECT_EQ(listed, expected);
  EXPECT_EQ(it.GetHandle(), 0);

  SSM::AssertData foreign;
  struct Case { char const *name; SSM::AssertData *record; } cases[] = {{"null", nullptr}, {"foreign", &foreign}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SSM::AssertObj obj;
    obj.GetFirst(&manager);
    obj.SetHandle(c.record);
    EXPECT_FALSE(obj.IsValid());
  }
  EXPECT_EQ(SSM::AssertObj::DefaultSort(-1, 1), -1);
  EXPECT_EQ(SSM::AssertObj::DefaultSort(SYS_Handle(1) << 20, 3), 1);
  EXPECT_EQ(SSM::AssertObj::DefaultSort(9, 9), 0);
}

// Editing a record: Disable toggles, the log message and flag stick across reports, and
// an object that designates nothing is reported (thrown with a manager, 0 without).
// Records tell of their changes through the current manager's assertion event.
TEST(SsmAssertObj, EditingAndInvalidObjects) {
  {
    SSM manager;
    manager.AssertFailed("", "sys/edit", 1, SSM_Warning, 0);
    SSM::AssertObj site = find(manager, "sys/edit", 1);
    site.SetLogMsg("logged");
    site.SetLogRequired(0);
    site.Disable(5);
    EXPECT_EQ(site.IsDisabled(), 1);
    site.Disable(0);
    EXPECT_EQ(site.IsDisabled(), 0);
    site.IncreaseCount();
    manager.AssertFailed("new", "sys/edit", 1, SSM_Warning, 0);
    EXPECT_STREQ(site.GetLogMsg(), "logged");
    EXPECT_EQ(site.IsLogRequired(), 0);
    EXPECT_EQ(site.GetCount(), 3);
    SSM::AssertObj const nothing;
    EXPECT_EQ(thrownText([&] { nothing.GetCount(); }).substr(0, 9), "ssm/ssm: ");
    EXPECT_EQ(SSM::AssertObj::GetChangeEvent(nullptr), &manager.GetAssertEvent());
  }
  SSM::AssertObj nothing;
  EXPECT_EQ(nothing.GetCount(), 0);
  nothing.SetAction(SSM::ActFatal);
  EXPECT_EQ(nothing.GetAction(), SSM::ActContinue);
  EXPECT_EQ(SSM::AssertObj::GetChangeEvent(nullptr), nullptr);
}

// A failed check of the library with a manager ends in the thrown record carrying the
// library's source name and the check's text.
TEST(SsmLibraryChecks, EndInTheThrownRecord) {
  SSM manager;
  EXPECT_EQ(thrownText([] { SCC_Stack<int>().Pop(); }), "scc/sccstack: Message not available");
  EXPECT_EQ(thrownText([] { SCC_Hash(static_cast<char const *>("x"), 0); }), "scc/scc: Message not available");
  EXPECT_EQ(manager.GetRecordCount(), 2);
  EXPECT_EQ(manager.GetDepth(), -1);
}
