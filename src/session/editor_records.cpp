#include "session/editor_records.h"

#include <array>
#include <cmath>

#include "text/number.h"

namespace tv {
namespace {

double number(const Record& r, int field) { return read_stored(r[static_cast<std::size_t>(field)]).value; }
std::string text(const Record& r, int field) { return std::string(trim(r[static_cast<std::size_t>(field)])); }
std::string& at(Record& r, int field) { return r[static_cast<std::size_t>(field)]; }

// A number of a record, where it stands in the file and in which form.
template <class T>
struct NumberAt {
  int field;
  double& (*value)(T&);
  const char* pattern;
  bool zero_empty = false;
};

template <class T, std::size_t N>
void read_numbers(T& to, const Record& r, const std::array<NumberAt<T>, N>& numbers) {
  for (const auto& n : numbers) n.value(to) = number(r, n.field);
}
template <class T, std::size_t N>
void write_numbers(Record& r, T from, const std::array<NumberAt<T>, N>& numbers) {
  for (const auto& n : numbers)
    at(r, n.field) =
        n.zero_empty ? format_nonzero(n.value(from), n.pattern) : format_number(n.value(from), n.pattern);
}

// Whole millimetres stay whole on their way over inches.
double whole_mm(double inch) { return std::round(inch * kMmPerInch * 1e9) / 1e9; }

namespace bf = bullet_field;
constexpr std::array<NumberAt<BulletRecord>, 7> kBullet{{
    {bf::Bwg, [](BulletRecord& b) -> double& { return b.dim.Bwg; }, "0.#"},
    {bf::Glen, [](BulletRecord& b) -> double& { return b.dim.Glen; }, "#.000"},
    {bf::tail_dia_small, [](BulletRecord& b) -> double& { return b.dim.tail_dia_small; }, "#.00", true},
    {bf::tail_dia_large, [](BulletRecord& b) -> double& { return b.dim.tail_dia_large; }, "#.00", true},
    {bf::tail_len, [](BulletRecord& b) -> double& { return b.dim.tail_len; }, "#.00", true},
    {bf::buldin, [](BulletRecord& b) -> double& { return b.dim.buldin; }, "#.000"},
    {bf::start_pressure, [](BulletRecord& b) -> double& { return b.start_MPa; }, "0.#", true},
}};

// In the order of the file: fields 1 to 6 and 8 of a cartridge, which a gun copies.
double& capacity(CartridgeDimensions& d, int i) {
  double* const values[] = {&d.Volf, &d.Hlen, &d.Zkal, &d.sebf, &d.qfq, &d.zul_P, &d.Plen};
  return *values[i];
}
double& body_value(CaseBody& b, int i) {
  double* const values[] = {&b.l1, &b.l2, &b.rim, &b.rim_dia, &b.P1, &b.P2, &b.H1, &b.H2};
  return *values[i];
}
double& rifling_value(CartridgeRecord& c, int i) {
  double* const values[] = {&c.ZD_in, &c.ZB_in, &c.FD_in, &c.FB_in};
  return *values[i];
}
constexpr int kCapacities = 7, kBodyValues = 8, kRiflingValues = 4;
constexpr const char* kCapacityPattern[kCapacities] = {"#.0#",  "#.0##", "#.0###", "#.##",
                                                       "#.0##", "#.###", "#.0##"};
constexpr const char* kGunCapacityPattern[kCapacities] = {"#.###", "#.###", "#.###", "#.0##",
                                                          "#.0##", "#.0##", "#.0##"};
// Behind the sixth stands the method of measurement.
int capacity_field(int first, int i) { return first + i + (i == 6 ? 1 : 0); }
constexpr int kMethodBehind = 6;

void read_capacities(CartridgeDimensions& d, const Record& r, int first) {
  for (int i = 0; i < kCapacities; ++i) capacity(d, i) = number(r, capacity_field(first, i));
}
void write_capacities(Record& r, CartridgeDimensions d, int first, const char* const* patterns) {
  for (int i = 0; i < kCapacities; ++i)
    at(r, capacity_field(first, i)) = format_number(capacity(d, i), patterns[i]);
}

// Rows 1 to 5; the first without a coefficient ends them, and the last that is left has no limit.
void read_coefficients(CoefficientRows& rows, const Record& r) {
  std::size_t used = 0;
  for (std::size_t i = 1; i <= kCoefficients; ++i) {
    const int behind = static_cast<int>(i) - 1;
    const double bc = number(r, bf::mulbc1 + behind);
    if (!(bc > 0)) break;
    rows.icao[i] = bc;
    rows.limit_ms[i] = i < kCoefficients ? number(r, bf::trvel1 + behind) : 0;
    used = i;
  }
  if (used > 0) rows.limit_ms[used] = 0;
  if (used == 0) rows.icao[1] = number(r, bf::c1icao);
  if (rows.icao[1] >= kUnknownCoefficient) rows.icao[1] = 0;
  for (std::size_t i = 1; i <= kCoefficients; ++i) rows.metro[i] = metro_of_icao(rows.icao[i]);
}

void write_coefficients(Record& r, const CoefficientRows& rows) {
  at(r, bf::c1icao) = format_number(rows.icao[1], "#.000#");
  if (!(rows.icao[2] > 0)) return;  // a single one stands in its own field only
  for (std::size_t i = 1; i <= kCoefficients; ++i) {
    const int behind = static_cast<int>(i) - 1;
    at(r, bf::mulbc1 + behind) = format_nonzero(rows.icao[i], "#.000#");
    if (i < kCoefficients) at(r, bf::trvel1 + behind) = format_nonzero(rows.limit_ms[i], "0");
  }
}

std::string bore_text(CartridgeRecord c) {
  std::string all;
  for (int i = 0; i < kRiflingValues; ++i) all += format_nonzero(rifling_value(c, i), "#.0###") + "\u00A6";
  return all + std::to_string(c.ZZ_no) + "\u00A6" + (c.Polyg ? "1" : "0");
}

}  // namespace

BulletRecord bullet_of(const Record& r) {
  BulletRecord b;
  b.name = text(r, bf::name);
  read_numbers(b, r, kBullet);
  const int type = to_int(number(r, bf::tail_type));
  b.dim.tail_type = type == kInnerCone || type == kOuterCone ? type : kFlatBase;
  if (const std::string gfunc = text(r, bf::gfunc); !gfunc.empty()) b.gfunc = gfunc;
  if (b.start_MPa < 1) b.start_MPa = 0;
  read_coefficients(b.bc, r);
  return b;
}

Record record_of(const BulletRecord& b) {
  Record r;
  at(r, bf::name) = b.name;
  write_numbers(r, b, kBullet);
  at(r, bf::gfunc) = b.gfunc;
  at(r, bf::tail_type) = b.dim.tail_type == kFlatBase ? "" : std::to_string(b.dim.tail_type);
  write_coefficients(r, b.bc);
  return r;
}

CartridgeRecord cartridge_of(const Record& r) {
  namespace f = cartridge_field;
  CartridgeRecord c;
  c.name = text(r, f::name);
  read_capacities(c.dim, r, f::Volf);
  c.method = text(r, f::method);
  for (int i = 0; i < kBodyValues; ++i) body_value(c.body, i) = number(r, f::l1_in + i);
  c.body.Shape = to_int(number(r, f::Shape));
  c.caswht = number(r, f::caswht);
  const std::string& bore = r[f::bore];
  for (int i = 0; i < kRiflingValues; ++i) rifling_value(c, i) = read_number(bore_piece(bore, i));
  c.ZZ_no = to_int(read_number(bore_piece(bore, 4)));
  c.Polyg = to_int(read_number(bore_piece(bore, 5))) != 0;
  c.picture = text(r, f::picture);
  return c;
}

Record record_of(const CartridgeRecord& c) {
  namespace f = cartridge_field;
  Record r;
  at(r, f::name) = c.name;
  write_capacities(r, c.dim, f::Volf, kCapacityPattern);
  at(r, f::method) = c.method;
  CaseBody body = c.body;
  for (int i = 0; i < kBodyValues; ++i) at(r, f::l1_in + i) = format_nonzero(body_value(body, i), "#.0##");
  at(r, f::Shape) = std::to_string(c.body.Shape);
  at(r, f::caswht) = format_nonzero(c.caswht, "#.0#");
  at(r, f::bore) = bore_text(c);
  at(r, f::picture) = c.picture;
  return r;
}

Rifling rifling_of(const CartridgeRecord& c) {
  const auto mm = [](double inch) { return static_cast<float>(inch * kMmPerInch); };
  Rifling r;
  r.polygon = c.Polyg;
  r.Dz = mm(c.ZD_in);
  r.Df = mm(c.FD_in);
  r.n = static_cast<float>(c.ZZ_no);
  (c.Polyg ? r.r1 : r.groove_width) = mm(c.ZB_in);
  (c.Polyg ? r.r2 : r.land_width) = mm(c.FB_in);
  return r;
}

void set_rifling(CartridgeRecord& c, const Rifling& r) {
  const auto inch = [](float mm) { return static_cast<double>(mm) / kMmPerInch; };
  c.Polyg = r.polygon;
  c.ZD_in = inch(r.Dz);
  c.FD_in = inch(r.Df);
  c.ZZ_no = to_int(static_cast<double>(r.n));
  c.ZB_in = inch(r.polygon ? r.r1 : r.groove_width);
  c.FB_in = inch(r.polygon ? r.r2 : r.land_width);
}

GunRecord gun_of(const Record& r) {
  namespace f = gun_field;
  GunRecord g;
  g.name = text(r, f::name);
  g.Llen = number(r, f::Llenm) / kMmPerInch;
  g.sight = number(r, f::vhmm) / kMmPerInch;
  g.twist = number(r, f::twlenmm) / kMmPerInch;
  g.weight_kg = number(r, f::gun_weight_kg);
  g.CalDat = text(r, f::CalDat);
  read_capacities(g.cartridge, r, f::cartridge_copy);
  g.method = text(r, f::cartridge_copy + kMethodBehind);
  g.gclidst = number(r, f::gclidst) == 1 ? 1 : 0;
  g.gmoacli = number(r, f::gmoacli);
  g.Text1 = text(r, f::Text1);
  return g;
}

Record record_of(const GunRecord& g) {
  namespace f = gun_field;
  Record r;
  at(r, f::name) = g.name;
  at(r, f::Llenm) = format_number(whole_mm(g.Llen), "0.0##");
  at(r, f::vhmm) = format_number(whole_mm(g.sight), "0.0##");
  at(r, f::gun_weight_kg) = format_number(g.weight_kg, "0.0##");
  at(r, f::CalDat) = g.CalDat;
  write_capacities(r, g.cartridge, f::cartridge_copy, kGunCapacityPattern);
  at(r, f::cartridge_copy + kMethodBehind) = g.method;
  at(r, f::gclidst) = std::to_string(g.gclidst);
  at(r, f::gmoacli) = format_number(g.gmoacli, "#.0###");
  at(r, f::twlenmm) = format_number(whole_mm(g.twist), "#.0##");
  at(r, f::Text1) = g.Text1;
  return r;
}

void chamber(GunRecord& g, const CartridgeRecord& c) {
  g.CalDat = c.name;
  g.cartridge = c.dim;
  g.method = c.method;
}

}  // namespace tv
