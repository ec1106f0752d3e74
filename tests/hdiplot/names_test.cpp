// Names in any case, and patterns of them.
#include "hdiplot/system/names.h"

#include <gtest/gtest.h>

#include "hdiplot/system/wildcard.h"

namespace hdiplot {
namespace {

TEST(Names, AreTheSameInAnyCase) {
  EXPECT_TRUE(IsSameName("Wände_ŁÓDŹ_ЖУК_ΦΩΣ", "WÄNDE_łódź_жук_φως"));
  EXPECT_TRUE(IsSameName("𐐀", "𐐨"));
  EXPECT_FALSE(IsSameName("straße", "STRASSE"));  // simple folding only
  EXPECT_FALSE(IsSameName("a", "ab"));
}

TEST(Names, FitPatternsByCharacters) {
  const auto matches = [](const char* pattern, const char* name) {
    return MatchesWildcard(FoldedName(pattern), FoldedName(name));
  };
  EXPECT_TRUE(matches("?ó*-?", "ŁÓDŹ-𐐀"));
  EXPECT_FALSE(matches("??", "Ł"));
  EXPECT_FALSE(matches("*?", ""));
}

TEST(Names, AreUtf8OrNot) {
  EXPECT_TRUE(IsUtf8("") && IsUtf8("ŁÓDŹ"));
  for (const char* bytes : {"\xff", "a\xc3", "\xc0\x80", "\xed\xa0\x80"}) EXPECT_FALSE(IsUtf8(bytes));
}

}  // namespace
}  // namespace hdiplot
