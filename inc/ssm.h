//===- inc/ssm.h - The assertion manager --------------------------------===//
//
// The host creates at most one current manager; every report made through
// SSM_AssertFailed reaches it. Until a host creates one, GetManager() is null
// and reports fall through.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SSM_H
#define BFC_SSM_H

#include "ssm_report.h"

/// The assertion manager: decides per check site whether a failure continues, fails,
/// throws or is fatal.
class BFC_API SSM {
public:
  struct AssertData;

  /// Thrown by value when a failure is declared fatal; holds the site's record.
  class BFC_API FatalException {
  public:
    explicit FatalException(AssertData *record) : m_pRecord(record) {}
    AssertData *m_pRecord;
  };

  /// The current manager, null when there is none.
  static SSM *Instance;
  /// The number of managers in existence.
  static int InstanceCount;

  static SSM *GetManager() { return Instance; }

  /// Handles one report; returns 1 (continue) or 0 (the caller throws), or throws.
  int AssertFailed(char const *text, char const *file, int line, SSM_FailureType type, int id);
  /// Throws the fatal record or the current record; returns when there is neither.
  void Throw();

  SSM() = delete;
};

#endif
