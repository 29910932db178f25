#include "screens/reports.h"

#include <algorithm>
#include <array>

#include "screens/output_window.h"
#include "session/load_files.h"
#include "tables/table_text.h"
#include "text/codepage.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr std::array<std::string_view, 5> kEntries{"grf_akt", "grf_akt_dat", "grf_weg_zeit", "lade_tab",
                                                   "pulv_tab"};

// A4 where none is told and by an unknown name.
constexpr PaperSize kPapers[] = {
    {"A4", 210, 297}, {"Letter", 215.9, 279.4}, {"A3", 297, 420}, {"A5", 148, 210}, {"Legal", 215.9, 355.6}};

std::string name_of(const DataBlock& block) {
  std::string bullet = block.bullet;
  for (std::size_t at; (at = bullet.find(" ,")) != std::string::npos;) bullet.erase(at, 1);
  return block.cartridge + (bullet.empty() ? "" : "; " + bullet);
}

std::string without_breaks(std::string text) {
  std::erase(text, '\r');
  std::ranges::replace(text, '\n', ' ');
  return std::string(trim(text));
}

Document blank(const Session& s) {
  Document document;
  const Language& l = s.language;
  document.heading = without_breaks(s.load.pricomment);
  document.stamp =
      l.fileout(2) + ": " + s.shown.date + " " + s.shown.time + ", " + kProgramName + " " + kVersion;
  document.notes =
      s.shown.any ? without_breaks(status_line(s.shown.state, s.curve, s.result, l)) : std::string();
  document.notes_red = s.shown.notes_red;
  document.notice = without_breaks(l.notice());
  document.page_word = l.fileout(76);
  document.of_word = l.fileout(92);
  return document;
}

// The options of a diagram on white paper: as it is seen in its window, or the whole of it.
DiagramOptions on_paper(const Session& s, bool as_seen) {
  DiagramOptions o = diagram_options(s);
  if (s.output.colours.paper) o.colours = light_colours();  // the others were chosen for another paper
  if (!as_seen) {
    o.view = {};
    o.hidden = {};
    o.followed = 0;
  }
  o.line_width = std::min(o.line_width, 2.0);
  o.font = s.options.pri_font_nam;
  o.text_size = std::clamp(s.options.pri_font_siz, kSmallestPoints, 12.0) * kUnitsPerPoint;
  return o;
}

std::string picture_title(const Session& s, const DiagramOptions& o) {
  const Language& l = s.language;
  if (o.optional) return l.fastmsg("fdiagr");
  if (shows_both(o.type)) return l.fastmsg(is_over_time(o.type) ? "fphead6" : "fphead5");
  return l.fastmsg(shows_pressure(o.type) ? "fchp" : "fvel") + " / " +
         l.fastmsg(is_over_time(o.type) ? "fbulttim" : "fptravel");
}

Picture picture_of(const Session& s, const DiagramOptions& o) {
  return {picture_title(s, o), [&s, o](double width, double height, TextWidth text_width) {
            return draw_diagram(diagram_run(s), o, s.language, width, height, text_width).list;
          }};
}

Picture standard_picture(const Session& s, int type) {
  DiagramOptions o = on_paper(s, false);
  o.type = type;
  o.optional = false;
  show_reference(s, o);
  return picture_of(s, o);
}

// --- tables

// The load's names and lengths, as every table's head has them.
TwoColumns block_columns(const Session& s, const DataBlock& block, bool powder, bool charge) {
  const Language& l = s.language;
  const bool i = s.output.imperial;
  const auto unit = [&l](const char* key) { return " " + l.fastmsg(key); };
  LabelGroup names, lengths;
  names.rows.push_back({l.fastmsg("fcartrd"), block.cartridge, "", true});
  names.rows.push_back(
      {l.fastmsg("fbullet"), block.bullet + (block.coated ? ", " + l.fastmsg("ffriprv") : ""), "", true});
  if (powder) names.rows.push_back({l.fastmsg("fpow"), block.powder, "", true});
  const auto length = [&](const std::string& label, const std::string& metric, const std::string& imperial) {
    lengths.rows.push_back({label, i ? imperial : metric, i ? metric : imperial});
  };
  length(l.fileout(9), block.Veffm + unit("fccm"), block.Veffz + unit("fgrh2o"));
  length(l.fastmsg("fcol"), block.Plenm + unit("f_mm"), block.Plenz + unit("f_in"));
  length(l.fastmsg("fcharge6"), block.Llenm + unit("f_mm"), block.Llenz + unit("f_in"));
  if (charge) length(l.fastmsg("fcharge"), block.MPgm + unit("fgramm"), block.MPgn + unit("fgrains"));
  return {{names}, {lengths}};
}

