// Sessions on a data root of their own, started as often as a test needs, and data files to feed them.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "screens/all.h"
#include "session/data_sets.h"
#include "session/file_names.h"
#include "session/language_switch.h"
#include "session/load_files.h"
#include "session/loads.h"
#include "session/message.h"
#include "session/record_lists.h"
#include "session/recording_user.h"
#include "session/settings.h"
#include "session/start.h"
#include "temp_folder.h"
#include "text/file.h"

namespace tv_test {

// Keeps what the file dialog was asked with.
struct FileUser : RecordingUser {
  std::vector<tv::FileBox> file_boxes;
  std::vector<std::string> folder_starts;

  std::optional<tv::FileAnswer> choose_file(const tv::FileBox& box) override {
    file_boxes.push_back(box);
    return RecordingUser::choose_file(box);
  }
  std::optional<std::string> choose_folder(const tv::Message& prompt, const std::string& start) override {
    folder_starts.push_back(start);
    return RecordingUser::choose_folder(prompt, start);
  }
};

struct Program {
  FileUser user;
  tv::Session s{user, tv::the_program()};
  bool started = false;

  tv::RecordTable& table(tv::RecordKind kind) { return s.set(kind).file.table; }
  // The keys of the boxes since the last look.
  std::string keys() {
    const std::string shown = user.box_keys();
    user.forget();
    return shown;
  }
};

class Home : public ::testing::Test {
protected:
  std::unique_ptr<Program> program(bool writes_files = true) {
    auto p = std::make_unique<Program>();
    p->s.writes_files = writes_files;
    return p;
  }
  std::unique_ptr<Program> start(std::unique_ptr<Program> p) {
    const tv::PlaceHints hints{root.path(), {}, {}, share, home()};
    p->started = tv::start(p->s, hints);
    return p;
  }
  std::unique_ptr<Program> start() { return start(program()); }

  std::string home() const { return root.path() + home_name; }
  std::string at(const std::string& name) const { return home() + name; }
  std::string write(const std::string& name, const std::string& bytes) const {
    return root.write(home_name + name, bytes);
  }
  std::string read(const std::string& name) const { return root.read(home_name + name); }

  TempFolder root;
  std::string home_name = "home/";
  std::string share = TV_SHARE_DIR;
};

inline tv::FileAnswer saved_as(const std::string& file, const std::string& comment = {}) {
  return {file, comment};
}

inline tv::Record record(const std::string& name, const std::map<int, std::string>& fields = {}) {
  tv::Record row;
  row[0] = name;
  for (const auto& [field, text] : fields) row[static_cast<std::size_t>(field)] = text;
  return row;
}

inline std::string file_of(tv::RecordKind kind, const std::vector<tv::Record>& rows,
                           const std::vector<std::string>& comments = {}) {
  tv::RecordFile file;
  file.table.rows = rows;
  file.comments = comments;
  return tv::record_file_bytes(file, kind, tv::CodePage::cp1252);
}

// Trimmed names in their order, joined by "|".
inline std::string names(const tv::RecordTable& table) {
  std::string all;
  for (int row = 0; row <= table.last(); ++row)
    all += (row ? "|" : "") + std::string(tv::trim(table.cell(row, 0)));
  return all;
}

}  // namespace tv_test
