//===- tests/report_spy.cpp - Records the library's failure reports -----===//
#include "tests/report_spy.h"

#include <dlfcn.h>

#include <cstdlib>

namespace {

ReportSpy *g_Spy = nullptr;

typedef int (*ReportFunction)(char const *, char const *, int, SSM_FailureType, int);

/// The library's SSM_AssertFailed: the next definition after this binary's.
ReportFunction libraryReport() {
  static ReportFunction const function = reinterpret_cast<ReportFunction>(
      dlsym(RTLD_NEXT, "_Z16SSM_AssertFailedPKcS0_i15SSM_FailureTypei"));
  if (function == nullptr) std::abort();  // the library must export it
  return function;
}

}  // namespace

// Exported like the library's (BFC_API in the header), so the dynamic linker binds the library's own calls here too.
int SSM_AssertFailed(char const *message, char const *file, int line, SSM_FailureType type, int id) {
  if (g_Spy != nullptr)
    g_Spy->Record(ReportRecord{message != nullptr ? message : "", file != nullptr ? file : "", line, type, id});
  return libraryReport()(message, file, line, type, id);
}

ReportSpy::ReportSpy() { g_Spy = this; }
ReportSpy::~ReportSpy() { g_Spy = nullptr; }

std::vector<std::string> ReportSpy::Summary() const {
  std::vector<std::string> out;
  for (auto const &r : m_Reports) out.push_back(r.file + ": " + r.message);
  return out;
}