// The lines of a table's head without the data block, which is set in columns, and without its title.
std::string head_text(const std::string& head, const DataBlock& block, BlockKind kind, const Session& s,
                      const std::string& title) {
  std::string text = head;
  const std::string lines = CartridgeDataBlock(block, kind, s.language);
  if (text.starts_with(lines)) text.erase(0, lines.size());
  std::erase(text, '\r');
  if (text.starts_with(title + "\n")) text.erase(0, title.size() + 1);
  while (text.starts_with('\n')) text.erase(0, 1);
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

void add_table(Document& document, const Session& s, const DataBlock& block, BlockKind kind,
               const std::string& head, PrintedTable table) {
  document.subtitle = name_of(block);
  document.blocks.emplace_back(block_columns(s, block, kind != BlockKind::powder_table, false));
  if (const std::string text = head_text(head, block, kind, s, document.title); !text.empty())
    document.blocks.emplace_back(Paragraph{"", text + "\n"});
  document.blocks.emplace_back(std::move(table));
}

ViewUnits view_units(const Session& s) { return {s.output.imperial, s.state.pressure_unit_factor}; }

PrintedTable load_rows(const Session& s) {
  const LoadTable& t = s.tables.load;
  const auto say = [&s](int n) { return s.language.fastmsg("fcrgvar", n); };
  PrintedTable table = printed_table(load_table_data(t, view_units(s)), s.language);
  const std::string tolerance = format_pattern(t.batols, "0");
  const auto row = [&table](int n) -> PrintedTable::Row& { return table.rows[static_cast<std::size_t>(n)]; };
  row(LoadTable::kNominal).bold = true;
  row(LoadTable::kLadder).above = say(7) + tolerance + say(8) + "\n" + say(9) + tolerance + say(10);
  row(LoadTable::kLadder + 1).above = say(11) + tolerance + say(10);
  return table;
}

Document load_table_report(const Session& s) {
  Document document = blank(s);
  document.title = s.language.fileout(77);
  const LoadTable& t = s.tables.load;
  add_table(document, s, t.inputs.block, BlockKind::load_table, load_table_head(t, s.language), load_rows(s));
  return document;
}

Document powder_table_report(const Session& s) {
  Document document = blank(s);
  document.title = s.language.fileout(78);
  const PowderTable& t = s.tables.powder;
  PrintedTable table = printed_table(powder_table_data(t, s.output.imperial), s.language);
  for (PrintedTable::Row& row : table.rows) row.bold = trim(row.cells.front()) == trim(s.shown.block.powder);
  add_table(document, s, t.inputs.block, BlockKind::powder_table, powder_table_head(t, s.language),
            std::move(table));
  return document;
}

Document point_list_report(const Session& s) {
  Document document = blank(s);
  document.title = s.language.fileout(79);
  document.subtitle = name_of(s.shown.block);
  document.blocks.emplace_back(key_figures(s));
  document.blocks.emplace_back(block_columns(s, s.shown.block, true, true));
  PrintedTable table = printed_table(point_list_data(shown_point_list(s), view_units(s)), s.language);
  if (s.shown.outcome.ok() && !table.rows.empty()) table.rows.back().bold = true;
  document.blocks.emplace_back(std::move(table));
  return document;
}

// --- diagrams

Document load_report(const Session& s) {
  Document document = blank(s);
  const DataBlock& block = s.shown.block;
  document.title = name_of(block);
  const bool i = s.output.imperial;
  document.subtitle = block.powder + ", " + (i ? block.MPgn : block.MPgm) + " " +
                      s.language.fastmsg(i ? "fgrains" : "fgramm") + " = " + (i ? block.MPgm : block.MPgn) +
                      " " + s.language.fastmsg(i ? "fgramm" : "fgrains");
  document.blocks.emplace_back(key_figures(s));
  return document;
}

Document data_sheet(const Session& s) {
  Document document = load_report(s);
  document.one_page = true;
  TwoColumns columns{load_groups(s), result_groups(s)};
  for (LabelGroup& group : powder_groups(s)) columns.right.push_back(std::move(group));
  for (LabelGroup& group : note_groups(s)) columns.left.push_back(std::move(group));
  document.blocks.emplace_back(std::move(columns));
  document.blocks.emplace_back(picture_of(s, on_paper(s, false)));
  return document;
}

Document travel_and_time(const Session& s) {
  Document document = load_report(s);
  document.page_for_each_picture = !s.options.pri_graph1page;
  for (const int type : {3, 6}) document.blocks.emplace_back(standard_picture(s, type));
  return document;
}

// What the output window shows.
Report resolved(const Session& s, Report report) {
  if (report != Report::current) return report;
  if (s.mode() == DisplayMode::load_table) return Report::load_table;
  if (s.mode() == DisplayMode::powder_table) return Report::powder_table;
  return Report::current;
}

}  // namespace

std::optional<Report> report_of(std::string_view entry) {
  const auto at = std::ranges::find(kEntries, entry);
  if (at == kEntries.end()) return std::nullopt;
  return static_cast<Report>(at - kEntries.begin());
}

