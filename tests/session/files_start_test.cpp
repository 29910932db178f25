// Start, end, settings and languages, on homes in every state.
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/files_fixture.h"
#include "session/input_check.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/tables.h"
#include "session/take_records.h"

using namespace tv;

namespace tv_test {
namespace {

// Values that are no defaults and make sense.
void change_option(const OptionKey& key, Options& o) {
  if (key.text)
    o.*key.text = key.form == OptionForm::path ? "/else/" + std::string(key.key) + "." : "Other 7";
  if (key.flag) o.*key.flag = !(o.*key.flag);
  if (key.whole) o.*key.whole = o.*key.whole == 1 ? 0 : 1;
  if (key.real) o.*key.real = o.*key.real * 1.1 + 0.2;
}

std::string option_text(const OptionKey& key, const Options& options) {
  SectionedFile file;
  write_option(key, options, file);
  return file.get(key.section, key.key);
}

TEST_F(Home, AnEmptyOneStartsOnTheDeliveredData) {
  const auto p = start();
  ASSERT_TRUE(p->started);
  EXPECT_EQ(p->keys(), "");
  EXPECT_TRUE(folder_exists(home()));
  EXPECT_GT(p->table(RecordKind::bullets).last(), 50);
  EXPECT_EQ(shown(p->s, "Form3", "Bnam").items.size(), p->table(RecordKind::bullets).rows.size());
  EXPECT_EQ(p->s.set(RecordKind::bullets).caption, p->s.language.fastmsg("flbul") + "ternofw");
  EXPECT_EQ(p->s.language.name(), "english");
  EXPECT_NE(read("ternofw.xmt").find("bfile="), std::string::npos);
  p->user.answers = {Answer::cancel, Answer::ok};
  EXPECT_FALSE(ask_to_end(p->s));
  EXPECT_FALSE(file_exists(at("ternofw.set")));
  EXPECT_TRUE(ask_to_end(p->s));
  EXPECT_EQ(p->keys(), "msg145 msg146; msg145 msg146");
  EXPECT_EQ(read_sectioned(at("ternofw.xmt"), CodePage::cp1252).get("transfer", "bfile"), "");
  const SectionedFile settings = read_sectioned(at("ternofw.set"), CodePage::cp1252);
  EXPECT_EQ(settings.sections(), (std::vector<std::string>{"constants", "tiphelp", "startup", "metrics",
                                                           "chargedata", "recoil", "referenz", "measured"}));
  for (const OptionKey& key : option_keys()) EXPECT_TRUE(settings.has_key(key.section, key.key)) << key.key;
  for (const LoadKey& key : load_keys()) EXPECT_TRUE(settings.has_key(key.section, key.key)) << key.key;
  p->s.options.intro_off = true;
  EXPECT_TRUE(ask_to_end(p->s));
  EXPECT_EQ(p->keys(), "");
}

std::vector<std::string> parts_of(const std::string& text, const std::string& between) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t at; (at = text.find(between, begin)) != std::string::npos; begin = at + between.size())
    parts.emplace_back(trim(text.substr(begin, at - begin)));
  parts.emplace_back(trim(text.substr(begin)));
  return parts;
}

// What the document of the files says a setting is when nobody has set it; nothing for a key that it does not
// tell of, and no value where it tells none.
std::map<std::string, std::string> documented_defaults() {
  std::map<std::string, std::string> defaults;
  const std::string text = read_file(std::string(TV_SOURCE_DIR) + "/docs/file-formats.md").bytes;
  for (const std::string& line : parts_of(text, "\n")) {
    const auto cells = parts_of(line, "|");
    const auto keys = cells.size() > 2 ? parts_of(cells[cells.size() == 7 ? 2 : 1], "`") : cells;
    const auto values = cells.size() == 7 ? parts_of(cells[4], ", ") : std::vector<std::string>();
    for (std::size_t i = 1; i < keys.size(); i += 2) {  // every second part stands between the marks
      const std::size_t n = values.size() == 1 ? 0 : i / 2;
      std::string value = n < values.size() ? values[n] : "";
      std::erase(value, '`');
      defaults.emplace(keys[i], value);
    }
  }
  return defaults;
}

