#include "output/document_text.h"

#include <algorithm>

#include "text/wrap.h"

namespace tv {
namespace {

// Bytes of the character that begins there.
std::size_t character_length(const std::string& text, std::size_t at) {
  std::size_t n = 1;
  while (at + n < text.size() && (static_cast<unsigned char>(text[at + n]) & 0xC0) == 0x80) ++n;
  return n;
}

// A word too wide by itself, cut into pieces that are not; at least a character each.
template <class Fits>
void add_pieces(std::vector<std::string>& lines, const std::string& word, Fits fits) {
  std::string piece;
  for (std::size_t at = 0; at < word.size();) {
    const std::size_t n = character_length(word, at);
    const std::string next = word.substr(at, n);
    if (!piece.empty() && !fits(piece + next)) {
      lines.push_back(piece);
      piece.clear();
    }
    piece += next;
    at += n;
  }
  lines.push_back(piece);
}

}  // namespace

std::vector<std::string> Setting::lines(const std::string& text, double room, double letters,
                                        bool bold) const {
  const auto fits = [&](const std::string& line) { return measure(line, letters, bold) <= room; };
  std::vector<std::string> out;
  for (const std::string& line : wrap_words(text, fits)) {
    if (fits(line))
      out.push_back(line);
    else
      add_pieces(out, line, fits);
  }
  return out;
}

double Setting::fitting(const std::string& text, double room, double letters, bool bold) const {
  const double wide = measure(text, letters, bold);
  return wide > room && wide > 0 ? letters * room / wide * 0.995 : letters;
}

Flow flow_of_title(const std::string& title, const Setting& t) {
  Flow flow;
  if (title.empty()) return flow;
  for (const std::string& line : t.lines(title, t.width(), t.size * 1.05, true)) {
    flow.strips.push_back({t.size * kLeading * 1.05,
                           [=](DrawList& page, double top) {
                             add_text(page, {t.left, top + t.size * 1.05}, line,
                                      {.colour = kPageInk, .size = t.size * 1.05, .bold = true});
                           },
                           true});
  }
  flow.strips.push_back({t.size * 0.6,
                         [=](DrawList& page, double top) {
                           add_line(page, {t.left, top + t.size * 0.1}, {t.right, top + t.size * 0.1},
                                    {kPageInk, 1, LineStyle::solid});
                         },
                         true});
  return flow;
}

Flow flow_of(const Paragraph& paragraph, const Setting& t) {
  Flow flow = flow_of_title(paragraph.title, t);
  for (const std::string& line : t.lines(paragraph.text, t.width(), t.size, paragraph.bold)) {
    const bool bold = paragraph.bold;
    flow.strips.push_back(
        {t.size * kLeading, [=](DrawList& page, double top) {
           if (!line.empty())
             add_text(page, {t.left, top + t.size}, line, {.colour = kPageInk, .size = t.size, .bold = bold});
         }});
  }
  return flow;
}

// --- key figures

namespace {

struct KeyBox {
  double left = 0, right = 0;
  double pad() const { return (right - left) * 0.06; }
  double room() const { return right - left - 2 * pad(); }
};

void draw_key(DrawList& page, const Setting& t, const KeyFigure& figure, KeyBox box, double top,
              double height) {
  const bool over = figure.standing == Standing::over;
  if (over) add_band(page, {box.left, top}, {box.right, top + height}, kPageRed);
  if (figure.standing == Standing::warned)
    add_band(page, {box.left, top}, {box.right, top + height}, kPageShade);
  const Colour ink = over ? kPageWhite : kPageInk, dim = over ? kPageWhite : kPageDim;
  const double x = box.left + box.pad();
  double y = top + t.size * 1.3;
  const auto small = [&](const std::string& text, bool bold) {
    add_text(
        page, {x, y}, text,
        {.colour = bold ? ink : dim, .size = t.fitting(text, box.room(), t.size * 0.85, bold), .bold = bold});
  };
  small(figure.label, false);
  y += t.size * 2;
  const std::string unit = figure.unit.empty() ? "" : " " + figure.unit;
  const double together = t.measure(figure.value, t.size * 1.8, true) + t.measure(unit, t.size);
  const double scale = std::min(1.0, box.room() / std::max(together, 1.0) * 0.98);
  const double large = t.size * 1.8 * scale;
  add_text(page, {x, y}, figure.value, {.colour = ink, .size = large, .bold = true});
  if (!unit.empty())
    add_text(page, {x + t.measure(figure.value, large, true), y}, unit,
             {.colour = ink, .size = t.size * scale});
  y += t.size * 1.5;
  small(figure.below, figure.standing != Standing::plain);
}

}  // namespace

Flow flow_of(const KeyFigures& figures, const Setting& t) {
  Flow flow;
  if (figures.empty()) return flow;
  const double height = t.size * 5.6, gap = t.size * 0.9;
  const auto draw = [=](DrawList& page, double top) {
    const double each = t.width() / static_cast<double>(figures.size());
    for (std::size_t i = 0; i < figures.size(); ++i) {
      const double left = t.left + each * static_cast<double>(i);
      draw_key(page, t, figures[i], {left, left + each}, top, height);
      if (i > 0) add_line(page, {left, top}, {left, top + height}, {kPageRule, 0.7, LineStyle::solid});
    }
    const double bottom = top + height;
    add_polyline(page, {{t.left, top}, {t.right, top}, {t.right, bottom}, {t.left, bottom}, {t.left, top}},
                 {kPageInk, 1, LineStyle::solid});
  };
  flow.strips.push_back({height + gap, draw});
  return flow;
}

// --- labels and values

namespace {

// One line of a column: all have the same height, so that both columns break at the same places.
struct ColumnLine {
  std::string label, value, second;
  bool heading = false, text = false, ruled = false, keep = false;
  Standing standing = Standing::plain;
};

struct ColumnWidths {
  double left = 0, right = 0, value_right = 0, label_room = 0, text_room = 0;
};

ColumnWidths widths_of(const std::vector<LabelGroup>& groups, const Setting& t, double left, double right) {
  double value = 0, second = 0;
  for (const LabelGroup& group : groups)
    for (const LabelRow& row : group.rows) {
      if (row.is_text) continue;
      value = std::max(value, t.measure(row.value, t.size, true));
      second = std::max(second, t.measure(row.second, t.size));
    }
  const double gap = t.size * 0.8, width = right - left;
  ColumnWidths w{left, right, right - second - (second > 0 ? gap : 0), 0, width * 0.62};
  w.label_room = std::max(width * 0.3, w.value_right - value - gap - left);
  return w;
}

void add_row(std::vector<ColumnLine>& out, const LabelRow& row, const ColumnWidths& w, const Setting& t) {
  const double gap = t.size * 0.8;
  // A text leaves the label its own width, up to a part of the column.
  const double label_room = row.is_text ? (w.right - w.left) * 0.38 - gap : w.label_room;
  const std::vector<std::string> labels = t.lines(row.label, label_room, t.size);
  std::vector<std::string> values{row.value};
  if (row.is_text) values = t.lines(row.value, w.text_room, t.size, true);
  const std::size_t count = std::max(labels.size(), values.size());
  for (std::size_t i = 0; i < count; ++i) {
    ColumnLine& line = out.emplace_back();
    if (i < labels.size()) line.label = labels[i];
    if (i < values.size()) line.value = values[i];
    if (i == 0) line.second = row.second;
    line.text = row.is_text;
    line.standing = row.standing;
    line.ruled = i + 1 == count;
    line.keep = !line.ruled;
  }
}

std::vector<ColumnLine> lines_of(const std::vector<LabelGroup>& groups, const ColumnWidths& w,
                                 const Setting& t) {
  std::vector<ColumnLine> out;
  for (const LabelGroup& group : groups) {
    if (group.rows.empty()) continue;
    if (!out.empty()) out.emplace_back();
    for (const std::string& title : group.title.empty()
                                        ? std::vector<std::string>{}
                                        : t.lines(group.title, w.right - w.left, t.size, true)) {
      ColumnLine& line = out.emplace_back();
      line.label = title;
      line.heading = line.keep = true;
    }
    for (const LabelRow& row : group.rows) add_row(out, row, w, t);
  }
  return out;
}

void draw_line(DrawList& page, const Setting& t, const ColumnLine& line, const ColumnWidths& w, double top,
               double pitch) {
  const double y = top + pitch * 0.72, below = top + pitch * 0.97;
  const Colour ink = line.standing == Standing::over ? kPageRed : kPageInk;
  const auto put = [&](double x, const std::string& text, Align align, bool bold, Colour colour) {
    if (!text.empty()) add_text(page, {x, y}, text, {colour, t.size, align, bold, false});
  };
  put(w.left, line.label, Align::left, line.heading, ink);
  put(line.text ? w.right : w.value_right, line.value, Align::right, true, ink);
  put(w.right, line.second, Align::right, false, kPageDim);
  if (line.heading) add_line(page, {w.left, below}, {w.right, below}, {kPageInk, 1, LineStyle::solid});
  if (line.ruled) add_line(page, {w.left, below}, {w.right, below}, {kPageRule, 0.5, LineStyle::dot});
}

}  // namespace

Flow flow_of(const TwoColumns& columns, const Setting& t) {
  const double middle = (t.left + t.right) / 2, gap = t.width() * 0.02, pitch = t.size * 1.42;
  const ColumnWidths left = widths_of(columns.left, t, t.left, middle - gap);
  const ColumnWidths right = widths_of(columns.right, t, middle + gap, t.right);
  const std::vector<ColumnLine> a = lines_of(columns.left, left, t), b = lines_of(columns.right, right, t);
  Flow flow;
  for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    const ColumnLine of_left = i < a.size() ? a[i] : ColumnLine{};
    const ColumnLine of_right = i < b.size() ? b[i] : ColumnLine{};
    flow.strips.push_back({pitch,
                           [=](DrawList& page, double top) {
                             draw_line(page, t, of_left, left, top, pitch);
                             draw_line(page, t, of_right, right, top, pitch);
                           },
                           of_left.keep || of_right.keep});
  }
  if (!flow.strips.empty()) flow.strips.push_back({t.size * 0.8, {}, false});
  return flow;
}

}  // namespace tv
