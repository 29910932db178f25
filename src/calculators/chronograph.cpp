#include "calculators/chronograph.h"

#include <algorithm>
#include <map>
#include <optional>

#include "text/codepage.h"

namespace tv {
namespace {

constexpr double kLeastVelocity = 10, kMostVelocity = 3000;  // m/s
constexpr double kDoubtfulVelocity = 1600;                   // m/s; without a unit these are ft/s
constexpr double kLeastBare = 30, kMostBare = 6000;          // in either unit, without a heading
constexpr std::size_t kMostShots = 999, kMostSeries = 200, kPreviewRows = 30;

struct Refused {
  Unread error;
  int line;
};

// How the shots stand from a row on.
struct Block {
  std::size_t first = 0;  // row of the first shot
  std::vector<ColumnFound> columns;
  std::vector<std::size_t> velocities;  // their columns
  bool beside = false;                  // each velocity column is a series
  bool in_rows = false;                 // each row is a series
  bool in_doubt = false;

  std::optional<std::size_t> column(ColumnRole role) const {
    for (std::size_t c = 0; c < columns.size(); ++c)
      if (columns[c].role == role) return c;
    return {};
  }
};

bool is_text(const std::string& cell) { return !cell.empty() && !cell_number(cell); }
bool is_velocity_unit(CellUnit unit) { return unit == CellUnit::mps || unit == CellUnit::fps; }

CellUnit velocity_unit_in(std::string_view text) {
  const CellUnit unit = unit_in(text);
  return is_velocity_unit(unit) ? unit : CellUnit::none;
}

// A number that may be a velocity: with its unit or none.
std::optional<CellNumber> velocity_number(std::string_view cell) {
  const auto number = cell_number(cell);
  if (number && number->unit != CellUnit::none && !is_velocity_unit(number->unit)) return {};
  return number;
}

// A heading that holds a charge: "41.5 gr".
std::optional<double> charge_in(std::string_view heading) {
  const auto number = cell_number(heading);
  if (!number || (number->unit != CellUnit::grain && number->unit != CellUnit::gram)) return {};
  return number->value * to_si(number->unit);
}

std::vector<std::vector<std::string>> preview_of(const std::vector<SheetRow>& rows) {
  std::vector<std::vector<std::string>> preview;
  for (std::size_t i = 0; i < std::min(rows.size(), kPreviewRows); ++i) preview.push_back(rows[i].cells);
  return preview;
}

class Reader {
public:
  Reader(const Sheet& sheet, const ChronographOptions& options, ChronographRead& read)
      : rows_(sheet.rows), options_(options), read_(read), sheet_name_(sheet.name) {}

  void run() {
    find_file_unit();
    for (std::size_t i = 0; i < rows_.size();) {
      const std::optional<Block> block = block_at(i);
      if (block) {
        take_preview(*block);
        i = take_block(*block);
      } else {
        look_at_label(rows_[i++]);
      }
    }
  }

private:
  // --- Headings

  std::size_t next_row(std::size_t i) const {
    while (i < rows_.size() && rows_[i].blank()) ++i;
    return i;
  }

  std::optional<Block> block_at(std::size_t i) {
    if (rows_[i].blank()) return {};
    if (!options_.roles.empty()) return told_block(i);
    if (auto block = headed_block(i)) return block;
    return bare_block(i);
  }

  // A row of headings whose next row holds shots; a row of units may stand between.
  std::optional<Block> headed_block(std::size_t i) const {
    Block block;
    for (const std::string& cell : rows_[i].cells) block.columns.push_back({cell, role_of(cell)});
    block.first = next_row(i + 1);
    if (block.first < rows_.size() && is_unit_row(rows_[block.first])) {
      for (std::size_t c = 0; c < block.columns.size(); ++c)
        block.columns[c].heading += " " + rows_[block.first].cell(c);
      block.first = next_row(block.first + 1);
    }
    if (block.first >= rows_.size() || !choose_columns(block)) return {};
    if (!is_shot(block, rows_[block.first]) || !plausible_start(block)) return {};
    return block;
  }

  static bool is_unit_row(const SheetRow& row) {
    bool unit = false;
    for (const std::string& cell : row.cells) {
      if (cell_number(cell)) return false;
      unit = unit || unit_in(cell) != CellUnit::none;
    }
    return unit;
  }

  // "Velocity unit" above "1" is no heading.
  bool plausible_start(const Block& block) const {
    for (const std::size_t c : block.velocities)
      if (const auto number = velocity_number(rows_[block.first].cell(c));
          number && number->value < kLeastVelocity)
        return false;
    return true;
  }

