// Tables on paper.
#include <algorithm>
#include <memory>

#include "output/document_text.h"
#include "text/wrap.h"

namespace tv {
namespace {

using Column = PrintedTable::Column;

double widest_word(const std::string& text, const Setting& t, double size) {
  double widest = 0;
  for (const std::string& word : wrap_words(text, [](const std::string&) { return false; }))
    widest = std::max(widest, t.measure(word, size, true));
  return widest;
}

// The least width of each column: no figure and no word of a head is broken. Names may be.
std::vector<double> least_widths(const PrintedTable& table, const Setting& t, double size) {
  std::vector<double> widths;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    double width = std::max(widest_word(column.title, t, size), t.measure(column.unit, size));
    for (const PrintedTable::Row& row : table.rows)
      if (i < row.cells.size())
        width = std::max(width, i == 0 ? std::min(t.measure(row.cells[i], size, true), 16 * size)
                                       : t.measure(row.cells[i], size, true));
    widths.push_back(width);
  }
  return widths;
}

double gap_of(double size) { return size * 0.9; }

// A table ready to be drawn: the right edge of each column, the left one of the names.
struct Plan {
  Setting t;
  double size = 0, line = 0;
  std::vector<double> right;
  std::vector<std::vector<std::string>> titles;
  std::vector<Column> columns;
  std::size_t title_lines = 1;
  double name_room() const { return right.front() - t.left; }
};

Plan plan_of(const PrintedTable& table, const Setting& t) {
  Plan plan{t, t.size, t.size * kLeading, {}, {}, table.columns, 1};
  const std::vector<double> least = least_widths(table, t, t.size);
  double needed = 0;
  for (const double width : least) needed += width + gap_of(t.size);
  const double spare = std::max(0.0, t.width() - needed + gap_of(t.size)) / static_cast<double>(least.size());
  double x = t.left;
  for (std::size_t i = 0; i < least.size(); ++i) {
    x += least[i] + spare + (i == 0 ? 0 : gap_of(t.size));
    plan.right.push_back(x);
    plan.titles.push_back(t.lines(table.columns[i].title, least[i] + spare, t.size, true));
    plan.title_lines = std::max(plan.title_lines, plan.titles.back().size());
  }
  return plan;
}

void put_cell(DrawList& page, const Plan& p, std::size_t column, double y, const std::string& text, bool bold,
              Colour colour) {
  if (text.empty()) return;
  const bool name = column == 0;
  add_text(page, {name ? p.t.left : p.right[column], y}, text,
           {colour, p.size, name ? Align::left : Align::right, bold, false});
}

Strip head_of(const std::shared_ptr<const Plan>& p) {
  const double height = static_cast<double>(p->title_lines + 1) * p->line + p->size * 0.5;
  return {height, [p, height](DrawList& page, double top) {
            for (std::size_t i = 0; i < p->titles.size(); ++i) {
              const auto& lines = p->titles[i];
              // The last line of each title stands in one row.
              double y = top + static_cast<double>(p->title_lines - lines.size()) * p->line + p->size;
              for (const std::string& line : lines) {
                put_cell(page, *p, i, y, line, true, kPageInk);
                y += p->line;
              }
              put_cell(page, *p, i, y, p->columns[i].unit, false, kPageDim);
            }
            const double below = top + height - p->size * 0.3;
            add_line(page, {p->t.left, below}, {p->t.right, below}, {kPageInk, 1, LineStyle::solid});
          }};
}

Strip row_of(const std::shared_ptr<const Plan>& p, const PrintedTable::Row& row) {
  const bool bold = row.bold || row.standing == Standing::over;
  const std::vector<std::string> name = p->t.lines(row.cells.front(), p->name_room(), p->size, bold);
  const double height = static_cast<double>(name.size()) * p->line + p->size * 0.12;
  return {height, [=](DrawList& page, double top) {
            const Colour ink = row.standing == Standing::over ? kPageRed : kPageInk;
            double y = top + p->size;
            for (const std::string& line : name) {
              put_cell(page, *p, 0, y, line, bold, ink);
              y += p->line;
            }
            for (std::size_t i = 1; i < row.cells.size(); ++i)
              put_cell(page, *p, i, top + p->size, row.cells[i], bold, ink);
            add_line(page, {p->t.left, top + height}, {p->t.right, top + height},
                     {kPageRule, 0.4, LineStyle::dot});
          }};
}

}  // namespace

double table_width(const PrintedTable& table, const Setting& t, double size) {
  double width = -gap_of(size);
  for (const double each : least_widths(table, t, size)) width += each + gap_of(size);
  return width;
}

Flow flow_of(const PrintedTable& table, const Setting& t) {
  Flow flow;
  if (table.columns.empty()) return flow;
  const auto plan = std::make_shared<const Plan>(plan_of(table, t));
  flow.head.push_back(head_of(plan));
  for (const PrintedTable::Row& row : table.rows) {
    for (const std::string& line :
         row.above.empty() ? std::vector<std::string>{} : t.lines(row.above, t.width(), t.size)) {
      flow.strips.push_back(
          {plan->line * 1.2,
           [=](DrawList& page, double top) {
             add_text(page, {t.left, top + t.size * 1.2}, line, {.colour = kPageDim, .size = t.size});
           },
           true});
    }
    flow.strips.push_back(row_of(plan, row));
  }
  return flow;
}

}  // namespace tv
