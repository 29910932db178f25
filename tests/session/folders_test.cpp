// Where the file dialog starts: each kind of file has a folder of its own, also after a restart.
#include "session/driver.h"
#include "session/files_fixture.h"

namespace tv_test {
namespace {

using namespace tv;

class Folders : public Home {
protected:
  std::string offered(Program& p, const std::function<void(Session&)>& ask) {
    p.user.file_boxes.clear();
    p.user.files = {std::nullopt};
    ask(p.s);
    return p.user.file_boxes.size() == 1 ? p.user.file_boxes[0].folder : "no dialog";
  }
  static FileBox export_box(DialogKind kind, const Session& s) {
    return {FileMode::save, kind, "", load_folder(s), "", "", ""};
  }
};

TEST_F(Folders, EachKindHasItsOwnOverRestarts) {
  for (const char* folder : {"loads/", "shots/", "tables/"}) make_folders(at(folder));
  {
    const auto p = start();
    ASSERT_TRUE(p->started);
    Session& s = p->s;
    const std::string before = offered(*p, lab_lod);
    take_cartridge(s, 3);
    EXPECT_EQ(offered(*p, lab_lod), before) << "a load that has no file yet leads nowhere else";
    p->user.files = {saved_as(at("loads/mine.dat"))};
    lab_sav(s);
    EXPECT_EQ(offered(*p, lab_lod), at("loads/"));
    p->user.files = {saved_as(at("shots/a.png"))};
    ASSERT_TRUE(ask_file(s, export_box(DialogKind::picture, s), {"png"}));
    p->user.files = {saved_as(at("tables/a.xlsx"))};
    ASSERT_TRUE(ask_file(s, export_box(DialogKind::spreadsheet, s), {"xlsx"}));
    take_cartridge(s, 5);
    EXPECT_EQ(offered(*p, lab_lod), at("loads/")) << "a new load begins where the last one was";
    EXPECT_EQ(offered(*p, [](Session& now) { open_records(now, RecordKind::bullets); }),
              share + "/data/bullets/");
    save_and_exit(s);
  }
  const auto p = start();
  const auto picture = [&](Session& s) { ask_file(s, export_box(DialogKind::picture, s), {"png"}); };
  const auto table = [&](Session& s) { ask_file(s, export_box(DialogKind::spreadsheet, s), {"xlsx"}); };
  const auto text = [&](Session& s) { ask_file(s, export_box(DialogKind::text, s), {"txt"}); };
  EXPECT_EQ(offered(*p, lab_lod), at("loads/"));
  EXPECT_EQ(offered(*p, picture), at("shots/"));
  EXPECT_EQ(offered(*p, table), at("tables/"));
  EXPECT_EQ(offered(*p, text), at("loads/")) << "none yet: beside the load";
  p->s.options.picdir = at("gone/");
  EXPECT_EQ(offered(*p, picture), at("loads/"));
}

}  // namespace
}  // namespace tv_test
