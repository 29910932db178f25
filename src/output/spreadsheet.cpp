#include "output/spreadsheet.h"

#include <unistd.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>

#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

// A file of its own in the folder for temporary files, gone at the end.
class ScratchFile {
public:
  ScratchFile() {
    std::error_code failed;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(failed);
    path_ = (failed ? "/tmp" : folder.string()) + "/tvxlsx-XXXXXX";
    const int handle = mkstemp(path_.data());
    ok_ = handle >= 0;
    if (ok_) close(handle);
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    if (ok_) unlink(path_.c_str());
  }
  bool ok() const { return ok_; }
  const std::string& path() const { return path_; }

private:
  std::string path_;
  bool ok_ = false;
};

void write_cell(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t col, const ExportCell& cell,
                lxw_format* number_format) {
  if (const auto* number = std::get_if<double>(&cell))
    worksheet_write_number(sheet, row, col, *number, number_format);
  else if (const auto* text = std::get_if<std::string>(&cell))
    worksheet_write_string(sheet, row, col, text->c_str(), nullptr);
}

void write_numbers(lxw_workbook* book, lxw_worksheet* sheet, const ExportData& data) {
  lxw_format* head_format = workbook_add_format(book);
  format_set_align(head_format, LXW_ALIGN_CENTER);
  lxw_format* number_format = workbook_add_format(book);
  format_set_num_format(number_format, "0.0000");
  lxw_col_t col = 0;
  for (const std::string& header : data.headers) {
    worksheet_write_string(sheet, 0, col, header.c_str(), head_format);
    worksheet_set_column(sheet, col, col, col == 0 && data.text_first() ? 36 : 14, nullptr);
    ++col;
  }
  lxw_row_t row = 1;
  for (const auto& cells : data.data) {
    col = 0;
    for (const ExportCell& cell : cells) write_cell(sheet, row, col++, cell, number_format);
    ++row;
  }
}

// What the figures are of, a line a row.
void add_notes(lxw_workbook* book, const ExportData& data) {
  lxw_worksheet* sheet = workbook_add_worksheet(book, (data.title + " Notes").c_str());
  if (!sheet) return;
  worksheet_set_column(sheet, 0, 0, 100, nullptr);
  lxw_row_t row = 0;
  for (std::size_t at = 0; at < data.notes.size(); ++row) {
    const std::size_t end = std::min(data.notes.find('\n', at), data.notes.size());
    std::string line = data.notes.substr(at, end - at);
    std::erase(line, '\r');
    worksheet_write_string(sheet, row, 0, line.c_str(), nullptr);
    at = end + 1;
  }
}

void add_chart(lxw_workbook* book, const std::string& sheet, const ExportData& data) {
  lxw_chartsheet* chart_sheet = workbook_add_chartsheet(book, (data.title + " Graph").c_str());
  lxw_chart* chart = workbook_add_chart(
      book, static_cast<std::uint8_t>(data.text_first() ? LXW_CHART_COLUMN : LXW_CHART_SCATTER_STRAIGHT));
  const auto last = static_cast<lxw_row_t>(data.data.size());
  for (lxw_col_t col = 1; col < data.figures(); ++col) {
    lxw_chart_series* series = chart_add_series(chart, nullptr, nullptr);
    chart_series_set_categories(series, sheet.c_str(), 1, 0, last, 0);
    chart_series_set_values(series, sheet.c_str(), 1, col, last, col);
    chart_series_set_name_range(series, sheet.c_str(), 0, col);
  }
  chart_title_set_name(chart, (data.title + " Diagram").c_str());
  if (!data.x_title.empty()) chart_axis_set_name(chart->x_axis, data.x_title.c_str());
  chart_axis_set_name(chart->y_axis, data.y_title.c_str());
  chartsheet_set_chart(chart_sheet, chart);
}

int build_workbook(const ExportData& data, const std::string& path) {
  lxw_workbook* book = workbook_new(path.c_str());
  if (!book) return kFileError;
  const std::string name = data.title + " Results";
  lxw_worksheet* sheet = workbook_add_worksheet(book, name.c_str());
  if (!sheet) {
    workbook_close(book);
    return kFileError;
  }
  write_numbers(book, sheet, data);
  if (!data.notes.empty()) add_notes(book, data);
  if (data.data.size() > 1 && data.figures() > 1) add_chart(book, name, data);
  errno = 0;
  if (workbook_close(book) == LXW_NO_ERROR) return kNoFailure;
  return errno == ENOSPC ? kDiskFull : kFileError;
}

// A program that opens the file must not take a text for a formula.
std::string defused(const std::string& text) {
  constexpr std::string_view kFormula = "=+-@";
  return !text.empty() && kFormula.find(text.front()) != std::string_view::npos ? "'" + text : text;
}

void append_quoted(std::string& out, const std::string& cell) {
  const std::string text = defused(cell);
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    out += text;
    return;
  }
  out += '"';
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

void append_cell(std::string& out, const ExportCell& cell) {
  if (const auto* number = std::get_if<double>(&cell)) out += general(*number);
  if (const auto* text = std::get_if<std::string>(&cell)) append_quoted(out, *text);
}

template <class Cells, class Append>
void append_line(std::string& out, const Cells& cells, Append append) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i) out += ',';
    append(out, cells[i]);
  }
  out += "\r\n";
}

}  // namespace

int write_xlsx(const ExportData& data, const std::string& path) {
  const ScratchFile scratch;
  if (!scratch.ok()) return kFileError;
  if (const int failure = build_workbook(data, scratch.path())) return failure;
  const FileRead built = read_file(scratch.path());
  return built.failure ? built.failure : write_file(path, built.bytes);
}

std::string csv_text(const ExportData& data) {
  std::string out = "\xEF\xBB\xBF";
  append_line(out, data.headers, append_quoted);
  for (const auto& row : data.data) append_line(out, row, append_cell);
  return out;
}

int write_csv(const ExportData& data, const std::string& path) { return write_file(path, csv_text(data)); }

}  // namespace tv
