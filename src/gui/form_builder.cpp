#include "gui/form_builder.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSlider>
#include <QStyle>
#include <algorithm>
#include <map>

#include "gui/captions.h"
#include "gui/figure_flow.h"
#include "gui/fold_head.h"
#include "gui/number_edit.h"
#include "gui/program_style.h"
#include "gui/record_list.h"
#include "gui/small_labels.h"
#include "gui/surface_view.h"
#include "session/entry.h"

namespace tv {
namespace {

// One small grey line, cut in its middle where there is no room.
class SourceLabel : public QLabel {
public:
  explicit SourceLabel(QWidget* parent) : QLabel(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  }
  QSize sizeHint() const override { return {0, small_font().height}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setFont(small_font().font);
    painter.setPen(dim_colour(palette()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignTop,
                     painter.fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
  }

private:
  struct Small {
    QFont font;
    int height;
  };
  Small small_font() const {
    QFont smaller = font();
    if (smaller.pointSizeF() > 0) smaller.setPointSizeF(smaller.pointSizeF() * 0.85);
    return {smaller, QFontMetrics(smaller).height()};
  }
};

// A range that is told in figures is never cut; a sentence may be longer than its field.
void keep_in_sight(QLineEdit* shown) {
  static constexpr int kMost = 280;
  QObject::connect(shown, &QLineEdit::textChanged, shown, [shown](const QString& text) {
    shown->setMinimumWidth(std::min(kMost, shown->fontMetrics().horizontalAdvance(text) + 14));
  });
}

// A few lines, wrapped, that give way to what stands above them.
class LeadList : public QListWidget {
public:
  explicit LeadList(QWidget* parent) : QListWidget(parent) {
    setWordWrap(true);
    setTextElideMode(Qt::ElideNone);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setResizeMode(QListView::Adjust);
    setTabKeyNavigation(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }
  QSize sizeHint() const override { return {fontMetrics().averageCharWidth() * 20, lines(3)}; }
  QSize minimumSizeHint() const override { return {fontMetrics().averageCharWidth() * 20, lines(2)}; }

private:
  int lines(int n) const { return n * fontMetrics().lineSpacing() + 2 * frameWidth() + 4; }
};

// A column that keeps its width and scrolls where it is too high for the window.
class ColumnArea : public QScrollArea {
public:
  ColumnArea(QWidget* inside, QWidget* parent) : QScrollArea(parent) {
    setWidget(inside);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    inside->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
  }
  // What a screen hides by its mode counts as well when the window is made.
  QSize sizeHint() const override {
    return {width_needed(), std::min(widget()->sizeHint().height(), kMostHeight)};
  }
  QSize minimumSizeHint() const override { return {width_needed(), kLeastHeight}; }

protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::event(event);
  }

private:
  static constexpr int kLeastHeight = 240, kMostHeight = 600;
  int width_needed() const {
    return widget()->minimumSizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  }
};

class Builder {
public:
  Builder(Desk& desk, const ScreenSpec& spec, std::span<const Group> groups, QWidget* root)
      : desk_(desk), spec_(spec), groups_(groups), root_(root) {}

  void build() {
    if (!groups_.empty() && groups_[0].rows[0].shape == RowShape::figure) {  // figures flow beside each other
      auto* flow = new FigureFlow(root_);
      for (const Group& group : groups_) add_group(group, [&](QWidget* box) { flow->addWidget(box); });
      return;
    }
    auto* grid = new QGridLayout(root_);
    if (spec_.shape == ScreenShape::child) grid->setContentsMargins(8, 6, 8, 6);
    std::map<int, QVBoxLayout*> columns;
    int count = 1;
    for (const Group& group : groups_) count = std::max(count, group.column + 1);
    int below = 1;
    for (const Group& group : groups_) {
      if (group.column < 0) {  // over the whole width
        add_group(group, [&](QWidget* box) { grid->addWidget(box, below++, 0, 1, count); });
        continue;
      }
      QVBoxLayout*& column = columns[group.column];
      if (!column) column = add_column(*grid, group.column);
      // A block takes the room that its column has left.
      const bool grows =
          std::ranges::any_of(group.rows, [](const Row& row) { return row.shape == RowShape::block; });
      add_group(group, [&](QWidget* box) { column->addWidget(box, grows ? 100 : 0); });
    }
    for (auto& [number, column] : columns) column->addStretch(1);
    // One filled button a window: on the desk that which stands with the charge.
    if (spec_.shape == ScreenShape::child && spec_.role != Role::powder) return;
    if (auto* button = root_->findChild<QPushButton*>(QString(spec_.default_button)))
      button->setDefault(true);
  }

private:
  QVBoxLayout* add_column(QGridLayout& grid, int number) {
    auto* column = new QVBoxLayout;
    if (number != spec_.scrolling_column) {
      grid.addLayout(column, 0, number);
      grid.setColumnStretch(number, 1);
      return column;
    }
    auto* inside = new QWidget;
    inside->setLayout(column);
    column->setContentsMargins(0, 0, 4, 0);
    grid.addWidget(new ColumnArea(inside, root_), 0, number);
    return column;
  }

  template <class Add>
  void add_group(const Group& group, Add add) {
    const bool framed = group.title && !group.summary;
    auto* box = framed ? static_cast<QWidget*>(new QGroupBox(root_)) : new QWidget(root_);
    if (framed) box->setObjectName(group.title);
    auto* grid = new QGridLayout(box);
    if (!framed) grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(3);
    if (group.rows[0].shape != RowShape::figure) grid->setProperty("column", group.column);
    if (framed) grid->setContentsMargins(8, 4, 8, 6);
    // label, field, unit, field, unit: fields are as wide as their numbers; texts take what room is left
    if (has_texts(group)) {
      grid->setColumnStretch(1, 1);
      grid->setColumnStretch(3, 1);
    } else {
      grid->setColumnStretch(5, 1);
    }
    for (const Row& row : group.rows) add_row(*grid, row, *box);
    // Across all columns, so that a group with one field a row shares them as its neighbours do.
    grid->addItem(new QSpacerItem(0, 0), 0, 0, 1, 6);
    QWidget* placed = group.summary ? folding(group, box) : box;
    if (group.shown) placed->setProperty(kGroup, static_cast<int>(&group - spec_.form.data()));
    add(placed);
  }

  // The group below its head, which shows and hides it.
  QWidget* folding(const Group& group, QWidget* box) {
    auto* whole = new QWidget(root_);
    auto* layout = new QVBoxLayout(whole);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addWidget(new FoldHead(group, box, whole));
    layout->addWidget(box);
    return whole;
  }

  static bool has_texts(const Group& group) {
    for (const Row& row : group.rows)
      if (row.shape == RowShape::pair)
        for (const Place& place : row.places)
          if (place.control && place.kind != ControlKind::number && place.kind != ControlKind::display &&
              place.kind != ControlKind::button)
            return true;
    return false;
  }

  void add_row(QGridLayout& grid, const Row& row, QWidget& box) {
    const int at = grid.rowCount();
    switch (row.shape) {
      case RowShape::pair:
        return add_pair(grid, at, row, box);
      case RowShape::wide: {
        QWidget* widget = control(row.places[0], row, box);
        add_label(grid, at, row.label, widget, box);
        grid.addWidget(widget, at, 1, 1, 5);
        if (row.places[0].kind == ControlKind::display) keep_in_sight(qobject_cast<QLineEdit*>(widget));
      }
        return;
      case RowShape::source: {
        auto* label = new SourceLabel(&box);
        label->setObjectName(QString("source_") + row.label);
        grid.addWidget(label, at, 1, 1, 5);
        return;
      }
      case RowShape::slider:
        return add_slider(grid, at, row, box);
      case RowShape::bare:
      case RowShape::buttons:
        return add_line(grid, at, row, box);
      case RowShape::block: {
        QWidget* widget = control(row.places[0], row, box);
        if (row.label) grid.addWidget(make_label(row.label, widget, box), at, 0, 1, 6);
        grid.addWidget(widget, at + 1, 0, 1, 6);
        grid.setRowStretch(at + 1, 1);
      }
        return;
      case RowShape::note:
        grid.addWidget(make_label(row.label, nullptr, box), at, 0, 1, 6);
        return;
      case RowShape::paragraph: {
        QLabel* note = make_label(row.label, nullptr, box);
        note->setWordWrap(true);
        note->setMinimumHeight(2 * note->fontMetrics().lineSpacing());
        grid.addWidget(note, at, 0, 1, 5);
      }
        return;
      case RowShape::grid:
        return add_table(grid, at, row, box);
      case RowShape::figure:
        return add_figure(grid, at, row, box);
      case RowShape::line:
        return add_small_line(grid, at, row, box);
    }
  }

  void add_figure(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    auto* caption = new DimLabel(&box);
    caption->setObjectName(QString("label_") + row.label);
    caption->setProperty(kCaptionKey, QString(row.label));
    scale_label(*caption, kSmallScale);
    grid.addWidget(caption, at, 0, 1, 6);
    auto* line = new QHBoxLayout;
    line->setSpacing(4);
    auto* figure = new QLabel(&box);
    figure->setObjectName(row.places[0].control);
    figure->setProperty("label_key", QString(row.label));
    scale_label(*figure, kFigureScale, true);
    line->addWidget(figure, 0, Qt::AlignBaseline);
    if (const char* unit = unit_of(row.places[0]))
      line->addWidget(make_unit(unit, box), 0, Qt::AlignBaseline);
    line->addStretch(1);
    grid.addLayout(line, at + 1, 0, 1, 6);
  }

  void add_small_line(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    auto* line = new QHBoxLayout;
    for (const Place& place : row.places) {
      if (!place.control) continue;
      if (place.kind == ControlKind::surface) {
        QWidget* surface = make_control(place, place.control, &box);
        surface->setFixedHeight(surface->sizeHint().height());
        line->addWidget(surface, 1);
        continue;
      }
      auto* label = new DimLabel(&box);
      label->setObjectName(place.control);
      scale_label(*label, kSmallScale);
      line->addWidget(label, 1);
    }
    grid.addLayout(line, at, 0, 1, 6);
  }

  void add_pair(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    QWidget* first = nullptr;
    int column = 1;
    for (const Place& place : row.places) {
      if (!place.control) continue;
      QWidget* widget = control(place, row, box);
      if (!first) first = widget;
      const bool figure = place.kind == ControlKind::number || place.kind == ControlKind::display;
      const bool push = place.kind == ControlKind::button;  // at the right, over what is left
      grid.addWidget(widget, at, column, 1, push ? 6 - column : 1,
                     figure ? Qt::AlignLeft | Qt::AlignVCenter
                     : push ? Qt::AlignRight | Qt::AlignVCenter
                            : Qt::Alignment());
      if (const char* unit = unit_of(place)) {
        QLabel* label = make_unit(unit, box);
        widget->setProperty(kUnitLabel, QVariant::fromValue<QObject*>(label));
        grid.addWidget(label, at, column + 1);
      }
      column += 2;
    }
    if (first && row.label) add_label(grid, at, row.label, first, box);
  }

  // Heads of captions, each above its numbered rows of fields.
  void add_table(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    auto* table = new QGridLayout;
    table->setVerticalSpacing(2);
    table->setHorizontalSpacing(10);
    const bool numbered = row.places[0].kind == ControlKind::check;  // the boxes carry the numbers
    const int deep = row.deep > 0 ? row.deep : row.count;
    int wide = 1;  // columns of one block, with that of the numbers
    for (const Place& place : row.places) wide += place.control ? 1 : 0;
    for (int i = 1; i <= row.count; ++i) {
      int column = (i - 1) / deep * wide;
      const int line = (i - 1) % deep + 1;
      if (!numbered) {
        auto* number = new QLabel(QString::number(i), &box);
        number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table->addWidget(number, line, column);
      }
      for (const Place& place : row.places) {
        if (!place.control) continue;
        ++column;
        if (line == 1) table->addWidget(make_label(place.control, nullptr, box), 0, column);
        if (i <= grid_rows(row, place)) table->addWidget(array_control(place, i, box), line, column);
      }
    }
    grid.addLayout(table, at, 0, 1, 6);
  }

  QWidget* array_control(const Place& place, int i, QWidget& box) {
    QWidget* widget = make_control(place, place.control + std::to_string(i), &box);
    widget->setProperty("label_key", QString(place.control));
    widget->setProperty("label_index", i);
    // The head of the column is their caption; a box bears the number of its row.
    widget->setProperty("no_caption", true);
    if (auto* box_of_row = qobject_cast<QCheckBox*>(widget)) box_of_row->setText(QString::number(i));
    return widget;
  }

  void add_slider(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    grid.addWidget(control(row.places[0], row, box), at, 1, 1, 5);
  }

  void add_line(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    auto* line = new QHBoxLayout;
    line->setSpacing(root_->style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing) *
                     (row.shape == RowShape::bare ? 3 : 1));  // boxes stand further apart than buttons
    if (row.shape == RowShape::buttons) line->addStretch(1);
    for (const Place& place : row.places)
      if (place.control) line->addWidget(control(place, row, box));
    if (row.shape == RowShape::bare) line->addStretch(1);
    const bool labelled = row.shape == RowShape::bare && row.label;
    if (labelled) add_label(grid, at, row.label, nullptr, box);
    grid.addLayout(line, at, labelled ? 1 : 0, 1, labelled ? 5 : 6);
  }

  // The unit behind a control: its own, else that of the number it shows.
  const char* unit_of(const Place& place) const {
    if (place.unit) return place.unit;
    for (const NumberField& number : spec_.numbers)
      for (const NumberSide& side : number.sides)
        if (side.field && std::string_view(side.field) == place.control) return side.unit->caption;
    return nullptr;
  }

  QWidget* control(const Place& place, const Row& row, QWidget& box) {
    QWidget* widget = make_control(place, place.control, &box);
    if (row.label && row.label[0] != '@') widget->setProperty("label_key", QString(row.label));
    return widget;
  }

  QWidget* make_control(const Place& place, const std::string& name, QWidget* parent) {
    QWidget* widget = nullptr;
    switch (place.kind) {
      case ControlKind::number:
      case ControlKind::text:
      case ControlKind::display:
        widget = field_edit(place.kind, parent);
        break;
      case ControlKind::list:
        widget = place.list == ListOf::leads ? new LeadList(parent) : new QListWidget(parent);
        break;
      case ControlKind::combo:
        widget = new RecordList(parent);
        break;
      case ControlKind::check:
        widget = new QCheckBox(parent);
        break;
      case ControlKind::option:
        widget = option_of(name, parent);
        break;
      case ControlKind::button: {
        auto* button = new QPushButton(parent);
        button->setAutoDefault(false);
        widget = button;
        break;
      }
      case ControlKind::memo:
      case ControlKind::view: {
        auto* text = new QPlainTextEdit(parent);
        text->setReadOnly(place.kind == ControlKind::view);
        text->setTabChangesFocus(true);
        widget = text;
        break;
      }
      case ControlKind::bar:
        widget = new QSlider(Qt::Horizontal, parent);
        break;
      case ControlKind::surface:
        return new SurfaceView(desk_, spec_.name, *find_surface(desk_.session(), spec_.name, name), parent);
    }
    widget->setObjectName(QString::fromStdString(name));
    return widget;
  }

  FieldEdit* field_edit(ControlKind kind, QWidget* parent) const {
    auto* edit = new FieldEdit(kind, parent);
    if (spec_.shape == ScreenShape::child && kind != ControlKind::text) edit->allow_narrow();
    return edit;
  }

  // Options whose names differ in their number exclude each other, wherever they stand.
  QWidget* option_of(const std::string& name, QWidget* parent) {
    QButtonGroup*& group = options_[name.substr(0, name.find_last_not_of("0123456789") + 1)];
    if (!group) group = new QButtonGroup(root_);
    auto* option = new QRadioButton(parent);
    group->addButton(option);
    return option;
  }

  void add_label(QGridLayout& grid, int at, const char* key, QWidget* buddy, QWidget& box) {
    grid.addWidget(make_label(key, buddy, box), at, 0);
  }

  QLabel* make_label(const char* key, QWidget* buddy, QWidget& box) {
    auto* label = new QLabel(&box);
    if (key[0] == '@') {
      label->setObjectName(key + 1);
      return label;
    }
    label->setObjectName(QString("label_") + key);
    label->setProperty(kCaptionKey, QString(key));
    label->setBuddy(buddy);
    return label;
  }

  QLabel* make_unit(const char* unit, QWidget& box) {
    auto* label = new DimLabel(&box);
    if (unit[0] == '@')
      label->setObjectName(unit + 1);
    else if (unit[0] == '*')
      label->setProperty("pressure_unit", unit[1] == '*' ? "mode" : "chosen");
    else if (unit[0] == '%')
      label->setProperty("local_units", QString(unit + 1).split('|'));
    else
      label->setProperty(kUnitKey, QString(unit));
    return label;
  }

  Desk& desk_;
  const ScreenSpec& spec_;
  std::span<const Group> groups_;
  QWidget* root_;
  std::map<std::string, QButtonGroup*> options_;
};

}  // namespace

void align_forms(const std::vector<QWidget*>& roots) {
  std::map<std::pair<int, int>, int> widest;  // form column, grid column: labels and units
  std::vector<std::pair<QGridLayout*, int>> grids;
  for (const QWidget* root : roots)
    for (QGridLayout* grid : root->findChildren<QGridLayout*>())
      if (const QVariant column = grid->property("column"); column.isValid())
        grids.emplace_back(grid, column.toInt());
  for (const auto& [grid, column] : grids)
    for (int i = 0; i < grid->count(); ++i) {
      int row = 0, part = 0, rows = 0, parts = 0;
      grid->getItemPosition(i, &row, &part, &rows, &parts);
      if (parts > 1 || part % 2 == 1) continue;
      int& width = widest[{column, part}];
      width = std::max(width, grid->itemAt(i)->sizeHint().width());
    }
  for (const auto& [grid, column] : grids)
    for (const int part : {0, 2, 4}) grid->setColumnMinimumWidth(part, widest[{column, part}]);
}

QWidget* build_form(Desk& desk, const ScreenSpec& spec, std::span<const Group> groups, QWidget* parent) {
  auto* root = new QWidget(parent);
  Builder(desk, spec, groups, root).build();
  return root;
}

}  // namespace tv
