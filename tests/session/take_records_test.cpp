// From a picked record to the load and the screens.
#include <sstream>

#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

class TakeRecords : public Started {
protected:
  static Record bullet(const char* name, const char* grains, const char* inch, const char* start_MPa) {
    Record r;
    r[bullet_field::name] = name;
    r[bullet_field::Bwg] = grains;
    r[bullet_field::Glen] = "1.2";
    r[bullet_field::buldin] = inch;
    r[bullet_field::start_pressure] = start_MPa;
    return r;
  }
  static Record cartridge(const char* name, const char* Hlen, const char* zul_P) {
    Record r;
    r[cartridge_field::name] = name;
    r[cartridge_field::Volf] = "50";
    r[cartridge_field::Hlen] = Hlen;
    r[cartridge_field::Zkal] = ".308";
    r[cartridge_field::sebf] = ".5";
    r[cartridge_field::qfq] = "47.5";
    r[cartridge_field::zul_P] = zul_P;
    r[cartridge_field::Plen] = "2.8";
    return r;
  }
};

TEST_F(TakeRecords, CartridgeFillsLoadAndFieldsInBothUnits) {
  s.options.labfil = "/home/me/loads/last.";
  s.load.commen = s.load.PowderLot = "of the last load";
  s.load.bore_area_stale = true;
  s.fit_undo.possible = true;
  user.answers = {Answer::no};
  pick("Form3", "HVolDat", ".308 Winchester");
  const auto& d = s.state.dim;
  EXPECT_EQ(d.Hlen, 2.015);
  EXPECT_EQ(text("Form3", "Hlenz"), "2.015");
  EXPECT_EQ(text("Form3", "Hlenm"), "51.18");
  EXPECT_EQ(text("Form3", "Zkalm"), "7.82");
  EXPECT_EQ(text("Form3", "qfqi"), ".073689");
  EXPECT_EQ(text("Form3", "zul_P0"), "415");
  EXPECT_EQ(text("Form3", "zul_P1"), "60191");
  EXPECT_EQ(text("Form3", "method"), "Piezo CIP");
  EXPECT_DOUBLE_EQ(s.options.maxtab, 0.875 * 415);
  EXPECT_EQ(text("Form3", "Llenz"), "24.0");
  EXPECT_EQ(text("Form3", "Llenm"), "609.6");
  EXPECT_NEAR(d.buldin, 0.308, 0.0025) << "a bullet of the calibre comes with it";
  EXPECT_GE(d.Bsd, d.buldin / 2) << "one that can be seated";
  EXPECT_GT(d.Veff, 0);
  EXPECT_EQ(text("Form3", "Bnam"), s.load.bultyp);
  EXPECT_TRUE(s.valid.ask_charge);
  EXPECT_FALSE(s.load.bore_area_stale);
  EXPECT_FALSE(can_undo_fit(s));
  EXPECT_EQ(s.options.labfil, "/home/me/loads/*.");
  EXPECT_EQ(s.load.commen + s.load.PowderLot, "");
  EXPECT_EQ(user.events, std::vector<std::string>{"box msg431"}) << "for the changes of the last load alone";

  type("Form3", "Llenz", "20");
  pick("Form3", "HVolDat", ".223 Remington");
  EXPECT_EQ(s.state.dim.Llen, 20) << "a barrel that is known stays";
  EXPECT_NEAR(s.state.dim.buldin, 0.224, 0.0025) << "a bullet of another calibre goes";
}

// The numbers of a record in the order of its fields, each under its key of the load; "-" for what is no number.
TEST_F(TakeRecords, EveryNumberOfARecordArrivesInItsOwnMember) {
  const auto expect = [&](RecordKind kind, void (*take)(Session&, int), const std::string& keys) {
    Record r;
    std::size_t n = 0;
    std::istringstream names(keys);
    for (std::string key; names >> key;)
      if (++n; key != "-") r[n] = std::to_string(n) + ".25";
    take(s, add_row(kind, r));
    names = std::istringstream(keys);
    n = 0;
    for (std::string key; names >> key;)
      if (++n; key != "-") {
        EXPECT_EQ(load_value_text(*load_key(key), s.state, s.load), r[n]) << key;
      }
  };
  s.state.dim.buldin = 3.25;
  s.load.bultyp = "3.25 of mine";  // stays
  expect(RecordKind::cartridges, take_cartridge,
         "volful hullen kalzug sebert wirkqu maxzul - patlan l1_in l2_in Ri_in R1_in P1_in P2_in H1_in H2_in "
         "- caswht");
  expect(RecordKind::bullets, take_bullet, "bulgew bullen condia condid conlen - - buldia");
  expect(RecordKind::powders, take_powder, "exwarm kappax powden abkof0 prodeg limiz1 abkof1 bulkdn");
}

