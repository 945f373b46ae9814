//===- tests/msgdb_support.h - Catalogues made and loaded by the tests ---===//
#ifndef BFC_TESTS_MSGDB_SUPPORT_H
#define BFC_TESTS_MSGDB_SUPPORT_H

#include "sfm_msgdb.h"
#include "tests/sfm_support.h"

#include <memory>
#include <string>
#include <vector>

/// Collects the text loader's diagnostics as "line: message: text" while it lives.
class DiagnosticLog {
public:
  DiagnosticLog() : m_Old(SFM_MessageDB::SetDiagnosticSink(&sink)) { s_Current = this; }
  ~DiagnosticLog() {
    SFM_MessageDB::SetDiagnosticSink(m_Old);
    s_Current = nullptr;
  }
  std::vector<std::string> lines;

private:
  static void sink(char const *, int line, char const *message, char const *text) {
    if (s_Current != nullptr)
      s_Current->lines.push_back(std::to_string(line) + ": " + message + (text ? std::string(": ") + text : ""));
  }
  SFM_MessageDB::DiagnosticSink m_Old;
  static inline DiagnosticLog *s_Current = nullptr;
};

/// The text source `source` written as `name` in `dir` and loaded.
inline std::unique_ptr<SFM_MessageDB> LoadSource(TempDir const &dir, std::string const &source,
                                                 std::string const &name = "cat.msgs") {
  return std::make_unique<SFM_MessageDB>(dir.Write(name, source).c_str(), 0);
}

/// The compiled bytes of `source`, saved as `name` in `dir`.
inline std::string CompileSource(TempDir const &dir, std::string const &source, std::string const &name = "cat.mdb") {
  if (!LoadSource(dir, source)->Save((dir / name).c_str())) return "<not saved>";
  return TempDir::Read(dir / name);
}

#endif
