// The page of shortcuts: the keys of all commands, and those that no menu shows.
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QTableWidget>
#include <QVBoxLayout>

#include "gui/captions.h"
#include "gui/windows.h"
#include "screens/commands.h"

namespace tv {
namespace {

// Keys that belong to places of the window, not to a command; what they do is a text of the main frame.
struct PlaceKey {
  const char* keys;
  const char* text;
};
constexpr PlaceKey kPlaceKeys[] = {
    {"F6", "key_f6"},
    {"Ctrl+1 \u2026 6", "key_tabs"},
    {"Alt+PgUp", "key_next"},
    {"Enter", "key_enter"},
    {"Space", "key_space"},
    {"Esc", "key_escape"},
    {"\u2191 \u2193", "key_step"},
};

void add_row(QTableWidget& table, const QString& keys, const QString& what) {
  const int row = table.rowCount();
  table.insertRow(row);
  table.setItem(row, 0, new QTableWidgetItem(keys));
  table.setItem(row, 1, new QTableWidgetItem(what));
}

void fill(QTableWidget& table, const Session& s) {
  for (const Command& command : commands())
    if (command.shortcut)
      add_row(table, QKeySequence(command.shortcut).toString(QKeySequence::NativeText),
              plain_caption(qt(s.language.text(command.section, command.name))));
  for (const PlaceKey& key : kPlaceKeys) add_row(table, key.keys, qt(s.language.text("frmMAIN", key.text)));
}

}  // namespace

void show_shortcuts(Desk& desk) {
  const Session& s = desk.session();
  QDialog dialog(QApplication::activeWindow());
  dialog.setObjectName("shortcuts_page");
  dialog.setWindowTitle(plain_caption(qt(s.language.text("frmMAIN", "shortcuts"))) + " - " + kProgramName);
  auto* table = new QTableWidget(0, 2, &dialog);
  fill(*table, s);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  table->setShowGrid(false);
  table->horizontalHeader()->hide();
  table->verticalHeader()->hide();
  table->resizeColumnsToContents();
  table->horizontalHeader()->setStretchLastSection(true);
  table->setAccessibleName(dialog.windowTitle());
  table->setCurrentCell(0, 0);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* column = new QVBoxLayout(&dialog);
  column->addWidget(table, 1);
  column->addWidget(buttons);
  dialog.resize(dialog.fontMetrics().horizontalAdvance('n') * 64, dialog.fontMetrics().height() * 28);
  dialog.exec();
}

}  // namespace tv
