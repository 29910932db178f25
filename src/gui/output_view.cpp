// The output window: diagram and text in one place, its menu bar, the read-out and the mouse.
#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "gui/captions.h"
#include "gui/diagram_surface.h"
#include "gui/menus.h"
#include "gui/table_view.h"
#include "gui/windows.h"
#include "screens/output_window.h"

namespace tv {
namespace {

constexpr const char* kScreen = "Form7";

class OutputView : public QWidget {
public:
  explicit OutputView(Desk& desk);
  void refresh();
  void recaption() { menus_->recaption(); }

private:
  Session& session() { return desk_.session(); }

  Desk& desk_;
  std::unique_ptr<Menus> menus_;
  QStackedLayout* place_;
  DiagramSurface* surface_;
  TableView* text_;
  QLabel* read_outs_[3];
};

OutputView::OutputView(Desk& desk) : desk_(desk) {
  auto* bar = new QMenuBar(this);
  menus_ = std::make_unique<Menus>(desk, *bar, "form7");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setMenuBar(bar);
  place_ = new QStackedLayout;
  layout->addLayout(place_, 1);
  surface_ = new DiagramSurface(desk, this);
  text_ = new TableView(this);
  text_->setObjectName("Text1");
  text_->setProperty(kOwn, true);
  place_->addWidget(surface_);
  place_->addWidget(text_);
  auto* strip = new QHBoxLayout;
  strip->setContentsMargins(6, 1, 6, 1);
  for (int i = 0; i < 3; ++i) {
    read_outs_[i] = new QLabel(this);
    read_outs_[i]->setObjectName(QStringList{"x1", "y1", "y2"}[i]);
    strip->addWidget(read_outs_[i], 1);
  }
  layout->addLayout(strip);
  surface_->on_read_out = [this](const std::optional<ReadOut>& at) {
    const std::string texts[] = {at ? at->x : "", at ? at->y1 : "", at ? at->y2 : ""};
    for (int i = 0; i < 3; ++i) {
      set_text(session(), kScreen, utf8(read_outs_[i]->objectName()), texts[i]);
      read_outs_[i]->setText(qt(texts[i]));
    }
  };
  surface_->on_double_click =
      text_->on_double_click = [this] { desk_.act([this] { output_switch(session()); }); };
  for (QWidget* widget : {static_cast<QWidget*>(surface_), static_cast<QWidget*>(text_->viewport())}) {
    widget->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(widget, &QWidget::customContextMenuRequested, this, [bar, widget](const QPoint& at) {
      QMenu menu;
      menu.addActions(bar->actions());
      menu.exec(widget->mapToGlobal(at));
    });
  }
}

void OutputView::refresh() {
  menus_->refresh();
  const bool as_text = output_shows_text(session());
  if (as_text) text_->show_text(output_text_view(session()));
  place_->setCurrentWidget(as_text ? static_cast<QWidget*>(text_) : surface_);
  surface_->redraw();
}

}  // namespace

View make_output_view(Desk& desk) {
  auto* output = new OutputView(desk);
  View view;
  view.root = output;
  view.refresh = [output, &desk] {
    output->refresh();
    QString title = qt(output_caption(desk.session()));
    if (!title.endsWith(kProgramName)) title = title + " - " + kProgramName;  // tables name it themselves
    if (QWidget* window = output->parentWidget(); window && window->windowTitle() != title)
      window->setWindowTitle(title);
  };
  view.recaption = [output] { output->recaption(); };
  return view;
}

}  // namespace tv