  bool choose_columns(Block& block) const {
    if (choose_shots_beside(block)) return true;
    for (std::size_t c = 0; c < block.columns.size(); ++c)
      if (block.columns[c].role == ColumnRole::velocity) block.velocities.push_back(c);
    return block.velocities.empty() ? choose_series_beside(block) : choose_velocities(block);
  }

  // "Series; Shot 1; Shot 2; Shot 3": the shots of a series stand in its row.
  bool choose_shots_beside(Block& block) const {
    std::vector<std::size_t> shots;
    for (std::size_t c = 0; c < block.columns.size(); ++c) {
      const ColumnFound& column = block.columns[c];
      const bool counts = column.role == ColumnRole::shot || cell_number(column.heading);
      if (counts && number_of(column.heading) == static_cast<int>(shots.size()) + 1) shots.push_back(c);
    }
    if (shots.size() < 2 || shots.front() == 0 || !is_text(block.columns.front().heading)) return false;
    for (const std::size_t c : shots) block.columns[c].role = ColumnRole::velocity;
    if (block.columns.front().role == ColumnRole::none || block.columns.front().role == ColumnRole::shot)
      block.columns.front().role = ColumnRole::series;
    block.velocities = shots;
    block.in_rows = true;
    return true;
  }

  // "Series 1; Series 2" or "41.0 gr; 41.5 gr": each column is a series.
  bool choose_series_beside(Block& block) const {
    for (std::size_t c = 0; c < block.columns.size(); ++c) {
      ColumnFound& column = block.columns[c];
      const bool series = column.role == ColumnRole::series && number_of(column.heading);
      if (velocity_number(column.heading)) return false;  // shots, not headings
      if (!series && !charge_in(column.heading)) continue;
      column.role = ColumnRole::velocity;
      block.velocities.push_back(c);
    }
    block.beside = true;
    return !block.velocities.empty();
  }

  bool choose_velocities(Block& block) const {
    std::vector<std::size_t>& v = block.velocities;
    if (v.size() == 1) return true;
    const auto heading = [&](std::size_t c) -> const std::string& { return block.columns[c].heading; };
    const auto at_distance =
        std::ranges::find_if(v, [&](std::size_t c) { return velocity_distance(heading(c)).has_value(); });
    const bool named =
        std::ranges::all_of(v, [&](std::size_t c) { return number_of(heading(c)).has_value(); });
    if (at_distance != v.end()) {
      v = {*at_distance};
    } else if (named) {
      block.beside = true;
    } else {
      block.in_doubt = velocity_unit_in(heading(v[0])) == velocity_unit_in(heading(v[1]));
      v.resize(1);
    }
    for (std::size_t c = 0; c < block.columns.size(); ++c)
      if (block.columns[c].role == ColumnRole::velocity && std::ranges::find(v, c) == v.end())
        block.columns[c].role = ColumnRole::none;
    return true;
  }

  // Numbers without headings.
  std::optional<Block> bare_block(std::size_t i) {
    if (i < not_bare_before_) return {};
    std::size_t end = i, width = 0;
    while (end < rows_.size() && std::ranges::none_of(rows_[end].cells, is_text)) {
      width = std::max(width, rows_[end].cells.size());
      ++end;
    }
    Block block;
    block.first = i;
    block.columns.resize(width);
    for (std::size_t c = 0; c < width; ++c) {
      block.columns[c].role = bare_role(i, end, c);
      if (block.columns[c].role == ColumnRole::velocity) block.velocities.push_back(c);
    }
    not_bare_before_ = end;
    if (block.velocities.empty()) return {};
    block.in_doubt = block.velocities.size() > 1;
    for (std::size_t n = 1; n < block.velocities.size(); ++n)
      block.columns[block.velocities[n]].role = ColumnRole::none;
    block.velocities.resize(1);
    return block;
  }

  ColumnRole bare_role(std::size_t begin, std::size_t end, std::size_t column) const {
    bool counts = true, bare = true;
    int shots = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const auto number = cell_number(rows_[i].cell(column));
      if (!number) continue;
      counts = counts && number->value == ++shots;
      bare = bare && number->value >= kLeastBare && number->value <= kMostBare;
    }
    if (shots == 0) return ColumnRole::none;
    return bare ? ColumnRole::velocity : counts ? ColumnRole::shot : ColumnRole::none;
  }

  // The columns as the user has said.
  std::optional<Block> told_block(std::size_t i) const {
    Block block;
    block.first = i;
    for (std::size_t c = 0; c < options_.roles.size(); ++c) {
      block.columns.push_back({i > 0 ? rows_[i - 1].cell(c) : "", options_.roles[c]});
      if (options_.roles[c] == ColumnRole::velocity) block.velocities.push_back(c);
    }
    block.beside = block.velocities.size() > 1;
    if (block.velocities.empty() || !is_shot(block, rows_[i])) return {};
    return block;
  }

