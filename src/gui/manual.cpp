// The manual: its pages, their pictures no wider than the window, the way back.
#include <QFile>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
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

// The manual is delivered in German and in English, which the other languages show too.
QString manual_folder(const Session& s) {
  const char* language = s.language.name() == "german" ? "manual/de/" : "manual/en/";
  return QFile::decodeName((s.roots.delivered + language).c_str());
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
  }
  void resizeEvent(QResizeEvent* event) override {
    for (const auto& [url, picture] : pictures_)
      document()->addResource(QTextDocument::ImageResource, url, fitted(picture));
    document()->markContentsDirty(0, document()->characterCount());
    QTextBrowser::resizeEvent(event);
  }

private:
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
  explicit Manual(QWidget* parent) : QDialog(parent), text_(new Pages(this)) {
    setObjectName("manual");
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    for (const char* name : {"back", "contents"}) {
      auto* button = new QPushButton(this);
      button->setObjectName(name);
      button->setAutoDefault(false);
      row->addWidget(button);
    }
    row->addStretch(1);
    layout->addLayout(row);
    layout->addWidget(text_);
    auto* back = findChild<QPushButton*>("back");
    back->setEnabled(false);
    connect(back, &QPushButton::clicked, text_, &QTextBrowser::backward);
    connect(text_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(findChild<QPushButton*>("contents"), &QPushButton::clicked, this,
            [this] { show_page("index.md"); });
    text_->setOpenExternalLinks(false);
    text_->setFocus();
    resize(fontMetrics().horizontalAdvance('n') * 110, fontMetrics().height() * 48);
  }
  void open(const Session& s, const std::string& screen) {
    apply_captions(this, s, "manual");
    setWindowTitle(plain_caption(qt(s.language.text("frmMAIN", "index"))) + " - " + kProgramName);
    folder_ = manual_folder(s);
    show();
    show_page(screen == "frmMAIN" ? "main.md" : qt(screen).toLower() + ".md");
    raise();
    activateWindow();
  }

private:
  void show_page(const QString& name) {
    const QString page = folder_ + (QFile::exists(folder_ + name) ? name : "index.md");
    text_->setSource(QUrl::fromLocalFile(page), QTextDocument::MarkdownResource);
  }

  Pages* text_;
  QString folder_;
};

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
