//===- tests/sys_strpattern_model_test.cpp - Patterns against a model ---===//
//
// A second, deliberately simple implementation of the pattern rules (a parse tree and
// continuation-passing matching, no byte code) checks Match on random short patterns and
// texts; a fuzz run feeds random bytes to both sides of the class and checks nothing breaks.
//
//===------------------------------------------------------------------===//
#include "bfc.h"

#include "plat/plat_mbcs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

struct Node;
struct Item { std::shared_ptr<Node> atom; char op = 0; };  // op 0: the atom is not repeated
struct Sequence { bool anchored = false; std::vector<Item> items; };

struct Node {
  enum Kind { Char, Any, End, Class, Set, Group } kind = Char;
  char ch = 0;                         // Char; the letter of a Class
  std::string members;                 // Set
  bool negated = false;                // Set
  std::vector<Sequence> alternatives;  // Group
};

/// Parses the ASCII subset of the language that the generator below produces.
class ModelParser {
public:
  explicit ModelParser(char const *text) : m_Pos(text) {}

  bool parse(std::vector<Sequence> &top) { return list(top) && *m_Pos == '\0'; }

private:
  static bool stops(char c) { return c == '\0' || std::strchr("#)*+?@]^|", c) != nullptr; }

  /// Steps over `c` when it comes next.
  bool accept(char c) { return *m_Pos == c ? (++m_Pos, true) : false; }

  bool list(std::vector<Sequence> &alternatives) {
    for (;;) {
      Sequence s;
      s.anchored = accept('^');
      while (!stops(*m_Pos)) {
        Item item;
        if (!parseItem(item)) return false;
        s.items.push_back(item);
      }
      if (s.items.empty()) return false;
      alternatives.push_back(s);
      if (!accept('|')) return true;
    }
  }

  bool parseItem(Item &item) {
    auto node = std::make_shared<Node>();
    char const c = *m_Pos++;
    if (c == '.') {
      node->kind = Node::Any;
    } else if (c == '$') {
      node->kind = Node::End;
    } else if (c == '(') {
      node->kind = Node::Group;
      if (!list(node->alternatives) || !accept(')')) return false;
    } else if (c == ':' && *m_Pos != '\0' && std::strchr("dlu", *m_Pos) != nullptr) {
      node->kind = Node::Class;
      node->ch = *m_Pos++;
    } else if (c == '[') {
      node->kind = Node::Set;
      node->negated = accept('^');
      while (*m_Pos != '\0' && *m_Pos != ']') {
        if (*m_Pos == '-' && !node->members.empty() && m_Pos[1] != ']') {
          char const to = m_Pos[1];
          if (to == '\0') return false;
          m_Pos += 2;
          for (int x = m_LastMember + 1; x <= to; ++x) node->members += static_cast<char>(x);
          if (to > m_LastMember) m_LastMember = to;
          continue;
        }
        m_LastMember = *m_Pos++;
        node->members += m_LastMember;
      }
      if (!accept(']')) return false;
    } else if (c == '\\') {
      if (*m_Pos == '\0') return false;
      node->ch = *m_Pos++;
    } else {
      node->ch = c;
    }
    item.atom = node;
    if (*m_Pos != '\0' && std::strchr("*+?#@", *m_Pos) != nullptr) item.op = *m_Pos++;
    return true;
  }

  char const *m_Pos;
  char m_LastMember = 0;
};

/// Matches a parsed pattern by the rules, one continuation per step.
class Model {
public:
  using Rest = std::function<int(int)>;

  Model(std::vector<Sequence> const &top, std::string const &text) : m_Top(top), m_Text(text) {}

