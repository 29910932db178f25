#include "data/load_keys.h"

#include <algorithm>
#include <cmath>

#include "text/number.h"

namespace tv {
namespace {

constexpr std::size_t kCommentCut = 255;
constexpr double kLeastMolyFactor = 0.4, kMolyFactor = 0.66;
constexpr double kUnknownCoefficient = 4.5;

constexpr LoadKey words(std::string_view key, std::string LoadData::*member,
                        std::string_view section = kChargeData) {
  return {.key = key, .section = section, .text = member};
}
constexpr LoadKey dim(std::string_view key, double CartridgeDimensions::*member) {
  return {.key = key, .section = kMetrics, .dim = member};
}
constexpr LoadKey state(std::string_view key, double CalcState::*member,
                        std::string_view section = kChargeData) {
  return {.key = key, .section = section, .state = member};
}
constexpr LoadKey load(std::string_view key, double LoadData::*member, std::string_view section = kMetrics) {
  return {.key = key, .section = section, .load = member};
}
constexpr LoadKey whole(std::string_view key, int LoadData::*member) {
  return {.key = key, .section = kMetrics, .load_int = member};
}
constexpr LoadKey check(std::string_view key, bool LoadData::*member) {
  return {.key = key, .section = kMetrics, .load_flag = member};
}
constexpr LoadKey bc(std::string_view key, std::size_t row) {
  return {.key = key, .section = kMetrics, .coefficient = &Coefficient::bc, .row = row};
}
constexpr LoadKey limit(std::string_view key, std::size_t row) {
  return {.key = key, .section = kMetrics, .coefficient = &Coefficient::velocity, .row = row};
}

constexpr LoadKey kKeys[] = {
    words("commen", &LoadData::commen, kStartup),
    words("pricomment", &LoadData::pricomment, kStartup),
    words("pattyp", &LoadData::pattyp, kMetrics),
    words("bultyp", &LoadData::bultyp, kMetrics),
    dim("laflen", &CartridgeDimensions::Llen),
    dim("patlan", &CartridgeDimensions::Plen),
    dim("bullen", &CartridgeDimensions::Glen),
    dim("hullen", &CartridgeDimensions::Hlen),
    dim("kalzug", &CartridgeDimensions::Zkal),
    dim("bulgew", &CartridgeDimensions::Bwg),
    dim("sebert", &CartridgeDimensions::sebf),
    dim("volful", &CartridgeDimensions::Volf),
    dim("wirkqu", &CartridgeDimensions::qfq),
    check("wirktr", &LoadData::bore_area_stale),
    dim("brennr", &CartridgeDimensions::Veff),
    dim("gesweg", &CartridgeDimensions::Wob),
    dim("conlen", &CartridgeDimensions::tail_len),
    dim("condia", &CartridgeDimensions::tail_dia_small),
    dim("condid", &CartridgeDimensions::tail_dia_large),
    dim("buldia", &CartridgeDimensions::buldin),
    {.key = "ausinn", .section = kMetrics, .dim_int = &CartridgeDimensions::tail_type},
    // The box of the tail: a bullet with one may be calculated without it.
    {.key = "tailon", .section = kMetrics, .dim_flag = &CartridgeDimensions::TAIL},
    dim("sdepth", &CartridgeDimensions::Bsd),
    {.key = "friyes", .section = kMetrics, .state_flag = &CalcState::frictionOn},
    state("fripas", &CalcState::frictionPress, kMetrics),
    state("molyco", &CalcState::moly_factor, kMetrics),
    check("molydo", &LoadData::fproof),
    bc("mulbc1", 0),
    limit("trvel1", 0),
    bc("mulbc2", 1),
    limit("trvel2", 1),
    bc("mulbc3", 2),
    limit("trvel3", 2),
    bc("mulbc4", 3),
    limit("trvel4", 3),
    bc("mulbc5", 4),
    load("c1icao", &LoadData::c1icao),
    dim("maxzul", &CartridgeDimensions::zul_P),
    words("pmetho", &LoadData::pmetho, kMetrics),
    load("l1_in", &LoadData::l1_in),
    load("l2_in", &LoadData::l2_in),
    load("Ri_in", &LoadData::Ri_in),
    load("R1_in", &LoadData::R1_in),
    load("P1_in", &LoadData::P1_in),
    load("P2_in", &LoadData::P2_in),
    load("H1_in", &LoadData::H1_in),
    load("H2_in", &LoadData::H2_in),
    whole("Shape", &LoadData::Shape),
    load("caswht", &LoadData::caswht),
    load("ZD_in", &LoadData::ZD_in),
    load("ZB_in", &LoadData::ZB_in),
    load("FD_in", &LoadData::FD_in),
    load("FB_in", &LoadData::FB_in),
    whole("ZZ_no", &LoadData::ZZ_no),
    whole("Polyg", &LoadData::Polyg),
    words("pulver", &LoadData::pulver),
    state("limiz1", &CalcState::Limz1),
    state("abkof0", &CalcState::Ba0),
    state("abkof1", &CalcState::Ba1),
    state("exwarm", &CalcState::Exw),
    state("kappax", &CalcState::Kap),
    state("powden", &CalcState::Pdens),
    state("prodeg", &CalcState::PDko),
    {.key = "powtmp", .section = kChargeData, .state_int = &CalcState::powtmp},
    state("powwht", &CalcState::chargeGr),
    state("anfdru", &CalcState::start_pressure),
    load("anfpul", &LoadData::anfpul, kChargeData),
    state("bulkdn", &CalcState::bulkdn),
    words("primer", &LoadData::primer),
    words("PrimerLot", &LoadData::PrimerLot),
    words("BulletLot", &LoadData::BulletLot),
    words("PowderLot", &LoadData::PowderLot),
    words("CaseMfg", &LoadData::CaseMfg),
    words("MuzzleVel_meas", &LoadData::MuzzleVel_meas),
    words("MVel_meas_std", &LoadData::MVel_meas_std),
    words("MVel_meas_unit", &LoadData::MVel_meas_unit),
    words("Press_meas", &LoadData::Press_meas),
    words("Press_meas_std", &LoadData::Press_meas_std),
    words("Press_meas_unit", &LoadData::Press_meas_unit),
};

bool many_lines(const LoadKey& key) { return key.section == kStartup; }

void set_number(const LoadKey& key, double value, CalcState& s, LoadData& data) {
  if (key.state) s.*key.state = value;
  if (key.dim) s.dim.*key.dim = value;
  if (key.load) data.*key.load = value;
  if (key.dim_int) s.dim.*key.dim_int = to_int(value);
  if (key.state_int) s.*key.state_int = to_int(value);
  if (key.load_int) data.*key.load_int = to_int(value);
  if (key.coefficient) {
    if (data.coefficients.size() <= key.row) data.coefficients.resize(key.row + 1);
    data.coefficients[key.row].*key.coefficient = value;
  }
}

double get_number(const LoadKey& key, const CalcState& s, const LoadData& data) {
  if (key.state) return s.*key.state;
  if (key.dim) return s.dim.*key.dim;
  if (key.load) return data.*key.load;
  if (key.dim_int) return s.dim.*key.dim_int;
  if (key.state_int) return s.*key.state_int;
  if (key.load_int) return data.*key.load_int;
  if (key.state_flag) return s.*key.state_flag;
  if (key.dim_flag) return s.dim.*key.dim_flag;
  if (key.load_flag) return data.*key.load_flag;
  return key.row < data.coefficients.size() ? data.coefficients[key.row].*key.coefficient : 0;
}

bool* flag_of(const LoadKey& key, CalcState& s, LoadData& data) {
  if (key.state_flag) return &(s.*key.state_flag);
  if (key.dim_flag) return &(s.dim.*key.dim_flag);
  return key.load_flag ? &(data.*key.load_flag) : nullptr;
}

bool is_flag(const LoadKey& key) { return key.state_flag || key.dim_flag || key.load_flag; }

// A tail of a kind that is no TailType would count as a hollow base; it is taken as flat.
bool is_tail_type(double value) { return value == 0 || value == 1 || value == 2; }

// Whether a text that is not empty says as a whole what the key holds.
bool understood(const LoadKey& key, std::string_view text) {
  if (key.text) return true;
  const NumberRead read = read_stored(text);
  if (is_flag(key))
    return read.whole || std::string_view("tTfF").find(text.front()) != std::string_view::npos;
  const bool whole_number = key.dim_int || key.state_int || key.load_int;
  return read.whole && (!key.dim_int || is_tail_type(read.value)) &&
         (!whole_number || read.value == to_int(read.value));
}

// One value as it stands in a file, or what can be made of it.
void set_value(const LoadKey& key, const std::string& text, CalcState& s, LoadData& data) {
  if (key.text) {
    data.*key.text = many_lines(key) ? marks_to_breaks(text) : text;
  } else if (bool* flag = flag_of(key, s, data)) {
    *flag = read_flag(text);
  } else {
    const double value = read_stored(text).value;
    set_number(key, key.dim_int && !is_tail_type(value) ? 0 : value, s, data);
  }
}

void settle_moly(CalcState& s) {
  s.moly_factor = std::abs(s.moly_factor);
  if (s.moly_factor < kLeastMolyFactor) s.moly_factor = kMolyFactor;
}

void settle_coefficients(LoadData& data) {
  std::vector<Coefficient>& rows = data.coefficients;
  rows.erase(std::find_if(rows.begin(), rows.end(), [](const Coefficient& row) { return !(row.bc > 0); }),
             rows.end());
  if (rows.empty()) {
    rows.push_back({data.c1icao, 0});
  } else {
    rows.back().velocity = 0;
    data.c1icao = rows.front().bc;
  }
}

// What follows from one value alone.
void settle(const LoadKey& key, CalcState& s, LoadData& data) {
  if (key.dim_int) s.dim.TAIL = true;
  if (key.dim_int || key.dim_flag) s.dim.TAIL = s.dim.TAIL && s.dim.tail_type != kFlatBase;
  if (key.state == &CalcState::moly_factor) settle_moly(s);
  if (key.state == &CalcState::start_pressure) data.start_press_set = true;
  if (key.load == &LoadData::c1icao) set_number(bc({}, 0), data.c1icao, s, data);
  if (key.coefficient || key.load == &LoadData::c1icao) settle_coefficients(data);
}

// What stands for values that a load does not hold.
void fill_missing(const SectionedFile& file, CalcState& s, LoadData& data) {
  CartridgeDimensions& d = s.dim;
  const auto missing = [&](std::string_view section, std::string_view key) {
    return section_value(file, section, key).empty();
  };
  if (missing(kMetrics, "buldia")) d.buldin = d.Zkal;
  if (d.Bsd == 0) d.Bsd = d.Hlen + d.Glen - d.Plen;
  if (data.c1icao == 0) data.c1icao = kUnknownCoefficient;
  data.start_press_set = !missing(kChargeData, "anfdru");
}

// A load of an older program knows the tail's type alone, and its tail then counts.
void settle_tail(const SectionedFile& file, CalcState& s) {
  const std::string counts = section_value(file, kMetrics, "tailon");
  s.dim.TAIL = s.dim.tail_type != kFlatBase && (counts.empty() || read_flag(counts));
}

bool is_load(const SectionedFile& file) {
  for (const std::string_view section : {kMetrics, kChargeData}) {
    if (file.has_section(section) || file.has_section(former_section(section))) return true;
  }
  return false;
}

bool is_load_option(const OptionKey& key) { return key.section == kMetrics || key.section == "recoil"; }

}  // namespace

std::span<const LoadKey> load_keys() { return kKeys; }

const LoadKey* load_key(std::string_view key) {
  const auto found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                  [&](const LoadKey& k) { return same_fold(k.key, key); });
  return found == std::end(kKeys) ? nullptr : &*found;
}

