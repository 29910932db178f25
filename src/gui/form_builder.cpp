#include "gui/form_builder.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <algorithm>
#include <map>

#include "gui/captions.h"
#include "gui/number_edit.h"
#include "gui/record_list.h"
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
    painter.setPen(palette().color(QPalette::PlaceholderText));
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

class Builder {
public:
  Builder(Desk& desk, const ScreenSpec& spec, QWidget* root) : desk_(desk), spec_(spec), root_(root) {}

  void build() {
    auto* grid = new QGridLayout(root_);
    std::map<int, QVBoxLayout*> columns;
    int count = 1;
    for (const Group& group : spec_.form) count = std::max(count, group.column + 1);
    int below = 1;
    for (const Group& group : spec_.form) {
      if (group.column < 0) {  // over the whole width
        add_group(group, [&](QWidget* box) { grid->addWidget(box, below++, 0, 1, count); });
        continue;
      }
      QVBoxLayout*& column = columns[group.column];
      if (!column) {
        column = new QVBoxLayout;
        grid->addLayout(column, 0, group.column);
        grid->setColumnStretch(group.column, 1);
      }
      // A block takes the room that its column has left.
      const bool grows =
          std::ranges::any_of(group.rows, [](const Row& row) { return row.shape == RowShape::block; });
      add_group(group, [&](QWidget* box) { column->addWidget(box, grows ? 100 : 0); });
    }
    for (auto& [number, column] : columns) column->addStretch(1);
    if (auto* button = root_->findChild<QPushButton*>(QString(spec_.default_button)))
      button->setDefault(true);
  }

private:
  template <class Add>
  void add_group(const Group& group, Add add) {
    auto* box = group.title ? static_cast<QWidget*>(new QGroupBox(root_)) : new QWidget(root_);
    if (group.title) box->setObjectName(group.title);
    if (group.shown) box->setProperty(kGroup, static_cast<int>(&group - spec_.form.data()));
    auto* grid = new QGridLayout(box);
    if (!group.title) grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(3);
    grid->setProperty("column", group.column);
    if (group.title) grid->setContentsMargins(8, 4, 8, 6);
    // label, field, unit, field, unit: the fields share what room is left
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    for (const Row& row : group.rows) add_row(*grid, row, *box);
    // Across all columns, so that a group with one field a row shares them as its neighbours do.
    grid->addItem(new QSpacerItem(0, 0), 0, 0, 1, 5);
    add(box);
  }

  void add_row(QGridLayout& grid, const Row& row, QWidget& box) {
    const int at = grid.rowCount();
    switch (row.shape) {
      case RowShape::pair:
        return add_pair(grid, at, row, box);
      case RowShape::wide: {
        QWidget* widget = control(row.places[0], row, box);
        add_label(grid, at, row.label, widget, box);
        grid.addWidget(widget, at, 1, 1, 4);
      }
        return;
      case RowShape::source: {
        auto* label = new SourceLabel(&box);
        label->setObjectName(QString("source_") + row.label);
        grid.addWidget(label, at, 1, 1, 4);
        return;
      }
      case RowShape::slider:
        return add_slider(grid, at, row, box);
      case RowShape::bare:
      case RowShape::buttons:
        return add_line(grid, at, row, box);
      case RowShape::block: {
        QWidget* widget = control(row.places[0], row, box);
        if (row.label) grid.addWidget(make_label(row.label, widget, box), at, 0, 1, 5);
        grid.addWidget(widget, at + 1, 0, 1, 5);
        grid.setRowStretch(at + 1, 1);
      }
        return;
      case RowShape::note:
        grid.addWidget(make_label(row.label, nullptr, box), at, 0, 1, 5);
        return;
      case RowShape::grid:
        return add_table(grid, at, row, box);
    }
  }

  void add_pair(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    QWidget* first = nullptr;
    int column = 1;
    for (const Place& place : row.places) {
      if (!place.control) continue;
      QWidget* widget = control(place, row, box);
      if (!first) first = widget;
      grid.addWidget(widget, at, column);
      if (const char* unit = unit_of(place)) grid.addWidget(make_unit(unit, box), at, column + 1);
      column += 2;
    }
    if (first && row.label) add_label(grid, at, row.label, first, box);
  }

  // A head of captions, then numbered rows of fields.
  void add_table(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    auto* table = new QGridLayout;
    table->setVerticalSpacing(2);
    table->setHorizontalSpacing(10);
    int column = 0;
    for (const Place& place : row.places)
      if (place.control) table->addWidget(make_label(place.control, nullptr, box), 0, ++column);
    for (int i = 1; i <= row.count; ++i) {
      column = 0;
      for (const Place& place : row.places) {
        if (!place.control) continue;
        ++column;
        if (i <= grid_rows(row, place)) table->addWidget(array_control(place, i, box), i, column);
      }
    }
    for (int i = 1; i <= row.count; ++i) {
      auto* number = new QLabel(QString::number(i), &box);
      number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table->addWidget(number, i, 0);
    }
    grid.addLayout(table, at, 0, 1, 5);
  }

  QWidget* array_control(const Place& place, int i, QWidget& box) {
    QWidget* widget = make_control(place, place.control + std::to_string(i), &box);
    widget->setProperty("label_key", QString(place.control));
    widget->setProperty("label_index", i);
    return widget;
  }

  void add_slider(QGridLayout& grid, int at, const Row& row, QWidget& box) {
    grid.addWidget(control(row.places[0], row, box), at, 1, 1, 4);
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
    grid.addLayout(line, at, labelled ? 1 : 0, 1, labelled ? 4 : 5);
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
    if (const char* unit = unit_of(place); unit && unit[0] == 'u')
      widget->setProperty("unit_key", QString(unit));
    return widget;
  }

  QWidget* make_control(const Place& place, const std::string& name, QWidget* parent) {
    QWidget* widget = nullptr;
    switch (place.kind) {
      case ControlKind::number:
      case ControlKind::text:
      case ControlKind::display:
        widget = new FieldEdit(place.kind, parent);
        break;
      case ControlKind::list:
        widget = new QListWidget(parent);
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
    auto* label = new QLabel(&box);
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
  QWidget* root_;
  std::map<std::string, QButtonGroup*> options_;
};

}  // namespace

void align_form(QWidget* root) {
  std::map<std::pair<int, int>, int> widest;  // form column, grid column: labels and units
  std::vector<std::pair<QGridLayout*, int>> grids;
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

QWidget* build_form(Desk& desk, const ScreenSpec& spec, QWidget* parent) {
  auto* root = new QWidget(parent);
  Builder(desk, spec, root).build();
  return root;
}

}  // namespace tv
