#include "gui/layout.h"

#include <algorithm>

namespace tv {
namespace {

using enum RowShape;

constexpr Row pair_row(const char* metric, const char* unit, const char* imperial = nullptr,
                       const char* imperial_unit = nullptr) {
  return {pair, metric, {{metric, unit}, {imperial, imperial_unit}}};
}
constexpr Row source_row(const char* list) { return {source, list, {}}; }
constexpr Row wide_row(const char* label, const char* control) { return {wide, label, {{control}}}; }

// Form3: the dimensions of the load.
constexpr Row kCartridge[] = {
    wide_row("HVolDat", "HVolDat"),
    source_row("HVolDat"),
    pair_row("Zkalm", "unit_mm", "Zkalz", "unit_in"),
    pair_row("qfqm", "unit_mm2", "qfqi", "unit_sqin"),
    pair_row("Hlenm", "unit_mm", "Hlenz", "unit_in"),
    pair_row("Plenm", "unit_mm", "Plenz", "unit_in"),
    pair_row("Volfml", "unit_ccm", "Volfgn", "unit_grh2o"),
    {note, "water", {}},
    pair_row("zul_P0", "@zulp_nam", "zul_P1", "unit_psi"),
    wide_row("method", "method"),
    pair_row("sebf", nullptr),
};
constexpr Row kBullet[] = {
    wide_row("Bnam", "Bnam"),
    source_row("Bnam"),
    pair_row("buldinmm", "unit_mm", "buldinch", "unit_in"),
    pair_row("Bwgm", "unit_g", "Bwgn", "unit_gr"),
    pair_row("Glenm", "unit_mm", "Glenz", "unit_in"),
    {bare, nullptr, {{"TAIL"}, {"fproof"}}},
};
constexpr Row kBarrel[] = {
    pair_row("Llenm", "unit_mm", "Llenz", "unit_in"),
    pair_row("Wobm", "unit_mm", "Wobz", "unit_in"),
};
constexpr Row kVolume[] = {
    pair_row("Bsdm", "unit_mm", "Bsdz", "unit_in"),
    pair_row("ssdm", "unit_mm", "ssdz", "unit_in"),
    pair_row("Vvgm", "unit_ccm", "Vvgn", "unit_grh2o"),
    pair_row("Veffm", "unit_ccm", "Veffz", "unit_grh2o"),
};
constexpr Row kDrawing[] = {{block, nullptr, {{"drawing"}}}};
constexpr Row kDimensionButtons[] = {{buttons, nullptr, {{"shpic"}, {"Patdef"}}}};
constexpr Group kForm3[] = {{"grp_cartridge", 0, kCartridge}, {"grp_bullet", 1, kBullet},
                            {"grp_barrel", 0, kBarrel},       {"grp_volume", 1, kVolume},
                            {nullptr, 1, kDrawing},           {nullptr, 1, kDimensionButtons}};

// Form4: the powder and its charge.
constexpr Row kPowder[] = {
    wide_row("PulvDat", "PulvDat"), source_row("PulvDat"),          pair_row("Exw", "unit_kJkg"),
    pair_row("Kap", nullptr),       pair_row("Pdens", "unit_gccm"), pair_row("bulkdn", "unit_gccm"),
    pair_row("Ba0", nullptr),       pair_row("PDko", nullptr),      pair_row("Limz1", nullptr),
    pair_row("Ba1", nullptr),
};
constexpr Row kCharge[] = {
    pair_row("MPgm", "unit_g", "MPgn", "unit_gr"),
    pair_row("fill", "unit_percent"),
    pair_row("ini_press1", "@zulp_nam"),
};
constexpr Row kPowderButtons[] = {{buttons, nullptr, {{"CalcAll"}}}};
constexpr Group kForm4[] = {
    {"grp_powder", 0, kPowder}, {"grp_charge", 0, kCharge}, {nullptr, -1, kPowderButtons}};

// Form5: the results.
constexpr Row kPressure[] = {
    pair_row("Mgas", "*", "Mgaspsi", "unit_psi"),
    pair_row("Xpm", "unit_mm", "Xpmzoll", "unit_in"),
};
constexpr Row kMuzzle[] = {
    pair_row("Vnull", "unit_mps", "Vnullfps", "unit_fps"),
    pair_row("Ener", "unit_J", "Enerfp", "unit_ftlb"),
    pair_row("Maxpe", "*", "Maxpepsi", "unit_psi"),
};
constexpr Row kTimes[] = {
    pair_row("Sdau", "unit_ms"),
    pair_row("ptime", "unit_ms"),
    {note, "@Labelaburn", {}},
    pair_row("tbrs", "unit_ms"),
    pair_row("xbrsmm", "unit_mm", "xbrsin", "unit_in"),
    pair_row("Vbrannt", "unit_percent"),
    pair_row("wgrad", "unit_percent"),
};
constexpr Row kRatios[] = {
    pair_row("cmratio", nullptr),
    pair_row("exprat", nullptr),
    pair_row("ladich", "unit_gccm"),
    pair_row("endich", "unit_Jccm"),
};
constexpr Row kNotes[] = {{block, "merker", {{"merker"}}}};
constexpr Group kForm5[] = {{"grp_pressure", 0, kPressure},
                            {"grp_muzzle", 0, kMuzzle},
                            {"grp_time", 1, kTimes},
                            {"grp_ratio", 0, kRatios},
                            {nullptr, 1, kNotes}};

constexpr Row kFriction[] = {
    {note, "friclab1", {}},
    {bare, nullptr, {{"frictiononoff"}}},
    {pair, "sugg_P0", {{"sugg_P0", "@zulp_nam"}, {"sugg_P1", "unit_psi"}}},
    {note, "friclab2", {}},
    {buttons, nullptr, {{"okfriction"}}},
};
constexpr Group kFormBorefrict[] = {{nullptr, 0, kFriction}};

// frmFast: a first load in a few entries. The units of its fields follow met_eng.
constexpr Row kFast[] = {
    wide_row("lblMunname", "HVolDat"),
    wide_row("Label11", "Bnam"),
    wide_row("Label14", "PulvDat"),
    {pair, "Label16", {{"MPgn", "%unit_g|unit_gr"}}},
    {pair, "Label7", {{"Plenz", "%unit_mm|unit_in"}}},
    {pair, "Label2", {{"Glenz", "%unit_mm|unit_in"}}},
    {pair, "Label1", {{"Llenz", "%unit_mm|unit_in"}}},
    {bare, nullptr, {{"TAIL"}, {"met_eng"}}},
};
constexpr Row kFastButtons[] = {{buttons, nullptr, {{"faste"}, {"Proceed"}}}};
constexpr Group kFrmFast[] = {{"Frame1", 0, kFast}, {nullptr, -1, kFastButtons}};

// FormPsel: what the powders of the table must meet.
constexpr Row kSearch[] = {
    {bare, nullptr, {{"searchwhat0"}}}, {bare, nullptr, {{"searchwhat1"}}},
    {bare, nullptr, {{"searchwhat2"}}}, {bare, nullptr, {{"searchwhat3"}}},
    {bare, nullptr, {{"searchwhat4"}}}, {bare, nullptr, {{"searchwhat5"}}},
    {bare, nullptr, {{"searchwhat6"}}}, {bare, nullptr, {{"searchwhat7"}}},
    {bare, nullptr, {{"searchwhat8"}}},
};
constexpr Row kTargets[] = {
    pair_row("sugg_P0", "@zulp_nam", "sugg_P1", "unit_psi"),
    pair_row("sugg_V0", "unit_mps", "sugg_V1", "unit_fps"),
    pair_row("lratio", "unit_percent"),
    pair_row("lminratio", "unit_percent"),
    pair_row("hfill", "unit_percent"),
    pair_row("lowpress", "unit_percent"),
    pair_row("tbamin", nullptr),
    {slider, "tbamin", {{"scrminba"}}},
    pair_row("tbamax", nullptr),
    {slider, "tbamax", {{"scrmaxba"}}},
};
constexpr Row kSearchButtons[] = {{buttons, nullptr, {{"cancel"}, {"okproptab"}}}};
constexpr Group kFormPsel[] = {
    {"searchwhat", 0, kSearch}, {nullptr, 1, kTargets}, {nullptr, -1, kSearchButtons}};

constexpr FormLayout kLayouts[] = {
    {"Form3", kForm3, "Patdef"},
    {"Form4", kForm4, "CalcAll"},
    {"Form5", kForm5},
    {"FormBorefrict", kFormBorefrict, "okfriction"},
    {"frmFast", kFrmFast, "Proceed"},
    {"FormPsel", kFormPsel, "okproptab"},
};

}  // namespace

std::span<const FormLayout> form_layouts() { return kLayouts; }

const FormLayout* form_layout(std::string_view screen) {
  const auto* at =
      std::ranges::find_if(kLayouts, [&](const FormLayout& layout) { return layout.screen == screen; });
  return at == std::end(kLayouts) ? nullptr : at;
}

}  // namespace tv
