//===- tools/mdbc_source.cpp - A message database written back as source -===//
#include "mdbc_source.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

struct Section {
  std::string name;
  std::int64_t base;
  std::int64_t largest;
  bool named;
  /// The last head of its name (any case): the one whose largest number the compiled form
  /// carries. The earlier ones may hold any numbers.
  bool carriesLargest;
  bool takesLines = true;
  std::vector<std::int64_t> keys;  // the lines to write, in order
};

bool endsWithBlank(std::string const &text) {
  return !text.empty() && (text.back() == ' ' || (text.back() >= '\t' && text.back() <= '\r'));
}

bool fail(std::string &error, std::string const &why) {
  error = why;
  return false;
}

}  // namespace

// Keys are given by a running value: a head's base is the previous line's key plus 2, and
// a message's key is its section's base plus its number. So each section is written with
// its own keys, then the line of its largest number, and ends on the key the next base
// follows from. A key written twice carries its one text both times, so the first
// definition wins with the same text wherever it stands.
bool WriteMessageSource(SFM_MessageDB &db, std::string &source, std::string &error) {
  std::vector<Section> sections{{"", 0, 0, false, false, true, {}}};
  SCC_SafeDList<SFM_MessageDB::SectionTableNode>::Iterator walk;
  for (walk.First(db.GetSections()); walk.IsValid(); walk.Next()) {
    if (walk->GetStoredBase() < 0) continue;  // the unnamed section, base 0
    std::string const name = static_cast<char const *>(walk->GetName());
    if (name.find_first_of("]\r\n") != std::string::npos || (!name.empty() && name[0] == '['))
      return fail(error, "section \"" + name + "\": the name cannot stand in a head");
    sections.push_back({name, walk->GetStoredBase() + std::int64_t(1), walk->GetLargestNumber(), true, true, true, {}});
  }
  std::sort(sections.begin() + 1, sections.end(), [](Section const &a, Section const &b) { return a.base < b.base; });
  for (std::size_t i = 1; i < sections.size(); ++i) {
    if (sections[i].base < sections[i - 1].base + 2)
      return fail(error, "section \"" + sections[i].name + "\": no source gives its base");
    for (std::size_t j = i + 1; j < sections.size(); ++j)
      if (SYS_String(sections[j].name.c_str()).CompareNoCase(sections[i].name.c_str()) == 0)
        sections[i].carriesLargest = false;
  }

  std::vector<int> const keys = db.GetKeys();
  auto exists = [&](std::int64_t key) { return std::binary_search(keys.begin(), keys.end(), key); };
  auto admits = [](Section const &s, std::int64_t key) {
    return key >= s.base && (!s.carriesLargest || key <= s.base + s.largest);
  };
  // A section can hold lines only when one of them can end it on the key its successor's
  // base follows from; one whose successor follows from the head alone takes none.
  for (std::size_t i = 0; i + 1 < sections.size(); ++i) {
    std::int64_t const lastKey = sections[i + 1].base - 2;
    sections[i].takesLines = exists(lastKey) && admits(sections[i], lastKey);
  }
  for (int const key : keys) {
    if (key < 0) {
      bool const isSection = std::any_of(sections.begin() + 1, sections.end(),
                                         [&](Section const &s) { return s.base == -std::int64_t(key); });
      if (!isSection) return fail(error, "key " + std::to_string(key) + ": negative, but no section's");
      continue;
    }
    auto home = std::upper_bound(sections.begin(), sections.end(), key,
                                 [](std::int64_t k, Section const &s) { return k < s.base; });
    while (home != sections.begin() && !((home - 1)->takesLines && admits(*(home - 1), key))) --home;
    if (home == sections.begin()) return fail(error, "key " + std::to_string(key) + ": in no section's range");
    (home - 1)->keys.push_back(key);
  }

  for (std::size_t i = 0; i < sections.size(); ++i) {
    Section &s = sections[i];
    std::int64_t const top = s.base + s.largest;
    if (s.carriesLargest && s.largest > 0 && std::find(s.keys.begin(), s.keys.end(), top) == s.keys.end()) {
      if (!exists(top)) return fail(error, "section \"" + s.name + "\": no message has its largest number");
      s.keys.push_back(top);
    }
    if (i + 1 == sections.size()) break;
    std::int64_t const lastKey = sections[i + 1].base - 2;
    if (s.keys.empty() && lastKey == s.base) continue;  // the head alone leaves its base
    if (!s.keys.empty() && s.keys.back() == lastKey) continue;
    if (!exists(lastKey) || !admits(s, lastKey))
      return fail(error, "section \"" + sections[i + 1].name + "\": no source gives its base");
    s.keys.push_back(lastKey);
  }

  source = "; message database written back as source by mdbc\n";
  for (Section const &s : sections) {
    if (s.named) source += "[" + s.name + "]\n";
    for (std::int64_t const key : s.keys) {
      std::string const text = static_cast<char const *>(db.GetStoredText(static_cast<long>(key)));
      if (text.find_first_of("\r\n") != std::string::npos || endsWithBlank(text))
        return fail(error, "key " + std::to_string(key) + ": the text cannot stand on a source line");
      source += std::to_string(key - s.base) + ":" + text + "\n";
    }
  }
  return true;
}