  // --- Rows

  // A shot was fired here, seen or not. A statistic below the shots has a word where they have a number.
  static bool is_shot(const Block& block, const SheetRow& row) {
    const auto counter = block.column(ColumnRole::shot);
    const bool counted = counter && number_of(row.cell(*counter));
    if (counter && !counted && !row.cell(*counter).empty()) return false;
    for (std::size_t c = 0; c < block.velocities.front(); ++c)
      if (is_statistic(row.cell(c)) || (block.in_rows && is_other_figure(row.cell(c)))) return false;
    bool seen = false;
    for (const std::size_t c : block.velocities) {
      if (velocity_number(row.cell(c)))
        seen = true;
      else if (!is_no_reading(row.cell(c)) && !counted)
        return false;
    }
    return seen || counted;
  }

  // A cell of its own for the unit.
  static CellUnit unit_beside(const SheetRow& row) {
    for (const std::string& cell : row.cells)
      if (is_text(cell) && velocity_unit_in(cell) != CellUnit::none) return velocity_unit_in(cell);
    return CellUnit::none;
  }

  double velocity_of(const Block& block, const SheetRow& row, std::size_t column) {
    const auto number = velocity_number(row.cell(column));
    if (!number) throw Refused{Unread::bad_number, row.line};
    CellUnit unit = options_.unit;
    if (unit == CellUnit::none) unit = number->unit;
    if (unit == CellUnit::none) unit = velocity_unit_in(block.columns[column].heading);
    if (unit == CellUnit::none) unit = unit_beside(row);
    if (unit == CellUnit::none) unit = file_unit_;
    const double v = number->value * to_si(unit);
    if (!(v >= kLeastVelocity && v <= kMostVelocity)) throw Refused{Unread::out_of_range, row.line};
    if (read_.unit_read == CellUnit::none) read_.unit_read = unit;
    read_.in_doubt = read_.in_doubt || (unit == CellUnit::none && v > kDoubtfulVelocity);
    return v;
  }

  // The series that a shot goes to: by column, by row, or by what stands in its columns of series and charge.
  std::string series_key(const Block& block, const SheetRow& row, std::size_t column) const {
    if (block.beside) return std::to_string(column);
    if (block.in_rows) return std::to_string(row.line);
    std::string key;
    for (const ColumnRole role : {ColumnRole::series, ColumnRole::charge})
      if (const auto c = block.column(role)) key += row.cell(*c) + "\n";
    return key;
  }

  MeasuredSeries begin_series(const Block& block, const SheetRow& row, std::size_t column) const {
    MeasuredSeries series;
    series.charge_gr = label_charge_;
    if (block.beside) {
      series.name = block.columns[column].heading;
      series.charge_gr = charge_in(series.name).value_or(label_charge_);
    } else if (const auto c = block.column(ColumnRole::series)) {
      series.name = row.cell(*c);
    }
    if (const auto c = block.column(ColumnRole::charge))
      series.charge_gr = grains(row.cell(*c), block.columns[*c].heading).value_or(0);
    if (series.name.empty()) series.name = !label_name_.empty() ? label_name_ : title_;
    if (series.name.empty()) series.name = sheet_name_;
    if (series.name.empty()) series.name = std::to_string(read_.series.size() + 1);
    return series;
  }

  // Of a charge whose unit nobody tells: grains.
  static std::optional<double> grains(std::string_view cell, std::string_view heading) {
    const auto number = cell_number(cell);
    if (!number || !(number->value > 0)) return {};
    const CellUnit unit = number->unit != CellUnit::none ? number->unit : unit_in(heading);
    return number->value * (unit == CellUnit::gram ? to_si(unit) : 1);
  }

  MeasuredShot shot_of(const Block& block, const SheetRow& row, std::size_t column) {
    MeasuredShot shot;
    shot.velocity = velocity_of(block, row, column);
    if (const auto c = block.column(ColumnRole::pressure)) {
      const auto number = cell_number(row.cell(*c));
      const CellUnit unit =
          number && number->unit != CellUnit::none ? number->unit : unit_in(block.columns[*c].heading);
      // Of a pressure whose unit nobody tells nothing can be said.
      if (number && to_si(unit) > 1) shot.pressure = number->value * to_si(unit);
    }
    if (const auto c = block.column(ColumnRole::excluded)) {
      const std::string word = lower(row.cell(*c));
      shot.excluded = !word.empty() && word != "0" && word != "no" && word != "false" && word != "nein";
      if (shot.excluded) shot.reason = row.cell(*c);
    }
    return shot;
  }