std::optional<KeyList> read_load_keys(const SectionedFile& file, CalcState& s, LoadData& data) {
  if (!is_load(file)) return {};
  KeyList not_understood;
  data.coefficients.clear();
  for (const LoadKey& key : kKeys) {
    const std::string text = section_value(file, key.section, key.key);
    if (key.state_int && text.empty()) continue;  // the powder temperature stays
    set_value(key, text, s, data);
    if (!text.empty() && !understood(key, text)) not_understood.push_back(key.key);
  }
  fill_missing(file, s, data);
  settle_moly(s);
  settle_coefficients(data);
  settle_tail(file, s);
  data.measured = read_measured(file);
  return not_understood;
}

void write_load_keys(const CalcState& s, const LoadData& data, SectionedFile& file) {
  for (const LoadKey& key : kKeys) {
    if (key.text) {
      const std::string text = breaks_to_marks(data.*key.text);
      put_text(file, key.section, key.key, key.text == &LoadData::commen ? left(text, kCommentCut) : text);
    } else if (key.coefficient && key.row >= data.coefficients.size()) {
      put_text(file, key.section, key.key, "0");
    } else if (key.state_flag || key.dim_flag || key.load_flag) {
      put_text(file, key.section, key.key, load_value_text(key, s, data));
    } else {
      put_number(file, key.section, key.key, get_number(key, s, data));
    }
  }
  write_measured(data.measured, file);
}

