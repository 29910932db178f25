#include "gui/file_dialog.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include "gui/captions.h"
#include "session/file_names.h"

namespace tv {
namespace {

class FileDialog : public QDialog {
public:
  FileDialog(Session& s, const FileBox& box, QWidget* parent);
  FileAnswer answer() const;

protected:
  void keyPressEvent(QKeyEvent* event) override {
    // Enter in the comment or the folder list belongs to them.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        (comment_->hasFocus() || folders_->hasFocus()))
      return;
    QDialog::keyPressEvent(event);
  }

private:
  template <class W>
  W* add(W* widget, const char* name, const char* label, QGridLayout& grid, int row, int column,
         int across = 1);
  void go_to(const QString& folder);
  void list_files();
  void use_name();
  void picked();
  void take_type();

  Session& session_;
  FileBox box_;
  QDir folder_;
  QString wildcard_;
  QLabel* where_;
  QListWidget *folders_, *files_;
  QLineEdit* name_;
  QComboBox* type_;
  QPlainTextEdit* comment_;
};

template <class W>
W* FileDialog::add(W* widget, const char* name, const char* label, QGridLayout& grid, int row, int column,
                   int across) {
  widget->setObjectName(name);
  auto* caption = new QLabel(this);
  caption->setProperty(kCaptionKey, QString(label));
  caption->setBuddy(widget);
  widget->setProperty("label_key", QString(label));
  grid.addWidget(caption, row, column);
  grid.addWidget(widget, row + 1, column, 1, across);
  return widget;
}

FileDialog::FileDialog(Session& s, const FileBox& box, QWidget* parent)
    : QDialog(parent), session_(s), box_(box) {
  setObjectName("file_dialog");
  auto* grid = new QGridLayout(this);
  where_ = new QLabel(this);
  where_->setObjectName("lblAktDir");
  where_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  grid->addWidget(where_, 0, 0, 1, 2);
  name_ = add(new QLineEdit(this), "NamenFeld", "filename", *grid, 1, 1);
  type_ = add(new QComboBox(this), "combo1", "types", *grid, 5, 1);
  folders_ = add(new QListWidget(this), "verzeichnis", "dirs", *grid, 1, 0);
  grid->addWidget(folders_, 2, 0, 3, 1);
  files_ = new QListWidget(this);
  files_->setObjectName("filFiles");
  files_->setProperty("label_key", "filename");
  grid->addWidget(files_, 3, 1, 2, 1);
  comment_ = add(new QPlainTextEdit(this), "kommentar", "comment", *grid, 7, 0, 2);
  comment_->setReadOnly(box.mode == FileMode::open);
  comment_->setTabChangesFocus(true);
  grid->setRowStretch(4, 3);
  grid->setRowStretch(8, 1);
  grid->setColumnStretch(1, 2);
  grid->setColumnStretch(0, 1);

  auto* row = new QHBoxLayout;
  row->addStretch(1);
  auto* ok = new QPushButton(this);
  ok->setObjectName("accept");
  ok->setProperty(kCaptionKey, "ok");
  ok->setDefault(true);
  auto* cancel = new QPushButton(this);
  cancel->setObjectName("abbruch");
  cancel->setProperty(kCaptionKey, "cancel");
  row->addWidget(ok);
  row->addWidget(cancel);
  grid->addLayout(row, 9, 0, 1, 2);

  const QStringList types = qt(box.types).split('|', Qt::SkipEmptyParts);
  for (qsizetype i = 0; i + 1 < types.size(); i += 2) type_->addItem(types[i], types[i + 1]);
  type_->addItem("All Files (*.*)", "*");

  apply_captions(this, s, "files");
  setWindowTitle(qt(box.title));
  name_->setText(QFile::decodeName(box.name.c_str()));
  comment_->setPlainText(qt(box.comment));
  const QString start = QFile::decodeName(box.folder.c_str());
  go_to(QDir(start).exists() ? start : QFile::decodeName(s.roots.root.c_str()));
  name_->setFocus();
  name_->selectAll();
  QWidget* order[] = {name_, files_, type_, folders_, comment_, ok, cancel};
  for (std::size_t i = 0; i + 1 < std::size(order); ++i) setTabOrder(order[i], order[i + 1]);

  connect(ok, &QPushButton::clicked, this, [this] { use_name(); });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(type_, &QComboBox::activated, this, [this] {
    wildcard_.clear();
    list_files();
    take_type();
  });
  // Not the current item: the list takes one by itself when it gets the focus.
  connect(files_, &QListWidget::itemSelectionChanged, this, [this] { picked(); });
  connect(files_, &QListWidget::itemClicked, this, [this] { picked(); });
  connect(files_, &QListWidget::itemDoubleClicked, this, [this] { use_name(); });
  connect(folders_, &QListWidget::itemActivated, this,
          [this](const QListWidgetItem* item) { go_to(folder_.filePath(item->text())); });
}

void FileDialog::go_to(const QString& folder) {
  folder_ = QDir(QDir::cleanPath(QDir(folder).absolutePath()));
  where_->setText(folder_.absolutePath());
  folders_->clear();
  if (!folder_.isRoot()) folders_->addItem("..");
  folders_->addItems(folder_.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase));
  list_files();
}

void FileDialog::list_files() {
  const QString pattern = wildcard_.isEmpty() ? type_->currentData().toString() : wildcard_;
  files_->clear();
  files_->addItems(folder_.entryList(pattern.split(';'), QDir::Files, QDir::Name | QDir::IgnoreCase));
}

// The extension of the chosen type, when saving.
void FileDialog::take_type() {
  const QString type = type_->currentData().toString();
  const QString stem = QFileInfo(name_->text().trimmed()).completeBaseName();
  if (box_.mode == FileMode::save && type.startsWith("*.") && !stem.isEmpty())
    name_->setText(stem + type.mid(1));
}

// The name goes into its field; what the file says of itself is shown when opening.
void FileDialog::picked() {
  const QList<QListWidgetItem*> chosen = files_->selectedItems();
  if (chosen.isEmpty()) return;
  const QListWidgetItem* item = chosen.first();
  name_->setText(item->text());
  if (box_.mode == FileMode::open)
    comment_->setPlainText(qt(
        file_preview(session_, box_.kind, QFile::encodeName(folder_.filePath(item->text())).toStdString())));
}

// A folder is entered, a wildcard becomes the pattern, anything else is the answer.
void FileDialog::use_name() {
  const QString typed = name_->text().trimmed();
  if (typed.contains('*') || typed.contains('?')) {
    wildcard_ = typed;
    list_files();
  } else if (!typed.isEmpty() && QFileInfo(folder_.filePath(typed)).isDir()) {
    go_to(folder_.filePath(typed));
    name_->clear();
  } else {
    accept();
  }
}

FileAnswer FileDialog::answer() const {
  const QString typed = name_->text().trimmed();
  const QString path = typed.isEmpty() ? folder_.absolutePath() + '/' : folder_.filePath(typed);
  return {QFile::encodeName(path).toStdString(), utf8(comment_->toPlainText())};
}

}  // namespace

std::optional<FileAnswer> run_file_dialog(Session& s, const FileBox& box, QWidget* parent) {
  FileDialog dialog(s, box, parent);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.answer();
}

}  // namespace tv
