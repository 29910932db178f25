#include "gui/notice_line.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>

#include "gui/captions.h"
#include "gui/program_style.h"
#include "gui/windows.h"

namespace tv {
namespace {

struct NoticeColours {
  QColor paper, ink;
};
NoticeColours notice_colours(bool dark) {
  return dark ? NoticeColours{QColor(62, 52, 30), QColor(244, 220, 150)}
              : NoticeColours{QColor(255, 246, 216), QColor(84, 66, 0)};
}

// Up to the end of its first sentence.
QString first_sentence(QString notice) {
  notice = notice.simplified();
  const qsizetype end = notice.indexOf(". ");
  return end < 0 ? notice : notice.left(end + 1);
}

}  // namespace

NoticeLine::NoticeLine(Desk& desk) : desk_(desk), text_(new QLabel(this)) {
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(10, 1, 6, 1);
  text_->setObjectName("Picture1");
  text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  QFont bold = text_->font();
  bold.setBold(true);
  text_->setFont(bold);
  line->addWidget(text_, 1);
  const auto key = [&](const char* name, auto run) {
    auto* button = new QToolButton(this);
    button->setObjectName(name);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    QFont underlined = button->font();
    underlined.setUnderline(true);
    button->setFont(underlined);
    line->addWidget(button);
    connect(button, &QToolButton::clicked, this, run);
  };
  key("notice_all", [this] { show_notice_text(desk_, window()); });
  key("notice_close", [this] {
    closed_ = true;
    refresh();
  });
  setAutoFillBackground(true);
  colour();
}

void NoticeLine::refresh() {
  const Session& s = desk_.session();
  const QString sentence = qt(s.language.fastmsg("agreeit1")) + first_sentence(qt(s.language.notice()));
  if (sentence != sentence_) {
    sentence_ = sentence;
    text_->setAccessibleName(sentence);
    text_->setToolTip(qt(s.language.notice()).simplified());
    cut();
  }
  setVisible(!closed_ && !s.options.nowarn);
}

void NoticeLine::cut() {
  text_->setText(text_->fontMetrics().elidedText(sentence_, Qt::ElideRight, text_->width()));
}

void NoticeLine::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layout()->activate();
  cut();
}

void NoticeLine::colour() {
  const NoticeColours colours = notice_colours(is_dark(QApplication::palette()));
  QPalette own;
  if (palette().color(QPalette::Window) == colours.paper) return;
  for (const auto role : {QPalette::Window, QPalette::Button}) own.setColor(role, colours.paper);
  for (const auto role : {QPalette::WindowText, QPalette::ButtonText}) own.setColor(role, colours.ink);
  setPalette(own);
}

bool NoticeLine::event(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) colour();
  if (event->type() == QEvent::FontChange) cut();
  return QWidget::event(event);
}

}  // namespace tv
