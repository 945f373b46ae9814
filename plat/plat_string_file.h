//===- plat/plat_string_file.h - Tables of numbered texts and their files ===//
//
// A string file holds one numbered text per line; docs/strings.md describes
// the format. Both the program's table and the run-time table are read with
// readStringFile.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_STRING_FILE_H
#define BFC_PLAT_STRING_FILE_H

#include <map>
#include <string>
#include <vector>

namespace plat {

/// Numbered texts; numbers from 0 to 65535, each at most once.
class StringTable {
public:
  static constexpr int kMaxId = 65535;

  /// The text with number `id`, or null when there is none.
  char const *find(int id) const {
    auto const it = m_Texts.find(id);
    return it == m_Texts.end() ? nullptr : it->second.c_str();
  }
  /// Adds a text; false when `id` is out of range or already present.
  bool add(int id, std::string text) {
    if (id < 0 || id > kMaxId) return false;
    return m_Texts.emplace(id, std::move(text)).second;
  }
  bool empty() const { return m_Texts.empty(); }

private:
  std::map<int, std::string> m_Texts;
};

/// What reading a string file gave: the texts of its good lines and one message per bad
/// line ("path:line: what is wrong"), or a single message when the file cannot be read.
struct StringFile {
  StringTable table;
  std::vector<std::string> errors;
  bool read = false;     ///< the whole file was read (its lines may still be bad)
  bool missing = false;  ///< the file does not exist (errors holds that message too)
};

StringFile readStringFile(char const *path);

/// Parses the content of a string file named `name` (for messages) into `file`.
void parseStringFile(std::string const &content, char const *name, StringFile &file);

}  // namespace plat

#endif
