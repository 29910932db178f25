// Whole data files and the records in them, as a person works on them.
#include "session/dimensions.h"
#include "session/files_fixture.h"
#include "session/input_check.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/tables.h"
#include "session/take_records.h"
#include "without_rights.h"

using namespace tv;

namespace tv_test {
namespace {

class DataSets : public Home {
protected:
  DataSets() : p(start()), s(p->s), user(p->user) { user.forget(); }

  RecordTable stored(const std::string& file, RecordKind kind) const {
    return parse_records(read(file), kind, CodePage::cp1252).file.table;
  }
  static Record bullet(const std::string& name, const char* calibre) {
    return record(name, {{bullet_field::Bwg, "150"}, {bullet_field::buldin, calibre}});
  }
  static Record cartridge(const std::string& name, const char* calibre) {
    return record(name, {{cartridge_field::Zkal, calibre}});
  }
  std::size_t listed(const char* list = "Bnam") const { return shown(s, "Form3", list).items.size(); }

  std::unique_ptr<Program> p;
  Session& s;
  FileUser& user;
  static constexpr auto bullets = RecordKind::bullets, cartridges = RecordKind::cartridges,
                        powders = RecordKind::powders;
};

TEST_F(DataSets, AreOpenedWithWhateverIsWrongTold) {
  const std::string good = write("b/good.bul", file_of(bullets, {bullet("B", ".308"), bullet("A", ".308")}));
  const std::string bad = write("b/bad.BU$", "\" 9 [bullet]\"\n\"short\",\"150\"\nno quotes at all\n\"x;y\"");
  const std::string before = s.set(bullets).stored_name;
  s.load.bultyp = "as typed";
  user.files = {std::nullopt};
  open_records(s, bullets);
  EXPECT_EQ(s.set(bullets).stored_name, before);
  EXPECT_GT(listed(), 50u);
  user.files = {saved_as(at("b/none.bul")), saved_as(write("b/x.vol", "")), saved_as(at("b/good"))};
  open_records(s, bullets);
  EXPECT_EQ(p->keys(), "filerror; extonly");
  EXPECT_EQ(names(p->table(bullets)), "A|B");
  EXPECT_EQ(listed(), 2u);
  EXPECT_EQ(shown(s, "Form3", "Bnam").text, "as typed");
  EXPECT_EQ(s.set(bullets).caption, s.language.fastmsg("flbul") + "good");
  EXPECT_EQ(read_sectioned(s.settings_file, CodePage::cp1252).get("startup", "ibulfil"), at("b/good."));
  EXPECT_EQ(read_sectioned(s.transfer_file, CodePage::cp1252).get("transfer", "bfile"), good);
  user.files = {saved_as(bad)};
  open_records(s, bullets);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_NE(user.boxes[0].message.text.find("short"), std::string::npos);
  EXPECT_NE(user.boxes[0].message.text.find(s.language.msg(188) + "3"), std::string::npos);
  EXPECT_EQ(user.count("beep"), 1);
  EXPECT_EQ(p->keys(), "msg185 msg427 msg445 msg446 msg186 msg187 msg188 msg442 msg187 msg188 msg189");
  EXPECT_EQ(p->table(bullets).last(), 1);
  EXPECT_EQ(s.set(bullets).file.comments, std::vector<std::string>{"\"x;y\""});
  EXPECT_EQ(s.set(bullets).stored_name, at("b/bad."));
}

TEST_F(DataSets, OfAFailedReadingDoNotReplaceTheFileInUse) {
  write("b/mine.bul", file_of(bullets, {bullet("A", ".308")}));
  user.files = {saved_as(at("b/mine.bul"))};
  open_records(s, bullets);
  make_folders(at("b/folder.bul"));
  EXPECT_FALSE(read_data_set(s, bullets, at("b/folder.bul"), true));
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].message.text.find("57, " + s.language.failure(57)), 0u);
  EXPECT_EQ(p->keys(), "msg192 msg190 msg191");
  EXPECT_EQ(s.set(bullets).stored_name, at("b/mine."));
  EXPECT_EQ(listed(), 0u);
  std::filesystem::permissions(at("b/mine.bul"), std::filesystem::perms(0));
  {
    const WithoutRights nobody;
    EXPECT_FALSE(read_data_set(s, bullets, at("b/mine.bul"), true));
  }
  std::filesystem::permissions(at("b/mine.bul"), std::filesystem::perms(0644));
  EXPECT_EQ(p->keys(), "msg100 msg190 msg191");
  const std::string before = read("b/mine.bul");
  user.files = {std::nullopt};
  EXPECT_FALSE(add_record(s, bullets, bullet("B", ".308")));
  EXPECT_EQ(p->keys(), "msg408");
  EXPECT_EQ(read("b/mine.bul"), before);
}

