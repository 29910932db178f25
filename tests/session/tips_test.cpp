// Tool tips of the user's own.
#include <gtest/gtest.h>

#include "session/files_fixture.h"
#include "session/tips.h"

namespace tv {
namespace {

using tv_test::Home;

TEST_F(Home, AnEditedTipStandsInAFileOfItsOwnAndGoesFirst) {
  const std::string delivered = share + "lan/tn_english.tip";
  const std::string before = read_file(delivered).bytes;
  std::string original;
  {
    const auto p = start();
    original = p->s.language.tip("Zkalm");
    ASSERT_FALSE(original.empty());
    p->user.inputs = {"mine¬in two lines_"};
    edit_tip(p->s, "Zkalm");
    EXPECT_EQ(p->user.asked.at(0).prompt.text, "Enter the tooltip text:");
    EXPECT_EQ(p->user.asked.at(0).value, original);
    EXPECT_EQ(p->s.language.tip("Zkalm"), "mine\nin two lines");
    p->user.inputs = {std::nullopt};
    edit_tip(p->s, "Zkalm");
    EXPECT_EQ(p->user.asked.at(1).value, "mine¬in two lines");
  }
  EXPECT_EQ(read_file(delivered).bytes, before);
  const auto again = start();
  EXPECT_EQ(again->s.language.tip("Zkalm"), "mine\nin two lines");
  EXPECT_FALSE(again->s.language.tip("Zkalz").empty()) << "the delivered ones stand";
  language_switch(again->s, "russian");
  EXPECT_NE(again->s.language.tip("Zkalm"), "mine\nin two lines");
  EXPECT_TRUE(store_tip(again->s, "Zkalm", "Мой совет"));
  language_switch(again->s, "english");
  language_switch(again->s, "russian");
  EXPECT_EQ(again->s.language.tip("Zkalm"), "Мой совет");
}

TEST_F(Home, ALongTipGoesOnUnlessTheNameIsAnotherControls) {
  const auto p = start();
  std::string longest;
  while (longest.size() < 1200) longest += "word" + std::to_string(longest.size()) + " ";
  longest.pop_back();
  EXPECT_TRUE(store_tip(p->s, "Zkalm", longest));
  EXPECT_EQ(p->s.language.tip("Zkalm"), longest);
  EXPECT_TRUE(store_tip(p->s, "Zkalm", "short again"));
  EXPECT_EQ(p->s.language.tip("Zkalm"), "short again");

  const std::string neighbour = p->s.language.tip("zul_P1");
  EXPECT_TRUE(store_tip(p->s, "zul_P", longest));
  EXPECT_EQ(p->s.language.tip("zul_P1"), neighbour);
  const std::string cut = p->s.language.tip("zul_P");
  EXPECT_TRUE(longest.starts_with(cut));
  EXPECT_GT(cut.size(), 490U);
}

TEST_F(Home, ATipThatCannotBeStoredIsTold) {
  const auto p = start();
  write("lan", "a file in the folder's place");
  EXPECT_FALSE(store_tip(p->s, "Zkalm", "lost"));
  EXPECT_EQ(p->keys(), "msg420");
  EXPECT_NE(p->s.language.tip("Zkalm"), "lost");
}

}  // namespace
}  // namespace tv
