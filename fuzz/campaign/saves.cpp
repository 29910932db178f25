// campaign_saves SECONDS SEED: files of every kind saved while something goes wrong. First each call to the system
// that a save makes fails, with each error that it may give; then a full disk, a file system that can only be
// read, and a user without rights; for the rest of the time a process that saves is killed at random moments. A
// file must always be the old or the new one as a whole, whatever a save reports, and a save that reports success
// has saved. Prints what was tried and found; status 1 when something was found.
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <random>

#include <fmt/core.h>

#include "data/load_keys.h"
#include "data/record_file.h"
#include "output/spreadsheet.h"
#include "powder/powder_files.h"
#include "text/file.h"
#include "without_rights.h"

namespace {

// The call that fails: counted while a fault is armed.
struct Fault {
  int at = 0, calls = 0, error = 0;
  bool part = false;  // a write that takes a part only, then the error
  bool hits() { return at > 0 && ++calls == at; }
};
Fault fault;

template <class... Arguments>
long call(long number, Arguments... arguments) {
  if (fault.hits()) {
    errno = fault.error;
    return -1;
  }
  return syscall(number, arguments...);
}

}  // namespace

// In place of the library's: the saves of the program come by here.
extern "C" {
int fsync(int file) { return static_cast<int>(call(SYS_fsync, file)); }
int fchmod(int file, mode_t mode) noexcept { return static_cast<int>(call(SYS_fchmod, file, mode)); }
int rename(const char* from, const char* to) noexcept { return static_cast<int>(call(SYS_rename, from, to)); }
int link(const char* from, const char* to) noexcept { return static_cast<int>(call(SYS_link, from, to)); }
ssize_t write(int file, const void* bytes, size_t count) {
  if (fault.part && fault.at > 0 && count > 1 && fault.calls + 1 == fault.at) {
    fault.part = false;  // its rest is the call that fails
    return syscall(SYS_write, file, bytes, count / 2);
  }
  return call(SYS_write, file, bytes, count);
}
}

