#include "powder/powder_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "text/file.h"

namespace tv {
namespace {

std::string delivered(const std::string& name) {
  return read_file(std::string(TV_SHARE_DIR) + "/data/" + name).bytes;
}

std::string changed(std::string bytes, std::string_view from, std::string_view to) {
  const std::size_t at = bytes.find(from);
  EXPECT_NE(at, bytes.npos) << from;
  return bytes.replace(at, from.size(), to);
}

std::string rewritten_viv(const std::string& bytes) {
  const VivacityFile file = parse_vivacity(bytes, CodePage::cp1252);
  return vivacity_bytes(bytes, file.table, file.comment, CodePage::cp1252);
}
std::string rewritten_ref(const std::string& bytes) {
  return reference_bytes(bytes, parse_reference(bytes, CodePage::cp1252).curve, CodePage::cp1252);
}

TEST(PowderFiles, WhatDidNotChangeStaysByteForByte) {
  const std::string viv = delivered("example.viv"), ref = delivered("example.ref");
  ASSERT_FALSE(viv.empty() || ref.empty());
  const std::string long_comment = "first\xAC second\x81 " + std::string(300, 'c');
  const std::pair<const char*, const char*> viv_edits[] = {
      {"viv 3=0.6955", "viv 3=0.69550"},
      {"ppm 5=0.5", "PPM 5= 0,50"},
      {"viv 9=0.3132\r\n", ""},
      {"viv 8=0.4429\r\n", "viv 8=\r\n; a remark\r\nother=1\r\n"}};
  const std::pair<const char*, const char*> ref_edits[] = {
      {"druck 1=25", "druck 1=25.00"},
      {"zeit 2=0.2", "zeit 2=  .2"},
      {"zeit 12=1.32\r\n", ""},
      {"druck 12=111\r\n", "druck 12=\r\n[other]\r\nx=y"},
      {"zeit 4=0.41", "zeit 4=0,41"}};
  for (const auto& [from, to] : viv_edits) {
    const std::string bytes = changed(viv, from, to);
    EXPECT_EQ(rewritten_viv(bytes), bytes) << to;
  }
  for (const auto& [from, to] : ref_edits) {
    const std::string bytes = changed(ref, from, to);
    EXPECT_EQ(rewritten_ref(bytes), bytes) << to;
  }
  const std::string viv_long = changed(viv, "Not a measurement", long_comment);
  EXPECT_EQ(rewritten_viv(viv_long), viv_long);
  const std::string ref_long = changed(ref, "Not a measurement", long_comment);
  EXPECT_EQ(rewritten_ref(ref_long), ref_long);
}

TEST(PowderFiles, AChangeChangesItsLineAlone) {
  const std::string viv = delivered("example.viv"), ref = delivered("example.ref");
  VivacityFile file = parse_vivacity(viv, CodePage::cp1252);
  file.table.rows[2].f = 0.7;
  EXPECT_EQ(vivacity_bytes(viv, file.table, file.comment, CodePage::cp1252), changed(viv, "=0.6955", "=0.7"));
  ReferenceCurve curve = parse_reference(ref, CodePage::cp1252).curve;
  curve.rows[3].MPa = 231.5;
  EXPECT_EQ(reference_bytes(ref, curve, CodePage::cp1252), changed(ref, "druck 4=231", "druck 4=231.5"));
}

TEST(PowderFiles, NewFilesReadBack) {
  VivacityTable table;
  table.rows[8] = {0.95, 0.2};
  const std::string viv = vivacity_bytes("", table, "one\ntwo", CodePage::cp1252);
  EXPECT_TRUE(viv.starts_with("[vivacity]\r\nvivcommnt=one\xACtwo\r\nppm 1=0.1\r\n")) << viv;
  const VivacityFile back = parse_vivacity(viv, CodePage::cp1252);
  EXPECT_EQ(back.table, table);
  EXPECT_EQ(back.comment, "one\ntwo");
  EXPECT_TRUE(parse_vivacity("[metrics]\r\n", CodePage::cp1252).foreign);

  ReferenceCurve curve;
  for (std::size_t i = 0; i < curve.rows.size(); ++i)
    curve.rows[i] = {0.1 * static_cast<double>(i), 350.4 - static_cast<double>(i)};
  curve.comment = std::string(300, 'x');
  const std::string ref = reference_bytes("", curve, CodePage::cp1252);
  EXPECT_NE(ref.find("\r\nzeit 1=0\r\ndruck 1=350.4\r\n"), ref.npos) << ref;
  const ReferenceFile read = parse_reference(ref, CodePage::cp1252);
  EXPECT_TRUE(read.good());
  EXPECT_EQ(read.curve.comment.size(), 254U);
  for (std::size_t i = 0; i < curve.rows.size(); ++i) {
    EXPECT_EQ(read.curve.rows[i].ms, curve.rows[i].ms);
    EXPECT_EQ(read.curve.rows[i].MPa, curve.rows[i].MPa);
  }
}

TEST(PowderFiles, AnIncompleteCurveNamesWhatIsMissing) {
  const std::string ref =
      changed(changed(delivered("example.ref"), "druck 3=153", "druck 3="), "zeit 9=0.87", "x=1");
  const ReferenceFile read = parse_reference(ref, CodePage::cp1252);
  EXPECT_FALSE(read.good());
  EXPECT_EQ(read.missing, (std::vector<std::string>{"druck 3", "zeit 9"}));
  EXPECT_EQ(read.curve.rows[2].ms, 0.32) << "the rest is there";
  EXPECT_EQ(read.curve.rows[11].MPa, 111);
  EXPECT_FALSE(read_reference("/nowhere/a.ref", CodePage::cp1252).good());
}

TEST(PowderFiles, PastedColumns) {
  const struct {
    const char* text;
    const char* rows;  // "first|second " each
    int left_out;
  } cases[] = {
      {"0.1\t0.64\n0.2\t0.668\n", "0.1|0.64 0.2|0.668 ", 0},
      {"P/Pm\tviv\r\n0,1\t0,64\r\n0,2\t0,668", "0.1|0.64 0.2|0.668 ", 0},
      {"0,1;0,64\n0,2;0,668", "0.1|0.64 0.2|0.668 ", 0},
      {"0.1,0.64\n0.2, 0.668", "0.1|0.64 0.2|0.668 ", 0},
      {"  0.1   0.64 \n\n0,2 0,668", "0.1|0.64 0.2|0.668 ", 0},
      {"0.64\n0.668", "|0.64 |0.668 ", 0},
      {"0.1\t0.64\n0.2\tmissing\n1 2 3\n0.3\t0.7\n0.4\t0.7\n0.5\t0.7", "0.1|0.64 0.3|0.7 0.4|0.7 ", 3},
      {"", "", 0}};
  for (const auto& c : cases) {
    const PastedColumns pasted = pasted_columns(c.text, 3);
    std::string rows;
    for (const PastedRow& row : pasted.rows) rows += row.first + "|" + row.second + " ";
    EXPECT_EQ(rows, c.rows) << c.text;
    EXPECT_EQ(pasted.left_out, c.left_out) << c.text;
  }
}

}  // namespace
}  // namespace tv
