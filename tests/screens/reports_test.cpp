// What is printed: whole, readable, in every language and on both papers, also with the longest names.
#include <fstream>
#include <sstream>

#include "screens/commands.h"
#include "screens/page_checks.h"
#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

constexpr Report kReports[] = {Report::current, Report::data_sheet, Report::travel_and_time,
                               Report::load_table, Report::powder_table};

class Reports : public Started {
protected:
  // Both tables and a shot, all valid.
  void calculate_all() {
    load("308_winchester_168");
    for (const int mode : {-2, -1, 6}) {
      SetDisplayMode(s, mode);
      ASSERT_NE(recalculate(s), 0);
    }
    s.valid.results = s.valid.load_table = s.valid.powder_table = true;
  }
  void long_names() {
    const std::string word = "Schulterstabilisierungszylinderhülsenmund";
    DataBlock& block = s.shown.block;
    block.cartridge = "12,7 x 99 mm " + word + " with a name that goes on";
    block.bullet = ".510 , 750 , " + word + " Boat Tail Hollow Point Match";
    block.powder = "Example R-99 " + word;
    block.coated = true;
    s.tables.load.inputs.block = s.tables.powder.inputs.block = block;
    s.tables.powder.rows.front().name = "Example " + word + " " + word;
    s.shown.load.pmetho = "Piezo CIP " + word;
    LoadData& load = s.load;
    load.commen = load.pricomment = std::string(80, 'W') + " comment of the load " + word + " " + word;
    load.primer = "Large Rifle Magnum, lot " + word;
    load.PrimerLot = load.PowderLot = load.BulletLot = load.CaseMfg = word + " 4711";
    load.MuzzleVel_meas = "774.123456", load.MVel_meas_unit = "m/s", load.MVel_meas_std = "4.1";
    load.Press_meas = "not measured at all", load.Press_meas_unit = "CUP";
  }
  PageFormat format(double width_mm, double height_mm) {
    const auto twips = [](double mm) { return static_cast<float>(mm / 10 * kTwipsPerCm); };
    return report_format(s, {twips(width_mm), twips(height_mm), 0, 0}, estimated_text_width);
  }
};

TEST_F(Reports, EveryPageIsWholeInAllLanguagesOnBothPapers) {
  calculate_all();
  int failed = 0;  // no flood
  for (const bool longest : {false, true}) {
    if (longest) long_names();
    for (const auto& language : delivered_languages()) {
      language_switch(s, language.name);
      for (const PaperSize& paper : {paper_of("A4"), paper_of("Letter"), PaperSize{"landscape", 297, 210}})
        for (const Report report : kReports)
          for (const int mode : {0, 6, 1}) {
            if (report != Report::current && mode != 6) continue;
            SCOPED_TRACE(std::string(language.name) + " " + paper.name + " report " +
                         std::to_string(static_cast<int>(report)) + " mode " + std::to_string(mode) +
                         (longest ? " long" : ""));
            s.options.grftyp = mode;
            s.output.imperial = paper.width_mm > 215;
            s.options.pri_graph1page = longest;
            const std::size_t pages = expect_whole(s, report, format(paper.width_mm, paper.height_mm));
            if (report == Report::travel_and_time && !longest) {
              EXPECT_EQ(pages, 2U);
            }
            if (report == Report::data_sheet && !longest && paper.width_mm <= 210) {
              EXPECT_EQ(pages, 1U) << "the diagram stands on the sheet";
            }
            if (HasFailure() && ++failed > 3) return;
          }
    }
  }
}

std::vector<std::string> texts_of(const std::vector<DrawList>& pages) {
  std::vector<std::string> texts;
  for (const DrawList& page : pages)
    for (const DrawItem& item : page.items)
      if (item.kind == DrawKind::text) texts.push_back(item.text);
  return texts;
}
bool holds(const std::vector<DrawList>& pages, const std::string& text) {
  const std::vector<std::string> texts = texts_of(pages);
  return std::ranges::find(texts, text) != texts.end();
}

