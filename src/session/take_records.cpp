#include "session/take_records.h"

#include <cmath>

#include "geometry/dimensions.h"
#include "session/dimensions.h"
#include "session/file_names.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/run.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kCalibreTolerance = 0.0025;  // inch

// Rows 1 to 5; the first without a coefficient ends the list.
std::vector<Coefficient> coefficients_of(const RecordTable& table, int row) {
  std::vector<Coefficient> list;
  for (int i = 0; i < 5; ++i) {
    const Coefficient c{table.number(row, bullet_field::mulbc1 + i),
                        i < 4 ? table.number(row, bullet_field::trvel1 + i) : 0};
    if (!(c.bc > 0)) break;
    list.push_back(c);
  }
  return list;
}

void take_coefficients(Session& s, const RecordTable& table, int row) {
  const double single = table.number(row, bullet_field::c1icao);
  s.load.c1icao = single == 0 ? 9.9 : single;
  s.load.coefficients = coefficients_of(table, row);
  if (s.load.coefficients.empty()) {
    s.load.coefficients = {{s.load.c1icao, 0}};
    return;
  }
  if (s.load.coefficients.size() < 5) s.load.coefficients.back().velocity = 0;
  s.load.c1icao = s.load.coefficients.front().bc;
}

void take_own_start_pressure(Session& s, double pascal) {
  s.load.start_press_set = pascal >= 1000000;
  s.state.start_pressure = s.load.start_press_set ? pascal : 0;
  if (s.load.start_press_set) write_number(s, s.state.start_pressure);
}

double number_of(const Record& r, int field) { return read_stored(r[static_cast<std::size_t>(field)]).value; }

void take_case_body(Session& s, const Record& r) {
  double LoadData::*const body[] = {&LoadData::l1_in, &LoadData::l2_in, &LoadData::Ri_in, &LoadData::R1_in,
                                    &LoadData::P1_in, &LoadData::P2_in, &LoadData::H1_in, &LoadData::H2_in};
  int field_number = cartridge_field::l1_in;
  for (const auto member : body) s.load.*member = number_of(r, field_number++);
  s.load.Shape = to_int(number_of(r, cartridge_field::Shape));
  s.load.caswht = number_of(r, cartridge_field::caswht);
  const std::string& bore = r[cartridge_field::bore];
  double LoadData::*const rifling[] = {&LoadData::ZD_in, &LoadData::ZB_in, &LoadData::FD_in,
                                       &LoadData::FB_in};
  int piece = 0;
  for (const auto member : rifling) s.load.*member = read_number(bore_piece(bore, piece++));
  s.load.ZZ_no = to_int(read_number(bore_piece(bore, 4)));
  s.load.Polyg = to_int(read_number(bore_piece(bore, 5)));
}

void take_picture(Session& s, std::string_view name) {
  const std::string trimmed{trim(name)};
  const bool there = !trimmed.empty() && file_exists(data_path(s, "data/pictures/" + trimmed));
  s.picture = there ? trimmed : std::string();
}

// The start pressure of a coated bullet goes back to the uncoated one: records hold uncoated values.
void end_coating(Session& s) {
  if (s.load.fproof) s.state.start_pressure /= s.state.moly_factor;
  s.load.fproof = false;
}

// A bullet without a start pressure of its own leaves it to the case: short ones hold it less.
void default_start_pressure(Session& s) {
  if (s.state.start_pressure < 5000000) {
    s.state.start_pressure = s.state.dim.Hlen >= 1.3 ? 25000000 : 15000000;
    s.load.start_press_set = true;
  }
}

void begin_new_load(Session& s) {
  s.load.commen.clear();
  s.options.labfil = file_folder(s.options.labfil) + "*.";
  for (auto note :
       {&LoadData::primer, &LoadData::PrimerLot, &LoadData::BulletLot, &LoadData::PowderLot,
        &LoadData::CaseMfg, &LoadData::MuzzleVel_meas, &LoadData::MVel_meas_std, &LoadData::MVel_meas_unit,
        &LoadData::Press_meas, &LoadData::Press_meas_std, &LoadData::Press_meas_unit})
    (s.load.*note).clear();
  s.load.measured.clear();
}

