//===- tests/report_spy.h - Records the library's failure reports -------===//
//
// The test binary defines SSM_AssertFailed itself, and that definition takes the place of the library's for every
// caller in the process, the library included. While a ReportSpy is alive it records each report; every report then
// goes on to the library's own function, so it behaves exactly as without the spy.
//
//===------------------------------------------------------------------===//
#ifndef BFC_TESTS_REPORT_SPY_H
#define BFC_TESTS_REPORT_SPY_H

#include "ssm_report.h"

#include <string>
#include <vector>

/// One failure report as it reached SSM_AssertFailed.
struct ReportRecord {
  std::string message;
  std::string file;
  int line;
  SSM_FailureType type;
  int id;
};

/// Records the reports made during its lifetime. Spies do not nest.
class ReportSpy {
public:
  ReportSpy();
  ~ReportSpy();
  ReportSpy(ReportSpy const &) = delete;
  ReportSpy &operator=(ReportSpy const &) = delete;

  std::vector<ReportRecord> const &Reports() const { return m_Reports; }
  /// "file: message" of every report, in order.
  std::vector<std::string> Summary() const;
  void Forget() { m_Reports.clear(); }

  /// Called by the test binary's SSM_AssertFailed.
  void Record(ReportRecord record) { m_Reports.push_back(std::move(record)); }

private:
  std::vector<ReportRecord> m_Reports;
};

#endif
