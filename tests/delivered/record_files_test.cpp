// Every record file that the program brings along, held to what is possible in the world of guns.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "data/record_file.h"
#include "engine/calc_state.h"
#include "geometry/dimensions.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

RecordTable delivered(const std::string& name, RecordKind kind) {
  const RecordRead read = read_records(std::string(TV_SHARE_DIR) + "/" + name, kind, CodePage::cp1252, false);
  EXPECT_EQ(read.failure, 0) << name;
  EXPECT_TRUE(read.findings.none()) << name;
  std::set<std::string> names;
  for (const Record& r : read.file.table.rows) {
    EXPECT_FALSE(trim(r[0]).empty()) << name;
    EXPECT_TRUE(names.insert(lower(trim(r[0]))).second) << "twice: " << r[0];
  }
  return read.file.table;
}
RecordTable cartridges() { return delivered("data/calibers/ternofw.vol", RecordKind::cartridges); }
RecordTable bullets() { return delivered("data/bullets/ternofw.bul", RecordKind::bullets); }
RecordTable powders() { return delivered("data/powders/ternofw.pro", RecordKind::powders); }

double disc(double diameter) { return M_PI / 4 * diameter * diameter; }
void expect_within(double value, double least, double most, const std::string& what) {
  EXPECT_GE(value, least) << what;
  EXPECT_LE(value, most) << what;
}
// A frustum between two diameters, mm to cm3.
double frustum_cm3(double length, double d1, double d2) {
  return M_PI / 12 * length * (d1 * d1 + d1 * d2 + d2 * d2) / 1000;
}

TEST(DeliveredCartridges, AreGeometricallyPossible) {
  namespace f = cartridge_field;
  const RecordTable table = cartridges();
  EXPECT_GE(table.rows.size(), 100U);
  for (int row = 0; row <= table.last(); ++row) {
    const std::string name{trim(table.cell(row, f::name))};
    const double Hlen = table.number(row, f::Hlen), Plen = table.number(row, f::Plen);
    const double groove = table.number(row, f::Zkal) * 25.4;
    expect_within(Hlen, 0.3, 4, name);
    expect_within(Plen, Hlen, 2.2 * Hlen + 0.1, name);
    expect_within(table.number(row, f::sebf), 0.4, 0.65, name);
    const double zul_P = table.number(row, f::zul_P);
    if (zul_P != 0) expect_within(zul_P, 80, 480, name);
    EXPECT_EQ(zul_P == 0, trim(table.cell(row, f::method)) == "?") << name;

    // Bore area: between the circles of lands and grooves, and that of the rifling as it is told.
    const std::string& bore = table.cell(row, f::bore);
    const auto piece = [&](int i) { return read_number(bore_piece(bore, i)); };
    const double land = piece(2) * 25.4, qfq = table.number(row, f::qfq);
    EXPECT_NEAR(piece(0) * 25.4, groove, 0.06) << name;
    expect_within(land, 0.93 * groove, 0.995 * groove, name);
    expect_within(qfq, disc(land), disc(groove), name);
    const double share =
        piece(4) * piece(1) * 25.4 / (M_PI * (land + groove) / 2);  // of grooves, of the circle
    EXPECT_NEAR(qfq, disc(land) + share * (disc(groove) - disc(land)), 0.004 * qfq) << name;

    // Capacity: more than a straight tube of the bore would hold in two thirds of the case, less than a case
    // of three quarters of an inch.
    const double capacity = table.number(row, f::Volf) / 0.998 / 15.432358353;
    expect_within(capacity, disc(land) * Hlen * 25.4 / 1000 * 0.6, disc(19.05) * Hlen * 25.4 / 1000, name);
    const double l1 = table.number(row, f::l1_in) * 25.4;
    if (!(l1 > 0)) continue;
    const double l2 = table.number(row, f::l2_in) * 25.4, P1 = table.number(row, f::P1_in) * 25.4;
    const double P2 = table.number(row, f::P2_in) * 25.4, H1 = table.number(row, f::H1_in) * 25.4;
    const double outer = frustum_cm3(l1, P1, P2) + frustum_cm3(l2 - l1, P2, H1) +
                         frustum_cm3(Hlen * 25.4 - l2, H1, table.number(row, f::H2_in) * 25.4);
    const double brass = table.number(row, f::caswht) / 15.432358353 / static_cast<double>(dicht_ms);
    EXPECT_NEAR(outer - brass, capacity, 0.1 * capacity) << name << ": outer volume less brass";
  }
}

