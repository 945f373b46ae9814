//===- ssm/ssm.cpp - The assertion manager ------------------------------===//
//
// One report runs through AssertFailed: the site's record is found or made,
// marked as in progress on the active stack, the action handlers choose what
// the failure does, the report and log handlers are told, and the report
// returns or throws. A report interrupted by an exception is unwound by
// ReportScope so that the site is not left marked as in progress.
//
//===------------------------------------------------------------------===//
#include "ssm.h"

#include <cstdint>
#include <cstring>

SSM *SSM::Instance = nullptr;
int SSM::InstanceCount = 0;

SSM::AssertMap::~AssertMap() = default;

/// The depth and active-stack bookkeeping of one report. It raises the depth when
/// made and lowers it when destroyed; when the report's record is still pushed at
/// that point (an exception left a handler), it is popped as the report would
/// have popped it.
class SSM::ReportScope {
public:
  explicit ReportScope(SSM &manager) noexcept : m_Manager(manager), m_pNode(nullptr) { ++manager.m_Depth; }
  ReportScope(ReportScope const &) = delete;
  ReportScope &operator=(ReportScope const &) = delete;
  ~ReportScope() {
    if (m_pNode != nullptr) {
      m_pNode->m_Value.m_Action = ActContinue;
      // Nested reports have unwound their own records, so this one is on top; a stack
      // that is empty anyway must not be reported while an exception is in flight.
      if (m_Manager.m_Active.GetTop() >= 1) m_Manager.m_Active.Pop();
      m_Manager.m_Current.Set(&m_Manager.m_Map, m_pNode);
    }
    --m_Manager.m_Depth;
  }

  /// The record of `node` has been pushed on the active stack.
  void Pushed(AssertMap::MapNode *node) noexcept { m_pNode = node; }
  /// Clears the record's action, pops the active stack and makes the current
  /// assertion designate the popped record.
  void Pop() {
    AssertMap::MapNode *const node = m_pNode;
    node->m_Value.m_Action = ActContinue;
    m_pNode = nullptr;
    AssertData *const popped = m_Manager.m_Active.Pop();
    AssertMap::MapNode *const found = popped == &node->m_Value ? node : m_Manager.findNode(popped);
    m_Manager.m_Current.Set(found != nullptr ? &m_Manager.m_Map : nullptr, found);
  }

private:
  SSM &m_Manager;
  AssertMap::MapNode *m_pNode;  // the entry whose record this report pushed and has not popped
};

SSM::SSM() : m_Depth(-1), m_pFatal(nullptr), m_SilentMode(0), m_Copy(false) {
  Instance = this;
  ++InstanceCount;
}

SSM::SSM(SSM &source) : m_Depth(-1), m_pFatal(nullptr), m_SilentMode(0), m_Copy(true) {
  takeOver(source);  // a refused copy throws before this manager counts
  ++InstanceCount;
}

SSM &SSM::operator=(SSM &source) {
  if (&source != this) takeOver(source);
  return *this;
}

SSM::~SSM() {
  if (!m_Copy) Instance = nullptr;
  --InstanceCount;
}

int SSM::GetSilentMode() noexcept { return Instance != nullptr ? Instance->m_SilentMode : 0; }

void SSM::SetSilentMode(int silent) noexcept {
  if (Instance != nullptr) Instance->m_SilentMode = silent;
}

