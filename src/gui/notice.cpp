// The safety notice, page by page, before the main screens.
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/binder.h"
#include "gui/captions.h"
#include "gui/icons.h"
#include "gui/record_list.h"
#include "gui/windows.h"
#include "text/number.h"

namespace tv {
namespace {

// A line of the notice: "text|x,y,colour", places in twips, the colour as red + 256 green + 65536 blue.
struct NoticeLine {
  std::string text;
  double y = 0;
  int colour = 0;
};

NoticeLine parse_line(const std::string& value) {
  NoticeLine line;
  const std::size_t bar = value.rfind('|');
  line.text = value.substr(0, bar);
  if (bar == std::string::npos) return line;
  const std::size_t y = value.find(',', bar);
  if (y == std::string::npos) return line;
  line.y = read_number(value.substr(y + 1));
  if (const std::size_t colour = value.find(',', y + 1); colour != std::string::npos)
    line.colour = to_int(read_number(value.substr(colour + 1)));
  return line;
}

// A line higher than the one before it begins a page; a gap wider than a line begins a paragraph. The
// paragraphs flow anew, so that no font cuts them.
std::vector<QString> notice_pages(const Language& language) {
  constexpr double kLineHeight = 300;
  std::vector<QString> pages;
  double before = 1e9;
  for (int n = 1;; ++n) {
    const std::string value = language.text("form2", "text_2_" + std::to_string(n));
    if (value.empty()) break;
    const NoticeLine line = parse_line(value);
    const bool page = line.y < before;
    const bool paragraph = page || line.y - before > kLineHeight;
    if (page) pages.emplace_back();
    const QString text = qt(line.text).toHtmlEscaped();
    // Black follows the palette; any other colour of the notice warns and is bold as well.
    if (paragraph)
      pages.back() += line.colour == 0 ? "<p>" + text : "<p style='font-weight:bold'>" + text;
    else
      pages.back() += ' ' + text;
    before = line.y;
  }
  return pages;
}

class Notice : public ScreenDialog {
public:
  Notice(Desk& desk, QWidget* parent);
  void recaption(const Session& s);

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void turn(int by);
  void show_paging();
  void fit();
  QPushButton* button(const char* name, QBoxLayout* row);

  QTextBrowser* text_;
  QPushButton *up_, *down_;
};

Notice::Notice(Desk& desk, QWidget* parent) : ScreenDialog(desk, "Form2", parent) {
  setWindowIcon(program_icon());
  auto* layout = new QVBoxLayout(this);
  text_ = new QTextBrowser(this);
  text_->setObjectName("notice");
  text_->setProperty("label_key", "Form2");
  text_->setProperty(kOwn, true);
  auto* paging = new QHBoxLayout;
  up_ = button("page_up", paging);
  down_ = button("page_down", paging);
  for (QPushButton* page : {up_, down_}) page->setProperty(kOwn, true);
  auto* version = new QLabel(this);
  version->setObjectName("version_line");
  paging->addStretch(1);
  paging->addWidget(version);
  layout->addWidget(text_, 1);
  layout->addLayout(paging);
  for (const char* name : {"acceptiert", "Check2"}) {
    auto* box = new QCheckBox(this);
    box->setObjectName(name);
    layout->addWidget(box);
  }
  auto* row = new QHBoxLayout;
  auto* languages = new RecordList(this);
  languages->setObjectName("wechsel");
  row->addWidget(languages);
  row->addStretch(1);
  button("schluss", row);
  button("weiter", row)->setDefault(true);
  layout->addLayout(row);
  connect(text_->verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { show_paging(); });
  connect(text_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { show_paging(); });
  connect(up_, &QPushButton::clicked, this, [this] { turn(-1); });
  connect(down_, &QPushButton::clicked, this, [this] { turn(1); });
  findChild<QCheckBox*>("acceptiert")->setFocus();
}

QPushButton* Notice::button(const char* name, QBoxLayout* row) {
  auto* made = new QPushButton(this);
  made->setObjectName(name);
  made->setAutoDefault(false);
  row->addWidget(made);
  return made;
}

void Notice::turn(int by) {
  QScrollBar& bar = *text_->verticalScrollBar();
  bar.setValue(bar.value() + by * bar.pageStep());
}

// Only where the notice does not fit.
void Notice::show_paging() {
  const QScrollBar& bar = *text_->verticalScrollBar();
  const bool wanted = bar.maximum() > 0;
  for (QPushButton* page : {up_, down_})
    if (page->isHidden() == wanted) page->setVisible(wanted);
  up_->setEnabled(bar.value() > 0);
  down_->setEnabled(bar.value() < bar.maximum());
}

// As high as the notice, as far as the screen allows.
void Notice::fit() {
  const int width = fontMetrics().horizontalAdvance('n') * 84;
  text_->document()->setTextWidth(width);
  const int wanted = static_cast<int>(text_->document()->size().height()) + 20;
  const int around = sizeHint().height() - text_->sizeHint().height();
  const int most = (screen() ? screen()->availableGeometry().height() : 700) - 60;
  resize(width + 50, std::min(wanted + around, most));
}

void Notice::resizeEvent(QResizeEvent* event) {
  ScreenDialog::resizeEvent(event);
  show_paging();
}

void Notice::recaption(const Session& s) {
  apply_captions(this, s, "form2");
  setWindowTitle(qt(s.language.text("form2", "Form2")) + " - " + kProgramName);
  QString html;
  for (const QString& page : notice_pages(s.language)) html += page;
  text_->setHtml(html);
  fit();
  show_paging();
}

}  // namespace

void show_notice_text(Desk& desk, QWidget* parent) {
  const Session& s = desk.session();
  QDialog dialog(parent);
  dialog.setObjectName("whole_notice");
  dialog.setWindowTitle(qt(s.language.text("form2", "Form2")) + " - " + kProgramName);
  auto* column = new QVBoxLayout(&dialog);
  auto* text = new QTextBrowser(&dialog);
  QString html = "<p><b>" + qt(s.language.notice()).simplified().toHtmlEscaped() + "</b></p>";
  for (const QString& page : notice_pages(s.language)) html += page;
  text->setHtml(html);
  text->setAccessibleName(dialog.windowTitle());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  column->addWidget(text, 1);
  column->addWidget(buttons);
  dialog.resize(dialog.fontMetrics().horizontalAdvance('n') * 78, dialog.fontMetrics().height() * 32);
  dialog.exec();
}

View make_notice_view(Desk& desk, const ScreenSpec& spec, QWidget* parent) {
  auto* notice = new Notice(desk, parent);
  notice->setObjectName("Form2");
  notice->setProperty(kOwnSection, true);
  Session& s = desk.session();
  auto* binder = new Binder(
      s, [&desk](const auto& action) { desk.act(action); }, spec, notice);
  View view;
  view.window = view.root = notice;
  view.refresh = [binder] { binder->refresh(); };
  view.recaption = [notice, &s] { notice->recaption(s); };
  return view;
}

}  // namespace tv