bool report_ready(const Session& s, Report report) {
  if (!s.valid.results) return false;
  switch (resolved(s, report)) {
    case Report::load_table:
      return s.valid.load_table && s.tables.load.row_count > 0;
    case Report::powder_table:
      return s.valid.powder_table && !s.tables.powder.rows.empty();
    default:
      return s.shown.any && s.result.lastIdx >= 1;
  }
}

Document report_document(const Session& s, Report report) {
  switch (resolved(s, report)) {
    case Report::load_table:
      return load_table_report(s);
    case Report::powder_table:
      return powder_table_report(s);
    case Report::data_sheet:
      return data_sheet(s);
    case Report::travel_and_time:
      return travel_and_time(s);
    case Report::current:
      break;
  }
  if (output_shows_text(s)) return point_list_report(s);
  Document document = load_report(s);
  document.blocks.emplace_back(picture_of(s, on_paper(s, true)));
  return document;
}

PrintedTable printed_table(const TableData& data, const Language& language) {
  PrintedTable table;
  const std::string name = language.fastmsg(data.name_title);
  const bool unit = data.name_head == "%";
  table.columns.push_back({name.empty() ? data.name_head : name, unit ? data.name_head : ""});
  for (const TableColumn& column : data.columns)
    if (column.width > 0) table.columns.push_back({language.fastmsg(column.title), column.unit});
  table.columns.push_back({"", ""});  // marks and reasons
  for (const TableRow& row : data.rows) {
    PrintedTable::Row& out = table.rows.emplace_back();
    out.cells.emplace_back(trim(row.name));
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      const TableColumn& column = data.columns[i];
      if (column.width == 0) continue;
      out.cells.push_back(row.has_figures() || column.leads ? cell_text(column, row.values[i]) : "----");
    }
    out.cells.push_back(row.has_figures() ? mark_text(row.mark, language) : language.fastmsg(row.reason));
    if (row.mark == Mark::over_limit) out.standing = Standing::over;
  }
  return table;
}

const PaperSize& paper_of(std::string_view name) {
  const auto* at = std::ranges::find(kPapers, name, &PaperSize::name);
  return at == std::end(kPapers) ? kPapers[0] : *at;
}

PageFormat report_format(const Session& s, const PrintablePage& page, TextWidth text_width) {
  const Options& o = s.options;
  PageFormat format{page, {}, o.pri_font_nam, o.pri_font_siz, text_width};
  const auto cm = [](double value) { return static_cast<float>(value); };
  if (!SetMargins(cm(o.pritopcm), cm(o.prileftcm), cm(o.prirightcm), cm(o.pribottomcm), page, format.box))
    format.box = {};
  return format;
}

std::vector<DrawList> report_pages(const Session& s, Report report, TextWidth text_width) {
  constexpr double kTwipsPerMm = kTwipsPerCm / 10;
  const PaperSize& paper = paper_of(s.options.pri_paper);
  PrintablePage page{static_cast<float>(paper.width_mm * kTwipsPerMm),
                     static_cast<float>(paper.height_mm * kTwipsPerMm), 0, 0};
  const Document document = report_document(s, report);
  const bool upright =
      !s.options.pri_landscape && !wants_landscape(document, report_format(s, page, text_width));
  if (!upright) std::swap(page.width, page.height);
  return document_pages(document, report_format(s, page, text_width));
}

std::string report_name(const Session& s) {
  std::string name = load_has_name(s) ? file_name_only(s.options.labfil) : s.shown.block.cartridge;
  while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.pop_back();
  for (char& c : name)
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '_';
  while (name.starts_with('.')) name.erase(0, 1);  // no hidden file
  return name.empty() ? "ternovale" : name;
}

// --- plain text

namespace {

constexpr std::size_t kLabelWidth = 44, kValueWidth = 20;

std::string group_text(const std::vector<LabelGroup>& groups) {
  std::string text;
  for (const LabelGroup& group : groups) {
    text += group.title + "\r\n";
    for (const LabelRow& row : group.rows) {
      std::string line = fit(row.label, std::max(kLabelWidth, length(row.label))) + ": " + row.value;
      if (!row.second.empty())
        line += std::string(kValueWidth - std::min(kValueWidth - 1, length(row.value)), ' ') + row.second;
      text += line + "\r\n";
    }
    text += "\r\n";
  }
  return text;
}

}  // namespace

std::string report_text(const Session& s) {
  const Document document = blank(s);
  const auto line = [](const std::string& text) { return text.empty() ? text : text + "\r\n"; };
  const std::string block = CartridgeDataBlock(s.shown.block, BlockKind::point_list, s.language);
  std::string list = DrawPointList(shown_point_list(s), s.language, view_units(s)).text;
  if (const std::size_t at = list.find(block); at != std::string::npos) list.erase(at, block.size());
  return line(document.stamp) + line(document.heading) + block + "\r\n" + group_text(result_groups(s)) +
         group_text(note_groups(s)) + list + "\r\n" + line(document.notes) + line(document.notice);
}

}  // namespace tv
