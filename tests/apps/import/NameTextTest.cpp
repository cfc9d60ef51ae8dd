#include "import/NameText.h"

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

TEST(NameText, CleansTextToValidUtf8WithoutControls) {
  EXPECT_EQ(CleanText("  Schraube\r\n M8\t"), "Schraube M8");
  EXPECT_EQ(CleanText("f\xC3\xBCr \xE6\x97\xA5 \xF0\x9F\x94\xA9"), "f\xC3\xBCr \xE6\x97\xA5 \xF0\x9F\x94\xA9");
  EXPECT_EQ(CleanText("a\xFC"
                      "b\xC3"),
            "ab")
      << "raw and cut sequences";
  EXPECT_EQ(CleanText("\xC0\x80\xED\xA0\x80\xF4\x90\x80\x80x"), "x") << "overlong, surrogate, out of range";
  EXPECT_EQ(CleanText("a\xC2\x85"
                      "b"),
            "a b");
}

TEST(NameText, KnowsInventedNamesFromGivenOnes) {
  for (const char* name : {"", "SOLID", "Compound", "=>[0:1:1:3]"}) EXPECT_TRUE(IsInventedName(name)) << name;
  for (const char* name : {"SOLID 1", "Solid plate", "=>", "[0:1]"}) EXPECT_FALSE(IsInventedName(name)) << name;
  EXPECT_FALSE(IsInventedLink(""));
  EXPECT_FALSE(IsInventedLink("SOLID"));
}

TEST(NameText, TakesOffOnlyRealSuffixes) {
  EXPECT_EQ(WithoutInstanceSuffix("nut_12"), "nut");
  EXPECT_EQ(WithoutInstanceSuffix("Clip v2:1"), "Clip v2");
  for (const char* name : {"nut", "nut_", "_3", "nut_a3", "M8x30"}) EXPECT_EQ(WithoutInstanceSuffix(name), name);
  EXPECT_TRUE(IsVersionOf("tea02 v55", "tea02"));
  EXPECT_FALSE(IsVersionOf("servo v1", "servo v1"));
  EXPECT_FALSE(IsVersionOf("tea02 vx", "tea02"));
  EXPECT_FALSE(IsVersionOf(" v5", ""));
}

}  // namespace
}  // namespace zrfigure
