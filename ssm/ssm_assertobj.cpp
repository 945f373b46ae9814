//===- ssm/ssm_assertobj.cpp - Listing and editing assertion records ----===//
//
// SSM::AssertObj names a record by its address (the handle) and finds it among
// the current manager's records by that address alone, so a stale or foreign
// handle designates nothing instead of being read.
//
//===------------------------------------------------------------------===//
#include "ssm.h"

void SSM::AssertObj::GetFirst(SSM *manager) {
  if (manager == nullptr) manager = SSM::Instance;
  if (manager != nullptr) First(&manager->m_Map);
}

SYS_Handle SSM::AssertObj::GetHandle() const noexcept {
  return IsValid() ? reinterpret_cast<SYS_Handle>(&GetValue()) : 0;
}

void SSM::AssertObj::SetHandle(AssertData *record) {
  SSM *const manager = SSM::Instance;
  AssertMap::MapNode *const node = manager != nullptr ? manager->findNode(record) : nullptr;
  Set(node != nullptr ? &manager->m_Map : nullptr, node);
}

void SSM::AssertObj::SetHandle(SYS_Handle handle, SSM *) { SetHandle(reinterpret_cast<AssertData *>(handle)); }

SCC_Notifier *SSM::AssertObj::GetChangeEvent(void *) {
  return SSM::Instance != nullptr ? &SSM::Instance->m_AssertEvent : nullptr;
}

SSM::AssertData *SSM::AssertObj::record(int line) const {
  if (!SSM_Check(IsValid() != 0, "SSM::AssertObj designates no record.", "ssm/ssm", line)) return nullptr;
  return &GetValue();
}

SYS_String SSM::AssertObj::GetFileName() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_FileName : SYS_String();
}

long SSM::AssertObj::GetLineNo() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_Line : 0;
}

long SSM::AssertObj::GetID() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_ID : 0;
}

SYS_String SSM::AssertObj::GetMsg() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_Message : SYS_String();
}

void SSM::AssertObj::SetMsg(SYS_String message) {
  if (AssertData *const data = record(__LINE__)) data->m_Message = message;
}

SYS_String SSM::AssertObj::GetLogMsg() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_LogMessage : SYS_String();
}

void SSM::AssertObj::SetLogMsg(SYS_String message) {
  if (AssertData *const data = record(__LINE__)) data->m_LogMessage = message;
}

long SSM::AssertObj::GetCount() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_Count : 0;
}

void SSM::AssertObj::IncreaseCount() {
  if (AssertData *const data = record(__LINE__)) ++data->m_Count;
}

int SSM::AssertObj::IsDisabled() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr && data->m_Enabled == 0 ? 1 : 0;
}

void SSM::AssertObj::Disable(int disable) {
  if (AssertData *const data = record(__LINE__)) data->m_Enabled = disable == 0 ? 1 : 0;
}

int SSM::AssertObj::IsLogRequired() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_LogRequired : 0;
}

void SSM::AssertObj::SetLogRequired(int required) {
  if (AssertData *const data = record(__LINE__)) data->m_LogRequired = required;
}

SSM::Action SSM::AssertObj::GetAction() const {
  AssertData const *const data = record(__LINE__);
  return data != nullptr ? data->m_Action : ActContinue;
}

void SSM::AssertObj::SetAction(Action action) {
  AssertData *const data = record(__LINE__);
  if (data != nullptr && action > data->m_Action) data->m_Action = action;
}

void SSM::AssertObj::ClearAction() {
  if (AssertData *const data = record(__LINE__)) data->m_Action = ActContinue;
}