TEST_F(Home, EverySettingIsDocumentedWithItsDefault) {
  const auto documented = documented_defaults();
  const auto p = start();
  save_and_exit(p->s);
  const SectionedFile settings = read_sectioned(at("ternofw.set"), CodePage::cp1252);
  int compared = 0;
  for (const std::string& section : settings.sections())
    for (const std::string& key : settings.keys(section)) {
      const std::string first = key.substr(0, key.size() - 1) + "1";  // `mulbc1` to `mulbc5`
      const auto told = documented.contains(key) ? documented.find(key) : documented.find(first);
      if (key.ends_with("recent")) continue;
      ASSERT_NE(told, documented.end()) << key << " is not told of in docs/file-formats.md";
      const std::string& value = told->second;
      if (value.empty() || value.find(' ') != std::string::npos) continue;
      if (key == "lanfile" || key == "omtfil" || value.ends_with('.')) continue;  // told in words
      EXPECT_EQ(settings.get(section, key), value) << key;
      ++compared;
    }
  EXPECT_GT(compared, 50);
}

TEST_F(Home, EveryOptionAndTheLoadSurviveARestart) {
  auto p = start();
  for (const OptionKey& key : option_keys()) change_option(key, p->s.options);
  p->s.options.lanfile = "lan/tn_german.lan";
  p->s.state.chargeGr = 12.3;
  p->s.load.pattyp = "mine";
  save_and_exit(p->s);
  const auto again = start();
  const Options defaults;
  for (const OptionKey& key : option_keys()) {
    const std::string expected = key.key == "schrit" ? "0" : option_text(key, p->s.options);
    EXPECT_EQ(option_text(key, again->s.options), expected) << key.key;
    if (key.key != "schrit") {
      EXPECT_NE(option_text(key, again->s.options), option_text(key, defaults)) << key.key;
    }
  }
  EXPECT_EQ(again->s.state.chargeGr, 12.3);
  EXPECT_EQ(again->s.load.pattyp, "mine");
  EXPECT_EQ(again->s.language.name(), "german");
  EXPECT_EQ(again->s.unit_mode, UnitMode::imperial);
  EXPECT_EQ(again->s.state.pressure_unit_factor, 10);
  // The record files named are missing, which is told: numbers, file and what it means.
  EXPECT_EQ(again->keys(),
            "msg192 msg190 msg191; msg192 msg190 msg191; msg192 msg190 msg191; "
            "msg192 msg190 msg191");
}

TEST_F(Home, OneOptionIsWrittenAloneAndFormerSectionsAreLeft) {
  write("ternofw.set", "; mine\n[konstanten]\npri_font_siz=9\n[startup]\nmetyes=0\ngrftyp=-2\nodd line\n");
  const auto p = start();
  EXPECT_EQ(read_sectioned(at("ternofw.set"), CodePage::cp1252).get("constants", "pri_font_siz"), "9");
  EXPECT_EQ(p->s.options.grftyp, 6);
  EXPECT_TRUE(p->s.output.imperial);
  const std::string before = read("ternofw.set");
  p->s.options.batols = 10;
  p->s.options.nowarn = true;
  EXPECT_TRUE(store_option(p->s, "batols"));
  EXPECT_FALSE(store_option(p->s, "no such key"));
  std::string expected = before;
  expected.insert(expected.find("odd line\n") + 9, "batols= 10\n");
  EXPECT_EQ(read("ternofw.set"), expected);
}

TEST_F(Home, ThatCannotBeWrittenIsToldOncePerSave) {
  write("ternofw.set/held", "a folder in the file's place");
  auto p = start();
  ASSERT_TRUE(p->started);
  EXPECT_EQ(p->keys(), "");
  settings_save(p->s);
  EXPECT_FALSE(store_options(p->s, {"metyes", "mpayes"}, true));
  EXPECT_NE(p->s.status.find(at("ternofw.set")), std::string::npos) << p->s.status;
  p->s.status.clear();
  language_switch(p->s, "german");
  for (int run = 0; run < 3; ++run) {
    const Action calculation(p->s);
    save_current_load(p->s);
    p->s.writer.drain();
  }
  EXPECT_EQ(p->keys(), "msg420");
  EXPECT_EQ(p->s.status, "") << "told once, not at each calculation";
  // A root that is no folder at all.
  home_name = "plain/";
  root.write("plain", "a file");
  p = start();
  ASSERT_TRUE(p->started);
  EXPECT_EQ(p->keys(), "");
  EXPECT_NE(p->s.status.find(at("ternofw.xmt")), std::string::npos) << "the mark of the bullet file";
  p->user.answers = {Answer::ok};
  p->user.files = {saved_as(at("data/bullets/own.bul"))};
  EXPECT_FALSE(add_record(p->s, RecordKind::bullets, record("x")));
  EXPECT_EQ(p->keys(), "msg306 msg307; msg420");
  EXPECT_EQ(p->table(RecordKind::bullets).find("x"), -1);
}

