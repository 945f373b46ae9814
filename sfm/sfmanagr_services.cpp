//===- sfm/sfmanagr_services.cpp - The manager's database, folders, settings ===//
#include "sfm.h"

#include "plat/plat_process.h"
#include "plat/plat_settings.h"
#include "sfm/sfm_msgdb_format.h"
#include "sfm_filepath.h"
#include "sfm_msgdb.h"
#include "ssm_report.h"

#include <climits>
#include <string>

namespace {

constexpr char kSource[] = "sfm/sfmanagr";

char const *orEmpty(char const *text) { return text != nullptr ? text : ""; }

}  // namespace

int SFM::Initiate(char const *name) {
  if (!m_MessageDB && name != nullptr) {
    SFM_FilePath path(name);
    if (path.GetFileExtension().CompareNoCase(".mdb") == 0)
      m_MessageDB.reset(new SFM_MessageDB(SYS_String(name)));
    else
      m_MessageDB.reset(new SFM_MessageDB(SYS_String(name), 0));
  }
  return m_MessageDB != nullptr;
}

int SFM::IsValid() {
  bool valid = SSM_Check(m_MessageDB != nullptr, "the manager has a message database", kSource, __LINE__) &&
               SSM_Check(m_MessageDB->IsValid() != 0, "the message database is valid", kSource, __LINE__);
  valid = SSM_Check(m_Files.IsValid() != 0, "the file list is valid", kSource, __LINE__) && valid;
  SCC_SafeDList<SFM_File>::Iterator walk;
  for (walk.First(m_Files); walk.IsValid(); walk.Next())
    valid = SSM_Check(walk->IsValid() != 0, "every listed file is valid", kSource, __LINE__) && valid;
  return valid ? 1 : 0;
}

SYS_String SFM::GetExternalFileName(int index, char const *name) {
  if (!SSM_Check(index >= m_Directories.GetLowerBound() && index < m_Directories.GetUpperBound(),
                 "a directory index within the array", kSource, __LINE__))
    return SYS_String();
  return m_Directories[index] + orEmpty(name);
}

void SFM::SetProfilePath(char const *path) { m_ProfilePath = orEmpty(path); }

SYS_String SFM::GetProfilePath() const {
  return m_ProfilePath.IsEmpty() ? SYS_String(plat::defaultSettingsPath().c_str()) : m_ProfilePath;
}

SYS_String SFM::ReadProfileString(char const *section, char const *entry, char const *defaultValue) {
  std::string value;
  if (!plat::readSetting(std::string(GetProfilePath()), section, entry, value)) return SYS_String(defaultValue);
  return SYS_String(value.c_str());
}

void SFM::SetProfileString(char const *section, char const *entry, char const *value) {
  plat::writeSetting(std::string(GetProfilePath()), section, entry, value);
}

int SFM::GetProfileIntA(char const *section, char const *entry, int defaultValue) {
  std::string value;
  if (!plat::readSetting(std::string(GetProfilePath()), section, entry, value)) return defaultValue;
  // As atoi reads it, in both data models alike: a value beyond 32 bits saturates.
  std::int64_t const number = sfm_msgdb::readNumber(value.data(), value.data() + value.size());
  return number > INT_MAX ? INT_MAX : number < INT_MIN ? INT_MIN : static_cast<int>(number);
}

void SFM::SetProfileInt(char const *section, char const *entry, int value) {
  SetProfileString(section, entry, std::to_string(value).c_str());
}

int SFM::ShowFile(char const *name) {
  SYS_String const editor = ReadProfileString("general", "editor", "");
  if (editor.IsEmpty()) return 0;
  std::string const command = std::string(editor) + " " + plat::quoteArgument(orEmpty(name));
  return plat::startProgram(command.c_str()) ? 1 : 0;
}
