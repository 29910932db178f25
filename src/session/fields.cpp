#include "session/fields.h"

#include <algorithm>

namespace tv {
namespace {

using enum ControlKind;

constexpr Control kMain[] = {{"toolbar_box", display}, {"Picture1", display}, {"status_line", display}};

constexpr Control kForm2[] = {{"page_up", button}, {"page_down", button}, {"acceptiert", check},
                              {"Check2", check},   {"weiter", button},    {"schluss", button},
                              {"wechsel", button}, {"notice", view},      {"version_line", display}};

constexpr Control kForm3[] = {
    {"HVolDat", combo},   {"Bnam", combo},    {"Zkalm", number},  {"Zkalz", number},     {"buldinmm", number},
    {"buldinch", number}, {"Bwgm", number},   {"Bwgn", number},   {"Glenm", number},     {"Glenz", number},
    {"Hlenm", number},    {"Hlenz", number},  {"Plenm", number},  {"Plenz", number},     {"Llenm", number},
    {"Llenz", number},    {"Bsdm", number},   {"Bsdz", number},   {"ssdm", number},      {"ssdz", number},
    {"Wobm", display},    {"Wobz", display},  {"qfqm", number},   {"qfqi", number},      {"Volfml", number},
    {"Volfgn", number},   {"Vvgm", display},  {"Vvgn", display},  {"Veffm", display},    {"Veffz", display},
    {"sebf", number},     {"zul_P0", number}, {"zul_P1", number}, {"zulp_nam", display}, {"method", text},
    {"TAIL", check},      {"fproof", check},  {"shpic", button},  {"Patdef", button},    {"grenzen", display},
    {"drawing", surface}};

constexpr Control kForm4[] = {
    {"PulvDat", combo},    {"Exw", number},   {"Kap", number},     {"Pdens", number},
    {"bulkdn", number},    {"Ba0", number},   {"PDko", number},    {"Limz1", number},
    {"Ba1", number},       {"MPgm", number},  {"MPgn", number},    {"ini_press1", number},
    {"zulp_nam", display}, {"fill", display}, {"CalcAll", button}, {"grenzen", display}};

constexpr Control kForm5[] = {
    {"Mgas", display},   {"Mgaspsi", display},  {"Xpm", display},        {"Xpmzoll", display},
    {"Vnull", display},  {"Vnullfps", display}, {"Ener", display},       {"Enerfp", display},
    {"Maxpe", display},  {"Maxpepsi", display}, {"Vbrannt", display},    {"wgrad", display},
    {"Sdau", display},   {"ptime", display},    {"Labelaburn", display}, {"tbrs", display},
    {"xbrsmm", display}, {"xbrsin", display},   {"cmratio", display},    {"exprat", display},
    {"ladich", display}, {"endich", display},   {"merker", view},        {"zulp_nam", display}};

constexpr Control kForm7[] = {
    {"Pict1", surface}, {"Text1", view}, {"x1", display}, {"y1", display}, {"y2", display}};

constexpr Control kFormBorefrict[] = {{"frictiononoff", check}, {"sugg_P0", number},    {"sugg_P1", number},
                                      {"zulp_nam", display},    {"okfriction", button}, {"grenzen", display}};

constexpr Control kFrmFast[] = {{"HVolDat", combo}, {"Bnam", combo},    {"PulvDat", combo},
                                {"MPgn", number},   {"Plenz", number},  {"Glenz", number},
                                {"Llenz", number},  {"TAIL", check},    {"Proceed", button},
                                {"faste", button},  {"met_eng", check}, {"grenzen", display}};

constexpr Control kFormPsel[] = {
    {"searchwhat0", option}, {"searchwhat1", option}, {"searchwhat2", option}, {"searchwhat3", option},
    {"searchwhat4", option}, {"searchwhat5", option}, {"searchwhat6", option}, {"searchwhat7", option},
    {"searchwhat8", option}, {"sugg_P0", number},     {"sugg_P1", number},     {"zulp_nam", display},
    {"sugg_V0", number},     {"sugg_V1", number},     {"lratio", number},      {"lminratio", number},
    {"hfill", number},       {"lowpress", number},    {"tbamin", number},      {"scrminba", display},
    {"tbamax", number},      {"scrmaxba", display},   {"okproptab", button},   {"cancel", button},
    {"grenzen", display}};

constexpr Control kGetInput[] = {{"prompt", display}, {"answer", text}, {"ok", button}, {"cancel", button}};
constexpr Control kHelp[] = {{"version", display}, {"licences", view}, {"close", button}};
constexpr Control kPic[] = {{"picture", surface}, {"zoom_in", button}, {"zoom_out", button},
                            {"fit", button},      {"full", button},    {"close", button}};

constexpr ScreenInfo kScreens[] = {
    {"frmMAIN", "frmMAIN", ScreenShape::frame, kMain},
    {"Form2", "form2", ScreenShape::dialog, kForm2},
    {"Form3", "form3", ScreenShape::child, kForm3},
    {"Form4", "form4", ScreenShape::child, kForm4},
    {"Form5", "form5", ScreenShape::child, kForm5},
    {"Form7", "form7", ScreenShape::child, kForm7},
    {"FormBorefrict", "frmboref", ScreenShape::dialog, kFormBorefrict},
    {"frmFast", "frmfast", ScreenShape::floating, kFrmFast},
    {"FormPsel", "frmpsel", ScreenShape::dialog, kFormPsel},
    {"FormGetInput", "FormGetInput", ScreenShape::dialog, kGetInput},
    {"frmHelp", "frmHelp", ScreenShape::dialog, kHelp},
    {"frmPic", "frmPic", ScreenShape::dialog, kPic},
};

}  // namespace

std::span<const ScreenInfo> screen_table() { return kScreens; }

const ScreenInfo* screen_info(std::string_view screen) {
  const auto* at =
      std::ranges::find_if(kScreens, [&](const ScreenInfo& info) { return info.name == screen; });
  return at == std::end(kScreens) ? nullptr : at;
}

const Control* control_info(std::string_view screen, std::string_view control) {
  const ScreenInfo* info = screen_info(screen);
  if (!info) return nullptr;
  const auto at = std::ranges::find_if(info->controls, [&](const Control& c) { return c.name == control; });
  return at == info->controls.end() ? nullptr : &*at;
}

Screens make_screens() {
  Screens screens;
  for (const ScreenInfo& info : kScreens) {
    Screen& screen = screens[info.name];
    for (const Control& control : info.controls) screen.fields[control.name];
  }
  return screens;
}

std::string control_name(std::string_view name) {
  std::string plain;
  for (const char c : name)
    if (c != '(' && c != ')') plain += c;
  return plain;
}

}  // namespace tv
