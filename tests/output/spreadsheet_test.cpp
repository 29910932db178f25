#include "output/spreadsheet.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tables/fixture.h"
#include "text/file.h"

namespace tv {
namespace {

namespace fs = std::filesystem;

class Folder {
public:
  Folder() {
    std::string name = (fs::temp_directory_path() / "tvtest-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~Folder() { fs::remove_all(path_); }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
  std::string path_;
};

std::string output_of(const std::string& command) {
  std::string out;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buffer[4096];
    while (const std::size_t n = fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    pclose(pipe);
  }
  return out;
}

std::string part(const std::string& xlsx, const std::string& name) {
  return output_of("unzip -p '" + xlsx + "' " + name);
}

ExportData awkward() {
  ExportData d;
  d.x_title = "";
  d.headers = {"Type", "mc (g)", "say \"x\", y"};
  d.data = {{std::string("=1+1"), 0.1, {}},
            {std::string("Ä, \"quoted\""), 1e-7, -2.5},
            {std::string("@cmd"), {}, 123456789.125},
            {std::string("http://example.org"), 3.0, std::string("<&>")}};
  return d;
}

LoadTable load_table() {
  test::Shot shot = test::rifle();
  LoadTableSettings settings{2, 0, false, false, 5};
  LoadTable table;
  RunLoadTable(shot.s, shot.curve, shot.result, settings, test::head(), table);
  table.velocity[3] = 0;
  return table;
}

double cell(const ExportData& d, std::size_t row, std::size_t col) {
  return std::get<double>(d.data[row][col]);
}

TEST(ExportData, LoadTableInBothUnits) {
  const LoadTable table = load_table();
  const ExportData metric = export_load_table(table, {false, 10}),
                   imperial = export_load_table(table, {true, 1});
  ASSERT_EQ(metric.data.size(), 16u);
  EXPECT_EQ(metric.headers[3], "Pmax (bar)");
  EXPECT_EQ(imperial.headers[3], "Pmax (psi)");
  EXPECT_EQ(imperial.x_title, "Charge (gr.)");
  EXPECT_DOUBLE_EQ(cell(imperial, 10, 0), table.charge[10]);
  EXPECT_DOUBLE_EQ(cell(metric, 10, 0), 42 / 15.432358353);
  EXPECT_DOUBLE_EQ(cell(metric, 10, 3), table.pmax[10] / 1e5);
  EXPECT_DOUBLE_EQ(cell(imperial, 10, 3), table.pmax[10] / 6894.76);
  // half of mass times velocity squared, within the rounding of the divisors
  EXPECT_NEAR(cell(metric, 10, 2), 0.5 * 150 / 15432.358 * std::pow(table.velocity[10], 2), 1);
  for (std::size_t col = 1; col < metric.headers.size(); ++col)
    EXPECT_TRUE(std::holds_alternative<std::monostate>(metric.data[3][col])) << col;
  EXPECT_TRUE(export_load_table({}, {}).data.empty());
}

TEST(ExportData, PowderTableOfEveryStrategy) {
  const std::size_t columns[] = {8, 8, 8, 5, 8, 8, 8, 8, 10};
  for (int strategy = 0; strategy < kStrategies; ++strategy) {
    test::Shot shot = test::rifle();
    PowderCriteria c;
    c.strategy = strategy;
    c.lv_min = 50;
    c.lod2nd = 0.9;
    c.veltab = 820;
    const PowderTable table = test::run(shot, test::powders(), c);
    for (const bool imperial : {false, true}) {
      const ExportData d = export_powder_table(table, imperial);
      ASSERT_EQ(d.headers.size(), columns[strategy]);
      EXPECT_TRUE(d.text_first());
      for (std::size_t i = 0; i < table.rows.size(); ++i) {
        ASSERT_EQ(d.data[i].size(), d.headers.size());
        EXPECT_EQ(std::get<std::string>(d.data[i][0]), table.rows[i].name);
        const bool shown = table.rows[i].status == RowStatus::ok;
        EXPECT_EQ(std::holds_alternative<double>(d.data[i][1]), shown);
        if (shown) {
          EXPECT_DOUBLE_EQ(cell(d, i, 1), table.rows[i].cell(2) * 1000 * (imperial ? 15.432358353 : 1));
        }
      }
    }
    if (strategy == 3) {
      EXPECT_EQ(export_powder_table(table, false).headers[3], "2.mc(g)[315 MPa]");
      EXPECT_EQ(export_powder_table(table, true).headers[1], "1.mc(gr)[50763 psi]");
    }
  }
}

TEST(ExportData, CurvesOfTheDiagramsAndThePointList) {
  test::Shot shot = test::rifle();
  ASSERT_TRUE(shot.run());
  const auto last = static_cast<std::size_t>(shot.result.lastIdx);
  const struct {
    int type;
    std::vector<std::string> headers;
  } cases[] = {{1, {"X (mm)", "p (MPa)"}}, {2, {"X (mm)", "V (m/s)"}}, {3, {"X (mm)", "p (MPa)", "V (m/s)"}},
               {4, {"t(ms)", "p (MPa)"}},  {5, {"t(ms)", "V (m/s)"}},  {6, {"t(ms)", "p (MPa)", "V (m/s)"}}};
  for (const auto& c : cases) {
    const ExportData d = export_diagram(c.type, shot.curve, shot.result.lastIdx, {});
    EXPECT_EQ(d.headers, c.headers);
    EXPECT_EQ(d.data.size(), last + 1);
    EXPECT_EQ(cell(d, 0, 0), 0);
  }
  const ExportData points =
      export_point_list({test::head().block, shot.curve, shot.result.lastIdx, 0}, {true, 1});
  EXPECT_EQ(points.headers, (std::vector<std::string>{"X (in.)", "Z (%)", "V (fps)", "p (psi)", "t(ms)"}));
  EXPECT_NEAR(cell(points, last, 0), shot.s.dim.Wob / 25.4, 5e-4);  // the muzzle within 0.01 mm
  EXPECT_NEAR(cell(points, last, 2), shot.velocity() / 0.3048, 1e-4);
}

TEST(Spreadsheet, CsvQuotesTextsAndLeavesBlanks) {
  EXPECT_EQ(csv_text(awkward()),
            "\xEF\xBB\xBFType,mc (g),\"say \"\"x\"\", y\"\r\n"
            "=1+1,0.1,\r\n"
            "\"Ä, \"\"quoted\"\"\",1E-07,-2.5\r\n"
            "@cmd,,123456789.125\r\n"
            "http://example.org,3,<&>\r\n");
}

TEST(Spreadsheet, TheWorkbookHoldsTextsAsTextsNumbersInFullAndAChart) {
  const Folder folder;
  const std::string path = folder / "book.xlsx";
  ASSERT_EQ(write_xlsx(awkward(), path), kNoFailure);
  const std::string sheet = part(path, "xl/worksheets/sheet1.xml");
  EXPECT_EQ(sheet.find("<f>"), std::string::npos);
  EXPECT_EQ(sheet.find("hyperlink"), std::string::npos);
  EXPECT_NE(sheet.find("<v>123456789.125</v>"), std::string::npos);
  EXPECT_EQ(sheet.find("r=\"C2\""), std::string::npos);  // blank
  const std::string strings = part(path, "xl/sharedStrings.xml");
  EXPECT_NE(strings.find("<t>=1+1</t>"), std::string::npos);
  EXPECT_NE(strings.find("&lt;&amp;&gt;"), std::string::npos);
  const std::string book = part(path, "xl/workbook.xml");
  EXPECT_NE(book.find("Ternovale &gt; Excel Results"), std::string::npos);
  EXPECT_NE(book.find("Ternovale &gt; Excel Graph"), std::string::npos);
  const std::string chart = part(path, "xl/charts/chart1.xml");
  EXPECT_NE(chart.find("Ternovale &gt; Excel Diagram"), std::string::npos);
  EXPECT_NE(chart.find("'Ternovale &gt; Excel Results'!$B$2:$B$5"), std::string::npos) << chart;

  ExportData one = awkward();
  one.data.resize(1);
  one.data[0][1] = std::nan("");
  ASSERT_EQ(write_xlsx(one, path), kNoFailure);
  EXPECT_EQ(part(path, "xl/workbook.xml").find("Graph"), std::string::npos);
  EXPECT_EQ(part(path, "xl/worksheets/sheet1.xml").find("NaN"), std::string::npos);
}

TEST(Spreadsheet, AFailureLeavesTheOldFile) {
  const Folder folder;
  EXPECT_EQ(write_xlsx(awkward(), folder / "no/such/folder.xlsx"), kFolderNotFound);
  EXPECT_EQ(write_csv(awkward(), folder / "no/such/folder.csv"), kFolderNotFound);
  ASSERT_EQ(write_file(folder / "old.xlsx", "old"), kNoFailure);
  ExportData unwritable = awkward();
  unwritable.title = std::string(40, 'x');  // longer than a sheet may be named
  EXPECT_EQ(write_xlsx(unwritable, folder / "old.xlsx"), kFileError);
  EXPECT_EQ(read_file(folder / "old.xlsx").bytes, "old");
}

}  // namespace
}  // namespace tv
