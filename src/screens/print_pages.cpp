#include "screens/print_pages.h"

#include <fmt/format.h>

#include <algorithm>

#include "screens/output_window.h"
#include "text/wrap.h"

namespace tv {
namespace {

constexpr double kUnitsPerPoint = 96.0 / 72;
constexpr double kSmallest = 6 * kUnitsPerPoint;
constexpr double kNoteSize = 7 * kUnitsPerPoint;
constexpr double kLeading = 1.25;  // of the letters' height
constexpr double kGap = 8;         // between body and head or foot
constexpr double kLeastWidth = 150, kLeastBody = 60;
constexpr Colour kInk{0, 0, 0, 255}, kRule{120, 120, 120, 255};

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n')
      lines.emplace_back();
    else if (c != '\r')
      lines.back() += c;
  }
  while (!lines.empty() && trim(lines.back()).empty()) lines.pop_back();
  return lines;
}

// Words into lines no wider than the area.
std::vector<std::string> wrapped(std::string text, double size, const std::string& font,
                                 const PrintArea& area) {
  std::erase(text, '\r');
  while (text.ends_with(' ') || text.ends_with('\n')) text.pop_back();
  return wrap_words(text, [&](const std::string& line) {
    return area.text_width(line, size, false, false, font) <= area.width;
  });
}

double width_of(const std::vector<std::string>& lines, double size, const PrintArea& area) {
  double widest = 1;
  for (const std::string& line : lines)
    widest = std::max(widest, area.text_width(line, size, false, false, area.fixed_font));
  return widest;
}

double text_size(const Session& s) { return std::clamp(s.options.pri_font_siz, 6.0, 24.0) * kUnitsPerPoint; }

// Of the load whose figures are on show, from the copy that its run made.
std::string head_line(const Session& s) {
  const int mode = s.options.grftyp;
  const DataBlock& block = mode == -1   ? s.tables.load.inputs.block
                           : mode == -2 ? s.tables.powder.inputs.block
                                        : s.shown.block;
  const auto part = [&](const char* key, const std::string& value) {
    return s.language.fastmsg(key) + ": " + value;
  };
  std::string line = part("fcartrd", block.cartridge) + "; " + part("fbullet", block.bullet);
  if (mode != -2) line += "; " + part("fpow", block.powder);
  if (mode >= 0)
    line += "; " + part("fcharge", block.MPgn + " " + s.language.fastmsg("fgrains") + " = " + block.MPgm +
                                       " " + s.language.fastmsg("fgramm"));
  return line;
}

// Head and foot of every page; what is left between them is the body.
struct Sheet {
  DrawList list;
  double body_top = 0, body_height = 0;
};

Sheet make_sheet(const Session& s, const PrintArea& area) {
  Sheet sheet;
  DrawList& list = sheet.list;
  list.width = area.width;
  list.height = area.height;
  list.font = s.options.pri_font_nam;
  const double size = text_size(s);
  double y = 0;
  const auto write = [&](const std::string& text, double letters, bool bold) {
    y += letters * kLeading;
    add_text(list, {0, y - letters * (kLeading - 1)}, text, {.colour = kInk, .size = letters, .bold = bold});
  };
  const auto rule = [&] {
    y += kGap / 2;
    add_line(list, {0, y}, {area.width, y}, {kRule, 0.7, LineStyle::solid});
    y += kGap / 2;
  };
  write(output_caption(s), size * 1.25, true);
  for (const std::string& line : wrapped(head_line(s), size, list.font, area)) write(line, size, false);
  rule();
  sheet.body_top = y;
  const std::vector<std::string> notes = wrapped(output_notes(s), kNoteSize, list.font, area);
  const double foot = kGap + static_cast<double>(notes.size() + 1) * kNoteSize * kLeading;
  sheet.body_height = area.height - foot - y;
  y = area.height - foot;
  rule();
  for (const std::string& line : notes) write(line, kNoteSize, false);
  write(fmt::format("{} {}, {} {}", kProgramName, kVersion, s.shown.date, s.shown.time), kNoteSize, false);
  return sheet;
}

void number_pages(std::vector<PrintPage>& pages, const PrintArea& area) {
  for (std::size_t i = 0; i < pages.size(); ++i)
    add_text(pages[i][0].list, {area.width, area.height - kNoteSize * (kLeading - 1)},
             std::to_string(i + 1) + " / " + std::to_string(pages.size()),
             {.colour = kInk, .size = kNoteSize, .align = Align::right});
}

std::vector<PrintPage> text_pages(const Session& s, const PrintArea& area, const Sheet& sheet) {
  const std::vector<std::string> lines = lines_of(output_text(s));
  double size = text_size(s);
  const double width = width_of(lines, size, area);
  if (width > area.width) size *= area.width / width * 0.99;
  const auto per_page = static_cast<std::size_t>(std::max(1.0, sheet.body_height / (size * kLeading)));
  std::vector<PrintPage> pages;
  for (std::size_t first = 0; first < lines.size(); first += per_page) {
    DrawList body;
    body.width = area.width;
    body.height = sheet.body_height;
    body.font = area.fixed_font;
    const std::size_t end = std::min(first + per_page, lines.size());
    for (std::size_t i = first; i < end; ++i)
      if (!lines[i].empty())
        add_text(body, {0, static_cast<double>(i - first) * size * kLeading + size}, lines[i],
                 {.colour = kInk, .size = size});
    pages.push_back({{{}, sheet.list}, {{0, sheet.body_top}, std::move(body)}});
  }
  return pages;
}

}  // namespace

bool output_printable(const Session& s) {
  const int mode = s.options.grftyp;
  const bool any = mode == -1   ? s.tables.load.row_count > 0
                   : mode == -2 ? !s.tables.powder.rows.empty()
                                : s.shown.any;
  return any && s.valid.results && !output_stale(s);
}

bool wants_landscape(const Session& s, const PrintArea& area) {
  return output_shows_text(s) && width_of(lines_of(output_text(s)), kSmallest, area) > area.width;
}

std::vector<PrintPage> output_pages(const Session& s, const PrintArea& area) {
  if (area.width < kLeastWidth) return {};
  const Sheet sheet = make_sheet(s, area);
  if (sheet.body_height < kLeastBody) return {};
  std::vector<PrintPage> pages;
  if (output_shows_text(s)) {
    pages = text_pages(s, area, sheet);
  } else {
    const double height = std::min(sheet.body_height, area.width * 0.8);
    pages.push_back({{{}, sheet.list},
                     {{0, sheet.body_top}, output_diagram(s, area.width, height, area.text_width).list}});
  }
  number_pages(pages, area);
  return pages;
}

}  // namespace tv
