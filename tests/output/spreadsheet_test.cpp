// Exports: the cells of every view, and the files made from them.
#include "output/spreadsheet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "tables/fixture.h"
#include "temp_folder.h"
#include "text/file.h"

namespace tv {
namespace {

// A part of a workbook, which is a zip archive.
std::string part(const std::string& xlsx, const std::string& name) {
  std::string out;
  if (FILE* pipe = popen(("unzip -p '" + xlsx + "' " + name).c_str(), "r")) {
    char buffer[4096];
    while (const std::size_t n = fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    pclose(pipe);
  }
  return out;
}

ExportData awkward() {
  ExportData d;
  d.headers = {"Type", "mc (g)", "say \"x\", y", "mark"};
  d.data = {{std::string("=1+1"), 0.1, {}, {}},
            {std::string("Ä, \"quoted\""), 1e-7, -2.5, std::string("near, limit")},
            {std::string("@cmd"), {}, 123456789.125, {}},
            {std::string("http://example.org"), 3.0, std::string("<&>"), {}}};
  d.notes = "Powder\r\n=2+2\r\n";
  return d;
}

const Language& english() {
  static const Language language = [] {
    Language l;
    EXPECT_EQ(l.read(TV_SHARE_DIR "/lan/tn_english.lan"), LanguageRead::good);
    return l;
  }();
  return language;
}

LoadTable load_table(double zul_P) {
  test::Shot shot = test::rifle();
  shot.s.dim.zul_P = zul_P;
  LoadTableSettings settings{2, 0, false, false, 5};
  LoadTable table;
  RunLoadTable(shot.s, shot.curve, shot.result, settings, test::head(), table);
  table.velocity[3] = 0;
  return table;
}

double cell(const ExportData& d, std::size_t row, std::size_t col) {
  return std::get<double>(d.data[row][col]);
}
std::string mark(const ExportData& d, std::size_t row) {
  const auto* text = std::get_if<std::string>(&d.data[row].back());
  return text ? *text : "";
}

TEST(ExportData, LoadTableWithMarksAndWhatItIsOf) {
  const LoadTable table = load_table(360);
  const ExportData bar = export_load_table(table, english(), {false, 10}),
                   psi = export_load_table(table, english(), {true, 1});
  EXPECT_EQ(bar.headers, (std::vector<std::string>{"mc (g)", "V0 (m/s)", "E0 (J)", "Pmax (bar)", "Pmzz (bar)",
                                                   "Z (%)", "t (ms)", "mark"}));
  EXPECT_EQ(psi.headers[3] + psi.x_title, "Pmax (psi)Charge (gr.)");
  ASSERT_EQ(bar.data.size(), 16U) << "without the rows of the burn rate";
  EXPECT_DOUBLE_EQ(cell(psi, 10, 0), 42);
  EXPECT_DOUBLE_EQ(cell(bar, 10, 3), table.pmax[10] / 1e5);
  EXPECT_NEAR(cell(psi, 10, 3), table.pmax[10] / 6894.757, 0.1);
  EXPECT_DOUBLE_EQ(cell(bar, 3, 0), table.charge[3] / 15.432358353) << "a failed row keeps its charge";
  for (std::size_t col = 1; col < 8; ++col) EXPECT_EQ(bar.data[3][col], ExportCell{}) << col;
  for (std::size_t row = 0; row < 16; ++row) {
    const double peak = table.pmax[row] / 1e6;
    EXPECT_EQ(mark(bar, row), row == 3 ? "" : peak > 355 ? "OVER LIMIT" : peak > 306 ? "near limit" : "");
  }
  EXPECT_EQ(mark(bar, 15), "OVER LIMIT");
  EXPECT_EQ(mark(export_load_table(load_table(0), english(), {}), 0), "limit unknown");
  EXPECT_NE(bar.notes.find("Example Rifle\r\n"), std::string::npos);
  EXPECT_NE(bar.notes.find("Charge in steps of 2.0 %\r\n"), std::string::npos);
  EXPECT_TRUE(export_load_table({}, english(), {}).data.empty());
}

TEST(ExportData, CurvesOfTheDiagramsAndThePointList) {
  test::Shot shot = test::rifle();
  ASSERT_TRUE(shot.run());
  const TableHead head = test::head();
  const auto last = static_cast<std::size_t>(shot.result.lastIdx);
  const PointListRun run{head.block, shot.curve, shot.result.lastIdx, 0, true, 300};
  const struct {
    int type;
    std::vector<std::string> headers;
  } cases[] = {{1, {"X (mm)", "p (MPa)", "mark"}},
               {2, {"X (mm)", "V (m/s)", "mark"}},
               {3, {"X (mm)", "p (MPa)", "V (m/s)", "mark"}},
               {4, {"t(ms)", "p (MPa)", "mark"}},
               {5, {"t(ms)", "V (m/s)", "mark"}},
               {6, {"t(ms)", "p (MPa)", "V (m/s)", "mark"}}};
  for (const auto& c : cases) {
    const ExportData d = export_diagram(c.type, run, english(), {});
    EXPECT_EQ(d.headers, c.headers);
    EXPECT_EQ(d.data.size(), last + 1);
    EXPECT_EQ(cell(d, 0, 0), 0);
    EXPECT_EQ(mark(d, static_cast<std::size_t>(shot.result.peakIdx)), "OVER LIMIT");
    EXPECT_EQ(mark(d, last), "");
  }
  const ExportData points = export_point_list(run, english(), {true, 1});
  EXPECT_EQ(points.headers,
            (std::vector<std::string>{"X (in.)", "Z (%)", "V (fps)", "p (psi)", "t(ms)", "mark"}));
  EXPECT_NEAR(cell(points, last, 0), shot.s.dim.Wob / 25.4, 5e-4);  // the muzzle within 0.01 mm
  EXPECT_NEAR(cell(points, last, 2), shot.velocity() / 0.3048, 1e-4);
}

TEST(Spreadsheet, CsvQuotesTextsDefusesFormulasAndLeavesBlanks) {
  EXPECT_EQ(csv_text(awkward()),
            "\xEF\xBB\xBFType,mc (g),\"say \"\"x\"\", y\",mark\r\n"
            "'=1+1,0.1,,\r\n"
            "\"Ä, \"\"quoted\"\"\",1E-07,-2.5,\"near, limit\"\r\n"
            "'@cmd,,123456789.125,\r\n"
            "http://example.org,3,<&>,\r\n");
}

TEST(Spreadsheet, TheWorkbookHoldsTextsAsTextsNumbersInFullNotesAndAChart) {
  const tv_test::TempFolder folder;
  const std::string path = folder / "book.xlsx";
  ASSERT_EQ(write_xlsx(awkward(), path), kNoFailure);
  const std::string sheet = part(path, "xl/worksheets/sheet1.xml"),
                    strings = part(path, "xl/sharedStrings.xml"), book = part(path, "xl/workbook.xml"),
                    chart = part(path, "xl/charts/chart1.xml");
  for (const char* absent : {"<f>", "hyperlink", "r=\"C2\""})
    EXPECT_EQ(sheet.find(absent), std::string::npos);
  EXPECT_NE(sheet.find("<v>123456789.125</v>"), std::string::npos);
  for (const char* text :
       {"<t>=1+1</t>", "&lt;&amp;&gt;", "<t>near, limit</t>", "<t>Powder</t>", "<t>=2+2</t>"})
    EXPECT_NE(strings.find(text), std::string::npos) << text;
  for (const char* name : {"Excel Results", "Excel Notes", "Excel Graph"})
    EXPECT_NE(book.find("Ternovale &gt; " + std::string(name)), std::string::npos) << name;
  EXPECT_NE(chart.find("'Ternovale &gt; Excel Results'!$C$2:$C$5"), std::string::npos) << chart;
  EXPECT_EQ(chart.find("$D$2"), std::string::npos) << "a mark is no curve";

  ExportData one = awkward();
  one.data.resize(1);
  one.data[0][1] = std::nan("");
  ASSERT_EQ(write_xlsx(one, path), kNoFailure);
  EXPECT_EQ(part(path, "xl/workbook.xml").find("Graph"), std::string::npos);
  EXPECT_EQ(part(path, "xl/worksheets/sheet1.xml").find("NaN"), std::string::npos);
}

TEST(Spreadsheet, AFailureLeavesTheOldFile) {
  const tv_test::TempFolder folder;
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
