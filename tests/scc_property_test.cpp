//===- tests/scc_property_test.cpp - Properties over a collection's focus ===//
#include "scc_property.h"

#include "tests/scc_stdcoll_support.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

/// A width property over a table of items: reads fail for handles without a width,
/// writes fail for handles listed as read-only. Every call is logged by test number.
struct WidthProperty : SCC_StdProperty {
  using SCC_StdProperty::GetValue;
  using SCC_StdProperty::SetValue;

  int GetValue(SYS_Handle handle, SCC_Variant &value) override {
    log.push_back("get " + std::to_string(handle & 0xFFFF));
    auto const found = widths.find(handle);
    if (found == widths.end()) return 0;
    value = found->second;
    return 1;
  }
  int SetValue(SYS_Handle handle, SCC_Variant &value, int flags) override {
    log.push_back("set " + std::to_string(handle & 0xFFFF) + "/" + std::to_string(flags));
    if (readOnly.count(handle) != 0) return 0;
    widths[handle] = value;
    return 1;
  }
  int HasSetMethod() override { return 1; }

  std::map<SYS_Handle, SCC_Variant> widths;
  std::map<SYS_Handle, int> readOnly;
  std::vector<std::string> log;
};

struct PropertyTest : CollectionTest {
  void Focus(std::initializer_list<long> numbers) {
    bool add = false;
    for (long n : numbers) {
      items.SetFocus(handleOf(n), add);
      add = true;
    }
  }
  std::string Common() {
    SCC_Variant value;
    int const result = width.GetValue(&items, value);
    return std::to_string(result) + ":" + (value.IsEmpty() ? "empty" : std::string(SYS_String(value)));
  }
  WidthProperty width;
};

}  // namespace

// The focused items' common value; empty as soon as one differs, 0 when one cannot be read.
TEST_F(PropertyTest, CommonValueOfTheFocus) {
  Load({1, 2, 3, 4});
  EXPECT_EQ(Common(), "0:empty");  // no focus
  for (long n : {1, 2, 3}) width.widths[handleOf(n)] = SCC_Variant(4);
  width.widths[handleOf(4)] = SCC_Variant(4.0);
  Focus({1, 2, 3});
  EXPECT_EQ(Common(), "1:4");
  width.widths[handleOf(2)] = SCC_Variant(5);
  width.log.clear();
  EXPECT_EQ(Common(), "1:empty");
  EXPECT_EQ(width.log, (std::vector<std::string>{"get 1", "get 2"}));  // stops at the first difference
  Focus({1, 4});
  EXPECT_EQ(Common(), "1:4");  // 4 and 4.0 are equal; the first item's value is kept
  // An empty value equals nothing, also when the first item has it.
  width.widths[handleOf(1)] = SCC_Variant();
  EXPECT_EQ(Common(), "1:empty");
  width.widths[handleOf(1)] = SCC_Variant(4.0);
  width.widths[handleOf(4)] = SCC_Variant();
  EXPECT_EQ(Common(), "1:empty");
  width.widths.erase(handleOf(4));
  width.widths[handleOf(1)] = SCC_Variant(4);
  EXPECT_EQ(Common(), "0:4");  // the second cannot be read
}

// Writing walks the focus in order with the same value and flags and stops at a failure.
TEST_F(PropertyTest, WritesEveryFocusedItem) {
  Load({1, 2, 3});
  SCC_Variant value(7);
  EXPECT_EQ(width.SetValue(&items, value, 3), 1);  // no focus: nothing to fail
  EXPECT_TRUE(width.log.empty());
  Focus({3, 1, 2});
  width.readOnly[handleOf(2)] = 1;
  EXPECT_EQ(width.SetValue(&items, value, 3), 0);
  EXPECT_EQ(width.log, (std::vector<std::string>{"set 1/3", "set 2/3"}));
  EXPECT_EQ(width.widths.count(handleOf(3)), 0u);
}

// Without a collection the per-item operations see handle 0; a literal 0 is a handle.
TEST_F(PropertyTest, WithoutCollection) {
  SCC_Variant value;
  EXPECT_EQ(width.GetValue(static_cast<SCC_StdCollection *>(nullptr), value), 0);
  width.widths[0] = SCC_Variant("zero");
  EXPECT_EQ(width.GetValue(0, value), 1);
  EXPECT_EQ(width.SetValue(nullptr, value, 0), 1);
  EXPECT_EQ(width.log, (std::vector<std::string>{"get 0", "get 0", "set 0/0"}));
  SCC_StdProperty base;
  EXPECT_EQ(base.GetValue(0, value), 0);
  EXPECT_EQ(base.SetValue(0, value, 0), 0);
  EXPECT_EQ(base.HasSetMethod(), 0);
  EXPECT_EQ(base.GetDataSource(), &base);
}

// A copy shares the convertor and has its own validation text; the convertor goes with
// its last holder.
TEST(Property, CopiesShareTheConvertor) {
  struct Counted : SCC_Convertor {
    explicit Counted(int &destroyed) : destroyed(destroyed) {}
    ~Counted() override { ++destroyed; }
    SCC_Variant Convert(SCC_Variant value, int) override { return value; }
    int &destroyed;
  };
  int destroyed = 0;
  {
    SCC_StdProperty original;
    EXPECT_EQ(std::string(original.GetValidation()), "");
    EXPECT_EQ(original.GetConvertor().Get(), nullptr);
    original.SetValidation("[0.1,10]");
    EXPECT_EQ(original.SetConvertor(new Counted(destroyed)), &original);
    SCC_StdProperty copy(original);
    copy.SetValidation("5");
    EXPECT_EQ(std::string(original.GetValidation()), "[0.1,10]");
    EXPECT_EQ(copy.GetConvertor().Get(), original.GetConvertor().Get());
    original.SetConvertor(nullptr);
    EXPECT_EQ(destroyed, 0);
    copy.SetConvertor(copy.GetConvertor());  // the same one again is kept
    EXPECT_EQ(destroyed, 0);
  }
  EXPECT_EQ(destroyed, 1);
}
