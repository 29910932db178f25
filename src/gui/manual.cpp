// The manual: its pages and their list, search through all of them, pictures no wider than the window, back and
// forward.
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QVBoxLayout>
#include <map>

#include "gui/captions.h"
#include "gui/main_frame.h"
#include "gui/windows.h"
#include "session/file_names.h"

namespace tv {
namespace {

bool has_own_manual(const Session& s) {
  return s.language.name() == "german" || s.language.name() == "english";
}

// The manual is delivered in German and in English, which the other languages show too.
QString manual_folder(const Session& s) {
  const char* language = s.language.name() == "german" ? "manual/de/" : "manual/en/";
  return QFile::decodeName((s.roots.delivered + language).c_str());
}

// The name by which links call a heading.
QString anchor_of(const QString& heading) {
  QString anchor;
  for (const QChar c : heading.toLower())
    if (c.isLetterOrNumber() || c == '-' || c == '_')
      anchor += c;
    else if (c.isSpace())
      anchor += '-';
  return anchor;
}

QString text_of(const QString& file) {
  QFile page(file);
  return page.open(QIODevice::ReadOnly) ? QString::fromUtf8(page.readAll()) : QString();
}

class Pages : public QTextBrowser {
public:
  using QTextBrowser::QTextBrowser;

protected:
  QVariant loadResource(int type, const QUrl& url) override {
    const QVariant found = QTextBrowser::loadResource(type, url);
    if (type != QTextDocument::ImageResource) return found;
    QImage picture;
    picture.loadFromData(found.toByteArray());
    return fitted(pictures_[url] = picture);
  }
  void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override {
    pictures_.clear();
    QTextBrowser::doSetSource(url, type);
    for (QTextFrame* frame : document()->rootFrame()->childFrames())
      if (auto* table = qobject_cast<QTextTable*>(frame)) rule(*table);
    if (url.hasFragment()) go_to(url.fragment(QUrl::FullyDecoded));
  }
  void resizeEvent(QResizeEvent* event) override {
    for (const auto& [url, picture] : pictures_)
      document()->addResource(QTextDocument::ImageResource, url, fitted(picture));
    document()->markContentsDirty(0, document()->characterCount());
    QTextBrowser::resizeEvent(event);
  }

private:
  // Headings have no anchors of their own in the toolkit's reading of a page.
  void go_to(const QString& anchor) {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
      if (block.blockFormat().headingLevel() == 0 || anchor_of(block.text()) != anchor) continue;
      moveCursor(QTextCursor::End);
      setTextCursor(QTextCursor(block));
      verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect().top());
      return;
    }
  }
  // Thin lines and some air, where Markdown says nothing.
  void rule(QTextTable& table) const {
    QTextTableFormat format = table.format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(palette().mid());
    format.setCellSpacing(0);
    format.setCellPadding(4);
    format.setTopMargin(6);
    format.setBottomMargin(10);
    table.setFormat(format);
  }
  QImage fitted(const QImage& picture) const {
    const double sharp = devicePixelRatioF();
    const int room = viewport()->width() - 2 * static_cast<int>(document()->documentMargin()) - 4;
    const int width = static_cast<int>(std::max(1, std::min(picture.width(), room)) * sharp);
    QImage scaled = picture.scaledToWidth(width, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(sharp);
    return scaled;
  }

  std::map<QUrl, QImage> pictures_;  // as wide as they are
};

class Manual : public QDialog {
public:
  explicit Manual(QWidget* parent);
  void open(const Session& s, const std::string& screen);

protected:
  // A narrow window is left to the page.
  void resizeEvent(QResizeEvent* event) override {
    QDialog::resizeEvent(event);
    pages_->setVisible(width() > fontMetrics().horizontalAdvance('n') * 90);
  }

private:
  QPushButton* button(const char* name, QHBoxLayout& row);
  void show_page(const QString& name);
  void list_pages();
  void search_next();
  int row_of(const QUrl& page) const;