SYS_String SSM::MakeKey(char const *file, long line) {
  // "%s(%lu)" by hand: every report makes its key, and printf is most of its cost.
  // The line wraps to 32 bits so that both data models give the same key.
  char digits[10];
  int digitCount = 0;
  std::uint32_t value = static_cast<std::uint32_t>(line);
  do {
    digits[digitCount++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  int const fileLength = file != nullptr ? static_cast<int>(std::strlen(file)) : 0;
  int const length = fileLength + digitCount + 2;
  SYS_String key;
  char *out = key.GetBufferSetLength(length);
  if (fileLength > 0) std::memcpy(out, file, static_cast<std::size_t>(fileLength));
  out += fileLength;
  *out++ = '(';
  while (digitCount > 0) *out++ = digits[--digitCount];
  *out = ')';
  key.ReleaseBuffer(length);
  return key;
}

int SSM::AssertFailed(char const *text, char const *file, int line, SSM_FailureType type, int id) {
  ReportScope scope(*this);
  int result = 1;
  bool throwPending = false;
  bool fatal = false;
  m_pFatal = nullptr;

  // The site's record: an existing one keeps its file name, id, flags and count.
  SYS_String const key = MakeKey(file, line);
  AssertMap::MapNode *node = m_Map.Lookup(key);
  if (node == nullptr) {
    if (AssertData *const fresh = m_Map.Insert(key)) {
      fresh->m_FileName = file;
      fresh->m_Message = text;
      fresh->m_Line = line;
      fresh->m_ID = id;
    }
    node = m_Map.Lookup(key);  // a hook of the map may have taken the new entry away
    if (node == nullptr) return result;
  }
  AssertData &record = node->m_Value;

  // The same site failed again while its own report is being handled.
  if (isActive(&record)) return result;

  m_Active.Push(&record);
  scope.Pushed(node);
  m_Current.Set(&m_Map, node);

  ++record.m_Count;
  record.m_Action = ActContinue;
  // The same text again keeps its buffer; a message set with an embedded NUL is replaced.
  char const *const message = text != nullptr ? text : "";
  if (record.m_Message.GetLength() != static_cast<int>(std::strlen(message)) || record.m_Message != message)
    record.m_Message = message;

  SYS_Handle *const param = AssertObj::ParamOf(reinterpret_cast<SYS_Handle>(&record));
  if (type == SSM_Critical) {
    throwPending = true;
  } else if (m_SilentMode == 0 && record.m_Enabled != 0) {
    // Inside another report an error fails unless a handler decides otherwise.
    record.m_Action = m_Depth >= 1 && type != SSM_Warning ? ActFail : ActContinue;
    m_AssertEvent.Notify(type, param);
    switch (record.m_Action) {
      case ActContinue:
        break;
      case ActFail:
        result = 0;
        break;
      case ActFatal:
        fatal = true;
        throwPending = true;
        break;
      case ActThrow:
        throwPending = true;
        break;
      default:
        SSM_Check(false, "Assert handler encountered invalid action code.", "ssm/ssm", __LINE__);
        break;
    }
  }

  m_ReportEvent.Notify(type, param);
  if (record.m_LogRequired != 0 && record.m_Enabled != 0) m_LogEvent.Notify(type, param);

  scope.Pop();
  // Set only now: a nested report made by a handler resets the fatal record, and one
  // whose exception a handler caught may have left its own record there.
  m_pFatal = fatal ? &record : nullptr;
  if (throwPending) Throw();
  return result;
}

void SSM::Throw() {
  if (m_pFatal != nullptr) throw FatalException(m_pFatal);
  if (m_Current.IsValid()) throw &m_Current.GetValue();
}

SSM::AssertMap::MapNode *SSM::findNode(AssertData const *record) const noexcept {
  if (record == nullptr) return nullptr;
  // Handlers usually ask for the record being reported, which is the current one.
  if (m_Current.IsValid() && m_Current.GetMap() == &m_Map && &m_Current.GetValue() == record) return m_Current.GetNode();
  AssertMap::Iterator it;
  for (it.First(const_cast<AssertMap *>(&m_Map)); it.IsValid(); it.Next())
    if (&it.GetValue() == record) return it.GetNode();
  return nullptr;
}

bool SSM::isActive(AssertData const *record) {
  for (int index = 0; index < m_Active.GetTop(); ++index)
    if (m_Active[index] == record) return true;
  return false;
}

void SSM::takeOver(SSM &source) {
  if (!SSM_Check(m_Depth == -1 && source.m_Depth == -1, "SSM copied while a report is in progress.", "ssm/ssm",
                 __LINE__))
    return;
  // Both active stacks are empty while no report is in progress: nothing to copy.
  m_Current = AssertObj();
  m_AssertEvent = source.m_AssertEvent;
  m_ReportEvent = source.m_ReportEvent;
  m_LogEvent = source.m_LogEvent;
  m_Map = source.m_Map;
  // The entries moved, not their addresses: the same records, now in this map.
  m_Current.Set(source.m_Current.IsValid() ? &m_Map : nullptr, source.m_Current.GetNode());
  m_pFatal = source.m_pFatal;
  m_SilentMode = source.m_SilentMode;
  source.m_Current = AssertObj();
  source.m_pFatal = nullptr;
}
