#include "gui/file_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStandardPaths>
#include <algorithm>

#include "gui/captions.h"
#include "gui/entry_filter.h"
#include "session/file_names.h"
#include "session/load_files.h"

namespace tv {
namespace {

// A place beside those of the system, under a name of the program's own.
struct NamedPlace {
  QUrl url;
  QString name;
};

// The toolkit's dialog. What a name must be is tested by the caller, who asks again: the dialog itself accepts
// whatever was typed.
class FileDialog : public QFileDialog {
public:
  FileDialog(Session& s, const FileBox& box, QWidget* parent);
  ~FileDialog() override { setSidebarUrls(system_places_); }  // the toolkit keeps them, for all programs
  FileAnswer answer() const;
  void accept() override;

protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || !comment_->hasFocus()) QFileDialog::keyPressEvent(event);
  }
  // A name that the toolkit finds too long is refused in words.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == ok_ && event->type() == QEvent::EnabledChange && !ok_->isEnabled()) ok_->setEnabled(true);
    return QFileDialog::eventFilter(watched, event);
  }

private:
  template <class W>
  W* part(const char* toolkits_name, const char* name, const char* label);
  QString caption(const char* key) const { return qt(session_.language.text("files", key)); }
  void set_types();
  void set_captions();
  void add_comment();
  void add_places();
  void name_places();
  void take_type(int type);
  void preview(const QString& file);

  Session& session_;
  FileBox box_;
  QStringList patterns_;  // of the types
  QList<QUrl> system_places_;
  std::vector<NamedPlace> places_;
  QLineEdit* name_;
  QListView* sidebar_;
  QPushButton* ok_;
  QLabel* where_;
  QPlainTextEdit* comment_;
};

bool holds_comment(DialogKind kind) {
  constexpr DialogKind kKinds[] = {DialogKind::load,     DialogKind::bullets,  DialogKind::cartridges,
                                   DialogKind::powders,  DialogKind::guns,     DialogKind::black_powders,
                                   DialogKind::vivacity, DialogKind::reference};
  return std::ranges::find(kKinds, kind) != std::end(kKinds);
}

template <class W>
W* FileDialog::part(const char* toolkits_name, const char* name, const char* label) {
  W* widget = findChild<W*>(toolkits_name);
  widget->setObjectName(name);
  widget->setProperty("label_key", label);
  apply_captions(widget, session_, "files");
  return widget;
}

FileDialog::FileDialog(Session& s, const FileBox& box, QWidget* parent)
    : QFileDialog(parent), session_(s), box_(box) {
  const bool save = box.mode == tv::FileMode::save;
  setObjectName("file_dialog");
  setProperty(kOwnSection, true);
  setOption(DontUseNativeDialog);  // only the toolkit's own has room for the comment
  setOption(DontConfirmOverwrite);
  setOption(DontUseCustomDirectoryIcons);
  setFileMode(AnyFile);
  setAcceptMode(save ? AcceptSave : AcceptOpen);
  system_places_ = sidebarUrls();
  name_ = part<QLineEdit>("fileNameEdit", "NamenFeld", "filename");
  sidebar_ = part<QListView>("sidebar", "verzeichnis", "dirs");
  part<QListView>("listView", "filFiles", "filename");
  auto* type = part<QComboBox>("fileTypeCombo", "combo1", "types");
  auto* buttons = findChild<QDialogButtonBox*>("buttonBox");
  ok_ = buttons->button(save ? QDialogButtonBox::Save : QDialogButtonBox::Open);
  ok_->setObjectName("accept");
  ok_->installEventFilter(this);
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("abbruch");
  add_comment();
  set_types();
  set_captions();
  add_places();
  const QString start = QFile::decodeName(box.folder.c_str());
  setDirectory(QDir(start).exists() ? start : QFile::decodeName(s.roots.root.c_str()));
  where_->setText(directory().absolutePath());
  name_->setText(QFile::decodeName(box.name.c_str()));
  // Wide enough for the names of the places.
  const int unit = fontMetrics().horizontalAdvance('n');
  resize(std::max(width(), unit * 100), std::max(height(), unit * 60));
  if (auto* both = findChild<QSplitter*>("splitter")) both->setSizes({unit * 22, unit * 78});
  name_->setFocus();
  name_->selectAll();
  ok_->setEnabled(true);
  connect(this, &QFileDialog::directoryEntered, where_, &QLabel::setText);
  connect(this, &QFileDialog::currentChanged, this, [this](const QString& file) { preview(file); });
  connect(type, &QComboBox::activated, this, [this](int chosen) { take_type(chosen); });
}

