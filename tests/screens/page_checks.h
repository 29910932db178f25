// What must hold of every printed page: all within the margins, no text over another, every line there once.
#pragma once

#include <gtest/gtest.h>

#include <map>

#include "screens/reports.h"

namespace tv_test {

struct TextBox {
  double left, right, top, bottom;
  const tv::DrawItem* item;
};

inline std::vector<TextBox> boxes_of(const tv::DrawList& page, tv::TextWidth text_width) {
  std::vector<TextBox> boxes;
  for (const tv::DrawItem& item : page.items) {
    if (item.kind != tv::DrawKind::text || item.text.find_first_not_of(' ') == std::string::npos) continue;
    const double width = text_width(item.text, item.size, item.bold, item.italic, page.font);
    const double share = item.align == tv::Align::left ? 0 : item.align == tv::Align::centre ? 0.5 : 1;
    const double x = item.points[0].x - share * width, y = item.points[0].y;
    boxes.push_back({x, x + width, y - 0.7 * item.size, y + 0.05 * item.size, &item});
  }
  return boxes;
}

inline void expect_clean(const tv::DrawList& page, const tv::PageFormat& format) {
  const double unit = tv::kTwipsPerUnit, edge = 0.6;
  const std::vector<TextBox> boxes = boxes_of(page, format.text_width);
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const TextBox& a = boxes[i];
    EXPECT_GE(a.left, format.box.left / unit - edge) << a.item->text;
    EXPECT_LE(a.right, format.box.right / unit + edge) << a.item->text;
    EXPECT_GE(a.top, format.box.top / unit - edge) << a.item->text;
    EXPECT_LE(a.bottom, format.box.bottom / unit + edge) << a.item->text;
    for (std::size_t j = 0; j < i; ++j) {
      const TextBox& b = boxes[j];
      const bool apart = a.right <= b.left + edge || b.right <= a.left + edge || a.bottom <= b.top + edge ||
                         b.bottom <= a.top + edge;
      EXPECT_TRUE(apart) << "'" << a.item->text << "' over '" << b.item->text << "'";
    }
  }
}

// How often each byte stands in texts, blanks aside: whatever is cut, lost or printed twice shows.
using Letters = std::map<char, long>;
inline void count(Letters& letters, const std::string& text, long times = 1) {
  for (const char c : text)
    if (c != ' ' && c != '\n' && c != '\r') letters[c] += times;
}

inline Letters letters_of(const std::vector<tv::DrawList>& pages) {
  Letters letters;
  for (const tv::DrawList& page : pages)
    for (const tv::DrawItem& item : page.items)
      if (item.kind == tv::DrawKind::text) count(letters, item.text);
  return letters;
}

// Those that a document's pages must have; its pictures must have been taken out. Table heads stand on each
// page that has rows: as often as the last of their units says.
inline Letters letters_wanted(const tv::Document& d, std::size_t pages, long table_pages) {
  Letters letters;
  const long n = static_cast<long>(pages);
  for (const std::string* text :
       {&d.title, &d.subtitle, &d.heading, &d.notes, &d.notice, &d.stamp, &d.page_word, &d.of_word})
    count(letters, *text, n);
  for (std::size_t i = 1; i <= pages; ++i) count(letters, std::to_string(i) + std::to_string(pages));
  const auto groups = [&](const std::vector<tv::LabelGroup>& all) {
    for (const tv::LabelGroup& group : all) {
      count(letters, group.title);
      for (const tv::LabelRow& row : group.rows) count(letters, row.label + row.value + row.second);
    }
  };
  for (const tv::DocumentBlock& block : d.blocks) {
    if (const auto* figures = std::get_if<tv::KeyFigures>(&block))
      for (const tv::KeyFigure& f : *figures) count(letters, f.label + f.value + f.unit + f.below);
    if (const auto* columns = std::get_if<tv::TwoColumns>(&block))
      groups(columns->left), groups(columns->right);
    if (const auto* paragraph = std::get_if<tv::Paragraph>(&block))
      count(letters, paragraph->title + paragraph->text);
    if (const auto* table = std::get_if<tv::PrintedTable>(&block)) {
      for (const auto& column : table->columns) count(letters, column.title + column.unit, table_pages);
      for (const auto& row : table->rows) {
        count(letters, row.above);
        for (const std::string& cell : row.cells) count(letters, cell);
      }
    }
  }
  return letters;
}

// Checks the pages of a report; gives how many there are.
inline std::size_t expect_whole(const tv::Session& s, tv::Report report, const tv::PageFormat& format) {
  tv::Document document = tv::report_document(s, report);
  const std::vector<tv::DrawList> pages = tv::document_pages(document, format);
  EXPECT_FALSE(pages.empty());
  for (const tv::DrawList& page : pages) expect_clean(page, format);
  std::erase_if(document.blocks, [](const auto& b) { return std::holds_alternative<tv::Picture>(b); });
  const std::vector<tv::DrawList> bare = tv::document_pages(document, format);
  long table_pages = 0;
  for (const tv::DocumentBlock& block : document.blocks)
    if (const auto* table = std::get_if<tv::PrintedTable>(&block))
      for (const tv::DrawList& page : bare)
        table_pages += std::ranges::any_of(page.items, [&](const tv::DrawItem& item) {
          return item.text == table->columns[table->columns.size() - 2].unit;
        });
  EXPECT_EQ(letters_of(bare), letters_wanted(document, bare.size(), table_pages));
  return pages.size();
}

}  // namespace tv_test
