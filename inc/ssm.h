//===- inc/ssm.h - The assertion manager --------------------------------===//
//
// The host creates the manager; from then on every report made through
// SSM_AssertFailed reaches it. It keeps one record per check site, lets action
// handlers choose what a failure does, tells report and log handlers of every
// failure, and lets the host list and edit the records through SSM::AssertObj.
// Until a host creates a manager, GetManager() is null and reports fall through.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SSM_H
#define BFC_SSM_H

#include "scc_event.h"
#include "scc_map.h"
#include "sccstack.h"
#include "ssm_report.h"
#include "sys_base.h"
#include "sys_string.h"

/// The assertion manager: decides per check site whether a failure continues, fails,
/// throws or is fatal.
///
/// Handlers are hooks on GetAssertEvent() (they choose the action), GetReportEvent()
/// (told of every report once the action is settled) and GetLogEvent() (told when the
/// site requires logging and is enabled). Each is told the failure type as the code
/// and the record's handle as the parameter: the SYS_Handle value itself cast to
/// `int *` (AssertObj::HandleOf turns it back); it is never a pointer to an int.
///
/// A handler may connect and disconnect hooks, make reports of its own (they run at a
/// depth of 1 or more; a site whose report is in progress returns 1 at once) and
/// throw. When an exception leaves a handler, the report it interrupted is unwound
/// first: its record is popped from the active stack, its action cleared, the current
/// assertion designates it and the depth is lowered, so the site reports normally
/// afterwards. A handler must not destroy the manager it is told by (copying or
/// assigning it meanwhile is refused, see below).
///
/// Copies: a manager made by copying counts in InstanceCount like any other, but it
/// never becomes the current manager, so destroying it leaves Instance alone. A
/// manager made by the default constructor sets Instance to null when it is destroyed,
/// whichever manager Instance named by then. Copying or assigning hands the source's
/// records and handlers over to the target (the source is left with neither); it is
/// refused with a report while either manager has a report in progress.
class BFC_API SSM {
public:
  /// What a report does; a higher value is a stronger action. Any other value left by
  /// a handler is invalid (the fixed underlying type lets it be stored and detected).
  enum Action : int {
    ActContinue = 0,  ///< the report returns non-zero: the caller goes on
    ActFail = 1,      ///< the report returns 0: the caller calls SSM_Throw
    ActThrow = 2,     ///< the report throws the site's record (SSM::AssertData *)
    ActFatal = 3,     ///< the report throws SSM::FatalException holding the record
  };

  /// The record of one check site. Thrown by address (SSM::AssertData *) when a
  /// failure is thrown; it lives as long as the manager whose map holds it.
  struct BFC_API AssertData {
    SYS_String m_FileName;    ///< the file of the site's first report
    SYS_String m_Message;     ///< the text of the latest report
    SYS_String m_LogMessage;  ///< empty until set through AssertObj::SetLogMsg
    long m_Line = 0;
    long m_Count = 0;         ///< reports of the site so far
    int m_Enabled = 1;        ///< 0 disables the site
    int m_LogRequired = 1;
    Action m_Action = ActContinue;  ///< chosen during the report in progress, else ActContinue
    long m_ID = 0;            ///< the id of the site's first report
  };

  /// Thrown by value when a failure is declared fatal; holds the site's record.
  class BFC_API FatalException {
  public:
    explicit FatalException(AssertData *record) : m_pRecord(record) {}
    AssertData *m_pRecord;
  };

  /// The records by site key "file(line)", the line as a 32-bit unsigned number; 53
  /// buckets by the text hash of the key. Copying moves the records, as for any map.
  class BFC_API AssertMap : public SCC_Map<SYS_String, AssertData> {
  public:
    AssertMap() : SCC_Map<SYS_String, AssertData>(kBucketCount) {}
    AssertMap(AssertMap &source) : SCC_Map<SYS_String, AssertData>(source) {}
    AssertMap &operator=(AssertMap &source) {
      SCC_Map<SYS_String, AssertData>::operator=(source);
      return *this;
    }
    ~AssertMap() override;

    static constexpr long kBucketCount = 53;
  };

  /// Designates one record of a manager, so that the host can list and edit the records
  /// and handlers can read and change the one being reported.
  ///
  /// It walks a manager's map: buckets in ascending order, each chain from its most
  /// recent entry. Operations on the record require a valid object; on an invalid one
  /// they are reported as a failed check of "ssm/ssm" and read as empty or 0.
  class BFC_API AssertObj : public SCC_Map<SYS_String, AssertData>::Iterator {
  public:
    AssertObj() noexcept = default;
    AssertObj(AssertObj const &) = default;
    AssertObj &operator=(AssertObj const &) = default;

    /// Designates the first record of `manager` (of the current manager when null);
    /// unchanged when there is no manager.
    void GetFirst(SSM *manager);
    /// The next record; invalid after the last.
    void GetNext() { Next(); }
    /// The record's address, 0 when invalid.
    SYS_Handle GetHandle() const noexcept;
    /// Designates `record` among the current manager's records; nothing when it is null,
    /// when there is no manager or when it is not one of that manager's records.
    void SetHandle(AssertData *record);
    /// SetHandle with the handle taken as a record address; `manager` is not used.
    void SetHandle(SYS_Handle handle, SSM *manager);

