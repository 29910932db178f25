#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "cli_run.h"

namespace tv::test {
namespace {

namespace fs = std::filesystem;

std::string with_places(std::string text, const Scratch& scratch) {
  const std::pair<std::string, std::string> places[] = {{scratch.path(), "%SCRATCH%/"},
                                                        {std::string(TV_SHARE_DIR) + "/", "%SHARE%/"}};
  for (const auto& [from, to] : places)
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
      text.replace(at, from.size(), to);
  return text;
}

std::string filled_in(std::string text, const Scratch& scratch) {
  const std::pair<std::string, std::string> places[] = {{"%SCRATCH%/", scratch.path()},
                                                        {"%SHARE%/", std::string(TV_SHARE_DIR) + "/"}};
  for (const auto& [from, to] : places)
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
      text.replace(at, from.size(), to);
  return text;
}

// Each script beside its kept answers, which a reviewer reads. TV_RENEW=1 writes them anew.
TEST(Scripts, AnswerAsKept) {
  std::vector<fs::path> scripts;
  for (const auto& entry : fs::directory_iterator(std::string(TV_SOURCE_DIR) + "/tests/cli/scripts"))
    if (entry.path().extension() == ".play") scripts.push_back(entry.path());
  std::ranges::sort(scripts);
  ASSERT_FALSE(scripts.empty());
  for (const fs::path& script : scripts) {
    SCOPED_TRACE(script.filename().string());
    const Scratch scratch;
    const CliAnswer answer = cli_in(scratch, {"play", "-"}, filled_in(read_bytes(script.string()), scratch));
    const std::string said = with_places(answer.out, scratch);
    const std::string kept = fs::path(script).replace_extension(".answers").string();
    EXPECT_EQ(answer.exit, 0) << answer.err;
    if (std::getenv("TV_RENEW")) std::ofstream(kept, std::ios::binary) << said;
    EXPECT_EQ(said, read_bytes(kept));
  }
}

// A load entered by picks and keys gives what the same values give in a load file written by hand.
TEST(Play, PicksAndEntriesAreTheValuesOfAFile) {
  const Scratch scratch;
  const std::string saved = scratch.path() + "saved.dat";
  const Played played = play(scratch, R"(
pick Form3.HVolDat ".308 Winchester"
pick Form3.Bnam ".308 , 150 , SP"
pick Form4.PulvDat "Example R-05 medium rifle"
type Form3.Llenz "22"
type Form3.Plenz "2.75"
type Form4.MPgn "40"
type Form4.ini_press1 "28"
press Form4.CalcAll
save load ")" + saved + R"("
boxes
show Form5
)");
  ASSERT_EQ(played.exit, 0) << played.err;
  ASSERT_EQ(played.lines[played.lines.size() - 2]["boxes"].size(), 1U);
  const auto record = [&](const char* file, const char* name) {
    const Json rows = cli_in(scratch, {"records", delivered(file), "--format", "json"}).json()["rows"];
    return *std::ranges::find_if(rows, [&](const Json& row) { return row[0] == name; });
  };
  const Json cartridge = record("calibers/ternofw.vol", ".308 Winchester");
  const Json bullet = record("bullets/ternofw.bul", ".308 , 150 , SP");
  const Json powder = record("powders/ternofw.pro", "Example R-05 medium rifle");
  const auto line = [](const char* key, const Json& record_of, std::size_t n) {
    return std::string(key) + "=" + record_of[n].get<std::string>() + "\n";
  };
  const std::string text =
      "[metrics]\npattyp=.308 Winchester\nbultyp=.308 , 150 , SP\nlaflen=22\npatlan=2.75\n" +
      line("volful", cartridge, 1) + line("hullen", cartridge, 2) + line("kalzug", cartridge, 3) +
      line("sebert", cartridge, 4) + line("wirkqu", cartridge, 5) + line("maxzul", cartridge, 6) +
      line("bulgew", bullet, 1) + line("bullen", bullet, 2) + line("condia", bullet, 3) +
      line("condid", bullet, 4) + line("conlen", bullet, 5) + line("ausinn", bullet, 7) +
      line("buldia", bullet, 8) + "[chargedata]\npulver=Example R-05 medium rifle\n" +
      line("exwarm", powder, 1) + line("kappax", powder, 2) + line("powden", powder, 3) +
      line("abkof0", powder, 4) + line("prodeg", powder, 5) + line("limiz1", powder, 6) +
      line("abkof1", powder, 7) + line("bulkdn", powder, 8) + "powwht=40\nanfdru=28000000\n";
  const Json by_hand = cli_in(scratch, {"shot", scratch.write("hand.dat", text), "--format", "json"}).json();
  const Json by_save = cli_in(scratch, {"shot", saved, "--format", "json"}).json();
  EXPECT_EQ(by_hand["result"], by_save["result"]);
  for (const auto& [name, shown] : played.last()["fields"].items())
    EXPECT_EQ(by_hand["panel"][name], shown["text"]) << name;
  EXPECT_GT(by_hand["result"]["pMax"].get<double>(), 150e6);
}

// The program ends and comes back with the load it had; the recent list has the last one on top, each once.
TEST(Play, LoadsAndSettingsSurvive) {
  const Scratch scratch;
  const std::string a = load_file("9mm_luger_124"), b = load_file("45-70_405");
  const Played first = play(scratch, "open load \"" + a + "\"\nopen load \"" + b + "\"\nopen load \"" + a +
                                         "\"\ntype Form4.MPgn \"4.7\"\nmenu bars\nanswer ok\nmenu Ende\n");
  ASSERT_EQ(first.exit, 0) << first.err;
  const Played second = play(scratch, "show Form4\nboxes\nmenu menrecfil_array(1)\nshow Form3\n");
  ASSERT_EQ(second.exit, 0) << second.err;
  EXPECT_EQ(second.lines[0]["fields"]["MPgn"]["text"], "4.7");
  EXPECT_EQ(second.lines[0]["fields"]["zulp_nam"]["text"], "bar");
  EXPECT_TRUE(second.lines[1]["boxes"].empty());
  EXPECT_EQ(second.last()["fields"]["HVolDat"]["text"], ".45-70 Government");
  const std::string settings = read_bytes(scratch.root() + "/ternofw.set");
  EXPECT_NE(settings.find("0recent=" + b.substr(0, b.size() - 3) + "\r\n"), std::string::npos) << settings;
  EXPECT_NE(settings.find("1recent=" + a.substr(0, a.size() - 3) + "\r\n"), std::string::npos) << settings;
  EXPECT_NE(settings.find("2recent=\r\n"), std::string::npos) << settings;
}

// The drawing surface gives what the window paints: both curves, from ignition to the muzzle, inside the
// surface.
TEST(Play, DrawsTheDiagram) {
  const Scratch scratch;
  const Played played = play(scratch, "draw Form7.Pict1\nopen load \"" + load_file("worked_load") +
                                          "\"\nmenu weg_press_vel\npress Form4.CalcAll\ndraw Form7.Pict1\n");
  ASSERT_EQ(played.exit, 0) << played.err;
  const auto curves = [](const Json& drawing) {
    int found = 0;
    for (const Json& item : drawing["items"]) {
      found += item["kind"] == "polyline" && item["points"].size() > 50;
      for (const Json& point : item["points"]) {
        EXPECT_GE(point[0].get<double>(), 0);
        EXPECT_LE(point[0].get<double>(), drawing["width"].get<double>());
      }
    }
    return found;
  };
  EXPECT_EQ(curves(played.lines.front()), 0) << "nothing has been calculated yet";
  EXPECT_EQ(curves(played.last()), 2);
}

// A script that cannot go on says in which line, on both streams, and does nothing behind it.
TEST(Play, ErrorsNameTheLine) {
  const Scratch scratch;
  struct Case {
    const char *line, *told;
  };
  for (const Case& c :
       {Case{"dance", "dance"}, Case{"press Form3.nothing", "Form3.nothing"}, Case{"show Form99", "Form99"},
        Case{"type Form3.Llenz", "arguments"}, Case{"type Form3.Llenz \"24", "quote"},
        Case{"type Llenz 24", "Llenz"}, Case{"pick Form3.Bnam \"no such bullet\"", "no such bullet"},
        Case{"pick Form3.Bnam #99999", "#99999"}, Case{"menu dancing", "dancing"},
        Case{"menu undo_fit", "undo_fit"}, Case{"menu copypic", "copypic"},
        Case{"choose FormPsel.searchwhat 9", "searchwhat"}, Case{"toggle Form3.Llenz", "Llenz"},
        Case{"menu Ende", "no answer"}, Case{"answer maybe\nmenu Ende", "maybe"},
        Case{"draw Form3.Llenz", "Llenz"}, Case{"key Form3 F99", "F99"}}) {
    SCOPED_TRACE(c.line);
    const Played played = play(scratch, std::string("# a comment\n\n") + c.line + "\nfocus\n");
    const int line = std::string_view(c.line).find('\n') == std::string_view::npos ? 3 : 4;
    EXPECT_EQ(played.exit, 1);
    EXPECT_EQ(played.last()["line"], line);
    EXPECT_NE(played.last()["error"].get<std::string>().find(c.told), std::string::npos) << played.last();
    EXPECT_NE(played.err.find("line " + std::to_string(line)), std::string::npos) << played.err;
  }
}

}  // namespace
}  // namespace tv::test
