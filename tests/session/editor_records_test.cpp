#include "session/editor_records.h"

#include <gtest/gtest.h>

#include "data/record_file.h"
#include "text/number.h"

namespace tv {
namespace {

Record trimmed(Record r) {
  for (std::string& field : r) field = trim(field);
  return r;
}
std::vector<Record> delivered(const char* file, RecordKind kind) {
  return read_records(std::string(TV_SHARE_DIR "/data/") + file, kind, CodePage::cp1252).file.table.rows;
}

// What is read and written again is what stood there, field by field, and as a value.
TEST(EditorRecords, DeliveredRecordsSurviveTheirEditors) {
  const auto bullets = delivered("bullets/ternofw.bul", RecordKind::bullets);
  const auto cartridges = delivered("calibers/ternofw.vol", RecordKind::cartridges);
  const auto guns = delivered("weapons/ternofw.gun", RecordKind::guns);
  ASSERT_TRUE(bullets.size() > 100 && cartridges.size() > 20 && guns.size() > 4);
  for (const Record& r : bullets) EXPECT_EQ(record_of(bullet_of(r)), trimmed(r)) << r[0];
  for (const Record& r : cartridges) EXPECT_EQ(record_of(cartridge_of(r)), trimmed(r)) << r[0];
  for (const Record& r : guns) {
    Record again = record_of(gun_of(r));
    EXPECT_NEAR(read_number(again[7]), read_number(r[7]), 5e-4);  // a gun keeps three digits of its groove
    again[7] = r[7];
    EXPECT_EQ(again, trimmed(r)) << r[0];
  }
}

// Different numbers in every field arrive each in its own place, and come back.
TEST(EditorRecords, EveryFieldHasItsOwnPlace) {
  const Record bullet{"A",    "150.5", "1.215", "6.30", "7.82", "4.60", "G7",  "2",   ".308", ".475", ".475",
                      ".465", ".455",  ".445",  ".435", "900",  "800",  "700", "600", "",     "27.5"};
  const BulletRecord b = bullet_of(bullet);
  EXPECT_EQ(record_of(b), bullet);
  EXPECT_EQ(b.dim.Glen, 1.215);
  EXPECT_EQ(b.dim.tail_dia_small, 6.3);
  EXPECT_EQ(b.bc.limit_ms[4], 600);

  const Record cartridge{"B",         "56.25",  "2.015",  ".308",
                         ".52",       "47.541", "415.5",  "Piezo CIP",
                         "2.81",      "1.56",   "1.712",  ".2",
                         ".473",      ".471",   ".454",   ".344",
                         ".343",      "11",     "169.75", ".308\u00A6.176\u00A6.3\u00A6.0626\u00A64\u00A61",
                         "308win.png"};
  const CartridgeRecord c = cartridge_of(cartridge);
  EXPECT_EQ(record_of(c), cartridge);
  EXPECT_EQ(c.dim.qfq, 47.541);
  EXPECT_EQ(c.body.H2, 0.343);
  CartridgeRecord again = c;
  set_rifling(again, rifling_of(c));
  EXPECT_EQ(record_of(again), cartridge);
  EXPECT_NEAR(rifling_of(c).r1, 0.176 * 25.4, 1e-6);

  const Record gun{"C",    "610",    "45.5",   "3.65",  "B",         "56.25", "2.015",
                   ".308", ".52",    "47.541", "415.5", "Piezo CIP", "2.81",  "1",
                   ".125", "-254.5", "",       "",      "",          "",      "a note"};
  const GunRecord g = gun_of(gun);
  EXPECT_EQ(record_of(g), gun);
  EXPECT_NEAR(g.twist, -254.5 / 25.4, 1e-12);
  GunRecord other = g;
  CartridgeRecord longer = c;
  longer.dim.Plen = 2.9;
  chamber(other, longer);
  EXPECT_EQ(record_of(other)[12], "2.9");
}

TEST(EditorRecords, WhatIsNotKnownStaysEmpty) {
  const auto coefficients = [](std::vector<std::pair<int, std::string>> fields) {
    Record r;
    for (auto& [field, text] : fields) r[static_cast<std::size_t>(field)] = text;
    return bullet_of(r);
  };
  EXPECT_EQ(coefficients({{9, "9.9"}}).bc.icao[1], 0);
  EXPECT_EQ(record_of(coefficients({{9, "9.9"}}))[9], "0");
  // The first empty row ends them; the last that is left holds to the end.
  const BulletRecord b =
      coefficients({{9, ".5"}, {10, ".48"}, {11, ".46"}, {13, ".4"}, {15, "900"}, {16, "800"}});
  EXPECT_EQ(b.bc.icao[1], 0.48);
  EXPECT_EQ(b.bc.limit_ms[2], 0);
  EXPECT_EQ(b.bc.icao[4], 0);
  EXPECT_EQ(coefficients({{7, "7"}}).dim.tail_type, kFlatBase);
  EXPECT_EQ(coefficients({{20, "0.9"}}).start_MPa, 0);
  const Record flat = record_of(BulletRecord{});
  for (const int field : {3, 4, 5, 7, 10, 15, 20})
    EXPECT_EQ(flat[static_cast<std::size_t>(field)], "") << field;
}

}  // namespace
}  // namespace tv
