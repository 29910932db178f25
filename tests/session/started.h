// A session that has started on the delivered data, with a data root of its own that goes with the test.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "geometry/dimensions.h"
#include "screens/all.h"
#include "session/data_sets.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/input_check.h"
#include "session/language_switch.h"
#include "session/load_files.h"
#include "session/loads.h"
#include "session/message.h"
#include "session/record_lists.h"
#include "session/recording_user.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/start.h"
#include "session/tables.h"
#include "session/take_records.h"
#include "temp_folder.h"

namespace tv_test {

class Started : public ::testing::Test {
protected:
  Started() {
    if (!tv::start(s, {.program_folder = root.path(),
                       .documents = {},
                       .shared_data = {},
                       .build_share = TV_SHARE_DIR,
                       .root = root.path()}))
      throw std::runtime_error("the session does not start");
    user.forget();
  }

  const std::string& text(const char* screen, const char* name) {
    tv::refresh_screens(s);
    return tv::field(s, screen, name).text;
  }

  static std::string example(const std::string& name) {
    return std::string(TV_SHARE_DIR) + "/data/loads/" + name + ".dat";
  }
  void load(const std::string& name) {
    ASSERT_TRUE(tv::load_read(s, example(name)));
    tv::refresh_screens(s);
    user.forget();
  }
  int row(tv::RecordKind kind, const std::string& name) {
    const int found = s.set(kind).file.table.find(name);
    EXPECT_GE(found, 0) << name;
    return found;
  }
  void pick(const char* screen, const char* list, const std::string& name) {
    const auto& items = tv::field(s, screen, list).items;
    for (std::size_t i = 0; i < items.size(); ++i)
      if (items[i].text == name) {
        EXPECT_TRUE(tv::pick(s, screen, list, static_cast<int>(i)));
        return;
      }
    ADD_FAILURE() << "no entry " << name << " in " << screen << "." << list;
  }
  void type(const char* screen, const char* name,
            std::string typed) {  // a copy: it may be a field's own text
    EXPECT_TRUE(tv::type_text(s, screen, name, typed)) << screen << "." << name;
  }
  // A record of a kind, put behind those that are there; gives its row.
  int add_row(tv::RecordKind kind, const tv::Record& record) {
    auto& table = s.set(kind).file.table;
    table.rows.push_back(record);
    tv::fill_lists(s, kind);
    return table.last();
  }

  TempFolder root;
  RecordingUser user;
  tv::Session s{user, tv::the_program()};
};

}  // namespace tv_test
