#include "text/codepage.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tv {
namespace {

constexpr CodePage kPages[] = {CodePage::cp1252, CodePage::cp1251};

std::string all_bytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

TEST(CodePage, EveryByteSurvivesTheRoundTrip) {
  for (CodePage page : kPages) {
    const std::string text = to_utf8(all_bytes(), page);
    EXPECT_EQ(length(text), 256u);
    EXPECT_EQ(from_utf8(text, page), all_bytes());
    for (CodePage other : kPages) {
      EXPECT_EQ(from_utf8(reread(text, page, other), other), all_bytes());
    }
  }
}

TEST(CodePage, KnownCharacters) {
  EXPECT_EQ(to_utf8("\x80\x81\xE4\xA6\xAC\xFF", CodePage::cp1252), "€\u0081ä¦¬ÿ");
  EXPECT_EQ(to_utf8("\xCF\xF0\xE8\xA8\xB8\x98\xA6\xAC", CodePage::cp1251), "ПриЁё\u0098¦¬");
  EXPECT_EQ(from_utf8("Пoä漢", CodePage::cp1252), "o\xE4");
  EXPECT_EQ(drop_foreign("a ä漢Ж😀?", CodePage::cp1251), "a Ж?");
  EXPECT_EQ(code_page_named("1251"), CodePage::cp1251);
  EXPECT_EQ(code_page_named(""), CodePage::cp1252);
}

TEST(Characters, WidthsCountCharactersNotBytes) {
  EXPECT_EQ(left("Größe", 3), "Grö");
  EXPECT_EQ(left("ab", 5), "ab");
  EXPECT_EQ(pad_right("Grö", 5), "Grö  ");
  EXPECT_EQ(pad_left("Grö", 5), "  Grö");
  EXPECT_EQ(pad_left("Größe", 2), "Größe");
  EXPECT_EQ(fit("Größe", 3), "Grö");
  EXPECT_EQ(fit("ö", 3), "ö  ");
  EXPECT_EQ(trim(" \ta b\t "), "a b");
  EXPECT_EQ(trim("  "), "");
}

TEST(Characters, CaseOfLatinAndCyrillic) {
  EXPECT_EQ(upper("aäéøþ÷ßÿµ жёґ"), "AÄÉØÞ÷ßÿµ ЖЁҐ");
  EXPECT_EQ(lower("AÄÉØÞ× ЖЁЂҐ"), "aäéøþ× жёђґ");
  EXPECT_TRUE(same_fold("Größe.DAT", "GRÖßE.dat"));
  EXPECT_FALSE(same_fold("×", "÷"));
  EXPECT_FALSE(same_fold("a", "ab"));
  for (CodePage page : kPages) {
    const std::string text = to_utf8(all_bytes(), page);
    EXPECT_EQ(lower(upper(lower(text))), lower(text));
  }
}

TEST(Characters, OrderIsThatOfTheFileBytes) {
  EXPECT_LT(compare_bytes("abc", "abd", CodePage::cp1252), 0);
  EXPECT_LT(compare_bytes("ab", "abc", CodePage::cp1252), 0);
  EXPECT_EQ(compare_bytes("ä", "ä", CodePage::cp1252), 0);
  EXPECT_LT(compare_bytes("€", "ä", CodePage::cp1252), 0);  // 0x80 and 0xE4, the other way round in UTF-8
  EXPECT_LT(compare_bytes("z", "€", CodePage::cp1252), 0);
}

TEST(Breaks, BecomeMarksAndBack) {
  EXPECT_EQ(breaks_to_marks("a\r\nb\nc\rd"), "a¬b¬c¬d");
  EXPECT_EQ(breaks_to_marks("\r\r\n\n"), "¬¬¬");
  EXPECT_EQ(marks_to_breaks("a¬¬b¬"), "a\n\nb\n");
}

}  // namespace
}  // namespace tv