void write_cartridge(Session& s) {
  const CartridgeDimensions& d = s.state.dim;
  write_number(s, d.Hlen, {"0.00", "0.000"});
  write_number(s, d.Zkal, {"0.00", "0.000"});
  write_number(s, d.qfq, {"#.00#", "#.000###"});
  write_number(s, d.Volf, {"0.000", "0.00"});
  write_number(s, d.Plen, {"0.00", "0.000"});
  write_number(s, d.sebf, {"0.0#"});
}

struct PowderValue {
  double CalcState::*value;
  int field;
};
constexpr PowderValue kPowder[] = {
    {&CalcState::Exw, powder_field::Exw},     {&CalcState::Kap, powder_field::Kap},
    {&CalcState::Pdens, powder_field::Pdens}, {&CalcState::bulkdn, powder_field::bulkdn},
    {&CalcState::Ba0, powder_field::Ba0},     {&CalcState::Limz1, powder_field::Limz1},
    {&CalcState::PDko, powder_field::PDko},   {&CalcState::Ba1, powder_field::Ba1}};

}  // namespace

void take_powder(Session& s, int row) {
  if (row < 0) return;
  const RecordTable& table = s.set(RecordKind::powders).file.table;
  s.fit_undo = {};
  s.state.powtmp = 21;
  for (const PowderValue& p : kPowder) {
    s.state.*p.value = table.number(row, p.field);
    write_number(s, s.state.*p.value);
  }
  s.state.ExwJ = 1000 * s.state.Exw;
  select_row(s, RecordKind::powders, row);
  s.load.pulver = trim(table.cell(row, powder_field::name));
  refresh_fill(s);
  setResultsValid(s, false);
}

void put_back_powder(Session& s, const CalcState& from, const std::string& name) {
  for (const PowderValue& p : kPowder) {
    s.state.*p.value = from.*p.value;
    write_number(s, s.state.*p.value);
  }
  s.state.powtmp = from.powtmp;
  s.state.ExwJ = from.ExwJ;
  s.load.pulver = name;
  select_by_name(s, RecordKind::powders, name);
}

void take_bullet(Session& s, int row) {
  if (row < 0) return;
  const RecordTable& table = s.set(RecordKind::bullets).file.table;
  auto& d = s.state.dim;
  s.fit_undo = {};
  d.Bwg = table.number(row, bullet_field::Bwg);
  d.Glen = table.number(row, bullet_field::Glen);
  d.tail_type = to_int(table.number(row, bullet_field::tail_type));
  d.tail_dia_small = table.number(row, bullet_field::tail_dia_small);
  d.tail_dia_large = table.number(row, bullet_field::tail_dia_large);
  d.tail_len = table.number(row, bullet_field::tail_len);
  const auto gfunc = trim(table.cell(row, bullet_field::gfunc));
  s.load.gfunc = gfunc.empty() ? "G1" : std::string(gfunc);
  d.buldin = table.number(row, bullet_field::buldin);
  d.TAIL = d.tail_type != kFlatBase && tail_is_possible(d);  // the same bullet always gives the same figures
  take_coefficients(s, table, row);
  end_coating(s);
  take_own_start_pressure(s, table.number(row, bullet_field::start_pressure) * 1000000);
  clear_warning(s, d.Zkal);
  write_number(s, d.Bwg, {"0.00#", "0.0#"});
  write_number(s, d.Glen, {"0.00", "0.000"});
  write_number(s, d.buldin, {"0.00", "0.000"});
  select_row(s, RecordKind::bullets, row);
  s.load.bultyp = trim(table.cell(row, bullet_field::name));
  recompute_dimensions(s, kOverallLength);
  setResultsValid(s, false);
}

