// Screens whose windows are widgets of their own: main frame, safety notice, input box, about, picture
// viewer.
#include <algorithm>

#include "screens/all.h"
#include "session/entry.h"
#include "session/language_switch.h"
#include "session/settings.h"

namespace tv {
namespace {

constexpr Place view(const char* control) { return {control, ControlKind::view}; }

// --- frmMAIN

constexpr Row kFrameRows[] = {
    {RowShape::bare, nullptr, {display("toolbar_box"), display("Picture1"), display("status_line")}}};
constexpr Group kFrameForm[] = {{nullptr, 0, kFrameRows}};

void refresh_frame(Session& s) { set_text(s, "frmMAIN", "status_line", s.status); }

// --- Form2: the safety notice

constexpr const char* kNotice = "Form2";
constexpr Row kNoticeRows[] = {
    {RowShape::bare, nullptr, {button("page_up"), button("page_down")}},
    {RowShape::bare, nullptr, {check("acceptiert"), check("Check2")}},
    {RowShape::buttons, nullptr, {button("weiter"), button("schluss"), {"wechsel", ControlKind::combo}}},
    {RowShape::block, nullptr, {view("notice"), display("version_line")}},
};
constexpr Group kNoticeForm[] = {{nullptr, 0, kNoticeRows}};

void open_notice(Session& s) {
  field(s, kNotice, "acceptiert").checked = false;
  set_text(s, kNotice, "version_line", std::string(kProgramName) + " " + kVersion);
}
void agree(Session& s, int) {
  s.options.accept = field(s, kNotice, "Check2").checked;
  store_option(s, "accept");
  s.notice_agreed = true;
  hide_screen(s, kNotice);
}
void refuse(Session& s, int) {
  s.end_requested = true;
  hide_screen(s, kNotice);
}
// Each in its own words, so that its reader knows it.
constexpr const char* kLanguageNames[] = {"English", "Deutsch", "Français", "Русский"};
void choose_language(Session& s, int n) {
  language_switch(s, delivered_languages()[static_cast<std::size_t>(n)].name);
}
void refresh_languages(Session& s) {
  Field& list = field(s, kNotice, "wechsel");
  const auto languages = delivered_languages();
  list.items.clear();
  for (std::size_t i = 0; i < languages.size(); ++i) {
    list.items.push_back({kLanguageNames[i]});
    if (s.language.name() == languages[i].name) list.selected = static_cast<int>(i);
  }
  list.text = list.selected < 0 ? std::string() : kLanguageNames[list.selected];
}
constexpr ControlAction kNoticeActions[] = {
    {"weiter", agree}, {"schluss", refuse}, {"wechsel", choose_language}};

void refresh_notice(Session& s) {
  refresh_languages(s);
  field(s, kNotice, "weiter").enabled = field(s, kNotice, "acceptiert").checked;
}

// --- FormGetInput, frmHelp, frmPic

constexpr Row kInputRows[] = {{RowShape::bare, nullptr, {display("prompt"), {"answer", ControlKind::text}}},
                              {RowShape::buttons, nullptr, {button("ok"), button("cancel")}}};
constexpr Group kInputForm[] = {{nullptr, 0, kInputRows}};

constexpr Row kHelpRows[] = {{RowShape::bare, nullptr, {display("version"), view("licences")}},
                             {RowShape::buttons, nullptr, {button("close")}}};
constexpr Group kHelpForm[] = {{nullptr, 0, kHelpRows}};

constexpr Row kPictureRows[] = {
    {RowShape::block, nullptr, {view("picture")}},
    {RowShape::buttons,
     nullptr,
     {button("zoom_in"), button("zoom_out"), button("fit"), button("full"), button("close")}}};
constexpr Group kPictureForm[] = {{nullptr, 0, kPictureRows}};

constexpr const char* kHelp = "frmHelp";
constexpr const char* kPicture = "frmPic";
constexpr ControlAction kHelpActions[] = {{"close", [](Session& s, int) { hide_screen(s, kHelp); }}};
constexpr ControlAction kPictureActions[] = {{"close", [](Session& s, int) { hide_screen(s, kPicture); }}};

}  // namespace

extern const ScreenSpec kFrmMain{.name = "frmMAIN",
                                 .section = "frmMAIN",
                                 .shape = ScreenShape::frame,
                                 .role = Role::frame,
                                 .form = kFrameForm,
                                 .refresh = refresh_frame};
extern const ScreenSpec kForm2{.name = kNotice,
                               .section = "form2",
                               .form = kNoticeForm,
                               .actions = kNoticeActions,
                               .open = open_notice,
                               .refresh = refresh_notice};
extern const ScreenSpec kFormGetInput{.name = "FormGetInput", .section = "FormGetInput", .form = kInputForm};
extern const ScreenSpec kFrmHelp{
    .name = kHelp, .section = "frmHelp", .form = kHelpForm, .actions = kHelpActions};
extern const ScreenSpec kFrmPic{
    .name = kPicture, .section = "frmPic", .form = kPictureForm, .actions = kPictureActions};

}  // namespace tv
