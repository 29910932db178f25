#include "text/language.h"

#include <gtest/gtest.h>

#include <string>

#include "text/file.h"
#include "text/scratch.h"

namespace tv {
namespace {

TEST(Language, GivesTextsByKeyAndNothingForMissingOnes) {
  Scratch at;
  ASSERT_EQ(write_file(at / "tn_test.lan",
                       "[language]\r\nlanguage=test\r\n"
                       "[messages]\r\n75msg=Warning\xAC(second line)\r\n"
                       "[fileout]\r\n12txt=Head\r\n"
                       "[fastmsg]\r\nfwarn8=eight\r\nwarning0=zero\r\nwarning1=one \r\nwarning2=\" two\"\r\n"
                       "warning6=\" six\"\r\n"
                       "[failures]\r\n61=Platte voll\r\n"),
            0);
  ASSERT_EQ(write_file(at / "TN_TEST.TIP",
                       "[test]\r\nFeld=Long _\r\nFeld1=tip_\r\nFeld2=\xACof three\r\n"
                       "Short=one\r\nOpen=no end_\r\n[other]\r\nShort=wrong\r\n"),
            0);
  Language language;
  EXPECT_EQ(language.msg(75), "");
  EXPECT_EQ(language.failure(kFileNotFound), "File not found");
  ASSERT_TRUE(language.read(at / "tn_test.lan"));
  EXPECT_EQ(language.msg(75), "Warning\n(second line)");
  EXPECT_EQ(language.msg(76), "");
  EXPECT_EQ(language.fileout(12), "Head");
  EXPECT_EQ(language.fastmsg("fwarn", 8), "eight");
  EXPECT_EQ(language.fastmsg("FWARN8"), "eight");
  EXPECT_EQ(language.notice(), "zero\none two six");
  EXPECT_EQ(language.failure(kDiskFull), "Platte voll");
  EXPECT_EQ(language.failure(kOverflow), "Overflow");
  EXPECT_EQ(language.name(), "test");
  EXPECT_EQ(language.tip("feld"), "Long tip\nof three");
  EXPECT_EQ(language.tip("Short"), "one");
  EXPECT_EQ(language.tip("Open"), "no end");
  EXPECT_EQ(language.tip("none"), "");
  EXPECT_FALSE(language.read(at / "none.lan"));
  EXPECT_EQ(language.msg(75), "Warning\n(second line)");
  EXPECT_EQ(language.path(), at / "tn_test.lan");
}

TEST(Language, ReadsInTheCodePageItNames) {
  Scratch at;
  ASSERT_EQ(write_file(at / "r.lan",
                       "[messages]\n1msg=\xCF\xF0\xE8\n[language]\ncodepage=1251\nlanguage=russian\n"),
            0);
  ASSERT_EQ(write_file(at / "r.tip", "[russian]\nx=\xC6\n"), 0);
  Language language;
  ASSERT_TRUE(language.read(at / "r.lan"));
  EXPECT_EQ(language.page(), CodePage::cp1251);
  EXPECT_EQ(language.msg(1), "При");
  EXPECT_EQ(language.tip("x"), "Ж");
}

}  // namespace
}  // namespace tv