    /// The handle a handler is told, from its notification parameter.
    static SYS_Handle HandleOf(SYS_Handle *param) noexcept { return reinterpret_cast<SYS_Handle>(param); }
    /// The notification parameter that carries `handle`.
    static SYS_Handle *ParamOf(SYS_Handle handle) noexcept { return reinterpret_cast<SYS_Handle *>(handle); }

    /// -1, 0 or 1 as `a` is below, equal to or above `b`, as signed numbers.
    static int DefaultSort(SYS_Handle const &a, SYS_Handle const &b) noexcept { return a < b ? -1 : (b < a ? 1 : 0); }
    /// The current manager's action handlers; null when there is no manager.
    static SCC_Notifier *GetChangeEvent(void *unused);
    /// Records never move, so there is nothing to update.
    void OnUpdatePointers() noexcept {}

    SYS_String GetFileName() const;
    long GetLineNo() const;
    long GetID() const;
    SYS_String GetMsg() const;
    void SetMsg(SYS_String message);
    SYS_String GetLogMsg() const;
    void SetLogMsg(SYS_String message);
    long GetCount() const;
    void IncreaseCount();
    /// 1 when the site is disabled.
    int IsDisabled() const;
    /// Disables the site when `disable` is non-zero, enables it otherwise.
    void Disable(int disable);
    int IsLogRequired() const;
    void SetLogRequired(int required);
    Action GetAction() const;
    /// Raises the action to `action`; a weaker action never replaces a stronger one.
    void SetAction(Action action);
    /// Sets the action back to ActContinue.
    void ClearAction();

  private:
    /// The record, or null (reported) when the object is not valid.
    AssertData *record(int line) const;
  };

  /// The current manager, null when there is none.
  static SSM *Instance;
  /// The number of managers in existence, copies included.
  static int InstanceCount;

  /// A manager with no records or handlers; it becomes the current manager.
  SSM();
  /// Takes over the source's records and handlers; see the class comment for copies.
  SSM(SSM &source);
  /// Drops this manager's records and handlers and takes over the source's; the
  /// current manager stays as it was.
  SSM &operator=(SSM &source);
  ~SSM();

  static SSM *GetManager() noexcept { return Instance; }
  /// The silent mode of the current manager; 0 when there is none.
  static int GetSilentMode() noexcept;
  /// Sets the current manager's silent mode (while on, action handlers are not asked);
  /// does nothing when there is no manager.
  static void SetSilentMode(int silent) noexcept;

  /// The site key of a file and line: "%s(%lu)" with the line as a 32-bit unsigned
  /// number (line -1 gives "file(4294967295)"); a null file counts as empty.
  static SYS_String MakeKey(char const *file, long line);

  /// Handles one report of the site `file`/`line`; returns 1 (continue) or 0 (the
  /// caller throws), or throws the site's record or an SSM::FatalException. A report of
  /// a site whose own report is in progress returns 1 at once. Critical failures always
  /// throw; other types ask the action handlers unless silent mode is on or the site is
  /// disabled. An invalid action left by a handler is reported as a critical failure of
  /// "ssm/ssm" and otherwise treated as ActContinue.
  int AssertFailed(char const *text, char const *file, int line, SSM_FailureType type, int id);
  /// Throws the fatal record as SSM::FatalException when there is one, else the current
  /// assertion's record as SSM::AssertData *; returns when there is neither.
  void Throw();

  /// The action handlers; AssertObj::GetChangeEvent gives the current manager's.
  SCC_Notifier &GetAssertEvent() noexcept { return m_AssertEvent; }
  /// Handlers told of every report once its action is settled.
  SCC_Notifier &GetReportEvent() noexcept { return m_ReportEvent; }
  /// Handlers told of reports of enabled sites that require logging.
  SCC_Notifier &GetLogEvent() noexcept { return m_LogEvent; }
  /// The record being handled, and after a report the record last handled.
  AssertObj const &GetCurrent() const noexcept { return m_Current; }
  /// -1 when no report is in progress, 0 during one, 1 or more when nested.
  long GetDepth() const noexcept { return m_Depth; }
  /// The number of sites recorded.
  long GetRecordCount() const noexcept { return m_Map.GetCount(); }

private:
  class ReportScope;

  /// The map entry that holds `record`, found by address (never read through
  /// `record`); null when it is not one of this manager's records.
  AssertMap::MapNode *findNode(AssertData const *record) const noexcept;
  /// Whether `record`'s report is in progress.
  bool isActive(AssertData const *record);
  /// Takes over the source's records, handlers and state; this manager is empty.
  void takeOver(SSM &source);

  // Invariant: m_Active holds the records of the reports in progress, innermost on
  // top; it is empty when m_Depth is -1. Every pointer in it, m_pFatal and
  // m_Current name entries of m_Map.
  long m_Depth;
  SCC_Notifier m_AssertEvent;
  SCC_Notifier m_ReportEvent;
  SCC_Notifier m_LogEvent;
  AssertObj m_Current;
  AssertData *m_pFatal;
  AssertMap m_Map;
  SCC_Stack<AssertData *> m_Active;
  int m_SilentMode;
  bool m_Copy;  // made by copying: never current, so its end leaves Instance alone
};

#endif
