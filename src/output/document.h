// A document to be printed, as plain records, and its pages as draw lists. Whoever writes a report tells what
// stands in it; how it is set and broken into pages is told here, once.
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "output/draw_list.h"
#include "output/page_box.h"

namespace tv {

// How a figure stands to the limit: over is filled, so that it shows on any printer.
enum class Standing : std::uint8_t { plain, warned, over };

// A figure that stands large at the head of a document.
struct KeyFigure {
  std::string label, value, unit, below;
  Standing standing = Standing::plain;
};
using KeyFigures = std::vector<KeyFigure>;

// A label with its value, and the value in a second unit. A text (name, comment) may take the width of both.
struct LabelRow {
  std::string label, value, second;
  bool is_text = false;
  Standing standing = Standing::plain;
};
struct LabelGroup {
  std::string title;
  std::vector<LabelRow> rows;
};
// Groups below each other, in two columns beside each other.
struct TwoColumns {
  std::vector<LabelGroup> left, right;
};

struct Paragraph {
  std::string title, text;  // lines parted by "\n", broken where they are too long
  bool bold = false;
};

// Heads are repeated on each page. The first column holds names and is broken where it is too wide.
struct PrintedTable {
  struct Column {
    std::string title, unit;
  };
  struct Row {
    std::vector<std::string> cells;
    std::string above = {};  // a line over the row
    Standing standing = Standing::plain;
    bool bold = false;
  };
  std::vector<Column> columns;
  std::vector<Row> rows;
};

// Takes the room that is left on the page, or a new one.
struct Picture {
  std::string title;
  std::function<DrawList(double width, double height, TextWidth text_width)> draw;
};

using DocumentBlock = std::variant<KeyFigures, TwoColumns, Paragraph, PrintedTable, Picture>;

struct Document {
  std::string title, subtitle, heading;  // heading: the person's own line, below
  std::string stamp;                     // date and program
  std::vector<DocumentBlock> blocks;
  bool page_for_each_picture = false;
  bool one_page = false;  // letters are made up to a fifth smaller where that saves the second page
  std::string notes;      // at the foot of every page: of the run
  bool notes_red = false;
  std::string notice, page_word, of_word;  // "page 1 of 2"
};

struct PageFormat {
  PrintablePage page;
  PageBox box;
  std::string font = "Arial";
  double points = 8;  // size of the letters
  TextWidth text_width = estimated_text_width;
};

inline constexpr double kUnitsPerPoint = 96.0 / 72;
inline constexpr double kSmallestPoints = 6;
// The size of letters chosen is that of a table on a page this wide; narrower pages have smaller ones.
inline constexpr double kFullTableTwips = 15133;

// A table is too wide for the page even in the smallest readable letters: the paper wants to be turned.
bool wants_landscape(const Document& document, const PageFormat& format);

// All pages, each as wide and high as what the printer can print on. None if the margins leave no room for a
// few lines. Nothing is cut: what is too long is broken into lines or set smaller, and never below 6 points
// as long as there is another way.
std::vector<DrawList> document_pages(const Document& document, const PageFormat& format);

}  // namespace tv
