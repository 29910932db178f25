// From a picked record to the load and the screens.
#include <cmath>

#include "geometry/dimensions.h"
#include "session/driver.h"
#include "session/files.h"
#include "session/number_pairs.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kCalibreTolerance = 0.0025;  // inch

void set_name(Session& s, std::string_view screen, std::string_view list, std::string LoadData::*name,
              std::string_view text) {
  s.load.*name = text;
  set_text(s, screen, list, text);
}

// A record holds uncoated values: the box goes off without dividing.
void clear_coating(Session& s) {
  s.load.fproof = false;
  field(s, "Form3", "fproof").checked = false;
}

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
  if (s.load.start_press_set) write_pair(s, "Form4", "ini_press1");
}

void take_case_body(Session& s, const RecordTable& table, int row) {
  double LoadData::*const body[] = {&LoadData::l1_in, &LoadData::l2_in, &LoadData::Ri_in, &LoadData::R1_in,
                                    &LoadData::P1_in, &LoadData::P2_in, &LoadData::H1_in, &LoadData::H2_in};
  int field_number = cartridge_field::l1_in;
  for (const auto member : body) s.load.*member = table.number(row, field_number++);
  s.load.Shape = to_int(table.number(row, cartridge_field::Shape));
  s.load.caswht = table.number(row, cartridge_field::caswht);
  const std::string& bore = table.cell(row, cartridge_field::bore);
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
  field(s, "Form3", "shpic").visible = there;
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
}

void write_cartridge_fields(Session& s) {
  write_pair(s, "Form3", "Hlenm", "0.00", "0.000");
  write_pair(s, "Form3", "Zkalm", "0.00", "0.000");
  write_pair(s, "Form3", "qfqm", "#.00#", "#.000###");
  write_pair(s, "Form3", "Volfml", "0.000", "0.00");
  write_pair(s, "Form3", "Plenm", "0.00", "0.000");
  write_pair(s, "Form3", "sebf", "0.0#");
}

}  // namespace

void select_row(Session& s, std::string_view screen, std::string_view list, int row) {
  Field& f = field(s, screen, list);
  f.selected = -1;
  for (std::size_t i = 0; i < f.items.size(); ++i)
    if (f.items[i].row == row && row >= 0) {
      f.selected = static_cast<int>(i);
      f.text = f.items[i].text;
    }
}

void copy_list(Session& s, std::string_view from_screen, std::string_view from, std::string_view to_screen,
               std::string_view to) {
  const Field& source = field(s, from_screen, from);
  Field& target = field(s, to_screen, to);
  target.items = source.items;
  target.selected = source.selected;
  target.top = source.top;
}

void take_powder(Session& s, int row) {
  if (row < 0) return;
  const RecordTable& table = s.set(RecordKind::powders).file.table;
  s.state.powtmp = 21;
  s.field_min = -20000;
  s.field_max = 20000;
  s.update_suspended = true;
  s.state.Exw = table.number(row, powder_field::Exw);
  s.state.Kap = table.number(row, powder_field::Kap);
  s.state.Pdens = table.number(row, powder_field::Pdens);
  s.state.Ba0 = table.number(row, powder_field::Ba0);
  s.state.PDko = table.number(row, powder_field::PDko);
  s.state.Limz1 = table.number(row, powder_field::Limz1);
  s.state.Ba1 = table.number(row, powder_field::Ba1);
  s.state.bulkdn = table.number(row, powder_field::bulkdn);
  s.fit_undo = {};
  s.state.ExwJ = 1000 * s.state.Exw;
  for (const char* name : {"Exw", "Kap", "Pdens", "bulkdn", "Ba0", "Limz1", "PDko", "Ba1"})
    write_pair(s, "Form4", name);
  select_row(s, "Form4", "PulvDat", row);
  set_name(s, "Form4", "PulvDat", &LoadData::pulver, trim(table.cell(row, powder_field::name)));
  refresh_fill(s);
  s.update_suspended = false;
  setResultsValid(s, false);
}