TEST_F(DataSets, AreMadeAndCopiedWithTheirComment) {
  user.files = {saved_as(at("c/TERNOFW.PRO"), "typed"), saved_as(at("c/AllPowdr"), "typed"),
                saved_as(at("c/own"), "line 1\nline \"2\"; end")};
  EXPECT_TRUE(new_file(s, powders));
  EXPECT_EQ(p->keys(), "msg308; msg308");
  EXPECT_EQ(user.file_boxes[2].comment, "typed");
  EXPECT_EQ(read("c/own.pro"), ";line 1\xACline '2', end\r\n\" 0 [pulver]\"\r\n");
  EXPECT_EQ(s.options.profil, at("c/own."));
  user.files = {saved_as(at("c/own.pro"), "other")};
  user.answers = {Answer::yes};
  EXPECT_TRUE(save_as(s, powders));
  EXPECT_EQ(user.file_boxes[3].name, "own.pro");
  EXPECT_EQ(user.file_boxes[3].comment, "line 1\nline '2', end");
  EXPECT_EQ(p->keys(), "fileover");
  // A failed write leaves table, comment, name and files as they were.
  write("c/wall", "a file");
  user.files = {saved_as(at("c/wall/in.pro"), "lost"), saved_as(at("c/wall/in.pro"), "lost")};
  p->table(powders).rows = {record("P")};
  EXPECT_FALSE(save_as(s, powders) || new_file(s, powders));
  EXPECT_EQ(p->keys(), "msg420; msg420");
  EXPECT_EQ(names(p->table(powders)), "P");
  EXPECT_EQ(s.set(powders).file.comments, std::vector<std::string>{";other"});
  EXPECT_EQ(s.set(powders).stored_name, at("c/own."));
}

TEST_F(DataSets, RecordsAreAddedReplacedAndDeleted) {
  user.files = {saved_as(at("b/mine"))};
  ASSERT_TRUE(new_file(s, bullets));
  s.load.bultyp = "in the load";
  EXPECT_FALSE(add_record(s, bullets, record("  ")));
  EXPECT_EQ(p->keys(), "msg27 msg23");
  EXPECT_TRUE(add_record(s, bullets, bullet(" a \"b\"; ", ".308")));
  EXPECT_EQ(shown(s, "Form3", "Bnam").text, "in the load") << "an edited list changes no load";
  EXPECT_EQ(names(stored("b/mine.bul", bullets)), "a 'b',");
  EXPECT_EQ(listed(), 1u);
  user.answers = {Answer::no, Answer::yes};
  EXPECT_FALSE(add_record(s, bullets, bullet("a 'b',", ".224")));
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_NE(user.boxes[0].message.text.find("mine.bul"), std::string::npos);
  EXPECT_TRUE(add_record(s, bullets, bullet("a 'b',", ".224")));
  EXPECT_EQ(p->keys(), "msg291 msg301 msg27 msg30; msg291 msg301 msg27 msg30");
  for (const int none : {-1, 2}) EXPECT_FALSE(delete_record(s, bullets, none, false));
  EXPECT_EQ(user.count("beep"), 2);
  EXPECT_EQ(p->keys(), "msg400 msg305; msg400 msg305");
  user.answers = {Answer::cancel};
  EXPECT_FALSE(delete_record(s, bullets, 0, false));
  EXPECT_EQ(p->keys(), "msg111 msg112");
  std::filesystem::remove_all(at("b"));
  write("b", "a file in the folder's place");
  EXPECT_FALSE(delete_record(s, bullets, 0, true));
  EXPECT_FALSE(add_record(s, bullets, bullet("third", ".308")));
  EXPECT_EQ(p->keys(), "msg420; msg420");
  EXPECT_EQ(names(p->table(bullets)), "a 'b',");
  user.answers = {Answer::cancel};
  EXPECT_FALSE(delete_record(s, RecordKind::guns, 0, false));
  EXPECT_EQ(p->keys(), "msg110 msg111 msg112");
}