  std::size_t take_block(const Block& block) {
    std::map<std::string, std::size_t> places;  // of the series of this block
    read_.in_doubt = read_.in_doubt || block.in_doubt;
    std::size_t i = block.first;
    for (; i < rows_.size(); ++i) {
      const SheetRow& row = rows_[i];
      if (row.blank()) continue;
      if (!is_shot(block, row) || (i > block.first && options_.roles.empty() && headed_block(i))) break;
      take_row(block, row, places);
    }
    refuse_gap(block, i);
    label_name_.clear();
    title_.clear();
    label_charge_ = 0;
    return i;
  }

  void take_row(const Block& block, const SheetRow& row, std::map<std::string, std::size_t>& places) {
    for (const std::size_t column : block.velocities) {
      if (is_no_reading(row.cell(column))) continue;
      const auto [place, added] = places.try_emplace(series_key(block, row, column), read_.series.size());
      if (added) read_.series.push_back(begin_series(block, row, column));
      std::vector<MeasuredShot>& shots = read_.series[place->second].shots;
      shots.push_back(shot_of(block, row, column));
      if (shots.size() > kMostShots || read_.series.size() > kMostSeries)
        throw Refused{Unread::too_large, row.line};
    }
  }

  // Shots that go on behind a row that was not understood: that row was meant to be one.
  void refuse_gap(const Block& block, std::size_t i) const {
    if (i >= rows_.size()) return;
    for (const std::string& cell : rows_[i].cells)
      if (is_statistic(cell)) return;
    const std::size_t next = next_row(i + 1);
    if (next < rows_.size() && !headed_block(i) && !headed_block(next) && is_shot(block, rows_[next]))
      throw Refused{Unread::bad_number, rows_[i].line};
  }

  // --- Metadata

  // "Units: fps", above or below the shots.
  void find_file_unit() {
    for (const SheetRow& row : rows_) {
      const auto [label, value] = labelled(row);
      if (!asks_for_units(label) || is_statistic(label)) continue;
      for (const std::string& text : {value, label})
        if (file_unit_ == CellUnit::none) file_unit_ = velocity_unit_in(text);
    }
  }

  // The first two texts of a row, or the two halves of "label: value".
  static std::pair<std::string, std::string> labelled(const SheetRow& row) {
    std::vector<std::string> texts;
    for (const std::string& cell : row.cells)
      if (!cell.empty()) texts.push_back(cell);
    if (texts.empty()) return {};
    if (texts.size() > 1) return {texts[0], texts[1]};
    const std::size_t colon = texts[0].find(':');
    if (colon == std::string::npos) return {texts[0], ""};
    return {texts[0].substr(0, colon), std::string(trim(std::string_view(texts[0]).substr(colon + 1)))};
  }

  void look_at_label(const SheetRow& row) {
    const auto [label, value] = labelled(row);
    if (label.empty() || is_statistic(label)) return;
    if (value.empty()) title_ = label;
    const ColumnRole role = role_of(label);
    if (role == ColumnRole::series) label_name_ = value.empty() || number_of(label) ? label : value;
    if (role == ColumnRole::charge) label_charge_ = grains(value, label).value_or(label_charge_);
  }

  void take_preview(const Block& block) {
    if (!read_.columns.empty()) return;
    read_.columns = block.columns;
    read_.preview = preview_of(rows_);
  }

  const std::vector<SheetRow>& rows_;
  const ChronographOptions& options_;
  ChronographRead& read_;
  std::string sheet_name_;
  CellUnit file_unit_ = CellUnit::none;
  std::size_t not_bare_before_ = 0;  // these rows were looked at
  // What the labels since the last series say of the next one.
  std::string label_name_, title_;
  double label_charge_ = 0;
};

// The first line that holds something, for a file in which nothing was found.
int first_line(const std::vector<Sheet>& sheets) {
  for (const Sheet& sheet : sheets)
    for (const SheetRow& row : sheet.rows)
      if (!row.blank()) return row.line;
  return 1;
}

ChronographRead refused(Unread error, int line, ChronographRead read = {}) {
  read.series.clear();
  read.error = error;
  read.line = line;
  return read;
}

}  // namespace

ChronographRead read_chronograph(std::string_view bytes, const ChronographOptions& options) {
  const SheetsRead sheets = read_sheets(bytes);
  if (sheets.error != Unread::none) return refused(sheets.error, sheets.line);
  ChronographRead read;
  try {
    for (const Sheet& sheet : sheets.sheets) Reader(sheet, options, read).run();
  } catch (const Refused& why) {
    return refused(why.error, why.line, std::move(read));
  }
  if (read.preview.empty() && !sheets.sheets.empty()) read.preview = preview_of(sheets.sheets.front().rows);
  if (read.series.empty()) return refused(Unread::no_velocity, first_line(sheets.sheets), std::move(read));
  return read;
}

}  // namespace tv
