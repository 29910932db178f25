#include "output/document.h"

#include <algorithm>
#include <memory>

#include "output/document_text.h"

namespace tv {
namespace {

constexpr double kFootPoints = 7;
constexpr double kLeastWidth = 150, kLeastBody = 100;  // units
constexpr double kLeastPicture = 190;

double units(double twips) { return twips / kTwipsPerUnit; }

Setting setting_of(const PageFormat& format) {
  return {format.font, format.text_width, units(format.box.left), units(format.box.right),
          std::clamp(format.points, kSmallestPoints, 24.0) * kUnitsPerPoint};
}

// A table has letters that go with the width of the page, smaller ones where it does not fit, down to 6
// points.
Setting for_table(const PrintedTable& table, const Setting& body) {
  Setting t = body;
  const double smallest = kSmallestPoints * kUnitsPerPoint;
  t.size = std::max(smallest, body.size * body.width() * kTwipsPerUnit / kFullTableTwips);
  t.size = std::min(t.size, body.size);
  while (t.size > smallest && table_width(table, t, t.size) > t.width())
    t.size = std::max(smallest, t.size - 0.1);
  // As the last way out smaller letters than one would wish for.
  while (t.size > 1 && table_width(table, t, t.size) > t.width()) t.size *= 0.97;
  return t;
}

struct Line {
  std::string text;
  double size = 0;
  bool bold = false;
  Colour colour = kPageInk;
};

// What stands at the head and the foot of every page, and the body between.
struct Sheet {
  std::vector<Line> head, foot;
  double head_height = 0, foot_height = 0;
};

double height_of(const std::vector<Line>& lines) {
  double height = 0;
  for (const Line& line : lines) height += line.size * kLeading;
  return height;
}

void add_lines(std::vector<Line>& out, const Setting& t, const std::string& text, double size, bool bold,
               Colour colour) {
  if (text.empty()) return;
  for (std::string& line : t.lines(text, t.width(), size, bold))
    out.push_back({std::move(line), size, bold, colour});
}

Sheet sheet_of(const Document& document, const Setting& t) {
  Sheet sheet;
  add_lines(sheet.head, t, document.title, t.size * 1.7, true, kPageInk);
  add_lines(sheet.head, t, document.subtitle, t.size, false, kPageInk);
  add_lines(sheet.head, t, document.heading, t.size, true, kPageInk);
  sheet.head_height = height_of(sheet.head) + t.size;
  const double small = std::min(kFootPoints * kUnitsPerPoint, t.size);
  add_lines(sheet.foot, t, document.notes, small, document.notes_red,
            document.notes_red ? kPageRed : kPageInk);
  add_lines(sheet.foot, t, document.notice, small, false, kPageDim);
  sheet.foot.push_back({"", small, false, kPageDim});  // stamp and number of the page
  sheet.foot_height = height_of(sheet.foot) + t.size * 0.8;
  return sheet;
}

void draw_lines(DrawList& page, const Setting& t, const std::vector<Line>& lines, double y) {
  for (const Line& line : lines) {
    if (!line.text.empty())
      add_text(page, {t.left, y + line.size}, line.text,
               {line.colour, line.size, Align::left, line.bold, false});
    y += line.size * kLeading;
  }
}

// Pages being filled from top to bottom.
class Paginator {
public:
  Paginator(const Document& document, const PageFormat& format)
      : document_(document), format_(format), t_(setting_of(format)), sheet_(sheet_of(document, t_)) {
    top_ = units(format.box.top) + sheet_.head_height;
    bottom_ = units(format.box.bottom) - sheet_.foot_height;
  }

  bool room() const { return t_.width() >= kLeastWidth && bottom_ - top_ >= kLeastBody; }
  const Setting& setting() const { return t_; }

  void add(const Flow& flow) {
    for (std::size_t i = 0; i < flow.strips.size(); ++i) {
      const double head = i == 0 ? total(flow.head) : 0;
      if (pages_.empty() || (y_ + head + kept_together(flow, i) > bottom_ && y_ > top_)) {
        new_page();
        place_all(flow.head);
      } else if (i == 0) {
        place_all(flow.head);
      }
      place(flow.strips[i]);
    }
  }

  void add(const Picture& picture, bool own_page) {
    const Flow title = flow_of_title(picture.title, t_);
    const double above = total(title.strips);
    const bool full = (own_page && pictured_) || bottom_ - y_ - above < kLeastPicture;
    if (pages_.empty() || (full && y_ > top_)) new_page();
    pictured_ = true;
    place_all(title.strips);
    const double height = std::min(bottom_ - y_, share_ > 0 ? share_ - above : t_.width() * 0.72);
    append(picture.draw(t_.width(), height, t_.text_width));
    y_ += height;
  }

