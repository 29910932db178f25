// A record file as the program reads and sorts it.
#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/command.h"
#include "data/record_file.h"
#include "output/spreadsheet.h"
#include "text/file.h"

namespace tv {
namespace {

Json records_json(const RecordFile& file, const RecordKindInfo& kind) {
  Json rows = Json::array();
  for (const Record& record : file.table.rows) {
    Json row = Json::array();
    for (const std::string& cell : record) row.push_back(trim(cell));
    rows.push_back(std::move(row));
  }
  return {{"kind", kind.tag}, {"comments", file.comments}, {"rows", std::move(rows)}};
}

// The columns are the numbers of the fields.
std::string records_csv(const RecordFile& file) {
  ExportData data;
  for (int i = 0; i < kRecordFields; ++i) data.headers.push_back(std::to_string(i));
  for (const Record& record : file.table.rows) {
    std::vector<ExportCell> row;
    for (const std::string& cell : record) row.emplace_back(std::string(trim(cell)));
    data.data.push_back(std::move(row));
  }
  return csv_text(data);
}

// Comments, then the fields of each record parted by tabs.
std::string records_text(const RecordFile& file) {
  std::string text;
  for (const std::string& comment : file.comments) text += comment + "\n";
  for (const Record& record : file.table.rows) {
    std::string line;
    for (const std::string& cell : record) line += std::string(trim(cell)) + "\t";
    text += line.substr(0, line.find_last_not_of('\t') + 1) + "\n";
  }
  return text;
}

struct RecordsArgs {
  std::string file, format = "text", output;
};

int records_command(const Session& s, const Console& console, const RecordsArgs& args) {
  const auto& [file, format, output] = args;
  keep_inputs(s, output, {file});
  const RecordKindInfo* kind = record_kind_of_file(file);
  if (!kind) throw Stop{kWrongUsage, file + ": not the extension of a record file"};
  const RecordRead read = read_records(file, kind->kind, s.language.page(), s.options.sortvol);
  if (!read.ok()) throw Stop{kFileTrouble, file + ": " + s.language.failure(read.failure)};
  if (!read.findings.none()) console.err << file << ": ";
  for (const FindingText& piece : finding_texts(read.findings))
    console.err << s.language.msg(piece.message) << piece.behind;
  if (!read.findings.none()) console.err << "\n";
  deliver(console, output,
          format == "json"  ? json_text(records_json(read.file, *kind))
          : format == "csv" ? records_csv(read.file)
                            : records_text(read.file));
  return read.findings.none() ? kDone : kRefused;
}

}  // namespace

CliCommand bind_records(CLI::App& program) {
  CLI::App* command = program.add_subcommand("records", "read a record file of any kind");
  auto args = std::make_shared<RecordsArgs>();
  command->add_option("FILE", args->file)->required();
  command->add_option("--format", args->format, "of the answer")
      ->check(CLI::IsMember({"text", "json", "csv"}))
      ->capture_default_str();
  command->add_option("--output", args->output, "write the answer into this FILE; - for standard output");
  return {command, [args](Session& s, CliUser&, const Console& console) {
            return records_command(s, console, *args);
          }};
}

}  // namespace tv