TEST(DeliveredBullets, AreWhatTheirNamesSayAndFitAGroove) {
  namespace f = bullet_field;
  const RecordTable table = bullets(), cases = cartridges();
  EXPECT_GE(table.rows.size(), 150U);
  for (int row = 0; row <= table.last(); ++row) {
    const std::string name{trim(table.cell(row, f::name))};
    CartridgeDimensions d;
    d.Bwg = table.number(row, f::Bwg);
    d.Glen = table.number(row, f::Glen);
    d.buldin = table.number(row, f::buldin);
    EXPECT_NEAR(read_number(name), d.buldin, 1e-9) << name;
    EXPECT_NEAR(read_number(name.substr(name.find(',') + 1)), d.Bwg, 0.5) << name;
    const auto fitting = rows_near(cases, cartridge_field::Zkal, d.buldin, 0.0025);
    EXPECT_FALSE(fitting.empty()) << "no cartridge for " << name;
    // The volume of the cylinder it fills more or less: from light solids with a tip to lead.
    const double density = d.Bwg / 15.432358353 / (disc(d.buldin * 25.4) * d.Glen * 25.4 / 1000);
    expect_within(density, 4.2, 11.35, name);
    expect_within(table.number(row, f::c1icao), 0.05, 1.2, name);
    expect_within(table.number(row, f::start_pressure), 3, 60, name);
    d.tail_type = static_cast<int>(table.number(row, f::tail_type));
    d.tail_len = table.number(row, f::tail_len);
    d.tail_dia_large = table.number(row, f::tail_dia_large);
    d.tail_dia_small = table.number(row, f::tail_dia_small);
    EXPECT_EQ(d.tail_type != kFlatBase, tail_is_possible(d)) << name;
    EXPECT_LT(d.tail_len, 0.4 * d.Glen * 25.4) << name;
  }
  for (int row = 0; row <= cases.last(); ++row)
    EXPECT_FALSE(
        rows_near(table, bullet_field::buldin, cases.number(row, cartridge_field::Zkal), 0.0025).empty())
        << "no bullet for " << cases.cell(row, 0);
}

TEST(DeliveredPowders, AreMarkedAsExamplesAndBurnWithoutAJump) {
  namespace f = powder_field;
  const RecordTable table = powders();
  EXPECT_GE(table.rows.size(), 25U);
  double fastest = 0, slowest = 10;
  for (int row = 0; row <= table.last(); ++row) {
    const std::string name{trim(table.cell(row, f::name))};
    EXPECT_TRUE(name.starts_with("Example ")) << name;
    const double Ba0 = table.number(row, f::Ba0), PDko = table.number(row, f::PDko);
    const double Limz1 = table.number(row, f::Limz1), Ba1 = table.number(row, f::Ba1);
    fastest = std::max(fastest, Ba0);
    slowest = std::min(slowest, Ba0);
    expect_within(table.number(row, f::Exw), 3000, 5500, name);
    expect_within(table.number(row, f::Kap), 1.15, 1.3, name);
    expect_within(table.number(row, f::Pdens), 1.45, 1.7, name);
    expect_within(table.number(row, f::bulkdn), 0.3, 0.75 * table.number(row, f::Pdens), name);
    expect_within(PDko, -0.5, 4, name);
    expect_within(Limz1, 0.1, 0.95, name);
    // Before z1 the rate goes as sqrt(1 + b z), behind it as the factor times sqrt(1 - z): no jump between.
    EXPECT_NEAR(Ba1, std::sqrt(1 + PDko * Limz1) / std::sqrt(1 - Limz1), 6e-5) << name;
    EXPECT_EQ(trim(table.cell(row, f::mean_burn_rate)), trim(mean_burn_rate(Ba0, PDko, Limz1, Ba1))) << name;
  }
  EXPECT_GT(fastest / slowest, 6) << "from fast handgun to slow magnum";
}

