//===- sfm/sfm_msgdb_format.h - Shared rules of the message files --------===//
#ifndef BFC_SFM_MSGDB_FORMAT_H
#define BFC_SFM_MSGDB_FORMAT_H

#include <cstdint>

namespace sfm_msgdb {

constexpr int kHeaderSize = 14;
constexpr int kRecordSize = 36;
constexpr int kNumberField = 20;
/// A length is kept in one byte, and the compiled form counts a text's NUL in it.
constexpr int kLongestText = 254;
/// The header counts records in a signed 16-bit field.
constexpr long kMostEntries = 32767;

/// The number at the start of [text, end) read as atoi reads it (white space, a sign,
/// digits; none gives 0), but in 64 bits and never past `end`, so that both data models
/// see the same value and a value beyond 32 bits can be told apart. Saturates far
/// beyond the 32-bit range.
inline std::int64_t readNumber(char const *text, char const *end) {
  while (text < end && (*text == ' ' || (*text >= '\t' && *text <= '\r'))) ++text;
  bool negative = false;
  if (text < end && (*text == '+' || *text == '-')) negative = *text++ == '-';
  std::int64_t value = 0;
  for (; text < end && *text >= '0' && *text <= '9'; ++text)
    if (value < (std::int64_t(1) << 40)) value = value * 10 + (*text - '0');
  return negative ? -value : value;
}

}  // namespace sfm_msgdb

#endif
