//===- plat/plat_settings.cpp - The host's settings in an INI file -------===//
#include "plat/plat_settings.h"

#include "plat/plat_file.h"
#include "plat_error.h"

#include <cerrno>
#include <cstdlib>
#include <strings.h>
#include <unistd.h>
#include <vector>

namespace plat {

namespace {

std::string trimmed(std::string const &text) {
  std::size_t const first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool sameName(std::string const &a, char const *b) { return strcasecmp(a.c_str(), b) == 0; }

/// One line of the file with what it means.
struct Line {
  std::string text;
  bool isHead = false;   // "[name]"
  bool isEntry = false;  // "name=value"
  std::string name;      // the section's or the entry's
  std::string value;
};

Line parse(std::string const &text) {
  Line line;
  line.text = text;
  std::string const content = trimmed(text);
  if (content.empty() || content[0] == ';' || content[0] == '#') return line;
  if (content[0] == '[' && content.back() == ']') {
    line.isHead = true;
    line.name = trimmed(content.substr(1, content.size() - 2));
  } else if (std::size_t const equals = content.find('='); equals != std::string::npos) {
    line.isEntry = true;
    line.name = trimmed(content.substr(0, equals));
    line.value = trimmed(content.substr(equals + 1));
  }
  return line;
}

/// The file's lines; false when it cannot be read (a missing file is read as empty).
bool readLines(std::string const &path, std::vector<Line> &lines) {
  std::FILE *const stream = openStream(path.c_str(), "r");
  if (stream == nullptr) return errno == ENOENT;
  std::string bytes;
  char buffer[4096];
  bool failed = false;
  while (std::size_t const got = readStream(buffer, sizeof buffer, stream, failed)) bytes.append(buffer, got);
  closeStream(stream);
  if (failed) return false;
  std::size_t start = 0;
  while (start < bytes.size()) {
    std::size_t end = bytes.find('\n', start);
    if (end == std::string::npos) end = bytes.size();
    lines.push_back(parse(bytes.substr(start, end - start)));
    start = end + 1;
  }
  return true;
}

/// [first, end) of the section's lines, its head included; first == end when it is missing.
void findSection(std::vector<Line> const &lines, char const *section, std::size_t &first, std::size_t &end) {
  first = end = lines.size();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!lines[i].isHead || !sameName(lines[i].name, section)) continue;
    first = i;
    for (end = i + 1; end < lines.size() && !lines[end].isHead;) ++end;
    return;
  }
}

bool invalid() {
  errno = EINVAL;
  PLAT_SetLastErrorFromErrno();
  return false;
}

bool holdsLineEnd(char const *text) { return text != nullptr && std::string(text).find_first_of("\r\n") != std::string::npos; }

void makeFolders(std::string const &path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
    makeDirectory(path.substr(0, slash).c_str());  // an existing folder fails harmlessly
}

/// Writes the lines into a temporary file beside `path`, then renames it over `path`.
bool replaceFile(std::string const &path, std::vector<Line> const &lines) {
  std::string bytes;
  for (Line const &line : lines) bytes += line.text + '\n';
  makeFolders(path);
  std::string const temporary = path + ".tmp." + std::to_string(::getpid());
  std::FILE *const stream = openStream(temporary.c_str(), "w");
  if (stream == nullptr) return false;
  bool failed = false;
  bool written = writeStream(bytes.data(), bytes.size(), stream, failed) && flushStream(stream);
  // On disk before the rename, so that even a crash of the machine leaves one whole file.
  written = written && ::fsync(fileno(stream)) == 0;
  written = closeStream(stream) && written;
  if (written && renameFile(temporary.c_str(), path.c_str())) return true;
  int const error = PLAT_GetLastError();
  removeFile(temporary.c_str());
  PLAT_SetLastError(error);
  return false;
}

}  // namespace

std::string defaultSettingsPath() {
  char const *const xdg = std::getenv("XDG_CONFIG_HOME");
  std::string folder;
  if (xdg != nullptr && xdg[0] == '/') {
    folder = xdg;
  } else {
    char const *const home = std::getenv("HOME");
    folder = std::string(home != nullptr ? home : "") + "/.config";
  }
  return folder + "/" + program_invocation_short_name + "/settings.ini";
}

bool readSetting(std::string const &path, char const *section, char const *entry, std::string &value) {
  std::vector<Line> lines;
  if (section == nullptr || entry == nullptr || !readLines(path, lines)) return false;
  std::size_t first, end;
  findSection(lines, section, first, end);
  for (std::size_t i = first + 1; i < end; ++i) {
    if (lines[i].isEntry && sameName(lines[i].name, entry)) {
      value = lines[i].value;
      return true;
    }
  }
  return false;
}

bool writeSetting(std::string const &path, char const *section, char const *entry, char const *value) {
  if (section == nullptr || holdsLineEnd(section) || std::string(section).find(']') != std::string::npos ||
      holdsLineEnd(entry) || holdsLineEnd(value) ||
      (entry != nullptr && std::string(entry).find_first_of("]=") != std::string::npos))
    return invalid();
  std::vector<Line> lines;
  if (!readLines(path, lines)) return false;
  std::size_t first, end;
  findSection(lines, section, first, end);
  if (entry == nullptr) {
    lines.erase(lines.begin() + static_cast<long>(first), lines.begin() + static_cast<long>(end));
    return replaceFile(path, lines);
  }
  // Blanks around a value do not survive a read, so they are not written either.
  std::string const written = trimmed(value != nullptr ? value : "");
  Line const wanted = parse(std::string(entry) + "=" + written);
  if (first == end) {
    if (value == nullptr) return true;
    if (!lines.empty() && !trimmed(lines.back().text).empty()) lines.push_back(parse(""));
    lines.push_back(parse("[" + std::string(section) + "]"));
    lines.push_back(wanted);
    return replaceFile(path, lines);
  }
  for (std::size_t i = first + 1; i < end; ++i) {
    if (!lines[i].isEntry || !sameName(lines[i].name, entry)) continue;
    if (value == nullptr)
      lines.erase(lines.begin() + static_cast<long>(i));
    else
      lines[i] = parse(lines[i].name + "=" + written);  // the name keeps the file's spelling
    return replaceFile(path, lines);
  }
  if (value == nullptr) return true;
  // After the section's last non-blank line, so that blank lines keep separating sections.
  std::size_t at = end;
  while (at > first + 1 && trimmed(lines[at - 1].text).empty()) --at;
  lines.insert(lines.begin() + static_cast<long>(at), wanted);
  return replaceFile(path, lines);
}

}  // namespace plat
