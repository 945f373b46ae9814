//===- plat/plat_string_file.cpp - Reading string files ------------------===//
//
// A line is a number, blanks and the text up to the end of the line; escapes
// give what a line cannot hold. Bad lines are reported one by one so that a
// host sees all its mistakes at once.
//
//===------------------------------------------------------------------===//
#include "plat/plat_string_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace plat {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// Decodes the escapes of a text; returns an error message, or an empty string.
std::string unescape(char const *p, char const *end, std::string &text) {
  text.reserve(static_cast<size_t>(end - p));
  while (p < end) {
    if (*p != '\\') {
      text += *p++;
      continue;
    }
    if (++p == end) return "a backslash ends the line (write \\\\ for a backslash)";
    switch (*p) {
    case '\\': text += '\\'; break;
    case 'n': text += '\n'; break;
    case 't': text += '\t'; break;
    case 'x': {
      int const high = p + 1 < end ? hexValue(p[1]) : -1;
      int const low = p + 2 < end ? hexValue(p[2]) : -1;
      if (high < 0 || low < 0 || (high | low) == 0)
        return "\\x needs two hexadecimal digits giving a byte other than 00";
      text += static_cast<char>(high * 16 + low);
      p += 2;
      break;
    }
    default: return std::string("unknown escape \\") + *p;
    }
    ++p;
  }
  return std::string();
}

/// Reads one line (without its end); returns an error message, or an empty string.
std::string parseLine(char const *p, char const *end, StringTable &table,
                      std::map<int, int> &lineOfId, int lineNumber) {
  while (p < end && isBlank(*p)) ++p;
  if (p == end || *p == '#') return std::string();
  if (!isDigit(*p)) return "a number from 0 to 65535 is expected";
  long id = 0;
  for (; p < end && isDigit(*p); ++p) {
    id = id * 10 + (*p - '0');
    if (id > StringTable::kMaxId) return "a number from 0 to 65535 is expected";
  }
  if (p < end && !isBlank(*p)) return "a blank is expected between the number and the text";
  while (p < end && isBlank(*p)) ++p;

  std::string text;
  std::string error = unescape(p, end, text);
  if (!error.empty()) return error;
  int const number = static_cast<int>(id);
  if (!table.add(number, std::move(text)))
    return "number " + std::to_string(number) + " was given before, on line " +
           std::to_string(lineOfId[number]);
  lineOfId[number] = lineNumber;
  return std::string();
}

}  // namespace

void parseStringFile(std::string const &content, char const *name, StringFile &file) {
  char const *p = content.data();
  char const *const end = p + content.size();
  if (content.compare(0, 3, "\xEF\xBB\xBF") == 0) p += 3;  // a byte-order mark
  std::map<int, int> lineOfId;
  for (int lineNumber = 1; p < end; ++lineNumber) {
    char const *lineEnd = static_cast<char const *>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
    char const *const next = lineEnd != nullptr ? lineEnd + 1 : end;
    if (lineEnd == nullptr) lineEnd = end;
    if (lineEnd > p && lineEnd[-1] == '\r') --lineEnd;
    if (std::memchr(p, '\0', static_cast<size_t>(lineEnd - p)) != nullptr) {
      file.errors.push_back(std::string(name) + ":" + std::to_string(lineNumber) +
                            ": the line holds a NUL byte");
    } else {
      std::string const error = parseLine(p, lineEnd, file.table, lineOfId, lineNumber);
      if (!error.empty())
        file.errors.push_back(std::string(name) + ":" + std::to_string(lineNumber) + ": " + error);
    }
    p = next;
  }
}

StringFile readStringFile(char const *path) {
  StringFile file;
  std::FILE *const stream = std::fopen(path, "rb");
  if (stream == nullptr) {
    file.missing = errno == ENOENT;
    file.errors.push_back(std::string(path) + ": cannot be read (" + std::strerror(errno) + ")");
    return file;
  }
  std::string content;
  char chunk[4096];
  size_t got;
  while ((got = std::fread(chunk, 1, sizeof chunk, stream)) > 0) content.append(chunk, got);
  bool const failed = std::ferror(stream) != 0;
  std::fclose(stream);
  if (failed) {
    file.errors.push_back(std::string(path) + ": cannot be read (read error)");
    return file;
  }
  file.read = true;
  parseStringFile(content, path, file);
  return file;
}

}  // namespace plat