  /// Offset and length of the leftmost match, or -1 and 0.
  std::pair<int, int> find() {
    Rest const done = [](int at) { return at; };
    for (int start = 0; start < static_cast<int>(m_Text.size()); ++start) {
      m_Start = start;
      int const end = alternatives(m_Top, start, done);
      if (end >= 0) return {start, end - start};
    }
    return {-1, 0};
  }

private:
  int alternatives(std::vector<Sequence> const &list, int at, Rest const &rest) {
    int best = -1;
    for (Sequence const &s : list) {
      if (s.anchored && m_Start != 0) continue;
      best = std::max(best, items(s, 0, at, rest));
    }
    return best;
  }

  int items(Sequence const &s, size_t i, int at, Rest const &rest) {
    if (i == s.items.size()) return rest(at);
    Item const &item = s.items[i];
    Rest const next = [&](int p) { return items(s, i + 1, p, rest); };
    Rest const done = [](int p) { return p; };
    auto alone = [&](int p) { return atom(*item.atom, p, done); };
    switch (item.op) {
      case 0: return atom(*item.atom, at, next);
      case '?': {
        int const with = atom(*item.atom, at, next);
        return with >= 0 ? with : next(at);
      }
      default: {  // "*" and "+" take the most occurrences the rest allows, "#" and "@" the fewest
        std::vector<int> ends;  // after each occurrence, up to one that fails or is empty
        for (int p = at, e; (e = alone(p)) > p; p = e) ends.push_back(e);
        if (ends.empty()) return alone(at) < 0 && (item.op == '+' || item.op == '#') ? -1 : next(at);
        bool const greedy = item.op == '*' || item.op == '+';
        for (size_t j = 0; j < ends.size(); ++j) {
          int const r = next(ends[greedy ? ends.size() - 1 - j : j]);
          if (r >= 0) return r;
        }
        return -1;
      }
    }
  }

  int atom(Node const &n, int at, Rest const &rest) {
    bool const inText = at < static_cast<int>(m_Text.size());
    char const c = inText ? m_Text[static_cast<size_t>(at)] : '\0';
    switch (n.kind) {
      case Node::Char: return inText && c == n.ch ? rest(at + 1) : -1;
      case Node::Any: return inText ? rest(at + 1) : -1;
      case Node::End: return inText ? -1 : rest(at);
      case Node::Class: {
        bool const in = n.ch == 'd'   ? (c >= '0' && c <= '9')
                        : n.ch == 'l' ? (c >= 'a' && c <= 'z') : (c >= 'A' && c <= 'Z');
        return inText && in ? rest(at + 1) : -1;
      }
      case Node::Set: {
        bool const member = n.members.find(c) != std::string::npos;
        return inText && member != n.negated ? rest(at + 1) : -1;
      }
      case Node::Group: return alternatives(n.alternatives, at, rest);
    }
    return -1;
  }

  std::vector<Sequence> const &m_Top;
  std::string const &m_Text;
  int m_Start = 0;
};

std::string randomPattern(std::mt19937 &random) {
  static char const *const tokens[] = {
      "a", "b", "a", "b", "c", ".", "$", "^", "(", ")", "(", ")", "|", "|", "*", "+", "?", "#", "@",
      "[ab]", "[^a]", "[a-b]", "[b-a]", "[]", "[^]", "[-a]", "[a-]", ":l", ":d", ":u", "\\a", "\\.",
      "(a|b)", "(a|ab)", "A",
  };
  std::uniform_int_distribution<size_t> pick(0, std::size(tokens) - 1);
  std::uniform_int_distribution<int> count(1, 7);
  std::string pattern;
  for (int n = count(random); n > 0; --n) pattern += tokens[pick(random)];
  return pattern;
}

std::string randomText(std::mt19937 &random, char const *alphabet, int maxLength) {
  std::uniform_int_distribution<int> length(0, maxLength);
  std::uniform_int_distribution<size_t> pick(0, std::strlen(alphabet) - 1);
  std::string text;
  for (int n = length(random); n > 0; --n) text += alphabet[pick(random)];
  return text;
}

}  // namespace