TEST_F(TakeRecords, StartPressureByCaseLengthAndUnknownLimit) {
  struct Case {
    const char* Hlen;
    double before, after;
  };
  for (const Case& c :
       {Case{"1.3", 0, 25e6}, Case{"1.299", 0, 15e6}, Case{"1.3", 4999999, 25e6}, Case{"1.299", 5e6, 5e6}}) {
    SCOPED_TRACE(c.Hlen);
    s.state.dim.buldin = 0.308;
    s.load.bultyp = ".308 of mine";  // stays, so brings no start pressure
    s.state.start_pressure = c.before;
    s.options.maxtab = 333;
    take_cartridge(s, add_row(RecordKind::cartridges, cartridge("of mine", c.Hlen, "0")));
    EXPECT_EQ(s.state.start_pressure, c.after);
    EXPECT_EQ(text("Form3", "zul_P0") + text("Form3", "zul_P1"), "??");
    EXPECT_EQ(s.options.maxtab, 333);
  }
}

TEST_F(TakeRecords, BulletWithoutStartPressureLeavesTheShownOneInForce) {
  load("308_winchester_168");
  const int without = add_row(RecordKind::bullets, bullet(".308 , 150 , own", "150", ".308", ""));
  const int with = add_row(RecordKind::bullets, bullet(".308 , 150 , hard", "150", ".308", "40"));
  s.fit_undo.possible = true;
  take_bullet(s, without);
  EXPECT_FALSE(can_undo_fit(s));
  EXPECT_EQ(s.state.start_pressure, 0);
  EXPECT_FALSE(s.load.start_press_set);
  EXPECT_EQ(text("Form4", "ini_press1"), "25");
  transferInputs(s);
  EXPECT_TRUE(s.inputsOk);
  EXPECT_EQ(s.state.start_pressure, 25e6) << "what is shown is what runs";
  take_bullet(s, without);
  save_and_exit(s);
  EXPECT_NE(root.read("ternofw.set").find("anfdru= 25000000"), std::string::npos) << "and what is kept";
  take_bullet(s, without);
  set_pressure_unit(s, false);
  EXPECT_EQ(text("Form4", "ini_press1"), "250") << "also after a change of the unit";

  take_bullet(s, with);
  EXPECT_EQ(s.state.start_pressure, 40e6);
  EXPECT_EQ(text("Form4", "ini_press1"), "400");
  set_unit_mode(s, UnitMode::imperial);
  EXPECT_EQ(text("Form4", "ini_press1"), "5802");
  EXPECT_EQ(text("Form3", "Bwgm"), "9.72");
  EXPECT_EQ(text("Form3", "Bwgn"), "150");
  type("Form4", "ini_press1", "0");
  transferInputs(s);
  EXPECT_EQ(s.state.start_pressure, 0) << "who types 0 gets 0";
  EXPECT_EQ(s.state.frictionPress, 0) << "a start pressure is no friction";
}

TEST_F(TakeRecords, CoefficientsOfABullet) {
  Record r = bullet(".308 , 1 , c", "150", ".308", "");
  take_bullet(s, add_row(RecordKind::bullets, r));
  EXPECT_EQ(s.load.c1icao, 9.9);
  ASSERT_EQ(s.load.coefficients.size(), 1U);
  EXPECT_EQ(s.load.gfunc, "G1");

  r[bullet_field::name] = ".308 , 2 , c";
  r[bullet_field::gfunc] = " G7 ";
  r[bullet_field::c1icao] = ".45";
  for (int i = 0; i < 3; ++i) {
    r[static_cast<std::size_t>(bullet_field::mulbc1 + i)] = i < 2 ? "." + std::to_string(50 - i) : "0";
    r[static_cast<std::size_t>(bullet_field::trvel1 + i)] = std::to_string(800 - 100 * i);
  }
  take_bullet(s, add_row(RecordKind::bullets, r));
  ASSERT_EQ(s.load.coefficients.size(), 2U);
  EXPECT_EQ(s.load.coefficients[0].velocity, 800);
  EXPECT_EQ(s.load.coefficients[1].velocity, 0) << "the last limit is 0";
  EXPECT_EQ(s.load.c1icao, 0.5) << "row 1 is the bullet's";
  EXPECT_EQ(s.load.gfunc, "G7");
}

