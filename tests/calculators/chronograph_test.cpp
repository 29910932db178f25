// Exports as chronographs write them, all made up here, and files that are none.
#include "calculators/chronograph.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <cmath>

#include "text/file.h"

namespace tv {
namespace {

std::string utf16(std::string_view ascii, bool little, bool mark) {
  std::string out = mark ? (little ? "\xFF\xFE" : "\xFE\xFF") : "";
  for (const char c : ascii) out += little ? std::string{c, '\0'} : std::string{'\0', c};
  return out;
}

// "name charge: velocities" of every series, velocities in m/s with one decimal, an excluded one in brackets.
std::string told(const ChronographRead& read) {
  if (read.error != Unread::none)
    return "error " + std::to_string(static_cast<int>(read.error)) + " line " + std::to_string(read.line);
  std::string text;
  for (const MeasuredSeries& series : read.series) {
    text += series.name;
    if (series.charge_gr > 0) text += " " + std::to_string(std::lround(series.charge_gr * 10));
    text += ":";
    for (const MeasuredShot& shot : series.shots) {
      const std::string v = std::to_string(std::lround(shot.velocity * 10));
      text += shot.excluded ? " (" + v + ")" : " " + v;
    }
    text += "|";
  }
  return text + (read.in_doubt ? "?" : "") +
         (read.unit_read == CellUnit::mps   ? "m/s"
          : read.unit_read == CellUnit::fps ? "fps"
                                            : "");
}

struct Layout {
  const char* what;
  std::string bytes;
  const char* expected;
};

const Layout kLayouts[] = {
    {"comma, feet, title above, statistics below",
     "Rifle 168 gr,,,,\n#,Speed (FPS),D AVG (FPS),KE (FT-LB),Power Factor (KGR*FT/S)\n"
     "1,2650.2,-3.1,2620.1,445.2\n2,2656.0,2.7,2631.6,446.2\n3,2653.7,0.4,2627.0,445.8\n,,,,\n"
     "AVERAGE SPEED,2653.3,,,\nSTD DEV,2.9,,,\nSPREAD,5.8,,,\nPROJECTILE WEIGHT (GRAINS),168.0,,,\n"
     "SESSION NOTE,\"wind, cold\",,,\n",
     "Rifle 168 gr: 8078 8095 8088|fps"},
    {"semicolon, decimal comma, cp1252, quoted heads",
     "\"Datum\";\"12.03.2024\"\r\n\"Ladung\";\"2,70 g\"\r\n\r\n\"Schuss Nr.\";\"Gesch\x77indigkeit "
     "[m/s]\";\"Energie "
     "[J]\";\"M\xFCndung\"\r\n1;812,4;3300,1;x\r\n2;815,0;3322,5;x\r\n3;---;;x\r\n4;809,9;3281,0;"
     "x\r\nMittelwert;"
     "812,4;;\r\nStandardabweichung;2,6;;\r\n",
     "1 417: 8124 8150 8099|m/s"},
    {"many series one below the other, unit told once",
     "Units: m/s\nSeries 1\nCharge,41.0 gr\nShot,Velocity\n1,790.1\n2,793.0\nAverage,791.5\n\nSeries "
     "2\nCharge,41.5 "
     "gr\nShot,Velocity\n1,801.2\n2,\n3,803.3\nAverage,802.2\n",
     "Series 1 410: 7901 7930|Series 2 415: 8012 8033|m/s"},
    {"series beside each other, empty cells, tabs",
     "Shot\tSeries 1\tSeries 2\tSeries "
     "3\n1\t790,1\t801,2\t812,0\n2\t793\t803,3\t\n3\t\t799,9\t\nMean\t791\t801\t812\n",
     "Series 1: 7901 7930|Series 2: 8012 8033 7999|Series 3: 8120|"},
    {"charges as heads", "shot;41.0 gr;41.5 gr\n1;790;801\n2;793;803\n",
     "41.0 gr 410: 7900 7930|41.5 gr 415: 8010 8030|"},
    {"a row for each series",
     "Series,Charge (gr),Shot 1,Shot 2,Shot 3,Avg "
     "fps,SD\nA,41,2592,2600,,2596,5\nB,41.5,2629,2635,2624,2629,5\n"
     "Velocity unit,fps\n",
     "A 410: 7900 7925|B 415: 8013 8031 7998|fps"},
    {"a column that names the series, UTF-16 with mark",
     utf16("String\tShot\tVelocity (ft/s)\tPressure "
           "(psi)\r\n1\t1\t2592\t50000\r\n1\t2\t2600\t\r\n2\t1\t2629\t51000\r\n",
           true, true),
     "1: 7900 7925|2: 8013|fps"},
    {"UTF-16 the other way, no mark", utf16("Velocity (m/s)\n790\n793\n", false, false), "1: 7900 7930|m/s"},
    {"by distance, two units, sighters left out",
     "Nr,V0 [m/s],V10 [m/s],V0 [fps],Excluded\n#1,790.1,784,2592,sighter\n#2,793,787,2602,\n",
     "1: (7901) 7930|m/s"},
    {"units in a row of their own and behind each number",
     "Shot;V;P\n;(m/s);(bar)\n1;790.1 m/s;3500\n2;793.0 m/s;3520\n", "1: 7901 7930|m/s"},
    {"grouped by charge", "Ladung (g);V (m/s)\n2,70;790\n2,70;793\n2,75;801\n",
     "1 417: 7900 7930|2 424: 8010|m/s"},
    {"thousands sign, quoted", "\"Shot\",\"Velocity, fps\"\n\"1\",\"2,592.5\"\n\"2\",\"2,600\"\n",
     "1: 7902 7925|fps"},
    {"bare column, decimal commas", "790,1\n793,2\n801,5\n", "1: 7901 7932 8015|"},
    {"bare, counted, pasted", "1\t790.1\r\n2\t793\r\n3\t801\r\n", "1: 7901 7930 8010|"},
    {"two columns that may both be it", "790.1,2592\n793,2602\n", "1: 7901 7930|?"},
    {"no unit, too fast for m/s", "Velocity\n2592\n2602\n", "1: 25920 26020|?"},
    {"a list separator told", "sep=;\nNr;V0\n1;790.1\n2;793\n", "1: 7901 7930|"},
    {"russian", "Выстрел;Скорость, м/с\n1;790,1\n2;793,0\nСреднее;791,5\n", "1: 7901 7930|m/s"}};

TEST(Chronograph, LayoutsAreReadByTheirContent) {
  for (const Layout& layout : kLayouts)
    EXPECT_EQ(told(read_chronograph(layout.bytes)), layout.expected) << layout.what;
}

TEST(Chronograph, UserSaysUnitAndColumns) {
  const std::string two = "790.1,2592,350\n793,2602,352\n";
  EXPECT_EQ(told(read_chronograph(two, {CellUnit::fps, {ColumnRole::none, ColumnRole::velocity}})),
            "1: 7900 7931|fps");
  EXPECT_EQ(told(read_chronograph("a;b\nx;790\ny;801\nmean;795\n",
                                  {CellUnit::mps, {ColumnRole::none, ColumnRole::velocity}})),
            "1: 7900 8010|m/s");
}

TEST(Chronograph, WhatIsNotUnderstoodIsRefusedWithItsLine) {
  const std::string head = "Shot,Velocity (m/s)\n1,790\n";
  const struct {
    const char* what;
    std::string bytes;
    Unread error;
    int line;
  } cases[] = {{"empty", "", Unread::no_velocity, 1},
               {"prose", "\n\nDear Sir,\nplease find attached\n", Unread::no_velocity, 3},
               {"load data", "Charge,Powder\n41.5,R-04\n", Unread::no_velocity, 1},
               {"word for a number", head + "2,8x2.3\n3,801\n", Unread::bad_number, 3},
               {"word without shot numbers", "Velocity\n790\n8o1\n795\n", Unread::bad_number, 3},
               {"negative", head + "2,-793\n", Unread::out_of_range, 3},
               {"faster than light gas", head + "2,7930\n", Unread::out_of_range, 3},
               {"overflow", head + "2," + std::string(400, '9') + "\n", Unread::out_of_range, 3},
               {"open quote", head + "2,\"793\n3,801\n", Unread::open_quote, 3},
               {"binary", head + std::string("2,\x01\x02\0\n", 7), Unread::not_text, 3},
               {"charge in the column", head + "2,41.5 gr\n", Unread::bad_number, 3},
               {"endless columns", std::string(600000, ','), Unread::too_large, 1},
               {"too long", std::string(kMostSheetBytes + 1, '7'), Unread::too_large, 1},
               {"archive cut off", std::string("PK\x03\x04hello", 9), Unread::bad_workbook, 1}};
  for (const auto& c : cases) {
    const ChronographRead read = read_chronograph(c.bytes);
    EXPECT_EQ(read.error, c.error) << c.what;
    EXPECT_EQ(read.line, c.line) << c.what;
    EXPECT_TRUE(read.series.empty()) << c.what;
  }
  std::string many = "Velocity\n";
  for (int i = 0; i < 1000; ++i) many += "790\n";
  EXPECT_EQ(read_chronograph(many).error, Unread::too_large);
  EXPECT_EQ(read_chronograph(many).line, 1001);
}

std::string workbook() {
  const std::string path = testing::TempDir() + "measured_" + std::to_string(getpid()) + ".xlsx";
  lxw_workbook* book = workbook_new(path.c_str());
  lxw_worksheet* first = workbook_add_worksheet(book, "41.0");
  worksheet_write_string(first, 0, 0, "Rifle & load <1>", nullptr);
  worksheet_write_string(first, 2, 1, "#", nullptr);
  worksheet_write_string(first, 2, 2, "Speed (fps)", nullptr);
  for (int i = 0; i < 3; ++i) {
    worksheet_write_number(first, static_cast<lxw_row_t>(4 + i), 1, i + 1, nullptr);
    worksheet_write_number(first, static_cast<lxw_row_t>(4 + i), 2, 2592.1 + i, nullptr);
  }
  worksheet_write_string(first, 8, 1, "AVERAGE", nullptr);
  worksheet_write_formula_num(first, 8, 2, "=AVERAGE(C5:C7)", nullptr, 2593.1);
  lxw_worksheet* second = workbook_add_worksheet(book, "41.5");
  worksheet_write_string(second, 0, 0, "Velocity", nullptr);
  worksheet_write_string(second, 1, 0, "801,5 m/s", nullptr);
  workbook_add_worksheet(book, "empty");
  workbook_close(book);
  std::string bytes = read_file(path).bytes;
  remove_file(path);
  return bytes;
}

TEST(Chronograph, WorkbookSheetBySheet) {
  const std::string book = workbook();
  EXPECT_EQ(told(read_chronograph(book)), "Rifle & load <1>: 7901 7904 7907|41.5: 8015|fps");
  // Cut anywhere, or with any byte changed, it is read or refused, never more.
  for (std::size_t at = 10; at < book.size(); at += 97) {
    EXPECT_EQ(read_chronograph(book.substr(0, at)).error, Unread::bad_workbook);
    std::string broken = book;
    broken[at] = static_cast<char>(broken[at] ^ 0x55);
    const ChronographRead read = read_chronograph(broken);
    EXPECT_TRUE(read.error != Unread::none || !read.series.empty());
  }
}

}  // namespace
}  // namespace tv
