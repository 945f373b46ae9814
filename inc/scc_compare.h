//===- inc/scc_compare.h - Comparison and hash functions of the keys ----===//
//
// SCC_Compare orders the keys of sorted containers; SCC_Hash spreads the keys of
// maps over `n` buckets (0 <= result < n). Both give the same results in both
// data models: hashes are computed in 32-bit arithmetic.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_COMPARE_H
#define BFC_SCC_COMPARE_H

#include "sys_base.h"
#include "sys_string.h"

#include <climits>
#include <cstdint>

/// A text key that compares and hashes without regard to case (A-Z only).
class SCC_StrNoCase : public SYS_String {
public:
  SCC_StrNoCase() noexcept = default;
  using SYS_String::SYS_String;
  SCC_StrNoCase(SYS_String const &text) : SYS_String(text) {}
};

// Comparison: negative, 0 or positive.

/// 0 when equal or when either is not a number; else -1 or 1.
BFC_API int SCC_Compare(double const &a, double const &b);
/// Byte order as strcmp with unsigned bytes; -1, 0 or 1. Null counts as empty.
BFC_API int SCC_Compare(char const *const &a, char const *const &b);
/// The same on the two texts (up to their first NUL).
BFC_API int SCC_Compare(SYS_String const &a, SYS_String const &b);
/// The difference of the first pair of bytes that differ once A-Z are lowered to
/// a-z (0 when the texts match), as _stricmp returns it.
BFC_API int SCC_Compare(SCC_StrNoCase const &a, SCC_StrNoCase const &b);
/// Unsigned address order; -1, 0 or 1.
BFC_API int SCC_Compare(void *const &a, void *const &b);

/// Case-insensitive equality, so that maps keyed by SCC_StrNoCase find "ABC" after "abc".
inline bool operator==(SCC_StrNoCase const &a, SCC_StrNoCase const &b) {
  return a.GetLength() == b.GetLength() && SCC_Compare(a, b) == 0;
}
inline bool operator!=(SCC_StrNoCase const &a, SCC_StrNoCase const &b) { return !(a == b); }
inline bool operator==(SCC_StrNoCase const &a, char const *b) { return a == SCC_StrNoCase(b); }
inline bool operator!=(SCC_StrNoCase const &a, char const *b) { return !(a == b); }
inline bool operator==(char const *a, SCC_StrNoCase const &b) { return b == a; }
inline bool operator!=(char const *a, SCC_StrNoCase const &b) { return !(b == a); }

// Hashing. The text hash of the bytes c1, c2, ... (each sign-extended) is
// h = sum of ck * k * 6293815^k over k = 1, 2, ..., in unsigned 32-bit arithmetic,
// taken modulo n as an unsigned number. Texts end at their first NUL.

/// The text hash modulo `n`; `n` below 1 is reported and gives 0. Null is empty text.
BFC_API long SCC_Hash(char const *const &text, long n);
/// 0 when `n` < 1, else the text hash modulo `n`.
BFC_API long SCC_Hash(SYS_String const &text, long n);
/// 0 when `n` < 1, else the text hash of the text with A-Z lowered, modulo `n`.
BFC_API long SCC_Hash(SCC_StrNoCase const &text, long n);
/// The text hash before any modulo, with A-Z lowered first when `fold` is set; 0
/// for null. SCC_Hash of a text for `n` buckets is this value modulo `n`.
BFC_API std::uint32_t SCC_TextHash(char const *text, int fold = 0);
/// 0 when `n` < 1, else the address modulo `n`. On LP64 the address is folded to 32
/// bits first as (low half XOR high half), which is the address itself on i386.
BFC_API long SCC_Hash(void *const &address, long n);

namespace scc_detail {

/// A modulus that fits the 32-bit arithmetic; bucket counts are never larger.
inline std::int32_t modulus(long n) { return n > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(n); }

/// Signed keys: the key modulo n, plus n when that is negative. Keys beyond 32 bits
/// (only on LP64) are folded as addresses are.
inline long hashSigned(long long key, long n) {
  if (n < 1) return 0;
  std::int32_t const m = modulus(n);
  if (key == static_cast<std::int32_t>(key)) {
    std::int32_t const r = static_cast<std::int32_t>(key) % m;
    return r < 0 ? r + m : r;
  }
  auto const bits = static_cast<unsigned long long>(key);
  return static_cast<long>(static_cast<std::uint32_t>(bits ^ (bits >> 32)) % static_cast<std::uint32_t>(m));
}

/// Unsigned keys: the key modulo n; keys beyond 32 bits are folded.
inline long hashUnsigned(unsigned long long key, long n) {
  if (n < 1) return 0;
  auto const folded = static_cast<std::uint32_t>(key ^ (key >> 32));
  return static_cast<long>(folded % static_cast<std::uint32_t>(modulus(n)));
}

}  // namespace scc_detail

// Integer keys: the key modulo n, plus n when that is negative; 0 when n < 1.
inline long SCC_Hash(int const &key, long n) { return scc_detail::hashSigned(key, n); }
inline long SCC_Hash(long const &key, long n) { return scc_detail::hashSigned(key, n); }
inline long SCC_Hash(long long const &key, long n) { return scc_detail::hashSigned(key, n); }
inline long SCC_Hash(short const &key, long n) { return scc_detail::hashSigned(key, n); }
inline long SCC_Hash(signed char const &key, long n) { return scc_detail::hashSigned(key, n); }
inline long SCC_Hash(char const &key, long n) { return scc_detail::hashSigned(key, n); }
inline long SCC_Hash(unsigned int const &key, long n) { return scc_detail::hashUnsigned(key, n); }
inline long SCC_Hash(unsigned long const &key, long n) { return scc_detail::hashUnsigned(key, n); }
inline long SCC_Hash(unsigned long long const &key, long n) { return scc_detail::hashUnsigned(key, n); }
inline long SCC_Hash(unsigned short const &key, long n) { return scc_detail::hashUnsigned(key, n); }
inline long SCC_Hash(unsigned char const &key, long n) { return scc_detail::hashUnsigned(key, n); }

#endif