TEST(DeliveredRest, ReadsWholeAndHoldsSensibleValues) {
  const RecordTable guns = delivered("data/weapons/ternofw.gun", RecordKind::guns);
  const RecordTable cases = cartridges();
  EXPECT_FALSE(guns.rows.empty());
  for (int row = 0; row <= guns.last(); ++row) {
    const std::string name{trim(guns.cell(row, 0))};
    expect_within(guns.number(row, gun_field::Llenm), 50, 900, name);
    expect_within(guns.number(row, gun_field::gun_weight_kg), 0.4, 12, name);
    expect_within(std::fabs(guns.number(row, gun_field::twlenmm)), 120, 1800, name);
    const int at = cases.find(trim(guns.cell(row, gun_field::CalDat)));
    ASSERT_GE(at, 0) << name;
    for (int field = cartridge_field::Volf; field <= cartridge_field::zul_P; ++field)
      EXPECT_EQ(guns.number(row, gun_field::cartridge_copy + field - 1), cases.number(at, field))
          << name << field;
  }
  // Known loads of black powder within a tenth: a ball of 177 grains over 80 grains FFg from 28 in. (1650 fps),
  // and 405 grains over 70 grains FFg from the 32.6 in. of the service rifle (1350 fps).
  namespace f = black_powder_field;
  const RecordTable black = delivered("data/powders/ternofw.bpw", RecordKind::black_powders);
  const int FFg = black.find("Black powder FFg, 0.6-1.2 mm      R,C,S,M");
  ASSERT_GE(FFg, 0);
  const double ball = 80.0 / 177, slug = 70.0 / 405;
  EXPECT_NEAR(black.number(FFg, f::K1) * std::pow(28, 0.25) * std::sqrt(ball / (ball / 2 + 1)), 1650, 165);
  EXPECT_NEAR(black.number(FFg, f::K3) * std::pow(32.6, 0.25) * std::sqrt(slug) * (1 - 0.3 * std::sqrt(slug)),
              1350, 135);
  for (int row = 0; row <= black.last(); ++row)
    for (const int field : {f::K1, f::K2, f::K3})
      if (const double K = black.number(row, field); K != 0)
        expect_within(K / black.number(FFg, field), 0.7, 1.2, black.cell(row, 0));
  EXPECT_FALSE(delivered("nameprim.txt", RecordKind::primers).rows.empty());
}

// Each language has the same conversions, only the names differ.
TEST(DeliveredUnits, AreTheSameInEveryLanguage) {
  const auto units = [](const std::string& language) {
    const auto page = language == "russian" ? CodePage::cp1251 : CodePage::cp1252;
    const std::string file = std::string(TV_SHARE_DIR) + "/lan/" + language + ".cnv";
    const RecordRead read = read_records_plain(file, RecordKind::units, page);
    EXPECT_TRUE(read.ok() && read.findings.none()) << file;
    return read.file.table;
  };
  const RecordTable english = units("english");
  EXPECT_GE(english.rows.size(), 30U);
  for (int row = 0; row <= english.last(); ++row)
    EXPECT_NE(english.number(row, 2), 0) << english.cell(row, 0);
  const auto factor = [&](const char* from, const char* to) {
    for (const Record& r : english.rows)
      if (r[0] == from && r[1] == to) return read_number(r[2]);
    return 0.0;
  };
  EXPECT_EQ(factor("inch", "mm"), 25.4);
  EXPECT_NEAR(factor("grain", "gram"), 1 / 15.432358353, 1e-9);
  EXPECT_NEAR(factor("psi", "MPa"), 0.00689476, 1e-8);
  for (const char* language : {"german", "french", "russian"}) {
    const RecordTable other = units(language);
    ASSERT_EQ(other.rows.size(), english.rows.size()) << language;
    for (int row = 0; row <= english.last(); ++row) {
      EXPECT_FALSE(other.cell(row, 0).empty() || other.cell(row, 1).empty()) << language << row;
      for (const int field : {2, 3})
        EXPECT_EQ(other.number(row, field), english.number(row, field))
            << language << ": " << other.cell(row, 0);
    }
  }
}

}  // namespace
}  // namespace tv_test