  Pages* text_;
  QListWidget* pages_;
  QLineEdit* search_;
  QLabel* note_;    // which language this is, where it is not the reader's
  QLabel* result_;  // of a search that found nothing
  QString folder_, nothing_found_;
};

QPushButton* Manual::button(const char* name, QHBoxLayout& row) {
  auto* made = new QPushButton(this);
  made->setObjectName(name);
  made->setAutoDefault(false);
  row.addWidget(made);
  return made;
}

Manual::Manual(QWidget* parent)
    : QDialog(parent),
      text_(new Pages(this)),
      pages_(new QListWidget(this)),
      search_(new QLineEdit(this)),
      note_(new QLabel(this)),
      result_(new QLabel(this)) {
  setObjectName("manual");
  auto* layout = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  auto* back = button("back", *row);
  auto* forward = button("forward", *row);
  connect(button("contents", *row), &QPushButton::clicked, this, [this] { show_page("index.md"); });
  row->addStretch(1);
  row->addWidget(result_);
  auto* label = new QLabel(this);
  label->setProperty(kCaptionKey, "search");
  label->setBuddy(search_);
  row->addWidget(label);
  row->addWidget(search_);
  auto* next = button("search_next", *row);
  auto* both = new QSplitter(this);
  both->addWidget(pages_);
  both->addWidget(text_);
  both->setStretchFactor(1, 1);
  both->setSizes({fontMetrics().horizontalAdvance('n') * 24, fontMetrics().horizontalAdvance('n') * 100});
  note_->setObjectName("note");
  note_->setProperty(kCaptionKey, "note");
  note_->setWordWrap(true);
  layout->addLayout(row);
  layout->addWidget(note_);
  layout->addWidget(both, 1);
  pages_->setObjectName("pages");
  search_->setObjectName("search");
  search_->setClearButtonEnabled(true);
  result_->setObjectName("result");
  for (auto [turn, able] :
       {std::pair{back, &QTextBrowser::backwardAvailable}, {forward, &QTextBrowser::forwardAvailable}}) {
    turn->setEnabled(false);
    connect(text_, able, turn, &QWidget::setEnabled);
  }
  connect(back, &QPushButton::clicked, text_, &QTextBrowser::backward);
  connect(forward, &QPushButton::clicked, text_, &QTextBrowser::forward);
  connect(next, &QPushButton::clicked, this, [this] { search_next(); });
  connect(search_, &QLineEdit::returnPressed, this, [this] { search_next(); });
  connect(search_, &QLineEdit::textEdited, result_, &QLabel::clear);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, search_,
          [this] { search_->setFocus(); });
  connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this,
          [this] { search_next(); });
  connect(pages_, &QListWidget::itemClicked, this,
          [this](const QListWidgetItem* item) { show_page(item->data(Qt::UserRole).toString()); });
  connect(pages_, &QListWidget::itemActivated, this,
          [this](const QListWidgetItem* item) { show_page(item->data(Qt::UserRole).toString()); });
  connect(text_, &QTextBrowser::sourceChanged, this,
          [this](const QUrl& page) { pages_->setCurrentRow(row_of(page)); });
  text_->setOpenExternalLinks(true);
  text_->setFocus();
  resize(fontMetrics().horizontalAdvance('n') * 134, fontMetrics().height() * 48);
}

void Manual::open(const Session& s, const std::string& screen) {
  apply_captions(this, s, "manual");
  setWindowTitle(plain_caption(qt(s.language.text("frmMAIN", "index"))) + " - " + kProgramName);
  nothing_found_ = qt(s.language.text("manual", "nothing_found"));
  note_->setVisible(!has_own_manual(s));
  if (folder_ != manual_folder(s)) {
    folder_ = manual_folder(s);
    list_pages();
  }
  show();
  show_page(screen == "frmMAIN" ? "main.md" : qt(screen).toLower() + ".md");
  raise();
  activateWindow();
}

// The page of contents tells the order; what it does not name follows.
void Manual::list_pages() {
  pages_->clear();
  QStringList names = QDir(folder_).entryList({"*.md"}, QDir::Files, QDir::Name);
  const QString contents = text_of(folder_ + "index.md");
  std::ranges::stable_sort(names, {}, [&](const QString& name) {
    const qsizetype at = contents.indexOf("| [", 0) < 0 ? -1 : contents.indexOf("](" + name + ") |");
    return name == "index.md" ? -1 : at < 0 ? contents.size() : at;
  });
  for (const QString& name : names) {
    auto* item =
        new QListWidgetItem(text_of(folder_ + name).section('\n', 0, 0).remove('#').trimmed(), pages_);
    item->setData(Qt::UserRole, name);
  }
}

int Manual::row_of(const QUrl& page) const {
  const QString name = page.fileName();
  for (int row = 0; row < pages_->count(); ++row)
    if (pages_->item(row)->data(Qt::UserRole) == name) return row;
  return -1;
}

void Manual::show_page(const QString& name) {
  const QString page = folder_ + (QFile::exists(folder_ + name) ? name : "index.md");
  text_->setSource(QUrl::fromLocalFile(page), QTextDocument::MarkdownResource);
}

// On in this page, then in those that follow, at last in this one from its head.
void Manual::search_next() {
  const QString wanted = search_->text();
  result_->clear();
  if (wanted.isEmpty() || text_->find(wanted)) return;
  const int begin = std::max(row_of(text_->source()), 0);
  for (int i = 1; i <= pages_->count(); ++i) {
    const QString name = pages_->item((begin + i) % pages_->count())->data(Qt::UserRole).toString();
    if (!text_of(folder_ + name).contains(wanted, Qt::CaseInsensitive)) continue;
    if (i < pages_->count()) show_page(name);
    text_->moveCursor(QTextCursor::Start);
    if (text_->find(wanted)) return;
  }
  result_->setText(nothing_found_);
}

}  // namespace

void show_manual(Desk& desk, const std::string& screen) {
  auto* manual = desk.frame()->findChild<QDialog*>("manual");
  if (!manual) {
    manual = new Manual(desk.frame());
    manual->setProperty(kOwnSection, true);
  }
  static_cast<Manual*>(manual)->open(desk.session(), screen);
}

}  // namespace tv