TEST_F(Reports, TheLimitStandsLargeInItsWordAndInRed) {
  calculate_all();
  const auto filled = [](const std::vector<DrawList>& pages) {
    return std::ranges::any_of(pages[0].items, [](const DrawItem& item) {
      return item.kind == DrawKind::band && item.colour == Colour{176, 0, 0, 255};
    });
  };
  EXPECT_FALSE(filled(report_pages(s, Report::data_sheet)));
  s.shown.state.dim.zul_P = s.tables.load.inputs.zul_P = 300;  // 342 MPa
  for (const Report report : {Report::current, Report::data_sheet, Report::travel_and_time}) {
    EXPECT_TRUE(filled(report_pages(s, report)));
    EXPECT_TRUE(holds(report_pages(s, report), s.language.text("form5", "key_over")));
    EXPECT_TRUE(holds(report_pages(s, report), "114"));
  }
  const auto table = report_pages(s, Report::load_table);
  EXPECT_EQ(
      std::ranges::count_if(
          table[0].items, [&](const DrawItem& item) { return item.text == s.language.fastmsg("fcrgvar13"); }),
      18 - std::ranges::count_if(s.tables.load.pmax, [](double p) { return p > 0 && p < 295e6; }));
  s.shown.state.dim.zul_P = 0;
  EXPECT_TRUE(holds(report_pages(s, Report::data_sheet), s.language.text("form5", "key_unknown")));
}

TEST_F(Reports, NarrowPaperTurnsTablesAndNoRoomPrintsNothing) {
  calculate_all();
  const Document document = report_document(s, Report::powder_table);
  EXPECT_FALSE(wants_landscape(document, format(210, 297)));
  EXPECT_TRUE(wants_landscape(document, format(90, 297)));
  for (const DrawList& page : document_pages(document, format(210, 297)))
    for (const DrawItem& item : page.items) {
      if (item.kind == DrawKind::text) {
        EXPECT_GE(item.size, 6 * kUnitsPerPoint - 1e-9) << item.text;
      }
    }
  s.options.prileftcm = 15, s.options.prirightcm = 15;
  EXPECT_TRUE(report_pages(s, Report::data_sheet).empty());
  PageBox box;
  EXPECT_TRUE(SetMargins(0, 0, 0, 0, {11905, 16837, 0, 0}, box));
  EXPECT_NEAR(box.left, 56.69, 0.01);
  EXPECT_NEAR(box.bottom, 16837 - 255.12, 0.01) << "a wider strip below";
  EXPECT_TRUE(SetMargins(2, 2, 2, 2, {11000, 16000, 200, 300}, box));
  EXPECT_NEAR(box.left, 1133.857 - 200, 0.01);
  EXPECT_NEAR(box.right, 11200 - 1133.857, 0.01);
  EXPECT_NEAR(box.top, 1133.857 - 300, 0.01);
  EXPECT_NEAR(box.bottom, 16300 - 1133.857, 0.01);
  EXPECT_FALSE(SetMargins(2, 15, 15, 2, {11905, 16837, 0, 0}, box));
  EXPECT_NEAR(box.width, 0.1, 1e-6);
}

TEST_F(Reports, HeadingNotesAndTextFile) {
  calculate_all();
  user.inputs = {" Range day, lane 3 "};
  EXPECT_TRUE(run_command(s, "ptitle"));
  EXPECT_TRUE(command_checked(s, *find_command("ptitle")));
  s.load.MuzzleVel_meas = "774", s.load.MVel_meas_unit = "m/s";
  EXPECT_TRUE(holds(report_pages(s, Report::data_sheet), "Range day, lane 3"));
  EXPECT_TRUE(holds(report_pages(s, Report::data_sheet), "+0.4 %"));
  EXPECT_TRUE(holds(report_pages(s, Report::load_table), "Range day, lane 3"));
  const std::string file = root.path() + "report.txt";
  user.files = {FileAnswer{file, ""}};
  EXPECT_TRUE(run_command(s, "asci_print"));
  std::ifstream in(file, std::ios::binary);
  std::stringstream whole;
  whole << in.rdbuf();
  const std::string text = whole.str();
  for (const std::string& part : {std::string("Range day"), std::string("38.7 grains"), std::string("+0.4 %"),
                                  s.language.fastmsg("ftabpoc"), std::string(" Muzzle"), std::string("IPSC"),
                                  s.language.fastmsg("warning6")}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_EQ(text.find(part, text.find(part) + 1), std::string::npos) << "once: " << part;
  }
  user.inputs = {""};
  run_command(s, "ptitle");
  EXPECT_FALSE(command_checked(s, *find_command("ptitle")));
  setResultsValid(s, false);
  for (const char* entry : {"grf_akt", "grf_akt_dat", "grf_weg_zeit", "lade_tab", "pulv_tab", "asci_print"})
    EXPECT_FALSE(command_enabled(s, *find_command(entry))) << entry;
}

}  // namespace
}  // namespace tv_test
