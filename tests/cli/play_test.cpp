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

// Pages are read as they would be printed; a stale entry has none.
TEST(Play, ReadsPagesAsDrawLists) {
  const Scratch scratch;
  const Played played = play(scratch, "open load \"" + load_file("308_winchester_168") + R"("
press Form4.CalcAll
pages grf_akt_dat
pages grf_weg_zeit
menu pri_graph1page
pages grf_weg_zeit
menu ld_tab
menu rech
pages lade_tab
type Form4.MPgn "38"
pages lade_tab
)");
  EXPECT_EQ(played.exit, 1) << "out of date";
  ASSERT_EQ(played.lines.size(), 11U) << played.err;
  const auto pages = [&](std::size_t line) { return played.lines[line]["pages"]; };
  EXPECT_EQ(pages(2).size(), 1U);
  EXPECT_NEAR(pages(2)[0]["width"].get<double>(), 210 / 25.4 * 96, 0.1);
  EXPECT_NE(pages(2).dump().find("342"), std::string::npos);
  EXPECT_EQ(pages(3).size(), 2U);
  EXPECT_EQ(pages(5).size(), 1U);
  EXPECT_NE(pages(8).dump().find("+05.0"), std::string::npos);
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
