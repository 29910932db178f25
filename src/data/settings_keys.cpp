#include "data/settings_keys.h"

#include <cmath>

#include "data/section_values.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

using enum OptionForm;
constexpr double kAbove0 = std::numeric_limits<double>::min();

constexpr std::string_view kConstants = "constants", kTips = "tiphelp", kStart = "startup",
                           kTargets = "metrics", kRecoil = "recoil", kReference = "referenz";

constexpr OptionKey words(std::string_view key, std::string_view section, std::string Options::*member) {
  return {.key = key, .section = section, .form = text, .text = member};
}
constexpr OptionKey place(std::string_view key, std::string Options::*member) {
  return words(key, kStart, member);
}
constexpr OptionKey file_path(std::string_view key, std::string Options::*member,
                              std::string_view section = kStart) {
  return {.key = key, .section = section, .form = path, .text = member};
}
constexpr OptionKey number(std::string_view key, std::string_view section, double Options::*member,
                           double least = -std::numeric_limits<double>::infinity()) {
  return {.key = key, .section = section, .form = real, .real = member, .least = least};
}
constexpr OptionKey spread(std::string_view key, double Options::*member, double most) {
  return {.key = key, .section = "measured", .form = real, .real = member, .least = 0, .most = most};
}
constexpr OptionKey count(std::string_view key, std::string_view section, int Options::*member,
                          double least = -32768, double most = 32767) {
  return {.key = key, .section = section, .form = whole, .whole = member, .least = least, .most = most};
}
constexpr OptionKey check(std::string_view key, std::string_view section, bool Options::*member,
                          OptionForm form = flag) {
  return {.key = key, .section = section, .form = form, .flag = member};
}

constexpr OptionKey kKeys[] = {
    words("pri_font_nam", kConstants, &Options::pri_font_nam),
    number("pri_font_siz", kConstants, &Options::pri_font_siz, kAbove0),
    words("pict_font_nam", kConstants, &Options::pict_font_nam),
    check("toltip", kTips, &Options::toltip),
    number("tiptim", kTips, &Options::tiptim, 0),
    number("tipwid", kTips, &Options::tipwid, kAbove0),
    file_path("lanfile", &Options::lanfile),
    file_path("labfil", &Options::labfil),
    file_path("volfil", &Options::volfil),
    file_path("profil", &Options::profil),
    file_path("ibulfil", &Options::ibulfil),
    file_path("gunfil", &Options::gunfil),
    file_path("bpwfil", &Options::bpwfil),
    file_path("omtfil", &Options::omtfil),
    file_path("Picfil", &Options::Picfil),
    file_path("vivfil", &Options::vivfil),
    check("labchg", kStart, &Options::labchg),
    count("filcnt", kStart, &Options::filcnt, 0, 99),
    count("graf_x", kStart, &Options::graf_x, 0),
    count("graf_y", kStart, &Options::graf_y, 0),
    check("metyes", kStart, &Options::metyes),
    count("grftyp", kStart, &Options::grftyp),
    count("schrit", kStart, &Options::schrit),
    number("ldstep", kStart, &Options::ldstep, kAbove0),
    check("ldweight", kStart, &Options::ldweight),
    check("ldperc", kStart, &Options::ldperc),
    count("batols", kStart, &Options::batols, 1, 100),
    check("primeryes", kStart, &Options::primeryes),
    check("autocalc", kStart, &Options::autocalc),
    check("mpayes", kStart, &Options::mpayes),
    check("pcolor", kStart, &Options::pcolor),
    check("maxshw", kStart, &Options::maxshw),
    check("actshw", kStart, &Options::actshw),
    count("gbrlen", kStart, &Options::gbrlen),
    number("srchtl", kStart, &Options::srchtl, 0),
    check("atiles", kStart, &Options::atiles, true_false),
    check("resize", kStart, &Options::resize),
    check("symbol", kStart, &Options::symbol, true_false),
    number("wisizx", kStart, &Options::wisizx),
    number("wisizy", kStart, &Options::wisizy),
    check("sortvol", kStart, &Options::sortvol),
    words("scrfon", kStart, &Options::scrfon),
    number("scrsiz", kStart, &Options::scrsiz, kAbove0),
    check("scrbld", kStart, &Options::scrbld),
    check("scrita", kStart, &Options::scrita),
    words("tabfon", kStart, &Options::tabfon),
    number("tabsiz", kStart, &Options::tabsiz, kAbove0),
    number("tabbld", kStart, &Options::tabbld),
    check("intro_off", kStart, &Options::intro_off),
    check("excel_yes", kStart, &Options::excel_yes),
    check("accept", kStart, &Options::accept),
    check("nowarn", kStart, &Options::nowarn),
    check("pri_graph1page", kStart, &Options::pri_graph1page),
    number("pritopcm", kStart, &Options::pritopcm, kAbove0),
    number("prileftcm", kStart, &Options::prileftcm, kAbove0),
    number("prirightcm", kStart, &Options::prirightcm, kAbove0),
    number("pribottomcm", kStart, &Options::pribottomcm, kAbove0),
    words("pri_paper", kStart, &Options::pri_paper),
    check("pri_landscape", kStart, &Options::pri_landscape),
    count("primertype", kStart, &Options::primertype, 0),
    count("Bnam", kStart, &Options::Bnam),
    count("HVolDat", kStart, &Options::HVolDat),
    file_path("txtdir", &Options::txtdir),
    file_path("picdir", &Options::picdir),
    file_path("tabdir", &Options::tabdir),
    words("volused", kStart, &Options::volused),
    words("bulused", kStart, &Options::bulused),
    words("proused", kStart, &Options::proused),
    place("form1l", &Options::form1l),
    place("form1t", &Options::form1t),
    place("form1w", &Options::form1w),
    place("form1h", &Options::form1h),
    place("form3l", &Options::form3l),
    place("form3t", &Options::form3t),
    place("form4l", &Options::form4l),
    place("form4t", &Options::form4t),
    place("form9l", &Options::form9l),
    place("form9t", &Options::form9t),
    place("form5l", &Options::form5l),
    place("form5t", &Options::form5t),
    place("form5h", &Options::form5h),
    place("form5w", &Options::form5w),
    place("form7l", &Options::form7l),
    place("form7t", &Options::form7t),
    place("form7w", &Options::form7w),
    place("form7h", &Options::form7h),
    check("form1max", kStart, &Options::form1max),
    count("deskleft", kStart, &Options::deskleft, 0),
    count("desktop", kStart, &Options::desktop, 0),
    words("desktab", kStart, &Options::desktab),
    words("folds", kStart, &Options::folds),
    count("look", kStart, &Options::look, 0, 2),
    number("twistlen", kTargets, &Options::twistlen),
    number("maxtab", kTargets, &Options::maxtab, kAbove0),
    number("veltab", kTargets, &Options::veltab, kAbove0),
    number("bamaxt", kTargets, &Options::bamaxt, kAbove0),
    number("bamint", kTargets, &Options::bamint, 0),
    number("lratio", kTargets, &Options::lratio, kAbove0),
    number("lv_min", kTargets, &Options::lv_min, 0),
    number("hratio", kTargets, &Options::hratio, kAbove0),
    number("lod2nd", kTargets, &Options::lod2nd, kAbove0),
    number("gunmas", kRecoil, &Options::gunmas, 0),
    number("scopew", kRecoil, &Options::scopew, 0),
    number("gunhos", kRecoil, &Options::gunhos),
    words("guname", kRecoil, &Options::guname),
    words("guncom", kRecoil, &Options::guncom),
    count("gclidst", kRecoil, &Options::gclidst, 0, 1),
    number("gmoacli", kRecoil, &Options::gmoacli, 0),
    file_path("reffil", &Options::reffil, kReference),
    spread("spr_Ba0", &Options::spr_Ba0, 50),
    spread("spr_charge", &Options::spr_charge, 1000),
    spread("spr_volume", &Options::spr_volume, 50),
    spread("spr_bullet", &Options::spr_bullet, 50),
    spread("spr_seating", &Options::spr_seating, 50),
    spread("spr_barrel", &Options::spr_barrel, 1000),
    spread("spr_start", &Options::spr_start, 50),
};

