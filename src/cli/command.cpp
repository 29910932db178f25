#include "cli/command.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include "cli/places.h"
#include "session/file_names.h"
#include "session/language_switch.h"
#include "session/start.h"

namespace tv {
namespace {

namespace fs = std::filesystem;

void check_root(const std::string& root) {
  if (!root.empty() && !folder_exists(root))
    throw Stop{kFileTrouble, "--root: " + root + ": " + Language().failure(kFolderNotFound)};
}

FileRead read_stream(std::istream& in) {
  constexpr std::size_t most = 64U << 20U;
  FileRead read;
  std::string piece(1U << 16U, '\0');
  while (in && read.bytes.size() <= most) {
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    read.bytes.append(piece.data(), static_cast<std::size_t>(in.gcount()));
  }
  return in.bad() || read.bytes.size() > most ? FileRead{{}, kFileError} : read;
}

bool is_stream(const std::string& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  return fs::is_fifo(status) || fs::is_character_file(status) || fs::is_socket(status);
}

}  // namespace

void begin_session(Session& s, CliUser& user, const CommonArgs& args, bool writes_files) {
  check_root(args.root);
  user.yes = args.yes;
  s.writes_files = writes_files && !args.defaults;
  s.reads_settings = !args.defaults;
  s.sound = false;
  PlaceHints hints = place_hints();
  hints.root = args.root;
  s.silent = !writes_files;  // the load of the settings file is not what is asked for
  const bool started = start(s, hints);
  s.silent = false;
  if (!started) throw Stop{kFileTrouble, "the language file could not be read"};
  if (!s.writes_files) s.settings_file.clear();
  if (!args.language.empty()) {
    const std::string file = data_path(s, "lan/tn_" + args.language + ".lan");
    if (!language_read(s, file)) throw Stop{kFileTrouble, "the language file could not be read: " + file};
  }
  s.sound = true;
  user.shown.clear();
}

FileRead read_input(const Console& console, const std::string& file) {
  if (file == "-") return read_stream(console.in);
  if (!is_stream(file)) return read_file(file);
  std::ifstream stream(file, std::ios::binary);
  return stream ? read_stream(stream) : FileRead{{}, kPermissionDenied};
}

void deliver(const Console& console, const std::string& file, const std::string& text) {
  if (file.empty() || file == "-") {
    console.out << text << std::flush;
    if (!console.out) throw Stop{kFileTrouble, "standard output could not be written"};
  } else if (const int failure = write_file(file, text)) {
    throw Stop{kFileTrouble, file + ": " + Language().failure(failure)};
  }
}

void keep_inputs(const Session& s, const std::string& output, const std::vector<std::string>& read) {
  if (output.empty() || output == "-") return;
  std::vector<std::string> inputs = read;
  inputs.push_back(s.language.path());
  inputs.push_back(s.roots.root + "ternofw.set");
  for (std::size_t i = 0; i < s.data.size(); ++i)
    inputs.push_back(data_path(s, s.data[i].stored_name + record_kind(static_cast<RecordKind>(i)).extension));
  for (const std::string& input : inputs) {
    std::error_code error;
    if (!input.empty() && fs::equivalent(input, output, error))
      throw Stop{kWrongUsage, "--output would take the place of a file that is read: " + output};
  }
}

std::string json_text(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tv