TEST_F(DataSets, ADeliveredFileIsCopiedBeforeItIsChanged) {
  const int delivered = p->table(powders).last();
  const std::string name{trim(p->table(powders).cell(0, 0))};
  user.answers = {Answer::cancel};
  EXPECT_FALSE(add_record(s, powders, record(name)));
  EXPECT_EQ(p->keys(), "msg306 msg307");
  user.answers = {Answer::ok};
  user.files = {saved_as(at("p/copy.pro"))};
  EXPECT_TRUE(delete_record(s, powders, 0, true));
  EXPECT_EQ(stored("p/copy.pro", powders).last(), delivered - 1);
  // The delivered names are kept wherever they lie, and so is every file of the installed folder.
  user.forget();
  std::filesystem::create_directories(at("q"));
  std::filesystem::copy(share + "/data/powders/ternofw.pro", at("q/TernoFW.pro"));
  user.files = {saved_as(at("q/TernoFW.pro")), saved_as(at("q/own.pro"))};
  open_records(s, powders);
  user.answers = {Answer::ok, Answer::yes};
  EXPECT_TRUE(add_record(s, powders, record(name, {{powder_field::Ba0, "0.5"}})));
  EXPECT_EQ(stored("q/own.pro", powders).last(), delivered) << "a copy of the whole";
  EXPECT_EQ(read("q/TernoFW.pro"), read_file(share + "/data/powders/ternofw.pro").bytes);
  user.answers = {Answer::ok};
  user.files = {saved_as(share + "/data/bullets/mine.bul"), saved_as(at("q/own.bul"))};
  user.forget();
  EXPECT_TRUE(add_record(s, bullets, bullet("new", ".308")));
  EXPECT_EQ(p->keys(), "msg306 msg307; msg308");
  EXPECT_GE(stored("q/own.bul", bullets).find("new"), 0);
  EXPECT_FALSE(file_exists(share + "/data/bullets/mine.bul"));
}

TEST_F(DataSets, AListThatWasNotReadWholeIsSavedUnderAnotherNameOnly) {
  std::string line = "\"long\"";
  for (int i = 0; i < kRecordFields; ++i) line += ",\"1\"";  // one field too many
  const std::string whole = "\" 1 [bullet]\"\r\n" + line + "\r\n";
  user.files = {saved_as(write("b/long.bul", whole))};
  open_records(s, bullets);
  user.forget();
  user.files = {saved_as(at("b/long.bul")), saved_as(at("b/other.bul"))};
  EXPECT_TRUE(add_record(s, bullets, bullet("new", ".308")));
  EXPECT_EQ(p->keys(), "msg427; msg427");
  EXPECT_EQ(read("b/long.bul"), whole);
  EXPECT_EQ(names(stored("b/other.bul", bullets)), "long|new");
  EXPECT_TRUE(add_record(s, bullets, bullet("newer", ".308"))) << "now it has a file of its own";
  EXPECT_EQ(p->keys(), "");
}

