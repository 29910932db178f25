// Every control of every window is placed, captioned, tipped and wide enough, in four languages.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QSlider>
#include <set>

#include "gui/program.h"

namespace tv {
namespace {

constexpr const char* kLanguages[] = {"english", "german", "french", "russian"};
std::string path(const QWidget* widget) {
  return widget->objectName().toStdString() + " (" + widget->metaObject()->className() + ")";
}

// What stands in front of or on a control.
bool has_caption(const QWidget* widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
    return !button->text().isEmpty() || !button->icon().isNull();
  return !widget->accessibleName().isEmpty();
}

// What is typed, chosen or pressed; the hint box and surfaces say themselves what they are.
void check_screen(const View& view, const ScreenSpec& spec) {
  const std::string screen = spec.name;
  for (const Control& control : controls_of(spec)) {
    if (control.kind == ControlKind::display || control.kind == ControlKind::surface) continue;
    auto* widget = view.control(qt(control.name));
    ASSERT_NE(widget, nullptr) << screen << "." << control.name;
    EXPECT_TRUE(has_caption(widget)) << screen << ": no caption: " << path(widget);
    EXPECT_FALSE(widget->toolTip().isEmpty()) << screen << ": no tip: " << path(widget);
  }
}

// A caption is cut when its widget is smaller than it asks to be.
void check_room(QWidget* window, const std::string& where) {
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    const auto* label = qobject_cast<QLabel*>(widget);
    const bool captioned = (label && !label->wordWrap()) || qobject_cast<QAbstractButton*>(widget);
    if (!captioned || widget->objectName().startsWith("qt_") || widget->objectName().startsWith("Scroll") ||
        widget->objectName() == "status_line")
      continue;
    EXPECT_GE(widget->width(), widget->sizeHint().width()) << where << ": cut: " << path(widget);
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << where << ": cut: " << path(widget);
  }
  for (const QGroupBox* group : window->findChildren<QGroupBox*>()) {
    if (!group->isVisible()) continue;
    EXPECT_GE(group->width(), group->fontMetrics().horizontalAdvance(group->title())) << where;
  }
}

TEST(Captions, EveryControlIsCaptionedTippedAndNotCutInFourLanguages) {
  const Home home;
  Running program(home);
  ASSERT_TRUE(program.started);
  program.open();
  program.desk->frame()->resize(1280, 720);
  std::set<QString> cancel;  // of the dialogs that Qt brings, such as those for a font and a colour
  for (const char* language : kLanguages) {
    SCOPED_TRACE(language);
    program.desk->act([&] { language_switch(program.session, language); });
    EXPECT_TRUE(cancel.insert(QCoreApplication::translate("QPlatformTheme", "Cancel")).second);
    program.run("arrng_wins");
    QApplication::processEvents();
    check_room(program.desk->frame(), "tiled");
    program.run("arrng_stag");
    for (const ScreenSpec* spec : program.session.program.screens) {
      const std::string screen = spec->name;
      if (screen == "FormGetInput") continue;  // made anew with each question
      View* view = program.desk->view(screen);
      if (!view) continue;  // the frame
      check_screen(*view, *spec);
      EXPECT_TRUE(view->window->windowTitle().contains(kProgramName)) << screen;
      EXPECT_GT(view->window->windowTitle().size(), qsizetype(std::string_view(kProgramName).size()) + 3)
          << screen << ": no title";
      view->window->show();
      QApplication::processEvents();
      check_room(view->window, screen);
      // The next language finds some of them hidden, as dialogs are.
      if (!qobject_cast<QMdiSubWindow*>(view->window)) view->window->hide();
    }
  }
}

void check_actions(const QList<QAction*>& actions, std::set<QString>& names) {
  std::map<QChar, QString> mnemonics;
  for (const QAction* action : actions) {
    if (action->isSeparator()) continue;
    EXPECT_FALSE(action->text().isEmpty()) << action->objectName().toStdString();
    names.insert(action->menu() ? action->menu()->objectName() : action->objectName());
    const qsizetype at = action->text().indexOf('&');
    if (at >= 0 && action->isVisible()) {
      const QChar key = action->text()[at + 1].toLower();
      EXPECT_FALSE(mnemonics.contains(key))
          << action->text().toStdString() << " and " << mnemonics[key].toStdString();
      mnemonics[key] = action->text();
    }
    if (action->menu()) check_actions(action->menu()->actions(), names);
  }
}

TEST(Menus, HoldEveryCommandCaptionedWithKeysOfTheirOwn) {
  const Home home;
  Running program(home);
  program.open();
  for (const char* language : kLanguages) {
    SCOPED_TRACE(language);
    program.desk->act([&] { language_switch(program.session, language); });
    std::set<QString> names;
    // Both bars, and the buttons of the window in use, answer to the Alt key at the same time.
    const QList<QAction*> bar = program.desk->frame()->menuBar()->actions();
    check_actions(bar + program.desk->view("Form7")->root->findChild<QMenuBar*>()->actions(), names);
    // On the tiled desk they all stand in one window.
    QList<QAction*> all = bar + program.desk->view("Form7")->root->findChild<QMenuBar*>()->actions();
    for (const char* screen : {"Form3", "Form4"})
      for (const QWidget* part : {program.desk->view(screen)->apart, program.desk->view(screen)->root})
        for (const auto* button : part ? part->findChildren<QAbstractButton*>() : QList<QAbstractButton*>())
          if (button->text().contains('&')) all << new QAction(button->text(), program.desk->frame());
    check_actions(all, names);
    for (const Command& command : commands()) EXPECT_TRUE(names.contains(command.name)) << command.name;
  }
}

}  // namespace
}  // namespace tv
