#include "cli/command.h"

#include <ostream>

#include "cli/places.h"
#include "session/file_names.h"
#include "session/language_switch.h"
#include "session/start.h"
#include "text/file.h"

namespace tv {

void begin_session(Session& s, CliUser& user, const CommonArgs& args, bool writes_files) {
  user.yes = args.yes;
  s.writes_files = writes_files;
  s.sound = false;
  PlaceHints hints = place_hints();
  hints.root = args.root;
  s.silent = !writes_files;  // the load of the settings file is not what is asked for
  const bool started = start(s, hints);
  s.silent = false;
  if (!started) throw Stop{kFileTrouble, "the language file could not be read"};
  if (!writes_files) s.settings_file.clear();
  if (!args.language.empty()) {
    const std::string file = data_path(s, "lan/tn_" + args.language + ".lan");
    if (!language_read(s, file)) throw Stop{kFileTrouble, "the language file could not be read: " + file};
  }
  s.sound = true;
  user.shown.clear();
}

void deliver(const Console& console, const std::string& file, const std::string& text) {
  if (file.empty()) {
    console.out << text;
  } else if (const int failure = write_file(file, text)) {
    throw Stop{kFileTrouble, file + ": " + Language().failure(failure)};
  }
}

std::string json_text(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tv