bool same_load(const CalcState& a, const LoadData& x, const CalcState& b, const LoadData& y) {
  static constexpr std::string_view kDerived[] = {"brennr", "gesweg", "anfpul"};
  return std::ranges::all_of(
             kKeys,
             [&](const LoadKey& key) {
               if (key.text) return x.*key.text == y.*key.text;
               if (key.coefficient && (key.row >= x.coefficients.size() || key.row >= y.coefficients.size()))
                 return x.coefficients.size() == y.coefficients.size();
               return std::ranges::find(kDerived, key.key) != std::end(kDerived) ||
                      get_number(key, a, x) == get_number(key, b, y);
             }) &&
         x.measured == y.measured;
}

KeyList read_load_options(const SectionedFile& file, const CalcState& s, Options& options) {
  constexpr double least_target = 10;  // MPa; below it the maximum pressure of the cartridge rules
  const double by_cartridge = 0.875 * s.dim.zul_P;
  KeyList not_understood;
  for (const OptionKey& key : option_keys()) {
    if (!is_load_option(key)) continue;
    read_option(key, file, options);
    const std::string text = key.real || key.whole ? section_value(file, key.section, key.key) : "";
    if (!text.empty() && !read_stored(text).whole) not_understood.push_back(key.key);
  }
  const double in_file = read_stored(section_value(file, kMetrics, "maxtab")).value;
  if (s.dim.zul_P > 0 && !(in_file > least_target)) options.maxtab = by_cartridge;
  return not_understood;
}

