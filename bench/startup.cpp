// CPU time of this process from its first line to a usable window, with full record files, beside the time
// that an application with an empty window takes.
#include <fmt/core.h>
#include <time.h>

#include <QApplication>
#include <QMainWindow>
#include <QTemporaryDir>
#include <filesystem>

#include "data/record_file.h"
#include "gui/app.h"
#include "gui/desk.h"
#include "gui/gui_user.h"
#include "screens/all.h"
#include "session/start.h"

namespace {

double cpu_ms() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6;
}

// The delivered records again and again under other names, until the file holds all the rows it may.
void fill_up(const std::string& from, const std::string& to, tv::RecordKind kind) {
  tv::RecordFile file = tv::read_records(from, kind, tv::CodePage::cp1252).file;
  auto& rows = file.table.rows;
  const std::size_t given = rows.size();
  const auto most = static_cast<std::size_t>(tv::record_kind(kind).limit) + 1;
  for (std::size_t i = 0; given > 0 && rows.size() < most; ++i) {
    tv::Record copy = rows[i % given];
    copy[0] = std::string(tv::trim(copy[0])) + " " + std::to_string(i);
    rows.push_back(std::move(copy));
  }
  std::filesystem::create_directories(std::filesystem::path(to).parent_path());
  tv::write_records(to, file, kind, tv::CodePage::cp1252);
}

void fill_root(const std::string& root) {
  const std::string share = TV_SHARE_DIR "/";
  for (const auto& [kind, name] : {std::pair{tv::RecordKind::cartridges, "data/calibers/ternofw.vol"},
                                   {tv::RecordKind::bullets, "data/bullets/ternofw.bul"},
                                   {tv::RecordKind::powders, "data/powders/ternofw.pro"}})
    fill_up(share + name, root + name, kind);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir folder;
  const std::string home = folder.path().toStdString() + "/";
  const std::string root = home + "ternovale/";
  fill_root(root);

  const double begin = cpu_ms();
  tv::App app(argc, argv);
  QMainWindow empty;
  empty.show();
  QApplication::processEvents();
  const double bare = cpu_ms();
  tv::GuiUser user;
  tv::Session session(user, tv::the_program());
  user.attach(&session, nullptr);
  tv::PlaceHints hints;
  hints.program_folder = "/bin/";
  hints.documents = home;
  hints.root = root;
  hints.build_share = TV_SHARE_DIR "/";
  if (!tv::start(session, hints)) return 1;
  const double started = cpu_ms();
  tv::Desk desk(session);
  user.attach(&session, &desk);
  desk.open_frame();
  QApplication::processEvents();
  const double shown = cpu_ms();
  user.attach(&session, nullptr);

  fmt::print("CPU time to a usable window, {} cartridges, {} bullets, {} powders\n",
             session.set(tv::RecordKind::cartridges).file.table.rows.size(),
             session.set(tv::RecordKind::bullets).file.table.rows.size(),
             session.set(tv::RecordKind::powders).file.table.rows.size());
  fmt::print("  application and an empty window {:7.1f} ms\n", bare - begin);
  fmt::print("  settings, language, records     {:7.1f} ms\n", started - bare);
  fmt::print("  windows                         {:7.1f} ms\n", shown - started);
  fmt::print("  in all                          {:7.1f} ms (aim: 300), {:.1f} times the empty window\n",
             shown - begin, (shown - begin) / (bare - begin));
  return 0;
}
