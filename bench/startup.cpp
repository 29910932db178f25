// The start of a whole process, from exec on, to a usable window with full record files, beside an application
// with an empty window; and what its parts take within. Each is a process of its own, that ends when its window is
// usable: what the loader does before the first line counts too.
#include <fmt/core.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <QApplication>
#include <QMainWindow>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
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

// --- in the process that is measured

void show_empty(tv::App&) {
  QMainWindow empty;
  empty.show();
  QApplication::processEvents();
}

// Prints what settings, records and windows took of it.
int start_program(const std::string& home, tv::App& app) {
  const double begin = cpu_ms();
  show_empty(app);
  const double bare = cpu_ms();
  tv::GuiUser user;
  tv::Session session(user, tv::the_program());
  user.attach(&session, nullptr);
  tv::PlaceHints hints;
  hints.program_folder = "/bin/";
  hints.documents = home;
  hints.root = home + "ternovale/";
  hints.build_share = TV_SHARE_DIR "/";
  if (!tv::start(session, hints)) return 1;
  const double started = cpu_ms();
  tv::Desk desk(session);
  user.attach(&session, &desk);
  desk.open_frame();
  QApplication::processEvents();
  fmt::print(
      "{:.1f} ms settings, language, records; {:.1f} ms windows; {:.1f} ms an empty window before them\n",
      started - bare, cpu_ms() - started, bare - begin);
  std::fflush(stdout);
  _exit(0);
}

// --- the one that measures

struct Cost {
  double wall = 0, cpu = 0;  // ms, medians
};

Cost cost_of(const char* self, const char* what, const std::string& home) {
  constexpr int runs = 15;
  std::vector<double> wall, cpu;
  for (int i = 0; i < runs; ++i) {
    const char* const arguments[] = {self, what, home.c_str(), i == 0 ? "told" : nullptr, nullptr};
    const auto begin = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, const_cast<char* const*>(arguments), environ))
      return {};
    struct rusage used {};
    wait4(child, nullptr, 0, &used);
    wall.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
    const auto ms = [](const timeval& time) {
      return 1e3 * double(time.tv_sec) + 1e-3 * double(time.tv_usec);
    };
    cpu.push_back(ms(used.ru_utime) + ms(used.ru_stime));
  }
  std::ranges::nth_element(wall, wall.begin() + runs / 2);
  std::ranges::nth_element(cpu, cpu.begin() + runs / 2);
  return {wall[runs / 2], cpu[runs / 2]};
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  if (argc > 2) {
    const std::string what = argv[1], home = argv[2];
    if (argc < 4) (void)!freopen("/dev/null", "w", stdout);
    tv::App app(argc, argv);
    if (what == "program") return start_program(home, app);
    show_empty(app);
    _exit(0);
  }
  QTemporaryDir folder;
  const std::string home = folder.path().toStdString() + "/";
  fill_root(home + "ternovale/");
  const Cost empty = cost_of(argv[0], "empty", home), program = cost_of(argv[0], "program", home);
  fmt::print("from exec to a usable window   wall ms   processor ms\n");
  fmt::print("  an empty window            {:9.1f} {:14.1f}\n", empty.wall, empty.cpu);
  fmt::print("  the program, full records  {:9.1f} {:14.1f}   (aim: 300), {:.1f} times the empty window\n",
             program.wall, program.cpu, program.cpu / empty.cpu);
  return 0;
}