TEST_F(DataSets, OneCalibreIsCollectedFromAFolder) {
  const auto collect = [&](const char* calibre) {
    user.inputs = {calibre};
    user.folders = {at("all")};
    user.answers = {Answer::no};
    collect_calibre(s, bullets);
  };
  s.state.dim.Zkal = 0.308;
  user.inputs = {std::nullopt, "  ", ".308"};
  user.folders = {std::nullopt};
  for (int i = 0; i < 3; ++i) collect_calibre(s, bullets);
  EXPECT_EQ(user.asked[0].value, "0.3080");
  EXPECT_EQ(user.folder_starts, std::vector<std::string>{share + "/data/bullets/"});
  EXPECT_EQ(p->keys(), "");
  write("all/1.bul",
        file_of(bullets, {bullet("first", ".308"), bullet("far", ".3112"), bullet("edge", ".3109")}));
  write("all/2.BUL",
        file_of(bullets, {bullet("first", ".3081"), bullet("low", "0.300"), bullet("z", ".308")}));
  make_folders(at("all/3.bul"));
  write("all/4.bul", "\"broken\",\"no fields\"");
  collect("0.5");
  EXPECT_NE(user.boxes[0].message.text.find(".500 (±.0030) in."), std::string::npos);
  EXPECT_EQ(p->keys(), "msg406");
  collect(".308");
  EXPECT_EQ(p->keys(), "msg407");
  EXPECT_EQ(names(p->table(bullets)), "first|z|edge");
  EXPECT_EQ(p->table(bullets).cell(0, bullet_field::buldin), ".308") << "the first found stays";
  EXPECT_EQ(s.set(bullets).caption, ".308 (±  .0030) in.");
  // Without a file of its own it is not changed, so that it takes the place of none.
  user.files = {std::nullopt, saved_as(at("all/own"))};
  EXPECT_FALSE(add_record(s, bullets, bullet("n", ".308")));
  EXPECT_TRUE(delete_record(s, bullets, 0, true));
  EXPECT_EQ(p->keys(), "msg408; msg408");
  EXPECT_EQ(names(stored("all/own.bul", bullets)), "z|edge");
  EXPECT_FALSE(s.set(bullets).collected);
  EXPECT_EQ(user.waiting, 0);
}

TEST_F(DataSets, CartridgesAreFilteredAndSorted) {
  write("v/x.vol", file_of(cartridges, {cartridge("9 mm", "0.355"), cartridge(".308 B", "0.308"),
                                        cartridge(".308 A", "0.310"), cartridge(".30 C", "0.308")}));
  user.files = {saved_as(at("v/x.vol"))};
  open_records(s, cartridges);
  EXPECT_EQ(names(p->table(cartridges)), ".30 C|.308 B|.308 A|9 mm");
  const std::string file_caption = s.set(cartridges).caption, bytes = read("v/x.vol");
  s.load.pattyp = ".308 A";
  user.inputs = {"0.3095", "99", ""};
  filter_by_calibre(s);
  EXPECT_EQ(listed("HVolDat"), 3u);
  EXPECT_EQ(shown(s, "Form3", "HVolDat").selected, 2);
  EXPECT_EQ(shown(s, "frmFast", "HVolDat").items.size(), 3u);
  language_switch(s, "german");
  EXPECT_EQ(s.set(cartridges).caption, ".310 (±  .0030) in.");
  language_switch(s, "english");
  filter_by_calibre(s);
  EXPECT_EQ(p->keys(), "msg409");
  EXPECT_EQ(s.set(cartridges).caption, file_caption);
  filter_by_calibre(s);
  EXPECT_EQ(listed("HVolDat"), 4u);
  sort_cartridges(s, true);
  EXPECT_EQ(names(p->table(cartridges)), ".30 C|.308 A|.308 B|9 mm");
  EXPECT_EQ(read("v/x.vol"), bytes) << "no order is written";
}

}  // namespace
}  // namespace tv_test