void write_load_options(const Options& options, SectionedFile& file) {
  for (const OptionKey& key : option_keys()) {
    if (is_load_option(key)) write_option(key, options, file);
  }
}

KeyList read_design_data(const SectionedFile& file, CalcState& s, LoadData& data) {
  KeyList not_understood;
  std::vector<const LoadKey*> given;
  for (const LoadKey& key : kKeys) {
    const std::string text = key.section == kMetrics ? section_value(file, key.section, key.key) : "";
    if (text.empty()) continue;
    set_value(key, text, s, data);
    if (!understood(key, text)) not_understood.push_back(key.key);
    given.push_back(&key);
  }
  for (const LoadKey* key : given) {
    settle(*key, s, data);
    if (key->dim_int || key->dim_flag) settle_tail(file, s);
  }
  return not_understood;
}

bool set_load_value(const LoadKey& key, std::string_view text, CalcState& s, LoadData& data) {
  const std::string typed(trim(text));
  if (key.text) {
    data.*key.text = typed;
  } else if (!typed.empty() && understood(key, typed)) {
    set_value(key, typed, s, data);
  } else {
    return false;
  }
  settle(key, s, data);
  return true;
}

std::string load_value_text(const LoadKey& key, const CalcState& s, const LoadData& data) {
  if (key.text) return data.*key.text;
  if (key.state_flag) return s.*key.state_flag ? "-1" : "0";
  if (key.dim_flag) return s.dim.*key.dim_flag ? "-1" : "0";
  if (key.load_flag) return data.*key.load_flag ? "-1" : "0";
  return general(get_number(key, s, data));
}

std::string load_preview(const SectionedFile& file) {
  const auto text = [&](std::string_view section, std::string_view key) {
    return section_value(file, section, key);
  };
  const auto number = [&](std::string_view section, std::string_view key, std::string_view pattern) {
    return format_number(read_stored(section_value(file, section, key)).value, pattern);
  };
  return text(kMetrics, "pattyp") + " -- " + number(kMetrics, "bulgew", "####0.0") + "grs " +
         text(kMetrics, "bultyp") + "\n" + text(kChargeData, "pulver") + " : " +
         number(kChargeData, "powwht", "##0.0#") + " grs -- " + text(kChargeData, "primer") + "\n" +
         marks_to_breaks(file.get(kStartup, "commen"));
}

void write_transfer(const CalcState& s, const LoadData& data, const Options& options, std::string_view vnull,
                    SectionedFile& file) {
  constexpr std::string_view section = "transfer";
  const CartridgeDimensions& d = s.dim;
  const auto number = [&](std::string_view key, double value) { file.set_number(section, key, value); };
  file.set(section, "btype", data.bultyp);
  file.set(section, "ptype", data.pattyp);
  number("pgewi", d.Bwg);
  file.set(section, "gfunc", data.gfunc.empty() ? "G1" : data.gfunc);
  number("bcica", data.c1icao);
  for (const LoadKey& key : kKeys) {
    if (!key.coefficient) continue;
    if (key.row < data.coefficients.size()) {
      number(key.key, get_number(key, s, data));
    } else {
      file.set(section, key.key, "0");
    }
  }
  file.set(section, "vnull", vnull);
  file.set(section, "isneu", "-1");
  number("pdiam", d.buldin);
  number("cnlen", d.tail_len);
  number("cndia", d.tail_dia_small);
  number("cndid", d.tail_dia_large);
  number("bllen", d.Glen);
  number("twilen", options.twistlen);
  number("hosin", options.gunhos);
  number("asinn", d.tail_type);
  number("clidst", options.gclidst);
  number("moacli", options.gmoacli);
}

}  // namespace tv