TEST_F(Home, AMissingLanguageIsAskedFor) {
  write("ternofw.set", "[startup]\nlanfile=lan\\gone.lan\n");
  auto p = program();
  p->user.answers = {Answer::retry, Answer::retry};
  p->user.files = {std::nullopt, saved_as(at("nothing.lan")),
                   saved_as(std::string(TV_SHARE_DIR) + "/lan/tn_english.lan")};
  p = start(std::move(p));
  ASSERT_TRUE(p->started);
  ASSERT_EQ(p->user.boxes.size(), 3u);
  EXPECT_EQ(p->user.boxes[0].message.text.find("Language file not found- unable to proceed\n"
                                               "Fehler: Sprachdatei nicht gefunden\nName: " +
                                               home()),
            0u);
  EXPECT_EQ(p->user.boxes[1].buttons, Buttons::retry_cancel);
  EXPECT_EQ(read_sectioned(at("ternofw.set"), CodePage::cp1252).get("startup", "lanfile"),
            "lan/tn_english.lan");
  // Given up: the program keeps its language, or ends.
  share = p->s.roots.delivered = root.path();
  write("ternofw.set", "");
  p->user.answers = {Answer::cancel};
  p->user.files = {std::nullopt};
  language_switch(p->s, "french");
  EXPECT_EQ(p->s.options.lanfile, "lan/tn_english.lan");
  p = program();
  p->user.answers = {Answer::cancel};
  p->user.files = {std::nullopt};
  EXPECT_FALSE(start(std::move(p))->started);
  // A file that does not tell its name: no unit table, but texts.
  write("lan/tn_english.lan", "[messages]\n145msg=Stop \n");
  p = start();
  EXPECT_TRUE(p->started);
  EXPECT_EQ(p->s.language.msg(145), "Stop");
}

TEST_F(Home, ALanguageChangesTextsAndNeverFiles) {
  std::string high = "x";
  for (int c = 0x80; c < 0x100; ++c) high += static_cast<char>(c);
  Record plain = record("NAME", {{20, "30"}});
  std::string bytes = file_of(RecordKind::bullets, {plain}, {";c HIGH"});
  bytes.replace(bytes.find("HIGH"), 4, high);
  bytes.replace(bytes.find("\"NAME" + std::string(36, ' ')), 41, "\"" + high);
  write("data/bullets/ternofw.bul", bytes);
  const std::string load =
      "[metrics]\r\npattyp=" + high + "\r\n[chargedata]\r\npulver=\r\nPrimerLot=" + high + "\r\n";
  auto p = start();
  ASSERT_TRUE(load_read(p->s, write("data/high.dat", load)));
  const auto saved = [&] {
    EXPECT_TRUE(save_records(p->s, RecordKind::bullets, at("data/bullets/ternofw.bul"), nullptr));
    EXPECT_TRUE(load_write(p->s, at("data/high.dat")));
    return read("data/bullets/ternofw.bul") + read("data/high.dat");
  };
  const std::string first = saved();
  EXPECT_EQ(first.find(bytes), 0u);
  EXPECT_EQ(recalculate(p->s), 0);
  p->user.forget();
  set_text(p->s, "Form4", "MPgn", "12.3");
  const std::string latin = p->s.load.pattyp;
  for (const char* language : {"russian", "german", "russian", "english"}) {
    language_switch(p->s, language);
    EXPECT_EQ(p->s.language.name(), language);
    EXPECT_EQ(saved(), first) << language;
    EXPECT_EQ(shown(p->s, "Form3", "HVolDat").text, p->s.load.pattyp);
    EXPECT_EQ(shown(p->s, "Form3", "Bnam").items.size(), 1u);
    EXPECT_EQ(shown(p->s, "Form4", "MPgn").text, "12.3");
    EXPECT_EQ(p->s.set(RecordKind::bullets).caption.find(p->s.language.fastmsg("flbul")), 0u);
  }
  EXPECT_EQ(p->s.load.pattyp, latin);
  // The text for a missing bullet follows the language, so that it is known as none.
  p->s.load.bultyp = p->s.language.msg(193);
  language_switch(p->s, "russian");
  EXPECT_EQ(p->s.load.bultyp, p->s.language.msg(193));
}

}  // namespace
}  // namespace tv_test
