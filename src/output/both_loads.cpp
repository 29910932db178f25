// What the legend says of two loads that are drawn together.
#include <algorithm>

#include "output/diagram_parts.h"
#include "text/number.h"

namespace tv {
namespace {

struct Texts {
  const DiagramRun& run;
  const DiagramOptions& options;
  const Language& language;
  const CalcState& state() const { return *run.state; }
  std::string by_units(const std::string& metric, const char* metric_unit, const std::string& imperial,
                       const char* imperial_unit) const {
    return options.imperial ? imperial + " " + language.fastmsg(imperial_unit)
                            : metric + " " + language.fastmsg(metric_unit);
  }
  std::string pressure(double pascal) const {
    return format_number(pascal / sound_factor(options.pressure_factor), "0.0") + " " + options.pressure_unit;
  }
};

enum What : unsigned { kCartridge = 1, kBullet = 2, kPowder = 4, kLengths = 8 };

// One thing that two loads may differ in. One that `follows` from others that differ is left out.
struct Item {
  const char *section, *label;  // null: the text says what it is
  std::string (*text)(const Texts&);
  unsigned what = 0, follows = 0;
  bool always = false;
};

template <double CalcState::*Member>
std::string coefficient(const Texts& t) {
  return format_number(t.state().*Member, "0.0###");
}

constexpr Item kItems[] = {
    {nullptr, nullptr, [](const Texts& t) { return t.run.block->powder; }, kPowder, 0, true},
    {nullptr, nullptr,
     [](const Texts& t) { return t.by_units(t.run.block->MPgm, "fgramm", t.run.block->MPgn, "fgrains"); }, 0,
     0, true},
    {nullptr, nullptr, [](const Texts& t) { return t.run.block->cartridge; }, kCartridge},
    {nullptr, nullptr,
     [](const Texts& t) {
       return t.run.block->bullet + (t.run.block->coated ? ", " + t.language.fastmsg("ffriprv") : "");
     },
     kBullet},
    {"fastmsg", "fldat7",
     [](const Texts& t) {
       const double grains = t.state().dim.Bwg;
       return t.by_units(format_number(grains / kGrainsPerGram, "0.00"), "fgramm",
                         format_number(grains, "0.0"), "fgrains");
     },
     0, kBullet},
    {"fastmsg", "fcol",
     [](const Texts& t) { return t.by_units(t.run.block->Plenm, "f_mm", t.run.block->Plenz, "f_in"); },
     kLengths, kCartridge},
    {"fastmsg", "fcharge6",
     [](const Texts& t) { return t.by_units(t.run.block->Llenm, "f_mm", t.run.block->Llenz, "f_in"); }},
    {"fileout", "9txt",
     [](const Texts& t) { return t.by_units(t.run.block->Veffm, "fccm", t.run.block->Veffz, "fgrh2o"); }, 0,
     kCartridge | kBullet | kLengths},
    {"fastmsg", "fldat5", [](const Texts& t) { return format_number(t.state().dim.qfq, "0.00") + " mm²"; }, 0,
     kCartridge},
    {"fastmsg", "fldat12", [](const Texts& t) { return format_number(t.state().dim.sebf, "0.00#"); }, 0,
     kCartridge},
    {"fastmsg", "fcharge5", [](const Texts& t) { return t.pressure(t.state().start_pressure); }, 0, kBullet},
    {"fileout", "74txt",
     [](const Texts& t) { return t.pressure(t.state().frictionOn ? t.state().frictionPress : 0); }},
    {"fileout", "37txt", coefficient<&CalcState::Exw>, 0, kPowder},
    {"fileout", "38txt", coefficient<&CalcState::Kap>, 0, kPowder},
    {"fileout", "39txt", coefficient<&CalcState::Pdens>, 0, kPowder},
    {"fileout", "41txt", coefficient<&CalcState::Ba0>, 0, kPowder},
    {"fileout", "42txt", coefficient<&CalcState::PDko>, 0, kPowder},
    {"fileout", "43txt", coefficient<&CalcState::Limz1>, 0, kPowder},
    {"fileout", "44txt", coefficient<&CalcState::Ba1>, 0, kPowder},
    {nullptr, nullptr,
     [](const Texts& t) { return t.language.fastmsg("fstep" + std::to_string(t.state().schrit)); }},
};

}  // namespace

std::vector<std::string> both_loads(const DiagramRun& present, const DiagramRun& kept,
                                    const DiagramOptions& options, const Language& language) {
  if (!present.block || !kept.block) return {};
  const Texts a{present, options, language}, b{kept, options, language};
  std::string first, second;
  unsigned differing = 0;
  for (const Item& item : kItems) {
    const std::string of_present = item.text(a), of_kept = item.text(b);
    const bool differs = of_present != of_kept;
    if (differs) differing |= item.what;
    if (!item.always && (!differs || (item.follows & differing))) continue;
    const std::string label = item.label ? language.text(item.section, item.label) + " " : "";
    for (auto& [line, text] :
         {std::pair<std::string&, const std::string&>{first, of_present}, {second, of_kept}})
      line += (line.empty() ? "" : ", ") + label + text;
  }
  return {language.fastmsg("flinbold") + first, language.fastmsg("flinthin") + second};
}

}  // namespace tv
