//===- bench/bench_ssm.cpp - SSM reports against a hand-written manager -===//
//
// A host that does not use SSM would keep its own table of check sites: a
// std::unordered_map keyed by "file(line)", a vector of sites in progress and
// std::function handlers. Both sides handle the same warnings of n sites,
// cycled in order, with one action handler that finds the record it is told
// and sets the action, and one report handler that reads the count.
//
//===------------------------------------------------------------------===//
#include "ssm.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

char const *const kFile = "sfm/sfmfile";

/// What a host would write instead of SSM: the same decisions, standard containers.
class PeerManager {
public:
  struct Record {
    std::string file, message;
    long line = 0, count = 0;
    int enabled = 1, action = 0;
  };
  typedef std::function<void(int type, Record &record)> Handler;

  int AssertFailed(char const *text, char const *file, int line, int type) {
    char key[512];
    std::snprintf(key, sizeof key, "%s(%lu)", file, static_cast<unsigned long>(static_cast<unsigned>(line)));
    auto found = m_Records.find(key);
    if (found == m_Records.end()) {
      found = m_Records.emplace(key, Record()).first;
      found->second.file = file;
      found->second.line = line;
    }
    Record &record = found->second;
    if (std::find(m_Active.begin(), m_Active.end(), &record) != m_Active.end()) return 1;
    m_Active.push_back(&record);
    ++record.count;
    record.message = text;
    record.action = 0;
    for (auto const &handler : m_ActionHandlers) handler(type, record);
    int const result = record.action == 1 ? 0 : 1;
    for (auto const &handler : m_ReportHandlers) handler(type, record);
    record.action = 0;
    m_Active.pop_back();
    return result;
  }

  std::vector<Handler> m_ActionHandlers, m_ReportHandlers;

private:
  std::unordered_map<std::string, Record> m_Records;
  std::vector<Record *> m_Active;
};

long g_Seen = 0;

int ssmAction(int, SYS_Handle *param) {
  SSM::AssertObj record;
  record.SetHandle(SSM::AssertObj::HandleOf(param), nullptr);
  record.SetAction(SSM::ActContinue);
  return 0;
}

int ssmReport(int, SYS_Handle *param) {
  SSM::AssertObj record;
  record.SetHandle(SSM::AssertObj::HandleOf(param), nullptr);
  g_Seen += record.GetCount();
  return 0;
}

void Ssm_Warning(benchmark::State &state) {
  int const sites = static_cast<int>(state.range(0));
  SSM manager;
  SCC_EventHook<SYS_Handle> action(ssmAction), report(ssmReport);
  manager.GetAssertEvent().Insert(action);
  manager.GetReportEvent().Insert(report);
  for (int line = 0; line < sites; ++line) manager.AssertFailed("open failed", kFile, line, SSM_Warning, 0);
  int line = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(manager.AssertFailed("open failed", kFile, line, SSM_Warning, 0));
    if (++line == sites) line = 0;
  }
  benchmark::DoNotOptimize(g_Seen);
}

void Peer_Warning(benchmark::State &state) {
  int const sites = static_cast<int>(state.range(0));
  PeerManager manager;
  manager.m_ActionHandlers.push_back([](int, PeerManager::Record &record) { record.action = std::max(record.action, 0); });
  manager.m_ReportHandlers.push_back([](int, PeerManager::Record &record) { g_Seen += record.count; });
  for (int line = 0; line < sites; ++line) manager.AssertFailed("open failed", kFile, line, SSM_Warning);
  int line = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(manager.AssertFailed("open failed", kFile, line, SSM_Warning));
    if (++line == sites) line = 0;
  }
  benchmark::DoNotOptimize(g_Seen);
}

}  // namespace

BENCHMARK(Ssm_Warning)->Arg(1)->Arg(500);
BENCHMARK(Peer_Warning)->Arg(1)->Arg(500);
