// The windows beside the work: the picture viewer, what the program is.
#include <QFile>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>

#include "gui/captions.h"
#include "gui/icons.h"
#include "gui/main_frame.h"
#include "gui/windows.h"
#include "session/file_names.h"
#include "text/file.h"

namespace tv {
namespace {

void add_buttons(QVBoxLayout* layout, QWidget* parent, std::initializer_list<const char*> names) {
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (const char* name : names) {
    auto* button = new QPushButton(parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    row->addWidget(button);
  }
  layout->addLayout(row);
}

void set_title(QWidget* window, const Session& s, const char* section) {
  window->setWindowTitle(plain_caption(qt(s.language.text(section, section))) + " - " + kProgramName);
}

// A picture at any scale: only the part on show is drawn, so that memory does not grow with the scale.
class Sheet : public QWidget {
public:
  using QWidget::QWidget;
  void show_image(const QImage& image) {
    image_ = image;
    smaller_ = {};
    update();
  }

protected:
  void paintEvent(QPaintEvent* event) override {
    if (image_.isNull()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QImage& source = scaled();
    const double x = double(source.width()) / width(), y = double(source.height()) / height();
    const QRect part = event->rect();
    painter.drawImage(QRectF(part), source,
                      QRectF(part.x() * x, part.y() * y, part.width() * x, part.height() * y));
  }

private:
  // One made smaller is averaged, which drawing alone would not do.
  const QImage& scaled() {
    const QSize wanted = size() * devicePixelRatioF();
    if (wanted.width() >= image_.width()) return image_;
    if (smaller_.size() != wanted)
      smaller_ = image_.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return smaller_;
  }

  QImage image_, smaller_;
};

// The picture at any scale, in a window that scrolls.
class PictureViewer : public ScreenDialog {
public:
  PictureViewer(Desk& desk, QWidget* parent);
  void show_picture(const QString& file);

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override {
    QDialog::resizeEvent(event);
    if (fits_) fit();
  }

private:
  void scale_to(double scale);
  void fit();

  QScrollArea* area_;
  Sheet* picture_;
  QImage image_;
  QString file_;
  double scale_ = 1;
  bool fits_ = true;
};

PictureViewer::PictureViewer(Desk& desk, QWidget* parent) : ScreenDialog(desk, "frmPic", parent) {
  auto* layout = new QVBoxLayout(this);
  area_ = new QScrollArea(this);
  picture_ = new Sheet(area_);
  picture_->setObjectName("picture");
  picture_->setProperty("label_key", "frmPic");
  area_->setWidget(picture_);
  area_->setAlignment(Qt::AlignCenter);
  area_->viewport()->installEventFilter(this);
  layout->addWidget(area_, 1);
  add_buttons(layout, this, {"zoom_in", "zoom_out", "fit", "full", "close"});
  const auto on = [this](const char* name, auto action) {
    connect(findChild<QPushButton*>(name), &QPushButton::clicked, this, action);
  };
  on("zoom_in", [this] { scale_to(scale_ * 1.25); });
  on("zoom_out", [this] { scale_to(scale_ / 1.25); });
  on("fit", [this] { fit(); });
  on("full", [this] { scale_to(1); });
  on("close", [this] { reject(); });
  resize(fontMetrics().height() * 40, fontMetrics().height() * 30);
}

void PictureViewer::show_picture(const QString& file) {
  if (file == file_) return;
  file_ = file;
  image_ = QImageReader(file).read();
  picture_->show_image(image_);
  fit();
}

void PictureViewer::scale_to(double scale) {
  if (image_.isNull()) return;
  fits_ = false;
  scale_ = std::clamp(scale, 0.05, 16.0);
  picture_->resize(image_.size() * scale_);
}

void PictureViewer::fit() {
  if (image_.isNull()) return;
  const QSize room = area_->maximumViewportSize() - QSize(2, 2);
  scale_to(std::min(double(room.width()) / image_.width(), double(room.height()) / image_.height()));
  fits_ = true;
}

bool PictureViewer::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::Wheel) return false;
  const auto* wheel = static_cast<QWheelEvent*>(event);
  if (!(wheel->modifiers() & Qt::ControlModifier)) return false;
  scale_to(wheel->angleDelta().y() > 0 ? scale_ * 1.25 : scale_ / 1.25);
  return true;
}

class AboutBox : public ScreenDialog {
public:
  AboutBox(Desk& desk, QWidget* parent) : ScreenDialog(desk, "frmHelp", parent) {
    auto* layout = new QVBoxLayout(this);
    auto* head = new QHBoxLayout;
    auto* picture = new QLabel(this);
    picture->setPixmap(program_icon().pixmap(96, 96));
    head->addWidget(picture);
    auto* words = new QVBoxLayout;
    auto* name = new QLabel(kProgramName, this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    name->setFont(large);
    words->addWidget(name);
    version_ = new QLabel(this);
    version_->setObjectName("version");
    words->addWidget(version_);
    for (const char* key : {"about", "caution"}) {
      auto* label = new QLabel(this);
      label->setProperty(kCaptionKey, key);
      label->setWordWrap(true);
      label->setMinimumWidth(fontMetrics().horizontalAdvance('n') * 40);
      words->addWidget(label);
    }
    head->addLayout(words, 1);
    layout->addLayout(head);
    auto* title = new QLabel(this);
    title->setProperty(kCaptionKey, "licences");
    auto* licences = new QLabel(this);
    licences->setObjectName("licences");
    licences->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    licences->setMargin(8);
    licences->setFrameShape(QFrame::StyledPanel);
    title->setBuddy(licences);
    licences->setText(
        QString("Qt %1 (LGPL 3)\n{fmt} (MIT)\nnlohmann-json (MIT)\nlibxlsxwriter (BSD 2-clause)\nCLI11 (BSD "
                "3-clause)\n%2 (MIT)")
            .arg(qVersion(), kProgramName));
    layout->addWidget(title);
    layout->addWidget(licences);
    layout->addStretch(1);
    add_buttons(layout, this, {"close"});
    auto* close = findChild<QPushButton*>("close");
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, [this] { reject(); });
  }
  void show_version(const Session& s) {
    version_->setText(qt(s.language.text("frmHelp", "version")) + ' ' + kVersion);
  }

private:
  QLabel* version_;
};

}  // namespace

View make_picture_view(Desk& desk, const ScreenSpec&, QWidget* parent) {
  auto* viewer = new PictureViewer(desk, parent);
  Session& s = desk.session();
  viewer->setObjectName("frmPic");
  viewer->setProperty(kOwnSection, true);
  View view;
  view.window = view.root = viewer;
  view.refresh = [viewer, &s] {
    viewer->show_picture(QFile::decodeName(data_path(s, "data/pictures/" + s.picture).c_str()));
  };
  view.recaption = [viewer, &s] {
    apply_captions(viewer, s, "frmPic");
    set_title(viewer, s, "frmPic");
  };
  return view;
}

View make_about_view(Desk& desk, const ScreenSpec&, QWidget* parent) {
  auto* box = new AboutBox(desk, parent);
  Session& s = desk.session();
  box->setObjectName("frmHelp");
  box->setProperty(kOwnSection, true);
  View view;
  view.window = view.root = box;
  view.refresh = [] {};
  view.recaption = [box, &s] {
    apply_captions(box, s, "frmHelp");
    set_title(box, s, "frmHelp");
    box->show_version(s);
  };
  return view;
}

}  // namespace tv