namespace {

// How a bullet of the row would sit with the overall length of the load.
struct Seating {
  double depth = 0, Veff = 0, calibre = 0;
};
Seating seating_of(const Session& s, int row) {
  const RecordTable& table = s.set(RecordKind::bullets).file.table;
  CartridgeDimensions d = s.state.dim;
  d.Glen = table.number(row, bullet_field::Glen);
  d.buldin = table.number(row, bullet_field::buldin);
  d.tail_type = to_int(table.number(row, bullet_field::tail_type));
  d.tail_dia_small = table.number(row, bullet_field::tail_dia_small);
  d.tail_dia_large = table.number(row, bullet_field::tail_dia_large);
  d.tail_len = table.number(row, bullet_field::tail_len);
  d.TAIL = d.tail_type != kFlatBase && tail_is_possible(d);
  move_dimensions(d, kOverallLength, d.Zkal * kMmPerInch, [](Dimension) {});
  return {d.Bsd, d.Veff, d.buldin};
}

// The first bullet of the calibre that sits half a calibre deep; if none does, the deepest that leaves room for
// the powder; -1 if there is none.
int bullet_of_calibre(const Session& s) {
  const RecordTable& table = s.set(RecordKind::bullets).file.table;
  int deepest = -1;
  double depth = 0;
  for (const int row : rows_on_show(s, RecordKind::bullets)) {
    if (!(std::fabs(table.number(row, bullet_field::buldin) - s.state.dim.Zkal) <= kCalibreTolerance))
      continue;
    const Seating seated = seating_of(s, row);
    if (!(seated.Veff > 0)) continue;
    if (seated.depth >= seated.calibre / 2) return row;
    if (deepest < 0 || seated.depth > depth) {
      deepest = row;
      depth = seated.depth;
    }
  }
  return deepest;
}

}  // namespace

void match_bullet_list(Session& s, bool show_message) {
  const auto& d = s.state.dim;
  const int found = bullet_of_calibre(s);
  const bool bullet_shown =
      std::fabs(d.Zkal - d.buldin) <= kCalibreTolerance && read_number(s.load.bultyp) != 0;
  if (bullet_shown) {
    if (found >= 0 && show_message) show_row(s, RecordKind::bullets, found);
  } else if (found >= 0) {
    show_row(s, RecordKind::bullets, found);
    take_bullet(s, found);
  } else if (show_message) {
    select_row(s, RecordKind::bullets, -1);
    s.load.bultyp = s.language.msg(193);
  }
}

namespace {

// What the record holds, and what follows from it alone.
void take_values(Session& s, const Record& r) {
  auto& d = s.state.dim;
  s.fit_undo = {};
  d.Volf = number_of(r, cartridge_field::Volf);
  d.Hlen = number_of(r, cartridge_field::Hlen);
  d.Zkal = number_of(r, cartridge_field::Zkal);
  d.sebf = number_of(r, cartridge_field::sebf);
  d.qfq = number_of(r, cartridge_field::qfq);
  d.zul_P = number_of(r, cartridge_field::zul_P);
  d.Plen = number_of(r, cartridge_field::Plen);
  s.load.pmetho = trim(r[cartridge_field::method]);
  take_case_body(s, r);
  take_picture(s, r[cartridge_field::picture]);
  write_cartridge(s);
  s.load.bore_area_stale = false;
  s.load.pattyp = trim(r[cartridge_field::name]);
  if (d.zul_P > 0) s.options.maxtab = 0.875 * d.zul_P;
}

void usual_barrel(Session& s) {
  double& Llen = s.state.dim.Llen;
  if (shown_number(s, Llen, 1) > 0) return;
  Llen = 24;
  write_texts(s, Llen, "609.6", "24.0");
}

}  // namespace

void take_cartridge(Session& s, int row) {
  if (row < 0) return;
  end_coating(s);
  take_values(s, s.set(RecordKind::cartridges).file.table.record(row));
  select_row(s, RecordKind::cartridges, row);
  default_start_pressure(s);
  usual_barrel(s);
  refresh_pressure_fields(s);
  match_bullet_list(s, true);
  recompute_dimensions(s, kOverallLength);
  begin_new_load(s);
  s.valid.ask_charge = true;
  setResultsValid(s, false);
}

void take_cartridge_values(Session& s, const Record& cartridge) {
  const bool other = trim(cartridge[cartridge_field::name]) != s.load.pattyp;
  if (other) end_coating(s);
  take_values(s, cartridge);
  select_by_name(s, RecordKind::cartridges, s.load.pattyp);
  if (other) default_start_pressure(s);
  refresh_pressure_fields(s);
  match_bullet_list(s, true);
  recompute_dimensions(s, kOverallLength);
  if (other) {
    begin_new_load(s);
    s.valid.ask_charge = true;
  }
  setResultsValid(s, false);
}

}  // namespace tv
