// Derived names: the proposed file name of a document, and the plotting application.
#include <gtest/gtest.h>

#include "driver/creator.h"
#include "driver/output_path.h"

namespace hdi {
namespace {

TEST(ProposedFileName, IsTheDocumentNameWithoutItsExtension) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"c:\\x\\plan.dwg", u"plan.pdf"},   {u"/x/plan.dwg", u"plan.pdf"},
      {u"plan", u"Drawing1.pdf"},          {u"a.b.c", u"a.b.pdf"},
      {u"c:\\x.y\\plan", u"Drawing1.pdf"}, {u"", u"Drawing1.pdf"},
      {u".dwg", u"Drawing1.pdf"},          {u"c:\\x\\", u"Drawing1.pdf"},
      {u"\u56fe.dwg", u"\u56fe.pdf"},
  };
  for (const auto& [document, file] : cases) {
    EXPECT_TRUE(ProposedFileName(document) == file)
        << std::string(document, document + std::char_traits<char16_t>::length(document));
  }
}

#if defined(_WIN32)
TEST(Creator, IsBetweenTheLastBackslashAndTheLastDot) {
  EXPECT_TRUE(CreatorOf(u"c:\\apps\\cad.exe") == u"cad");
  EXPECT_TRUE(CreatorOf(u"c:\\a.b\\tool") == u"");
  EXPECT_TRUE(CreatorOf(u"c:\\.exe") == u"");
  EXPECT_TRUE(CreatorOf(u"cad.exe") == u"CAD");
}
#else
TEST(Creator, IsTheBaseNameWithoutItsLastExtension) {
  EXPECT_TRUE(CreatorOf(u"/usr/bin/cad.bin") == u"cad");
  EXPECT_TRUE(CreatorOf(u"/opt/a.b/tool") == u"tool");
  EXPECT_TRUE(CreatorOf(u"") == u"CAD");
}
#endif

}  // namespace
}  // namespace hdi
