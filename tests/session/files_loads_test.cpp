// Loads as files: what comes back, what is told when something is wrong, and the list of recent ones.
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/files_fixture.h"
#include "session/input_check.h"
#include "session/record_lists.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/tables.h"
#include "session/take_records.h"

using namespace tv;

namespace tv_test {
namespace {

class Loads : public Home {
protected:
  Loads() : p(start()), s(p->s), user(p->user) { user.forget(); }

  static std::string example(const std::string& name) {
    return std::string(TV_SHARE_DIR) + "/data/loads/" + name + ".dat";
  }
  // Every value of the load; numbers as the shortest text that reads back to the same bits.
  std::string values() const {
    std::string all;
    for (const LoadKey& key : load_keys())
      all += std::string(key.key) + "=" + load_value_text(key, s.state, s.load) + "\n";
    return all;
  }

  std::unique_ptr<Program> p;
  Session& s;
  FileUser& user;
};

TEST_F(Loads, ShowNoResultOfAnother) {
  ASSERT_TRUE(load_read(s, example("308_winchester_168")));
  EXPECT_EQ(recalculate(s), -1);
  EXPECT_NE(shown(s, "Form5", "Maxpe").text + shown(s, "Form5", "Mgas").text, "");
  s.writer.drain();
  EXPECT_NE(read("ternofw.xmt").find("isneu=-1"), std::string::npos);
  ASSERT_TRUE(load_read(s, example("8x57_is_196_friction")));
  EXPECT_FALSE(s.valid.results);
  EXPECT_FALSE(s.shown.any);
  EXPECT_EQ(shown(s, "Form5", "Mgas").text, "");
  EXPECT_EQ(s.state.schrit, 1) << "friction needs the fine step";
  EXPECT_EQ(shown(s, "Form3", "HVolDat").text, s.load.pattyp);
  EXPECT_FALSE(s.valid.ask_charge);
}

TEST_F(Loads, TellWhereThePowderDiffersFromItsRecord) {
  ASSERT_TRUE(load_read(s, example("308_winchester_168")));
  EXPECT_EQ(p->keys(), "");
  s.state.Ba0 = 0.5500000000000002;
  s.state.bulkdn = 0.91;
  make_folders(at("data"));
  const std::string file = at("data/p.dat");
  ASSERT_TRUE(load_write(s, file));
  ASSERT_TRUE(load_read(s, file));
  ASSERT_EQ(user.boxes.size(), 1u);
  const std::string told = user.boxes[0].message.text;
  EXPECT_NE(told.find(s.load.pulver), std::string::npos);
  EXPECT_NE(told.find("  - " + s.language.text("form4", "Ba0")), std::string::npos) << told;
  EXPECT_NE(told.find("  - " + s.language.text("form4", "bulkdn")), std::string::npos) << told;
  EXPECT_EQ(told.find(s.language.text("form4", "Kap")), std::string::npos) << told;
  EXPECT_EQ(p->keys(), "msg61 msg66 msg75");
  EXPECT_EQ(s.state.Ba0, 0.5500000000000002) << "the load's value stands";
  for (const auto& [name, keys] : {std::pair{"in no file", "msg62 msg75"}, {"", ""}}) {
    s.load.pulver = name;
    ASSERT_TRUE(load_write(s, file));
    ASSERT_TRUE(load_read(s, file));
    EXPECT_EQ(p->keys(), keys);
  }
}

TEST_F(Loads, ThatCannotBeReadChangeNothing) {
  ASSERT_TRUE(load_read(s, example("308_winchester_168")));
  user.forget();
  save_current_load(s);
  s.state.chargeGr = 1;  // entered, and in no file yet
  s.options.labfil = "/home/me/mine.";
  const std::string before = values();
  const std::string rubbish = write("data/rubbish.dat", "\x01\xFF no load\r\n[other]\r\nx=1");
  make_folders(at("data/folder.dat"));
  for (const std::string& file : {at("data/none.dat"), rubbish, at("data/folder.dat")}) {
    user.answers = {Answer::no};
    EXPECT_FALSE(open_load(s, file)) << file;
    ASSERT_EQ(user.boxes.size(), 2u);
    EXPECT_NE(user.boxes[1].message.text.find(file), std::string::npos);
    EXPECT_EQ(p->keys(), "msg431; msg185 msg197 msg75") << file;
    EXPECT_EQ(values(), before) << file;
    EXPECT_EQ(s.options.labfil, "/home/me/mine.") << "the next save is still its own";
    EXPECT_TRUE(s.recent.empty());
  }
  user.answers = {Answer::no};
  // Older names of the sections, plain line ends, a value given twice and no end of the last line.
  EXPECT_TRUE(open_load(s, write("data/old.dat",
                                 "[abmessungen]\nkalzug=.308\nlaflen=24\nlaflen=25\npatlan=2.8\n"
                                 "hullen=2.015\nbullen=1.2\n[treibladung]\nexwarm=3900")));
  EXPECT_EQ(s.state.dim.Llen, 24);
  EXPECT_NEAR(s.state.dim.Bsd, 0.415, 1e-12);
  EXPECT_EQ(s.state.ExwJ, 3900000);
  EXPECT_EQ(shown(s, "Form3", "zul_P0").text, " ? ");
  EXPECT_FALSE(s.load.start_press_set);
}

TEST_F(Loads, AreNamedByTheDialogAndRemembered) {
  EXPECT_EQ(load_caption(s), "*   (Ternovale)");
  user.files = {saved_as(at("data/" + std::string(252, 'n') + ".dat"), "typed"),
                saved_as(at("data/te=st.dat"), "typed"), saved_as(at("data/a.txt"), "typed"),
                saved_as(at("data/ternofw.SET"), "typed"), saved_as(at("data/one & two"), "typed\ncomment")};
  lab_sav(s);
  EXPECT_EQ(p->keys(), "filexceed; filerror; extonly; msg412");
  ASSERT_EQ(user.file_boxes.size(), 5u);
  EXPECT_EQ(user.file_boxes[0].folder, at("data/")) << "made when needed";
  EXPECT_EQ(user.file_boxes[3].comment, "typed") << "nothing typed is lost";
  EXPECT_EQ(load_caption(s), "one & two.dat   (Ternovale)");
  // Once more over the existing file: refused, then agreed.
  user.answers = {Answer::no, Answer::yes};
  user.files = {saved_as(at("data/one & two.dat"), "new"), saved_as(at("data/one & two.dat"), "new")};
  lab_sav(s);
  EXPECT_EQ(p->keys(), "fileover; fileover");
  // Opening: a missing name, then one that differs in case.
  user.files = {saved_as(at("data/none")), saved_as(at("data/ONE & TWO")), std::nullopt};
  lab_lod(s);
  EXPECT_EQ(p->keys(), "filerror");
  EXPECT_EQ(s.load.commen, "new");
  lab_lod(s);
  EXPECT_EQ(s.recent, std::vector<std::string>{at("data/one & two.")});
  // Deleting asks, and takes the name off the list.
  user.files = {saved_as(at("data/one & two.dat")), saved_as(at("data/one & two.dat"))};
  user.answers = {Answer::cancel, Answer::ok};
  lab_del(s);
  EXPECT_TRUE(file_exists(at("data/one & two.dat")));
  lab_del(s);
  EXPECT_EQ(p->keys(), "msg410 msg411; msg410 msg411");
  EXPECT_FALSE(file_exists(at("data/one & two.dat")));
  EXPECT_TRUE(s.recent.empty());
}

TEST_F(Loads, AreUnsavedOnlyAfterAChange) {
  for (const auto& entry : std::filesystem::directory_iterator(std::string(TV_SHARE_DIR) + "/data/loads")) {
    ASSERT_TRUE(open_load(s, entry.path().string())) << entry.path();
    recalculate(s);
    EXPECT_FALSE(has_unsaved_changes(s)) << entry.path() << " after a calculation";
  }
  language_switch(s, "russian");
  EXPECT_FALSE(has_unsaved_changes(s));
  type_text(s, "Form4", "MPgn", "17");
  EXPECT_TRUE(load_caption(s).find(" *   (") != std::string::npos) << load_caption(s);
  settings_save(s);
  EXPECT_TRUE(has_unsaved_changes(start()->s)) << "the next start knows it";
}

TEST_F(Loads, WithUnsavedChangesAreAskedForBeforeTheyGo) {
  user.files = {saved_as(at("data/mine"))};
  ASSERT_TRUE(load_read(s, example("308_winchester_168")) && lab_sav(s));
  EXPECT_NE(s.status.find(at("data/mine.dat")), std::string::npos) << s.status;
  const std::string other = example("9mm_luger_124");
  const int cartridge = p->table(RecordKind::cartridges).find("6.5 Creedmoor");
  ASSERT_GE(cartridge, 0);
  const std::function<void()> ways[] = {[&] { open_load(s, other); }, [&] { lab_new(s); },
                                        [&] { pick_cartridge_of_load(s, cartridge); }};
  double charge = 30;
  for (const auto& way : ways) {
    s.state.chargeGr = ++charge;
    const std::string before = values();
    user.forget();
    user.answers = {Answer::cancel};
    way();
    EXPECT_EQ(user.box_keys(), "msg431");
    EXPECT_EQ(values(), before);
    EXPECT_EQ(s.options.labfil, at("data/mine."));
    user.answers = {Answer::yes};
    way();
    EXPECT_NE(s.options.labfil, at("data/mine."));
    user.forget();
    ASSERT_TRUE(open_load(s, at("data/mine.dat")));
    EXPECT_EQ(s.state.chargeGr, charge) << "it was saved";
    s.state.chargeGr = 1;
    user.answers = {Answer::no};
    way();
    ASSERT_TRUE(open_load(s, at("data/mine.dat")));
    EXPECT_EQ(s.state.chargeGr, charge) << "it was given up";
  }
}

TEST_F(Loads, ThatAreNewKeepBarrelAndUnitsOnly) {
  ASSERT_TRUE(open_load(s, example("8x57_is_196_friction")));
  const double barrel = s.state.dim.Llen;
  recalculate(s);
  lab_new(s);
  EXPECT_EQ(s.state.dim.Llen, barrel);
  EXPECT_EQ(s.state.chargeGr + s.state.dim.Volf + s.state.dim.Bwg + s.state.Exw, 0);
  EXPECT_EQ(s.load.pattyp + s.load.bultyp + s.load.pulver + s.load.primer + s.load.commen, "");
  EXPECT_FALSE(s.state.frictionOn || s.valid.results || has_unsaved_changes(s));
  EXPECT_EQ(shown(s, "Form5", "Mgas").text, "");
  EXPECT_EQ(load_caption(s), "*   (Ternovale)");
  EXPECT_EQ(p->keys(), "");
}

TEST_F(Loads, ThatCameWithTheProgramAreSavedElsewhere) {
  ASSERT_TRUE(open_load(s, example("308_winchester_168")));
  const std::string bytes = read_file(example("308_winchester_168")).bytes;
  make_folders(at("data/full.dat"));  // in the file's place: the system refuses
  user.answers = {Answer::yes};
  user.files = {saved_as(at("data/full.dat"), "typed"), saved_as(at("data/mine.dat"), "typed")};
  EXPECT_TRUE(lab_save(s));
  ASSERT_EQ(user.file_boxes.size(), 2u);
  EXPECT_EQ(user.file_boxes[0].folder, at("data/"));
  EXPECT_EQ(user.file_boxes[0].name, "308 Winchester, .308, 168, HPBT.dat");
  EXPECT_EQ(user.file_boxes[1].comment, "typed");
  EXPECT_EQ(p->keys(), "msg420");
  EXPECT_EQ(read_file(example("308_winchester_168")).bytes, bytes);
  s.state.chargeGr = 41;
  EXPECT_TRUE(lab_save(s)) << "its own file needs no dialog";
  EXPECT_NE(read("data/mine.dat").find("powwht= 41"), std::string::npos);
}

TEST_F(Loads, RecentOnesAreOrderedOnceEachAndKept) {
  s.options.filcnt = 3;
  for (const char* name : {"a", "b", "c", "d", "B"}) recent_add(s, at("data/") + name + ".dat");
  EXPECT_EQ(s.recent, (std::vector{at("data/B."), at("data/d."), at("data/c.")}));
  std::filesystem::create_directories(at("data"));
  std::filesystem::copy(example("308_winchester_168"), at("data/C.DAT"));
  user.forget();
  recent_open(s, 2);
  EXPECT_EQ(p->keys(), "");
  EXPECT_EQ(s.recent[0], at("data/C."));
  recent_open(s, 1);
  EXPECT_EQ(p->keys(), "msg185 msg197 msg75");
  recent_open(s, 3);
  recent_open(s, -1);
  EXPECT_EQ(p->keys(), "");
  settings_save(s);
  EXPECT_EQ(start()->s.recent, s.recent);
  s.options.filcnt = 0;
  recent_add(s, at("data/x.dat"));
  EXPECT_TRUE(s.recent.empty());
}

TEST_F(Loads, TakeDesignData) {
  ASSERT_TRUE(load_read(s, example("308_winchester_168")));
  EXPECT_EQ(recalculate(s), -1);
  const double charge = s.state.chargeGr, Hlen = s.state.dim.Hlen;
  user.forget();
  user.files = {saved_as(write("d/new.omt",
                               "[metrics]\r\nbultyp=designed\r\nbullen= 1.3\r\nhullen=\r\n"
                               "[chargedata]\r\npowwht= 9\r\n"))};
  lab_omt(s);
  EXPECT_EQ(p->keys(), "");
  EXPECT_EQ(s.load.bultyp, "designed");
  EXPECT_EQ(s.state.dim.Glen, 1.3);
  EXPECT_EQ(s.state.dim.Hlen, Hlen);
  EXPECT_EQ(s.state.chargeGr, charge);
  EXPECT_NEAR(s.state.dim.Bsd, Hlen + 1.3 - s.state.dim.Plen, 1e-12);
  EXPECT_FALSE(s.valid.results);
  EXPECT_TRUE(shown(s, "Form5", "Mgas").stale);
  EXPECT_EQ(s.options.omtfil, at("d/new."));
}

TEST_F(Loads, AndOtherFilesTellOfThemselves) {
  EXPECT_EQ(file_preview(s, DialogKind::load, example("308_winchester_168")).find(".308 Winchester"), 0u);
  EXPECT_EQ(file_preview(s, DialogKind::load, at("none.dat")), "");
  EXPECT_EQ(file_preview(s, DialogKind::bullets, write("x.bul", ";two \r\n;words\xACnext\r\n")),
            "two words\nnext");
  EXPECT_EQ(file_preview(s, DialogKind::reference,
                         write("x.ref",
                               "[referenz]\nLaborierung=a\xAC"
                               "b\n")),
            "a\nb");
  EXPECT_EQ(file_preview(s, DialogKind::vivacity, write("x.viv", "[vivacity]\nvivcommnt=v\n")), "v");
  EXPECT_EQ(file_preview(s, DialogKind::text, at("x.ref")), "");
}

}  // namespace
}  // namespace tv_test