// Below 1000 the window keeps its own size; beyond its bounds it gets the design size.
double window_size(double size, double design, double least, double most) {
  if (size < 1000) return 0;
  return size < least || size > most ? design : size;
}

// A font's name begins with a capital, the rest stays as typed.
std::string proper_name(const std::string& name) {
  const std::string first = left(name, 1);
  return upper(first) + name.substr(first.size());
}

double sensible(const OptionKey& key, double value, double otherwise) {
  return value < key.least || value > key.most ? otherwise : value;
}

void read_number_option(const OptionKey& key, const std::string& value, Options& options) {
  const Options defaults;
  const double number = read_stored(value).value;
  if (key.whole) {
    options.*key.whole = static_cast<int>(sensible(key, int_of(number), defaults.*key.whole));
  } else {
    options.*key.real = sensible(key, number, defaults.*key.real);
  }
}

}  // namespace

std::span<const OptionKey> option_keys() { return kKeys; }

bool read_flag(std::string_view text) {
  const std::string_view shown = trim(text);
  return !shown.empty() && (shown[0] == 't' || shown[0] == 'T' || read_number(shown) != 0);
}

void read_option(const OptionKey& key, const SectionedFile& file, Options& options) {
  if (key.form == path) {
    const std::string bytes = file.get_bytes(key.section, key.key);
    if (!bytes.empty()) options.*key.text = forward_slashes(bytes);
    return;
  }
  const std::string value = section_value(file, key.section, key.key);
  if (value.empty()) return;
  if (key.text) options.*key.text = value;
  if (key.flag) options.*key.flag = read_flag(value);
  if (key.whole || key.real) read_number_option(key, value, options);
}

bool read_options(const SectionedFile& file, Options& options) {
  for (const OptionKey& key : kKeys) read_option(key, file, options);
  const Options defaults;
  options.pri_font_nam = proper_name(options.pri_font_nam);
  options.wisizx = window_size(options.wisizx, defaults.wisizx, 6042, 24168);
  options.wisizy = window_size(options.wisizy, defaults.wisizy, 4020, 16056);
  return file.get(kConstants, "pri_font_siz").empty() &&
         !file.get(former_section(kConstants), "pri_font_siz").empty();
}

void write_option(const OptionKey& key, const Options& options, SectionedFile& file) {
  switch (key.form) {
    case text:
      put_text(file, key.section, key.key, options.*key.text);
      break;
    case path:
      file.set_bytes(key.section, key.key, options.*key.text);
      break;
    case real:
      put_number(file, key.section, key.key, options.*key.real);
      break;
    case whole:
      put_number(file, key.section, key.key, options.*key.whole);
      break;
    case flag:
      put_text(file, key.section, key.key, options.*key.flag ? "-1" : "0");
      break;
    case true_false:
      put_text(file, key.section, key.key, options.*key.flag ? "True" : "False");
      break;
  }
}

void write_options(const Options& options, SectionedFile& file) {
  for (const OptionKey& key : kKeys) write_option(key, options, file);
}

}  // namespace tv
