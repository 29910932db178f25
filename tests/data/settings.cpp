#include <gtest/gtest.h>

#include <algorithm>

#include "data/settings_keys.h"
#include "temp_folder.h"
#include "text/number.h"

using namespace tv;
using tv_test::TempFolder;

namespace {

std::string value_of(const OptionKey& key, const Options& options) {
  if (key.text) return options.*key.text;
  if (key.real) return general(options.*key.real);
  if (key.whole) return std::to_string(options.*key.whole);
  return options.*key.flag ? "true" : "false";
}

void expect_same(const Options& a, const Options& b) {
  for (const OptionKey& key : option_keys()) EXPECT_EQ(value_of(key, a), value_of(key, b)) << key.key;
}

Options read(const std::string& bytes) {
  Options options;
  read_options(SectionedFile(bytes), options);
  return options;
}

}  // namespace

// A key is the name of its member: no two of them are mixed up, whatever their defaults.
template <class Member>
void expect_named(Member OptionKey::*kind,
                  std::initializer_list<std::pair<std::string_view, Member>> members) {
  for (const auto& [name, member] : members) {
    const auto key = std::ranges::find(option_keys(), name, &OptionKey::key);
    EXPECT_TRUE(key != option_keys().end() && *key.*kind == member) << name;
  }
}
#define MEMBER(name) \
  std::pair { std::string_view(#name), &Options::name }

TEST(Settings, StandUnderTheNameOfTheirMember) {
  expect_named<double Options::*>(
      &OptionKey::real,
      {MEMBER(pri_font_siz), MEMBER(tiptim),     MEMBER(tipwid),      MEMBER(ldstep),   MEMBER(srchtl),
       MEMBER(wisizx),       MEMBER(wisizy),     MEMBER(scrsiz),      MEMBER(tabsiz),   MEMBER(pritopcm),
       MEMBER(prileftcm),    MEMBER(prirightcm), MEMBER(pribottomcm), MEMBER(twistlen), MEMBER(maxtab),
       MEMBER(veltab),       MEMBER(bamaxt),     MEMBER(bamint),      MEMBER(lratio),   MEMBER(lv_min),
       MEMBER(hratio),       MEMBER(lod2nd),     MEMBER(gunmas),      MEMBER(scopew),   MEMBER(gunhos),
       MEMBER(gmoacli)});
  expect_named<bool Options::*>(
      &OptionKey::flag,
      {MEMBER(toltip), MEMBER(metyes), MEMBER(ldweight), MEMBER(ldperc), MEMBER(primeryes), MEMBER(mpayes),
       MEMBER(pcolor), MEMBER(maxshw), MEMBER(actshw), MEMBER(atiles), MEMBER(resize), MEMBER(symbol),
       MEMBER(sortvol), MEMBER(intro_off), MEMBER(excel_yes), MEMBER(accept), MEMBER(nowarn)});
}

TEST(Settings, NothingOrNonsenseGivesTheDefaults) {
  expect_same(read(""), Options());
  std::string nonsense;
  for (const char* key :
       {"pritopcm=0", "prileftcm=-1", "prirightcm=x", "scrsiz=0", "tabsiz=-3", "filcnt=1E9", "ldstep=0",
        "batols=0", "wisizx=5000", "wisizy=99999", "srchtl=-1", "scrfon=", "graf_x=-2"}) {
    nonsense += std::string(key) + "\n";
  }
  expect_same(
      read("[constants]\npri_font_siz=0\n[tiphelp]\ntipwid=0\ntiptim=-1\n[metrics]\nmaxtab=0\nveltab=-5\n"
           "[startup]\n" +
           nonsense),
      Options());
}

TEST(Settings, AreReadInAllTheirForms) {
  const Options o = read(
      "[konstanten]\nPRI_FONT_SIZ=11\npri_font_nam=arial "
      "Narrow\n[abmessungen]\nveltab=600\n[startup]\nsymbol=False\x01\n"
      "atiles=True\nmetyes=0\nmpayes=1\nsortvol=true\nprofil=data\\powders\\mine.\nwisizx=999\nwisizy=16056\n"
      "form1l=-99999\ngrftyp=-3\ntabfon=\" ????? \"\nexcel_yes=0\n");
  EXPECT_EQ(o.pri_font_siz, 11);
  EXPECT_EQ(o.pri_font_nam, "Arial Narrow");
  EXPECT_EQ(o.veltab, 600);
  EXPECT_FALSE(o.symbol);
  EXPECT_TRUE(o.atiles);
  EXPECT_FALSE(o.metyes);
  EXPECT_TRUE(o.sortvol);
  EXPECT_FALSE(o.excel_yes);
  EXPECT_EQ(o.profil, "data/powders/mine.");
  EXPECT_EQ(o.wisizx, 0);
  EXPECT_EQ(o.wisizy, 16056);
  EXPECT_EQ(o.form1l, "-99999");
  EXPECT_EQ(o.grftyp, -3);
  EXPECT_EQ(o.tabfon, " ????? ");
  Options options;
  EXPECT_TRUE(read_options(SectionedFile("[konstanten]\npri_font_siz=9\n"), options));
  EXPECT_FALSE(
      read_options(SectionedFile("[konstanten]\npri_font_siz=9\n[constants]\npri_font_siz=8\n"), options));
  for (const char* yes : {"t", "True", " -1", "1", "2x"}) EXPECT_TRUE(read_flag(yes)) << yes;
  for (const char* no : {"", "0", "False", "x", " "}) EXPECT_FALSE(read_flag(no)) << no;
}

TEST(Settings, ValuesMadeAnewDoNotComeBackFromFormerSections) {
  SectionedFile file("[konstanten]\npri_font_siz=11\n");
  Options options;
  write_options(options, file);
  EXPECT_EQ(file.get("konstanten", "pri_font_siz"), "");
  EXPECT_EQ(read(file.bytes()).pri_font_siz, 8);
}

TEST(DataRoot, IsTheFirstPlaceWithSettings) {
  const TempFolder folder;
  const std::string& at = folder.path();
  PlaceHints hints{at + "opt/Shooter", at + "docs", {at + "shared1", at + "shared2/"}, ""};
  std::filesystem::create_directories(hints.program_folder);
  EXPECT_EQ(find_data_root(hints).root, at + "opt/Shooter/");
  folder.write("shared2/Shooter/ternofw.set", "");
  EXPECT_EQ(find_data_root(hints).root, at + "shared2/Shooter/");
  folder.write("shared1/Shooter/ternofw.set", "");
  EXPECT_EQ(find_data_root(hints).root, at + "shared1/Shooter/");
  folder.write("docs/Shooter/TERNOFW.SET", "");
  EXPECT_EQ(find_data_root(hints).root, at + "docs/Shooter/");
  hints.program_folder = at + "usr/bin/";  // shared by all programs: the name is ours
  std::filesystem::create_directories(hints.program_folder);
  EXPECT_EQ(find_data_root(hints).root, at + "docs/ternovale/") << "writable, and yet not ours";
  folder.write("docs/ternovale/ternofw.set", "");
  EXPECT_EQ(find_data_root(hints).root, at + "docs/ternovale/");
}

TEST(DataRoot, OfAFolderThatKeepsItsOwnFilesIsThatFolder) {
  const TempFolder folder;
  const std::string& at = folder.path();
  folder.write("docs/ternovale/ternofw.set", "");
  PlaceHints hints{at + "stick/bin", at + "docs", {}, ""};
  folder.write("stick/lan/x.lan", "");
  std::filesystem::create_directories(hints.program_folder);
  EXPECT_EQ(find_data_root(hints).root, at + "docs/ternovale/") << "languages alone";
  folder.write("stick/data/x.vol", "");
  EXPECT_EQ(find_data_root(hints).root, at + "stick/");
  EXPECT_EQ(find_data_root(hints).delivered, at + "stick/");
  folder.write("stick/bin/ternofw.set", "");
  EXPECT_EQ(find_data_root(hints).root, at + "stick/bin/");
  hints.program_folder = at + "stick";
  EXPECT_EQ(find_data_root(hints).root, at + "stick/");
}

TEST(DataRoot, KnowsWhereTheDeliveredFilesLie) {
  const TempFolder folder;
  const std::string& at = folder.path();
  PlaceHints hints{at + "usr/bin", at + "docs", {at + "usr/share"}, ""};
  std::filesystem::create_directories(hints.program_folder);
  EXPECT_EQ(find_data_root(hints).delivered, find_data_root(hints).root);
  folder.write("usr/share/ternovale/lan/x.lan", "");
  EXPECT_TRUE(std::filesystem::equivalent(find_data_root(hints).delivered, at + "usr/share/ternovale"));
  folder.write("build/lan/x.lan", "");
  hints.build_share = at + "build";
  EXPECT_EQ(find_data_root(hints).delivered, at + "build/");
}
