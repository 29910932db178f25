#include "text/language.h"

#include <gtest/gtest.h>

#include <string>

#include "temp_folder.h"
#include "text/failure.h"
#include "text/file.h"

namespace tv {
namespace {

using tv_test::TempFolder;

const std::string kLan = std::string(TV_SHARE_DIR) + "/lan/";

TEST(Language, GivesTextsByKeyAndNothingForMissingOnes) {
  const TempFolder at;
  at.write("tn_test.lan",
           "[language]\r\nlanguage=test\r\n"
           "[messages]\r\n75msg=Warning\xAC(second line)\r\n"
           "[fileout]\r\n12txt=Head\r\n"
           "[fastmsg]\r\nfwarn8=eight\r\nwarning0=zero\r\nwarning1=one \r\n"
           "[failures]\r\n61=Platte voll\r\n");
  at.write("TN_TEST.TIP",
           "[test]\r\nFeld=Long _\r\nFeld1=tip_\r\nFeld2=\xACof three\r\n"
           "Short=one\r\nOpen=no end_\r\n[other]\r\nShort=wrong\r\n");
  Language language;
  EXPECT_EQ(language.msg(75), "");
  EXPECT_EQ(language.read(at / "tn_test.lan"), LanguageRead::damaged) << "and yet taken";
  EXPECT_EQ(language.msg(75), "Warning\n(second line)");
  EXPECT_EQ(language.msg(76), "");
  EXPECT_EQ(language.fileout(12), "Head");
  EXPECT_EQ(language.fastmsg("FWARN", 8), "eight");
  EXPECT_EQ(language.notice().substr(0, 12), "zero\noneReal");
  EXPECT_EQ(language.failure(kDiskFull), "Platte voll");
  EXPECT_EQ(language.name(), "test");
  EXPECT_EQ(language.tip("feld"), "Long tip\nof three");
  EXPECT_EQ(language.tip("Short"), "one");
  EXPECT_EQ(language.tip("Open"), "no end");
  EXPECT_EQ(language.tip("none"), "");
  EXPECT_EQ(language.read(at / "none.lan"), LanguageRead::unreadable);
  EXPECT_EQ(language.msg(75), "Warning\n(second line)");
  EXPECT_EQ(language.path(), at / "tn_test.lan");
}

// Whatever the file lacks, nobody is left without the notice, the marks and the words of the buttons, and a
// file that lacks notice or marks says so.
TEST(Language, SafetyTextsOutliveDamage) {
  const TempFolder at;
  Language english;
  ASSERT_EQ(english.read(kLan + language_file_name("english")), LanguageRead::good);
  const std::string whole = read_file(english.path()).bytes;
  const auto without = [&](const std::string& begin) {
    const std::size_t from = whole.find("\r\n" + begin) + 2;
    return whole.substr(0, from) + whole.substr(whole.find("\r\n", from) + 2);
  };
  const struct {
    std::string bytes;
    LanguageRead read;
  } cases[] = {{"", LanguageRead::damaged},
               {std::string(5000, '\0'), LanguageRead::damaged},
               {without("[messages]"), LanguageRead::damaged},
               {without("warning4="), LanguageRead::damaged},
               {without("fwarn3="), LanguageRead::damaged},
               {without("fcrgvar13="), LanguageRead::damaged},
               {without("fwarn8="), LanguageRead::good}};
  for (const auto& c : cases) {
    Language language;
    EXPECT_EQ(language.read(at.write("tn_german.lan", c.bytes)), c.read) << c.bytes.size();
    EXPECT_EQ(language.notice(), english.notice());
    for (const char* key : {"fwarn1", "fwarn2", "fwarn3", "fwarn14", "fcrgvar13", "fcrgvar14", "fobsol0"})
      EXPECT_EQ(language.fastmsg(key), english.fastmsg(key)) << key;
    for (int n : {kInvalidArgument, kOverflow, kDivisionByZero, kFileNotFound, kFileError, kDiskFull,
                  kPermissionDenied, kFolderNotFound})
      EXPECT_EQ(language.failure(n), english.failure(n)) << n;
    for (const char* key : {"ok", "cancel", "yes", "no", "retry"})
      EXPECT_EQ(language.text("files", key), english.text("files", key)) << key;
    EXPECT_NE(language.text("form11", "cancel"), "");
    EXPECT_EQ(delivered_language_file(kLan, language.path()), kLan + "tn_german.lan");
  }
  EXPECT_EQ(delivered_language_file(kLan, at / "tn_dutch.lan"), kLan + "tn_english.lan");
  EXPECT_EQ(delivered_language_file(kLan, kLan + "tn_german.lan"), kLan + "tn_english.lan");
}

}  // namespace
}  // namespace tv