// Below the names: what is told of the file when opening, its comment when saving, and the folder in full.
void FileDialog::add_comment() {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  auto* label = new QLabel(this);
  comment_ = new QPlainTextEdit(qt(box_.comment), this);
  comment_->setObjectName("kommentar");
  comment_->setReadOnly(box_.mode == tv::FileMode::open);
  comment_->setTabChangesFocus(true);
  comment_->setFixedHeight(fontMetrics().height() * 5);
  keep_to_page(comment_, session_);
  const char* key = box_.mode == tv::FileMode::open && box_.kind == DialogKind::load ? "preview" : "comment";
  label->setProperty(kCaptionKey, key);
  comment_->setProperty("label_key", key);
  label->setBuddy(comment_);
  where_ = new QLabel(this);
  where_->setObjectName("lblAktDir");
  where_->setTextFormat(Qt::PlainText);
  where_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  where_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  const int row = grid->rowCount();
  grid->addWidget(label, row, 0, Qt::AlignTop);
  grid->addWidget(comment_, row, 1, 1, grid->columnCount() - 1);
  grid->addWidget(where_, row + 1, 0, 1, grid->columnCount());
  for (QWidget* widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(comment_)}) {
    apply_captions(widget, session_, "files");
    widget->setVisible(holds_comment(box_.kind) || !box_.comment.empty());
  }
}

// "Text (*.txt)|*.txt|..." and all files behind them.
void FileDialog::set_types() {
  QStringList filters;
  const QStringList types = qt(box_.types).split('|', Qt::SkipEmptyParts);
  for (qsizetype i = 0; i + 1 < types.size(); i += 2) {
    patterns_ << types[i + 1];
    const QString patterns = QString(types[i + 1]).replace(';', ' ');
    filters << types[i].section('(', 0, 0).trimmed() + " (" + patterns + ')';
  }
  patterns_ << "*";
  setNameFilters(filters << "All Files (*)");
}

void FileDialog::set_captions() {
  setWindowTitle(qt(box_.title));
  constexpr std::pair<DialogLabel, const char*> kLabels[] = {
      {FileName, "filename"}, {FileType, "types"}, {Reject, "cancel"}};
  for (const auto& [label, key] : kLabels)
    if (!caption(key).isEmpty()) setLabelText(label, caption(key));
  if (const QString text = caption(box_.mode == tv::FileMode::save ? "save" : "open"); !text.isEmpty())
    setLabelText(Accept, text);
}

void FileDialog::add_places() {
  if (box_.kind == DialogKind::load)
    for (const auto& [folder, key] :
         {std::pair{own_loads(session_), "myloads"}, {example_loads(session_), "examples"}})
      if (const QDir dir(QFile::decodeName(folder.c_str())); dir.exists())
        places_.push_back({QUrl::fromLocalFile(dir.canonicalPath()), caption(key)});
  QList<QUrl> urls;
  for (const NamedPlace& place : places_) urls << place.url;
  for (const QUrl& url : system_places_ << QUrl::fromLocalFile(
                             QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)))
    if (!urls.contains(url)) urls << url;
  system_places_.removeLast();
  setSidebarUrls(urls);
  name_places();
  connect(sidebar_->model(), &QAbstractItemModel::dataChanged, this, [this] { name_places(); });
}

// The toolkit names a place as its folder is called.
void FileDialog::name_places() {
  constexpr int kUrlRole = Qt::UserRole + 1;  // of the toolkit's model
  QAbstractItemModel* model = sidebar_->model();
  for (int row = 0; row < model->rowCount(); ++row) {
    const QModelIndex at = model->index(row, 0);
    const auto place = std::ranges::find(places_, at.data(kUrlRole).toUrl(), &NamedPlace::url);
    if (place != places_.end() && at.data().toString() != place->name) model->setData(at, place->name);
  }
}

// The extension of the chosen type, when saving.
void FileDialog::take_type(int type) {
  const QString pattern = type < patterns_.size() ? patterns_[type] : QString();
  const QString stem = QFileInfo(name_->text().trimmed()).completeBaseName();
  if (box_.mode == tv::FileMode::save && pattern.startsWith("*.") && !stem.isEmpty())
    name_->setText(stem + pattern.mid(1));
}

void FileDialog::preview(const QString& file) {
  if (box_.mode == tv::FileMode::open && QFileInfo(file).isFile())
    comment_->setPlainText(qt(file_preview(session_, box_.kind, QFile::encodeName(file).toStdString())));
}

// A folder is entered, a wildcard becomes the pattern, anything else is the answer.
void FileDialog::accept() {
  const QString typed = name_->text().trimmed();
  if (typed.contains('*') || typed.contains('?')) {
    if (auto* model = findChild<QFileSystemModel*>()) model->setNameFilters(typed.split(';'));
  } else if (!typed.isEmpty() && QFileInfo(directory().filePath(typed)).isDir()) {
    setDirectory(directory().filePath(typed));
    where_->setText(directory().absolutePath());
    name_->clear();
  } else {
    QDialog::accept();
  }
}

FileAnswer FileDialog::answer() const {
  const QString typed = name_->text().trimmed();
  const QString path = typed.isEmpty() ? directory().absolutePath() + '/' : directory().filePath(typed);
  return {QFile::encodeName(path).toStdString(), utf8(comment_->toPlainText())};
}

}  // namespace

std::optional<FileAnswer> run_file_dialog(Session& s, const FileBox& box, QWidget* parent) {
  FileDialog dialog(s, box, parent);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.answer();
}

}  // namespace tv