void take_bullet(Session& s, int row) {
  if (row < 0) return;
  const RecordTable& table = s.set(RecordKind::bullets).file.table;
  auto& d = s.state.dim;
  s.fit_undo = {};
  d.Bwg = table.number(row, bullet_field::Bwg);
  d.Glen = table.number(row, bullet_field::Glen);
  d.tail_type = to_int(table.number(row, bullet_field::tail_type));
  s.update_suspended = true;
  if (d.tail_type == kFlatBase) {
    d.TAIL = false;
    field(s, "Form3", "TAIL").checked = false;
  }
  d.tail_dia_small = table.number(row, bullet_field::tail_dia_small);
  d.tail_dia_large = table.number(row, bullet_field::tail_dia_large);
  d.tail_len = table.number(row, bullet_field::tail_len);
  const auto gfunc = trim(table.cell(row, bullet_field::gfunc));
  s.load.gfunc = gfunc.empty() ? "G1" : std::string(gfunc);
  d.buldin = table.number(row, bullet_field::buldin);
  take_coefficients(s, table, row);
  s.field_min = -20000000;
  s.field_max = 20000000;
  clear_coating(s);
  take_own_start_pressure(s, table.number(row, bullet_field::start_pressure) * 1000000);
  for (const char* name : {"Zkalz", "Zkalm"}) {
    field(s, "Form3", name).ink = Ink::black;
    field(s, "Form3", name).reason.clear();
  }
  write_pair(s, "Form3", "Bwgm", "0.00#", "0.0#");
  write_pair(s, "Form3", "Glenm", "0.00", "0.000");
  write_pair(s, "Form3", "buldinmm", "0.00", "0.000");
  select_row(s, "Form3", "Bnam", row);
  set_name(s, "Form3", "Bnam", &LoadData::bultyp, trim(table.cell(row, bullet_field::name)));
  recompute_dimensions(s, kOverallLength);
  setResultsValid(s, false);
}

void match_bullet_list(Session& s, bool show_message) {
  const RecordTable& table = s.set(RecordKind::bullets).file.table;
  Field& list = field(s, "Form3", "Bnam");
  const auto& d = s.state.dim;
  int found = -1;
  for (std::size_t i = 0; found < 0 && i < list.items.size(); ++i)
    if (std::fabs(table.number(list.items[i].row, bullet_field::buldin) - d.Zkal) <= kCalibreTolerance)
      found = static_cast<int>(i);
  const bool bullet_shown = std::fabs(d.Zkal - d.buldin) <= kCalibreTolerance && read_number(list.text) != 0;
  if (bullet_shown) {
    if (found >= 0 && show_message) list.top = found;
  } else if (found >= 0) {
    list.top = found;
    take_bullet(s, list.items[static_cast<std::size_t>(found)].row);
  } else if (show_message) {
    list.selected = -1;
    set_name(s, "Form3", "Bnam", &LoadData::bultyp, s.language.msg(193));
  }
}

void take_cartridge(Session& s, int row) {
  if (row < 0) return;
  const RecordTable& table = s.set(RecordKind::cartridges).file.table;
  auto& d = s.state.dim;
  s.fit_undo = {};
  d.Volf = table.number(row, cartridge_field::Volf);
  d.Hlen = table.number(row, cartridge_field::Hlen);
  d.Zkal = table.number(row, cartridge_field::Zkal);
  d.sebf = table.number(row, cartridge_field::sebf);
  d.qfq = table.number(row, cartridge_field::qfq);
  d.zul_P = table.number(row, cartridge_field::zul_P);
  d.Plen = table.number(row, cartridge_field::Plen);
  set_name(s, "Form3", "method", &LoadData::pmetho, trim(table.cell(row, cartridge_field::method)));
  take_case_body(s, table, row);
  take_picture(s, table.cell(row, cartridge_field::picture));
  s.field_min = -200000000;
  s.field_max = 200000000;
  s.update_suspended = true;
  clear_coating(s);
  write_cartridge_fields(s);
  s.load.bore_area_stale = false;
  select_row(s, "Form3", "HVolDat", row);
  set_name(s, "Form3", "HVolDat", &LoadData::pattyp, trim(table.cell(row, cartridge_field::name)));
  if (d.zul_P > 0) s.options.maxtab = 0.875 * d.zul_P;
  default_start_pressure(s);
  if (!(field_number(s, "Form3", "Llenz") > 0)) {
    d.Llen = 24;
    set_text(s, "Form3", "Llenz", "24.0");
    set_text(s, "Form3", "Llenm", format_number(609.6, "0.0#"));
  }
  refresh_pressure_fields(s);
  match_bullet_list(s, true);
  recompute_dimensions(s, kOverallLength);
  begin_new_load(s);
  s.askCharge = true;
  s.update_suspended = false;
  setResultsValid(s, false);
}

}  // namespace tv
