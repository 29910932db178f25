// The output window: diagram and text in one place, its menu bar, the read-out and the mouse.
#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "gui/captions.h"
#include "gui/menus.h"
#include "gui/surface_view.h"
#include "gui/table_grid.h"
#include "gui/table_view.h"
#include "gui/windows.h"
#include "screens/output_window.h"
#include "session/entry.h"

namespace tv {
namespace {

class OutputWindow : public QWidget {
public:
  OutputWindow(Desk& desk, const ScreenSpec& spec);
  void refresh();
  void recaption() { menus_->recaption(); }

private:
  Session& session() { return desk_.session(); }

  Desk& desk_;
  std::unique_ptr<Menus> menus_;
  QStackedLayout* place_;
  SurfaceView* surface_;
  TableView* text_;
  TableGrid* grid_;
  unsigned shown_ = 0;  // revision of the text on show
  bool shows_text_ = false;
};

OutputWindow::OutputWindow(Desk& desk, const ScreenSpec& spec) : desk_(desk) {
  auto* bar = new QMenuBar(this);
  menus_ = std::make_unique<Menus>(desk, *bar, "form7");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setMenuBar(bar);
  place_ = new QStackedLayout;
  layout->addLayout(place_, 1);
  surface_ = new SurfaceView(desk, spec.name, *find_surface(desk.session(), spec.name, "Pict1"), this);
  surface_->setFocusPolicy(Qt::StrongFocus);
  surface_->setMinimumSize(227, 150);  // what a small desk leaves it
  text_ = new TableView(this);
  text_->setObjectName("Text1");
  text_->setProperty(kOwn, true);
  place_->addWidget(surface_);
  grid_ = new TableGrid(desk, this);
  place_->addWidget(text_);
  place_->addWidget(grid_);
  auto* strip = new QHBoxLayout;
  strip->setContentsMargins(6, 1, 6, 1);
  for (const char* name : {"x1", "y1", "y2"}) {
    auto* read_out = new QLabel(this);
    read_out->setObjectName(name);
    read_out->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // never widens the desk
    strip->addWidget(read_out, 1);
  }
  layout->addLayout(strip);
  text_->on_double_click = [this] {
    desk_.act([this] {
      output_switch(session());
      outputs_changed(session());
    });
  };
  for (QWidget* widget : {static_cast<QWidget*>(surface_), text_->viewport(), grid_->rows()->viewport()}) {
    widget->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(widget, &QWidget::customContextMenuRequested, this, [bar, widget](const QPoint& at) {
      QMenu menu;
      menu.addActions(bar->actions());
      menu.exec(widget->mapToGlobal(at));
    });
  }
}

void OutputWindow::refresh() {
  menus_->refresh();
  const bool as_text = output_shows_text(session());
  const auto table = as_text ? output_table(session()) : std::nullopt;
  if (as_text && (!shows_text_ || shown_ != session().output.revision)) {
    text_->show_text(output_text_view(session()));
    if (table) grid_->show_table(*table);
  }
  shows_text_ = as_text;
  shown_ = session().output.revision;
  place_->setCurrentWidget(table ? grid_ : as_text ? static_cast<QWidget*>(text_) : surface_);
}

}  // namespace

View make_output_view(Desk& desk, const ScreenSpec& spec, QWidget*) {
  auto* output = new OutputWindow(desk, spec);
  View view;
  view.root = output;
  view.refresh = [output, &desk] {
    output->refresh();
    QString title = qt(output_caption(desk.session()));
    if (!title.endsWith(kProgramName)) title = title + " - " + kProgramName;  // tables name it themselves
    if (QWidget* window = desk.view("Form7")->window; window->windowTitle() != title)
      window->setWindowTitle(title);
  };
  view.recaption = [output] { output->recaption(); };
  return view;
}

}  // namespace tv