TEST_F(TakeRecords, BulletListFollowsTheCalibre) {
  auto& table = s.set(RecordKind::bullets).file.table;
  table.rows.clear();
  add_row(RecordKind::bullets, bullet(".224 , 55 , a", "55", ".224", ""));
  add_row(RecordKind::bullets, bullet(".311 , 150 , far", "150", ".3106", ""));  // just beyond it
  add_row(RecordKind::bullets, bullet(".308 , 150 , b", "150", ".3104", ""));    // just within the tolerance
  add_row(RecordKind::bullets, bullet(".308 , 168 , c", "168", ".308", ""));
  s.state.dim.Zkal = 0.308;
  s.state.dim.Volf = 56;

  take_bullet(s, 3);
  match_bullet_list(s, true);
  EXPECT_EQ(s.load.bultyp, ".308 , 168 , c") << "a bullet that fits stays";
  EXPECT_EQ(shown(s, "Form3", "Bnam").top, 2) << "the list scrolls to the first that fits";
  take_bullet(s, 0);
  match_bullet_list(s, true);
  EXPECT_EQ(s.load.bultyp, ".308 , 150 , b");
  EXPECT_EQ(s.state.dim.Bwg, 150);
  s.state.dim.Zkal = 0.51;
  match_bullet_list(s, false);
  EXPECT_EQ(s.load.bultyp, ".308 , 150 , b");
  match_bullet_list(s, true);
  EXPECT_EQ(text("Form3", "Bnam"), s.language.msg(193));
  transferInputs(s);
  EXPECT_FALSE(s.inputsOk) << "no bullet of the calibre is no bullet";
}

TEST_F(TakeRecords, WholeNumbersOfADamagedRecord) {
  Record damaged = bullet(".308 , 1 , d", "150", ".308", "");
  damaged[bullet_field::tail_type] = "-1E300";
  take_bullet(s, add_row(RecordKind::bullets, damaged));
  EXPECT_EQ(s.state.dim.tail_type, kFlatBase);
  damaged = cartridge("damaged", "2", "");
  damaged[cartridge_field::Shape] = "99999999999";
  damaged[cartridge_field::bore] = ".308\u00A6.1\u00A6.3\u00A6.1\u00A61E300\u00A6-1E300";
  take_cartridge(s, add_row(RecordKind::cartridges, damaged));
  EXPECT_EQ(s.load.Shape + s.load.ZZ_no + s.load.Polyg, 0);
}

TEST_F(TakeRecords, FirstLoadByPicksAndEntriesEqualsTheLoadFile) {
  pick("Form3", "HVolDat", ".308 Winchester");
  pick("Form3", "Bnam", ".308 , 168 , HPBT");
  pick("Form4", "PulvDat", "Example R-04 light bullet rifle");
  type("Form3", "Plenz", "2.8");
  type("Form4", "MPgn", "38.7");
  EXPECT_FALSE(s.valid.ask_charge);
  EXPECT_EQ(recalculate(s), -1);
  const CalcState entered = s.state;
  refresh_screens(s);
  const Screen panel = s.screens["Form5"];
  const double peak = s.result.pMax;

  ASSERT_TRUE(open_load(s, example("308_winchester_168")));
  EXPECT_EQ(recalculate(s), -1);
  EXPECT_EQ(user.box_keys(), "");
  EXPECT_EQ(s.result.pMax, peak);
  EXPECT_TRUE(entered.dim == s.state.dim);
  EXPECT_EQ(entered.chargeKg, s.state.chargeKg);
  for (const auto& [name, f] : panel.fields) EXPECT_EQ(f.text, shown(s, "Form5", name).text) << name;
}

}  // namespace
}  // namespace tv_test