namespace {

namespace fs = std::filesystem;
using namespace tv;

// --- what is saved: two versions of a file of each kind

std::string bytes_of(const std::string& path) { return read_file(path).bytes; }

int save_load(const std::string& path, int version) {
  CalcState state;
  LoadData load;
  SectionedFile from(bytes_of(std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat"));
  read_load_keys(from, state, load);
  state.chargeGr += version;
  return settings_change(path, CodePage::cp1252,
                         [&](SectionedFile& file) { write_load_keys(state, load, file); });
}
int save_settings(const std::string& path, int version) {
  Options options;
  options.ldstep = 1 + version;
  return settings_change(path, CodePage::cp1252, [&](SectionedFile& file) { write_options(options, file); });
}
template <RecordKind Kind>
int save_records(const std::string& path, int version) {
  RecordFile file;
  for (int i = 0; i < 300; ++i) {
    Record record;
    record[0] = fmt::format("record {} of version {}", i, version);
    file.table.rows.push_back(record);
  }
  return write_records(path, file, Kind, CodePage::cp1252);
}
int save_vivacity(const std::string& path, int version) {
  return write_vivacity(path, VivacityTable(), fmt::format("version {}", version), CodePage::cp1252);
}
int save_reference(const std::string& path, int version) {
  ReferenceCurve curve;
  curve.comment = fmt::format("version {}", version);
  return write_reference(path, curve, CodePage::cp1252);
}
ExportData table(int version) {
  ExportData data;
  data.headers = {"x", "mark"};
  for (int i = 0; i < 400; ++i) data.data.push_back({double(i + version), std::string()});
  return data;
}
int save_csv(const std::string& path, int version) { return write_csv(table(version), path); }
int save_text(const std::string& path, int version) {
  return write_file(path, std::string(200000, static_cast<char>('a' + version)));
}

struct Kind {
  const char* name;
  int (*save)(const std::string& path, int version);
};
constexpr Kind kKinds[] = {{"load.dat", save_load},
                           {"ternofw.set", save_settings},
                           {"records.pro", save_records<RecordKind::powders>},
                           {"records.bul", save_records<RecordKind::bullets>},
                           {"records.vol", save_records<RecordKind::cartridges>},
                           {"records.gun", save_records<RecordKind::guns>},
                           {"table.viv", save_vivacity},
                           {"curve.ref", save_reference},
                           {"export.csv", save_csv},
                           {"print.txt", save_text}};

// --- the check

struct Tally {
  long faults = 0, kills = 0, refused = 0, found = 0;
  bool disk = false;
};

struct Versions {
  std::string old, renewed;
};
// What a save leaves where nothing goes wrong.
Versions versions_of(const Kind& kind, const std::string& folder) {
  const std::string path = folder + kind.name;
  fs::remove(path);
  kind.save(path, 0);
  Versions v{bytes_of(path), {}};
  kind.save(path, 1);
  v.renewed = bytes_of(path);
  return v;
}

void find(Tally& tally, const Kind& kind, const std::string& what) {
  ++tally.found;
  fmt::print("found: {}: {}\n", kind.name, what);
}

void clear(const std::string& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
}
bool left_over(const std::string& folder) {
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".part") return true;
  return false;
}

void put(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// Old or new as a whole, and what the save said of it.
void check(Tally& tally, const Kind& kind, const std::string& path, const Versions& v, int failure,
           const std::string& how) {
  const std::string now = bytes_of(path);
  if (now != v.old && now != v.renewed) find(tally, kind, how + ": neither the old file nor the new one");
  if (failure == 0 && now != v.renewed) find(tally, kind, how + ": told as saved, but it is not");
  if (failure != 0 && now != v.old) find(tally, kind, how + ": told as failed, but it is saved");
}

// --- each call fails, with each error

void fail_each_call(Tally& tally, const Kind& kind, const std::string& folder) {
  const Versions v = versions_of(kind, folder);
  const std::string path = folder + kind.name;
  for (const int error : {ENOSPC, EIO, EACCES, EROFS, EDQUOT, EPERM, ENOENT, EMFILE})
    for (const bool part : {false, true})
      for (int at = 1;; ++at) {
        clear(folder);
        put(path, v.old);
        fault = {at, 0, error, part};
        const int failure = kind.save(path, 1);
        const bool hit = fault.calls >= at;
        fault = {};
        if (!hit) break;
        ++tally.faults;
        check(tally, kind, path, v, failure, fmt::format("call {} fails with {}", at, error));
        if (left_over(folder)) find(tally, kind, fmt::format("call {}, {}: a part is left", at, error));
      }
}

// --- disks and rights

void refused_save(Tally& tally, const Kind& kind, const std::string& path, const Versions& v,
                  const char* how) {
  const int failure = kind.save(path, 1);
  tally.refused += failure != 0;
  check(tally, kind, path, v, failure, how);
}

void without_rights(Tally& tally, const Kind& kind, const std::string& folder) {
  const Versions v = versions_of(kind, folder);
  const std::string path = folder + kind.name;
  clear(folder);
  put(path, v.old);
  chmod(path.c_str(), 0644);
  chmod(folder.c_str(), 0755);
  {
    const tv_test::WithoutRights ordinary;
    if (geteuid() != 0 && access(folder.c_str(), W_OK) != 0)
      refused_save(tally, kind, path, v, "a folder of somebody else");
  }
  chmod(path.c_str(), 0444);
  chmod(folder.c_str(), 0777);
  {
    const tv_test::WithoutRights ordinary;
    if (access(path.c_str(), W_OK) != 0) refused_save(tally, kind, path, v, "a file that is write-protected");
  }
}

void limited_size(Tally& tally, const Kind& kind, const std::string& folder) {
  const Versions v = versions_of(kind, folder);
  clear(folder);
  put(folder + kind.name, v.old);
  std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit before {};
  getrlimit(RLIMIT_FSIZE, &before);
  const struct rlimit small { v.renewed.size() / 2, before.rlim_max };
  setrlimit(RLIMIT_FSIZE, &small);
  refused_save(tally, kind, folder + kind.name, v, "no room for the file");
  setrlimit(RLIMIT_FSIZE, &before);
}

// A small disk of its own, in a name space of a child: full, then for reading only. Status 2 where the system
// does not allow that.
int on_a_small_disk(const std::string& folder) {
  if (unshare(CLONE_NEWNS) < 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) < 0) return 2;
  Tally tally;
  for (const Kind& kind : kKinds) {
    const Versions v = versions_of(kind, folder);
    const std::string size = fmt::format("size={}k", v.renewed.size() / 1024 + 8);
    if (mount("none", folder.c_str(), "tmpfs", 0, size.c_str()) < 0) return 2;
    put(folder + kind.name, v.old);
    put(folder + "filler", std::string(1U << 20U, 'x'));
    refused_save(tally, kind, folder + kind.name, v, "a full disk");
    mount("none", folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr);
    refused_save(tally, kind, folder + kind.name, v, "a disk for reading only");
    umount2(folder.c_str(), MNT_DETACH);
  }
  return tally.found > 0 || tally.refused < 2 * static_cast<long>(std::size(kKinds)) ? 1 : 0;
}

void small_disk(Tally& tally, const std::string& folder) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    const int status = on_a_small_disk(folder);
    std::fflush(stdout);
    _exit(status);
  }
  int status = 0;
  waitpid(child, &status, 0);
  tally.disk = WIFEXITED(status) && WEXITSTATUS(status) != 2;
  if (!WIFEXITED(status) || WEXITSTATUS(status) == 1) ++tally.found;
}

// --- killed at random moments

void kill_once(Tally& tally, const Kind& kind, const std::string& folder, const Versions& v,
               unsigned micros) {
  const std::string path = folder + kind.name;
  const pid_t child = fork();
  if (child == 0)
    for (int version = 0;; version = 1 - version) kind.save(path, version);
  usleep(micros);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  ++tally.kills;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".part") {
      fs::remove(entry.path());
      continue;
    }
    const std::string now = bytes_of(entry.path().string());
    if (now != v.old && now != v.renewed)
      find(tally, kind, "killed: " + entry.path().filename().string() + " is no whole version");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const double seconds = argc > 1 ? std::stod(argv[1]) : 10;
  std::minstd_rand random(static_cast<unsigned>(argc > 2 ? std::stoul(argv[2]) : 1));
  std::string pattern = (fs::temp_directory_path() / "tv-saves-XXXXXX").string();
  const std::string folder = std::string(mkdtemp(pattern.data())) + "/";
  Tally tally;
  for (const Kind& kind : kKinds) fail_each_call(tally, kind, folder);
  for (const Kind& kind : kKinds) without_rights(tally, kind, folder);
  for (const Kind& kind : kKinds) limited_size(tally, kind, folder);
  clear(folder);
  small_disk(tally, folder);
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (std::chrono::steady_clock::now() < end) {
    const Kind& kind = kKinds[random() % std::size(kKinds)];
    clear(folder);
    const Versions v = versions_of(kind, folder);
    for (int i = 0; i < 20; ++i) kill_once(tally, kind, folder, v, static_cast<unsigned>(random() % 20000));
  }
  fs::remove_all(folder);
  fmt::print("saves: {} calls failed, {} refused by disk or rights{}, {} killed; found {}\n", tally.faults,
             tally.refused, tally.disk ? ", full and read-only disk" : " (no disk of its own allowed)",
             tally.kills, tally.found);
  return tally.found > 0;
}
