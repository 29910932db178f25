#include "gui/menus.h"

#include <QActionGroup>
#include <QPainter>
#include <algorithm>

#include "gui/captions.h"
#include "gui/icons.h"
#include "gui/program_style.h"
#include "session/load_files.h"
#include "text/file.h"

namespace tv {
namespace {

QKeySequence key_of(const Command& command) {
  return QKeySequence::fromString(command.shortcut, QKeySequence::PortableText);
}

// The one button of the toolbar that stands out, with its caption and its key.
class FilledButton : public QToolButton {
public:
  explicit FilledButton(QWidget* parent) : QToolButton(parent) {
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  }
  void show_text(const QString& caption, const QKeySequence& key) {
    const QString shown = caption + "  " + key.toString(QKeySequence::NativeText);
    if (text() != shown) setText(shown);
  }
  QSize sizeHint() const override {
    const QFontMetrics metrics(bold());
    return {metrics.horizontalAdvance(text()) + 24, std::max(metrics.height() + 12, iconSize().height() + 6)};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = filled_colour(palette());
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::WindowText), 2) : QPen(Qt::NoPen));
    painter.setBrush(isDown() ? fill.darker(115) : underMouse() ? fill.lighter(108) : fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 5, 5);
    painter.setPen(palette().color(QPalette::Active, QPalette::HighlightedText));
    painter.setFont(bold());
    painter.drawText(rect(), Qt::AlignCenter, text());
  }

private:
  QFont bold() const {
    QFont font = this->font();
    font.setBold(true);
    return font;
  }
};

void run(Desk& desk, const Command& command) {
  desk.act([&] { run_command(desk.session(), command.name); });
}

}  // namespace

Menus::Menus(Desk& desk, QMenuBar& bar, std::string_view section)
    : desk_(desk), bar_(bar), section_(section) {
  for (const Command& command : commands())
    if (command.section == section_) add(command);
}

void Menus::add(const Command& command) {
  QMenu* parent = command.parent ? menus_[command.parent] : nullptr;
  if (command.parent && !parent) return;
  QAction* const gap = parent && command.separator_before ? parent->addSeparator() : nullptr;
  if (std::string_view(command.name) == "Ende") {
    above_exit_ = gap;
    parent->insertSeparator(gap);
  }
  if (!command.parent || is_menu(command)) {
    QMenu* menu = parent ? parent->addMenu(QString()) : bar_.addMenu(QString());
    menu->setObjectName(command.name);
    menu->setToolTipsVisible(true);
    if (command.literal) menu->setProperty(kFixedText, command.literal);
    menus_[command.name] = menu;
    return;
  }
  QAction* action = parent->addAction(QString());
  action->setObjectName(command.name);
  if (command.literal) action->setProperty(kFixedText, command.literal);
  if (command.shortcut) {
    action->setShortcut(key_of(command));
    action->setShortcutContext(Qt::ApplicationShortcut);  // also over the floating quick start
  }
  if (const QIcon icon = command_icon(command.name); !icon.isNull()) action->setIcon(icon);
  action->setCheckable(command.checked != nullptr);
  action->setProperty(kEllipsis, opens_dialog(command));
  // Which one is chosen the command itself tells: the group gives them the look of options.
  if (is_exclusive(command)) {
    auto* group = new QActionGroup(action);
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::Exclusive);
    group->addAction(action);
  }
  QObject::connect(action, &QAction::triggered, &bar_, [this, &command] { run(desk_, command); });
  actions_[command.name] = action;
}

QAction* Menus::action(std::string_view command) const {
  const auto at = actions_.find(command);
  return at == actions_.end() ? nullptr : at->second;
}

void Menus::recaption() {
  for (const auto& [name, menu] : menus_) apply_captions(menu, desk_.session(), section_);
}

void Menus::refresh() {
  const Session& s = desk_.session();
  for (const auto& [name, entry] : actions_) {
    const Command& command = *find_command(name);
    entry->setEnabled(command_enabled(s, command));
    if (command.checked) entry->setChecked(command_checked(s, command));
  }
  refresh_recent();
  for (const auto& [name, menu] : menus_)
    menu->menuAction()->setVisible(command_enabled(s, *find_command(name)));
}

// The recent loads stand in a menu of their own and, where the hand looks for them, above the exit.
void Menus::refresh_recent() {
  const auto menu = menus_.find("lab_recent");
  if (menu == menus_.end()) return;
  QMenu* const files = menus_.at("Datei_menu");
  const std::vector<std::string>& loads = desk_.session().recent;
  while (recent_.size() > loads.size()) {
    delete recent_.back();
    recent_.pop_back();
  }
  while (recent_.size() < loads.size()) {
    const int index = static_cast<int>(recent_.size());
    QAction* const entry = menu->second->addAction(QString());
    files->insertAction(above_exit_, entry);
    recent_.push_back(entry);
    QObject::connect(entry, &QAction::triggered, &bar_,
                     [this, index] { desk_.act([&] { recent_open(desk_.session(), index); }); });
  }
  for (std::size_t i = 0; i < loads.size(); ++i) {
    QString name = QString::fromLocal8Bit(loads[i].c_str());
    while (name.endsWith('.')) name.chop(1);
    const QString shown = name.section('/', -1).replace('&', "&&");
    recent_[i]->setText(QString("&%1 %2").arg(i + 1).arg(shown));
    recent_[i]->setToolTip(plain_tip(name));
  }
}

ToolButtons::ToolButtons(Desk& desk, QToolBar& bar) : desk_(desk), bar_(bar) {
  bar.setObjectName("toolbar_box");
  bar.setMovable(false);
  bar.setContextMenuPolicy(Qt::PreventContextMenu);
  bar.setIconSize({24, 24});
  for (const Command& command : commands())
    if (command.toolbar >= 0) buttons_.emplace_back(&command, nullptr);
  std::ranges::sort(buttons_, {}, [](const auto& entry) { return entry.first->toolbar; });
  int before = -1;
  for (auto& [command, button] : buttons_) {
    // A gap between files, diagrams, tables and what changes the view.
    for (const int gap : {3, 7, 13, 16})
      if (before >= 0 && before < gap && command->toolbar >= gap) {
        bar.addSeparator();
        break;
      }
    before = command->toolbar;
    button = command->toolbar == 0 ? new FilledButton(&bar) : new QToolButton(&bar);
    button->setObjectName("button_img" + QString::number(command->toolbar));
    button->setIcon(command_icon(command->name));
    button->setIconSize(bar.iconSize());
    button->setAutoRaise(true);
    button->setCheckable(command->checked != nullptr);
    button->setFocusPolicy(Qt::TabFocus);
    QObject::connect(button, &QToolButton::clicked, &bar,
                     [this, command = command] { run(desk_, *command); });
    bar.addWidget(button);
  }
}

void ToolButtons::refresh() {
  const Session& s = desk_.session();
  for (auto& [command, button] : buttons_) {
    button->setEnabled(command_enabled(s, *command));
    if (command->checked) button->setChecked(command_checked(s, *command));
    if (auto* filled = dynamic_cast<FilledButton*>(button))
      filled->show_text(qt(s.language.text("frmMAIN", utf8(filled->objectName()))), key_of(*command));
  }
  bar_.setVisible(s.options.symbol);
}

}  // namespace tv
