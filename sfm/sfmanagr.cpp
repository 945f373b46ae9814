//===- sfm/sfmanagr.cpp - The file manager and its events ----------------===//
#include "sfm.h"

#include "sfm_msgdb.h"

#include "plat/plat_file.h"
#include "plat_error.h"
#include "sfm_tr.h"
#include "sys/sys_host_text.h"
#include "ssm_report.h"

#include <cerrno>
#include <cstdio>

SFM *SFM::Instance = nullptr;
long SFM::InstanceCount = 0;

namespace {

constexpr char kSource[] = "sfm/sfmanagr";

/// The host's fallback text for an error without a system description.
constexpr int kFallbackText = 45103;

}  // namespace

SFM::SFM() : m_IsCurrent(false) {
  if (!SSM_Check(InstanceCount == 0 && Instance == nullptr, "only one file manager at a time", kSource, __LINE__))
    return;
  Instance = this;
  ++InstanceCount;
  m_IsCurrent = true;
}

SFM::~SFM() {
  // First, while the manager still hears its file's close.
  m_MessageDB.reset();
  if (m_IsCurrent) {
    Instance = nullptr;
    --InstanceCount;
  }
  m_Files.RemoveAll();
}

SFM::EventCode SFM::Event(EventCode code, SFM_EventData &data) {
  data.SetResult(EventNone);
  data.SetErrorCode(static_cast<unsigned int>(PLAT_GetLastError()));
  if (code == EventOpenFailed && data.GetErrorCode() == EMFILE && TempCloseSomeFile()) return EventRetry;
  if (code == EventOpening) {
    if (SFM_File *const file = findFile(data.GetFileName1())) {
      if (file != m_Files.GetHead()) {
        m_Files.Remove(file);
        m_Files.AddHead(file);
      }
    }
  }
  if (code > 150) CreateMessage(code, data);
  m_Event.Notify(code, &data);
  if (code > 150) {
    if (SFM_File *const file = findFile(data.GetFileName1())) file->SetMsg(data.GetText());
  }
  return data.GetResult();
}

void SFM::CreateMessage(EventCode, SFM_EventData &data) {
  std::string description;
  if (plat::errorText(static_cast<int>(data.GetErrorCode()), description)) {
    data.SetText(SYS_String(description.c_str()));
    return;
  }
  SYS_String fallback = TR(kFallbackText);
  // Without the host's text the message still names the code.
  if (fallback.IsEmpty()) fallback = "error %u";
  data.SetText(sys::FillHostText(fallback, {sys::HostArgument::Unsigned(data.GetErrorCode())}));
}

bool SFM::TempCloseSomeFile() {
  SCC_SafeDList<SFM_File>::Iterator walk;
  for (walk.Last(m_Files); walk.IsValid(); walk.Prev()) {
    SFM_File *const file = walk.Get();
    if (file->MayBeTempClosed() && file->TempClose()) return true;
  }
  return false;
}

SFM_File *SFM::findFile(SYS_String const &name) {
  SCC_SafeDList<SFM_File>::Iterator walk;
  for (walk.First(m_Files); walk.IsValid(); walk.Next())
    if (walk->GetName() == name) return walk.Get();
  return nullptr;
}

SFM_EventData::SFM_EventData(char const *fileName1, char const *fileName2)
    : m_FileName1(fileName1), m_FileName2(fileName2) {}

SYS_String SFM_EventData::GetText() const {
  SYS_String text = m_Text;
  for (SYS_String const *name : {&m_FileName1, &m_FileName2}) {
    if (name->IsEmpty()) continue;
    text += "\r\n\"";
    text += *name;
    text += '"';
  }
  return text;
}

void SFM_EventData::SetResult(SFM::EventCode result) {
  if (result != SFM::EventNone &&
      !SSM_Check(m_Result == SFM::EventNone, "an event has one answer", kSource, __LINE__))
    return;
  m_Result = result;
}