// Match agrees with the model on which patterns compile and on offset and length of the
// leftmost match, for random short patterns and texts over a small alphabet.
TEST(StrPatternModel, MatchAgreesWithModel) {
  std::mt19937 random(20240517);
  int compiledCount = 0, matchCount = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string const pattern = randomPattern(random);
    std::vector<Sequence> top;
    bool const parses = ModelParser(pattern.c_str()).parse(top);
    SYS_StrPattern const compiledPattern(pattern.c_str());
    bool const compiles = *static_cast<char const *>(compiledPattern) != '\0';
    ASSERT_EQ(compiles, parses) << "pattern \"" << pattern << "\"";
    if (!compiles) continue;
    ++compiledCount;
    for (int t = 0; t < 6; ++t) {
      std::string const text = randomText(random, "aab.A", t < 4 ? 7 : 14);
      auto const expected = Model(top, text).find();
      int length = -1;
      int const offset = compiledPattern.Match(text.c_str(), &length);
      ASSERT_EQ(std::make_pair(offset, length), expected) << "pattern \"" << pattern << "\" text \"" << text << "\"";
      if (offset >= 0) ++matchCount;
    }
  }
  // Enough of the random patterns compile and match for the comparison to mean something.
  EXPECT_GT(compiledCount, 4000);
  EXPECT_GT(matchCount, 8000);
}

// Random bytes as pattern and text never crash or hang, and every result is a whole
// stretch of characters inside the text; Substitute returns a count it can justify.
TEST(StrPatternFuzz, RandomBytesStayWithinTheText) {
  std::mt19937 random(77031);
  static char const kPatternBytes[] = "\\()[]|^$.*+?#@:-x0aAbz9hnd \xC3\xA9\xE2\x82\xAC\xFF\x80";
  std::uniform_int_distribution<int> patternLength(0, 12);
  std::uniform_int_distribution<int> anyByte(1, 255);
  std::uniform_int_distribution<size_t> metaByte(0, sizeof kPatternBytes - 2);
  std::uniform_int_distribution<int> coin(0, 3);
  auto randomBytes = [&] {  // mostly pattern syntax, now and then any byte
    std::string bytes;
    for (int n = patternLength(random); n > 0; --n)
      bytes += coin(random) == 0 ? static_cast<char>(anyByte(random)) : kPatternBytes[metaByte(random)];
    return bytes;
  };
  for (int round = 0; round < 20000; ++round) {
    std::string const pattern = randomBytes();
    SYS_StrPattern const p(pattern.c_str()), copy(p);
    for (int t = 0; t < 3; ++t) {
      std::string const text = randomBytes();
      SCOPED_TRACE("pattern \"" + pattern + "\" text \"" + text + "\"");
      int length = -1;
      int const offset = p.Match(text.c_str(), &length);
      int copyLength = -1;
      ASSERT_EQ(copy.Match(text.c_str(), &copyLength), offset);
      ASSERT_EQ(copyLength, length);
      if (offset < 0) {
        ASSERT_EQ(length, 0);
        continue;
      }
      // Both ends of the match fall on character boundaries inside the text.
      std::vector<int> boundaries;
      for (char const *c = text.c_str();; c = plat::nextChar(c)) {
        boundaries.push_back(static_cast<int>(c - text.c_str()));
        if (*c == '\0') break;
      }
      ASSERT_TRUE(std::binary_search(boundaries.begin(), boundaries.end(), offset));
      ASSERT_TRUE(std::binary_search(boundaries.begin(), boundaries.end(), offset + length));
      ASSERT_LT(offset, static_cast<int>(text.size()));

      SYS_String edited(text.c_str());
      int const count = p.Substitute(edited, "<>", 0);
      // The first match is replaced, and each replacement passes at least one character.
      ASSERT_GE(count, 1);
      ASSERT_LE(count, static_cast<int>(boundaries.size()) - 1);
    }
  }
}
