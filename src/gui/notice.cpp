// The safety notice, page by page, before the main screens.
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/binder.h"
#include "gui/captions.h"
#include "gui/icons.h"
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

private:
  void turn(int by);
  QPushButton* button(const char* name, QBoxLayout* row);

  QTextBrowser* text_;
  QPushButton *up_, *down_;
  std::vector<QString> pages_;
  int page_ = 0;
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
  button("wechsel", row);
  row->addStretch(1);
  button("schluss", row);
  button("weiter", row)->setDefault(true);
  layout->addLayout(row);
  connect(up_, &QPushButton::clicked, this, [this] { turn(-1); });
  connect(down_, &QPushButton::clicked, this, [this] { turn(1); });
  resize(fontMetrics().horizontalAdvance('n') * 78, fontMetrics().height() * 32);
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
  page_ = std::clamp(page_ + by, 0, std::max(0, static_cast<int>(pages_.size()) - 1));
  if (!pages_.empty()) text_->setHtml(pages_[static_cast<std::size_t>(page_)]);
  up_->setEnabled(page_ > 0);
  down_->setEnabled(page_ + 1 < static_cast<int>(pages_.size()));
}

void Notice::recaption(const Session& s) {
  apply_captions(this, s, "form2");
  setWindowTitle(qt(s.language.text("form2", "Form2")) + " - " + kProgramName);
  pages_ = notice_pages(s.language);
  turn(0);
}

}  // namespace

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
