#include "gui/window_commands.h"

#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <QMdiSubWindow>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "gui/captions.h"
#include "gui/main_frame.h"
#include "gui/painter.h"
#include "gui/palettes.h"
#include "gui/print_view.h"
#include "gui/small_labels.h"
#include "gui/tiled_desk.h"
#include "gui/windows.h"
#include "screens/output_window.h"
#include "session/file_names.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/settings.h"
#include "text/file.h"

namespace tv {
namespace {

// The design size of the frame and the bounds of its zoom, in twips.
constexpr double kDesignWidth = 12084, kDesignHeight = 8040;
constexpr double kLeastWidth = 6042, kMostWidth = 24168, kLeastHeight = 4020, kMostHeight = 16056;
constexpr double kZoomStep = 1.02;

void store_zoom(Desk& desk, double width, double height, bool resize) {
  Options& options = desk.session().options;
  options.wisizx = std::clamp(width, kLeastWidth, kMostWidth);
  options.wisizy = std::clamp(height, kLeastHeight, kMostHeight);
  options.resize = resize;
  store_options(desk.session(), {"wisizx", "wisizy", "resize"});
  apply_fonts(desk);
}

// The frame, and windows of their own with it; what stands on a tiled desk follows by itself.
void zoom(Desk& desk, double by_x, double by_y) {
  const Options& options = desk.session().options;
  const double before_x = std::max(1.0, options.wisizx), before_y = std::max(1.0, options.wisizy);
  store_zoom(desk, before_x * by_x, before_y * by_y, true);
  by_x = options.wisizx / before_x;
  by_y = options.wisizy / before_y;
  MainFrame& frame = *desk.frame();
  const QSize room = frame.screen()->availableSize();
  if (!frame.isMaximized() && !frame.isFullScreen())
    frame.resize(QSize(static_cast<int>(frame.width() * by_x), static_cast<int>(frame.height() * by_y))
                     .boundedTo(room));
  if (desk.tiled()) return;
  for (QMdiSubWindow* child : frame.area().subWindowList())
    child->setGeometry(static_cast<int>(child->x() * by_x), static_cast<int>(child->y() * by_y),
                       static_cast<int>(child->width() * by_x), static_cast<int>(child->height() * by_y));
}

// Into the room that the desktop leaves, its own title and border included.
void fit_to_screen(Desk& desk) {
  MainFrame& frame = *desk.frame();
  if (frame.isMaximized() || frame.isFullScreen()) frame.showNormal();
  const QRect room = frame.screen()->availableGeometry();
  const QRect outer = frame.frameGeometry(), inner = frame.geometry();
  frame.setGeometry(room.adjusted(inner.left() - outer.left(), inner.top() - outer.top(),
                                  inner.right() - outer.right(), inner.bottom() - outer.bottom()));
}

void standard_size(Desk& desk) {
  const Options& options = desk.session().options;
  zoom(desk, kDesignWidth / options.wisizx, kDesignHeight / options.wisizy);
  store_zoom(desk, kDesignWidth, kDesignHeight, false);
}

// Shows the window, pane or tab and gives it the focus; a window of its own comes to the middle.
void centre(Desk& desk, const char* screen) {
  View* view = desk.view(screen);
  if (!view) return;
  desk.show_in_front(screen);
  for (QWidget* part : {view->apart, view->root})
    for (QWidget* field : part ? part->findChildren<QWidget*>() : QList<QWidget*>())
      if (field->isVisible() && (field->focusPolicy() & Qt::TabFocus)) {
        if (desk.tiled()) desk.frame()->tiles().reveal(field);
        if (desk.tiled()) return field->setFocus(Qt::ShortcutFocusReason);
        break;
      }
  if (desk.tiled()) return;
  auto* child = static_cast<QMdiSubWindow*>(view->window);
  desk.frame()->area().setActiveSubWindow(child);
  const QSize room = desk.frame()->area().viewport()->size();
  child->move(std::max(0, (room.width() - child->width()) / 2),
              std::max(0, (room.height() - child->height()) / 2));
}

void choose_screen_font(Desk& desk) {
  Options& options = desk.session().options;
  bool chosen = false;
  const QFont font = QFontDialog::getFont(&chosen, desk.frame()->font(), desk.frame());
  if (!chosen) return;
  options.scrfon = utf8(font.family());
  options.scrsiz = font.pointSizeF();
  options.scrbld = font.bold();
  options.scrita = font.italic();
  store_options(desk.session(), {"scrfon", "scrsiz", "scrbld", "scrita"});
  apply_fonts(desk);
}

void choose_print_font(Desk& desk) {
  Options& options = desk.session().options;
  bool chosen = false;
  QFont font(qt(options.pri_font_nam));
  font.setPointSizeF(options.pri_font_siz);
  font = QFontDialog::getFont(&chosen, font, desk.frame());
  if (!chosen) return;
  options.pri_font_nam = utf8(font.family());
  options.pri_font_siz = font.pointSizeF();
  store_options(desk.session(), {"pri_font_nam", "pri_font_siz"});
}

void choose_diagram_font(Desk& desk) {
  Options& options = desk.session().options;
  bool chosen = false;
  const QFont font = QFontDialog::getFont(&chosen, QFont(qt(options.pict_font_nam)), desk.frame());
  if (!chosen) return;
  options.pict_font_nam = utf8(font.family());
  store_option(desk.session(), "pict_font_nam");
}

template <std::optional<Colour> ChosenColours::*Which>
void choose_colour(Desk& desk) {
  std::optional<Colour>& held = desk.session().output.colours.*Which;
  const Colour now = held.value_or(Colour{});
  const QColor chosen = QColorDialog::getColor(QColor(now.r, now.g, now.b), desk.frame());
  if (!chosen.isValid()) return;
  const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
  held = Colour{part(chosen.red()), part(chosen.green()), part(chosen.blue()), 255};
}

// The diagram as it stands in its window, on white paper.
DrawList output_picture(Desk& desk) {
  const QSize size = desk.view("Form7")->control("Pict1")->size();
  return output_diagram(desk.session(), size.width(), size.height(), qt_text_width).list;
}

void copy_picture(Desk& desk) { QApplication::clipboard()->setImage(draw_image(output_picture(desk), 2)); }

// What the output window shows into a file: a picture or a text.
void save_output(Desk& desk) {
  Session& s = desk.session();
  const bool text = output_shows_text(s);
  const int kind = text ? 30 : 31;
  FileBox box{FileMode::save,
              text ? DialogKind::text : DialogKind::picture,
              s.language.fastmsg("flfdial", kind),
              load_folder(s),
              text ? "ternovale.txt" : "ternovale.png",
              s.language.fastmsg("flffilt", kind),
              ""};
  const auto answer = ask_file(
      s, box, text ? std::vector<std::string>{"txt"} : std::vector<std::string>{"png", "bmp", "svg", "pdf"});
  if (!answer) return;
  int failure = 0;
  if (text) {
    std::string lines;
    for (const char c : output_text(s) + "\n" + output_notes(s) + "\n") {
      if (c == '\n') lines += '\r';
      lines += c;
    }
    failure = write_file(answer->file, lines);
  } else {
    failure = save_picture(output_picture(desk), answer->file);
  }
  if (failure)
    warn(s, MessageText(s).msg(420).line().add(answer->file).line().add(s.language.failure(failure)));
}

// Arranging what is arranged so already changes nothing: windows that are free go back in line.
void arrange(Desk& desk, bool tiled) {
  Options& options = desk.session().options;
  if (!tiled && !desk.tiled()) return cascade(desk);
  if (tiled == desk.tiled()) return;
  options.atiles = tiled;
  store_option(desk.session(), "atiles");
  desk.arrange(tiled);
  if (!tiled) cascade(desk);
}

struct WindowCommand {
  std::string_view name;
  void (*run)(Desk&);
};
constexpr WindowCommand kWindowCommands[] = {
    {"zoomdef", standard_size},
    {"zoomwin", fit_to_screen},
    {"zoomoutg", [](Desk& d) { zoom(d, kZoomStep, kZoomStep); }},
    {"zoomouth", [](Desk& d) { zoom(d, kZoomStep, 1); }},
    {"zoomoutv", [](Desk& d) { zoom(d, 1, kZoomStep); }},
    {"zooming", [](Desk& d) { zoom(d, 1 / kZoomStep, 1 / kZoomStep); }},
    {"zoominh", [](Desk& d) { zoom(d, 1 / kZoomStep, 1); }},
    {"zoominv", [](Desk& d) { zoom(d, 1, 1 / kZoomStep); }},
    {"metr", [](Desk& d) { centre(d, "Form3"); }},
    {"powd", [](Desk& d) { centre(d, "Form4"); }},
    {"result", [](Desk& d) { centre(d, "Form5"); }},
    {"diagra", [](Desk& d) { centre(d, "Form7"); }},
    {"abbrandfunktion", [](Desk& d) { centre(d, "Form9"); }},
    {"index", [](Desk& d) { show_manual(d, d.active_screen()); }},
    {"shortcuts", show_shortcuts},
    {"look_system", [](Desk& d) { apply_look(d.session().options.look); }},
    {"look_light", [](Desk& d) { apply_look(d.session().options.look); }},
    {"look_dark", [](Desk& d) { apply_look(d.session().options.look); }},
    {"prifontsel", choose_print_font},
    {"sysfon", choose_screen_font},
    {"arrng_wins", [](Desk& d) { arrange(d, true); }},
    {"arrng_stag", [](Desk& d) { arrange(d, false); }},
    {"filewrite", save_output},
    {"PrSetup", edit_page_setup},
    {"copypic", copy_picture},
    {"copytab", [](Desk& d) { QApplication::clipboard()->setText(qt(output_tsv(d.session()))); }},
    {"afonts", choose_diagram_font},
    {"acolor", choose_colour<&ChosenColours::paper>},
    {"ax_l", choose_colour<&ChosenColours::left>},
    {"ax_r", choose_colour<&ChosenColours::right>},
    {"ax_ref", choose_colour<&ChosenColours::reference>},
};

std::vector<QMdiSubWindow*> open_children(Desk& desk) {
  std::vector<QMdiSubWindow*> open;
  for (QMdiSubWindow* child : desk.frame()->area().subWindowList())
    if (!child->isHidden()) open.push_back(child);
  return open;
}

}  // namespace

void run_window_command(Desk& desk, std::string_view command) {
  if (const auto report = report_of(command); report && desk.frame()) return preview_report(desk, *report);
  const auto* at = std::ranges::find(kWindowCommands, command, &WindowCommand::name);
  if (at != std::end(kWindowCommands) && desk.frame()) at->run(desk);
}

void cascade(Desk& desk) {
  int step = 0;
  for (QMdiSubWindow* child : open_children(desk)) {
    child->showNormal();
    child->setGeometry(QRect(QPoint(28 * step, 28 * step), child->sizeHint()));
    child->raise();
    ++step;
  }
}

void apply_fonts(Desk& desk) {
  const Options& options = desk.session().options;
  QFont font = QApplication::font();
  // A font that the system lacks falls back to the desktop's own.
  if (QFontDatabase::hasFamily(qt(options.scrfon))) {
    font.setFamily(qt(options.scrfon));
    font.setPointSizeF(std::clamp(options.scrsiz, 5.0, 40.0));
    font.setBold(options.scrbld);
    font.setItalic(options.scrita);
  }
  // On a tiled desk the zoom is that of the frame alone.
  if (options.resize && !desk.tiled() && font.pointSizeF() > 0)
    font.setPointSizeF(font.pointSizeF() *
                       std::min(options.wisizx / kDesignWidth, options.wisizy / kDesignHeight));
  desk.frame()->setFont(font);
  rescale_labels(desk.frame());
}

}  // namespace tv
