//===- tests/sfm_support.cpp - Temporary directories and event recorders -===//
#include "tests/sfm_support.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <ftw.h>
#include <sstream>
#include <unistd.h>

RecordingManager *RecordingManager::s_Current = nullptr;

TempDir::TempDir() {
  char const *const root = std::getenv("TMPDIR");
  std::string pattern = std::string(root != nullptr && *root != '\0' ? root : "/tmp") + "/bfc-XXXXXX";
  if (::mkdtemp(&pattern[0]) != nullptr) m_Path = pattern + "/";
}

TempDir::~TempDir() {
  if (m_Path.empty()) return;
  ::nftw(m_Path.c_str(), [](char const *path, struct stat const *, int, FTW *) { return ::remove(path); }, 16,
         FTW_DEPTH | FTW_PHYS);
}

std::string TempDir::Write(std::string const &name, std::string const &bytes) const {
  std::ofstream(m_Path + name, std::ios::binary) << bytes;
  return m_Path + name;
}

std::string TempDir::Read(std::string const &path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return "<missing>";
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

RecordingManager::RecordingManager() : m_Hook(&RecordingManager::onEvent) {
  s_Current = this;
  manager.GetEvent().Insert(m_Hook);
}

RecordingManager::~RecordingManager() { s_Current = nullptr; }

void RecordingManager::Answer(int code, SFM::EventCode answer, int count) {
  for (int i = 0; i < count; ++i) m_Answers.emplace_back(code, answer);
}

std::vector<int> RecordingManager::Codes(bool errorsOnly) const {
  std::vector<int> codes;
  for (SeenEvent const &event : events)
    if (!errorsOnly || event.code > 150) codes.push_back(event.code);
  return codes;
}

int RecordingManager::Count(int code) const {
  return static_cast<int>(std::count_if(events.begin(), events.end(), [code](SeenEvent const &e) { return e.code == code; }));
}

int RecordingManager::onEvent(int code, SFM_EventData *data) {
  RecordingManager *const self = s_Current;
  if (self == nullptr) return 0;
  self->events.push_back({code, data->GetErrorCode(), std::string(data->GetFileName1()),
                          std::string(data->GetFileName2()), std::string(data->GetText())});
  auto const answer = std::find_if(self->m_Answers.begin(), self->m_Answers.end(),
                                   [code](std::pair<int, SFM::EventCode> const &a) { return a.first == code; });
  if (answer != self->m_Answers.end()) {
    data->SetResult(answer->second);
    self->m_Answers.erase(answer);
  }
  return 0;
}