  // Pictures to come share what is left of the page.
  void share_between(std::size_t count) {
    if (pages_.empty()) new_page();
    share_ = (bottom_ - y_) / static_cast<double>(count);
  }

  std::vector<DrawList> finish() {
    if (pages_.empty()) new_page();
    number_pages();
    return std::move(pages_);
  }

private:
  static double total(const std::vector<Strip>& strips) {
    double height = 0;
    for (const Strip& strip : strips) height += strip.height;
    return height;
  }
  static double kept_together(const Flow& flow, std::size_t i) {
    double height = flow.strips[i].height;
    while (flow.strips[i].with_next && ++i < flow.strips.size()) height += flow.strips[i].height;
    return height;
  }
  void new_page() {
    DrawList page;
    page.width = units(format_.page.width);
    page.height = units(format_.page.height);
    page.font = format_.font;
    draw_lines(page, t_, sheet_.head, units(format_.box.top));
    const double rule = bottom_ + t_.size * 0.4;
    add_line(page, {t_.left, rule}, {t_.right, rule}, {kPageInk, 0.8, LineStyle::solid});
    draw_lines(page, t_, sheet_.foot, bottom_ + t_.size * 0.8);
    pages_.push_back(std::move(page));
    y_ = top_;
  }
  void place(const Strip& strip) {
    if (strip.draw) strip.draw(pages_.back(), y_);
    y_ += strip.height;
  }
  void place_all(const std::vector<Strip>& strips) {
    for (const Strip& strip : strips) place(strip);
  }
  void append(const DrawList& list) {
    for (DrawItem item : list.items) {
      for (Point& point : item.points) point = {point.x + t_.left, point.y + y_};
      pages_.back().items.push_back(std::move(item));
    }
  }
  void number_pages() {
    const double size = sheet_.foot.back().size;
    const double y = units(format_.box.bottom) - size * (kLeading - 1);
    for (std::size_t i = 0; i < pages_.size(); ++i) {
      add_text(pages_[i], {t_.left, y}, document_.stamp, {kPageDim, size, Align::left, false, false});
      add_text(pages_[i], {t_.right, y},
               document_.page_word + " " + std::to_string(i + 1) + " " + document_.of_word + " " +
                   std::to_string(pages_.size()),
               {kPageDim, size, Align::right, false, false});
    }
  }

  const Document& document_;
  const PageFormat& format_;
  Setting t_;
  Sheet sheet_;
  std::vector<DrawList> pages_;
  double top_ = 0, bottom_ = 0, y_ = 0, share_ = 0;
  bool pictured_ = false;
};

std::size_t pictures_of(const Document& document) {
  return static_cast<std::size_t>(std::ranges::count_if(
      document.blocks, [](const DocumentBlock& block) { return std::holds_alternative<Picture>(block); }));
}

std::vector<DrawList> laid_out(const Document& document, const PageFormat& format) {
  Paginator pages(document, format);
  if (!pages.room()) return {};
  const std::size_t pictures = pictures_of(document);
  if (pictures > 1 && !document.page_for_each_picture) pages.share_between(pictures);
  for (const DocumentBlock& block : document.blocks) {
    if (const auto* picture = std::get_if<Picture>(&block)) {
      pages.add(*picture, document.page_for_each_picture);
    } else if (const auto* table = std::get_if<PrintedTable>(&block)) {
      pages.add(flow_of(*table, for_table(*table, pages.setting())));
    } else {
      std::visit(
          [&](const auto& each) {
            if constexpr (requires { flow_of(each, pages.setting()); })
              pages.add(flow_of(each, pages.setting()));
          },
          block);
    }
  }
  return pages.finish();
}

}  // namespace

bool wants_landscape(const Document& document, const PageFormat& format) {
  const Setting t = setting_of(format);
  return std::ranges::any_of(document.blocks, [&](const DocumentBlock& block) {
    const auto* table = std::get_if<PrintedTable>(&block);
    return table && table_width(*table, t, kSmallestPoints * kUnitsPerPoint) > t.width();
  });
}

std::vector<DrawList> document_pages(const Document& document, const PageFormat& format) {
  std::vector<DrawList> pages = laid_out(document, format);
  if (!document.one_page) return pages;
  // A little smaller rather than a sheet more.
  PageFormat smaller = format;
  for (const double share : {0.95, 0.9, 0.85, 0.8}) {
    if (pages.size() <= 1) break;
    smaller.points = std::max(kSmallestPoints, format.points * share);
    if (std::vector<DrawList> tried = laid_out(document, smaller); tried.size() == 1) return tried;
  }
  return pages;
}

}  // namespace tv
