#include "text/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "temp_folder.h"
#include "text/background_writer.h"
#include "text/file_calls.h"
#include "without_rights.h"

namespace tv {
namespace {

namespace fs = std::filesystem;
using tv_test::TempFolder;
using tv_test::WithoutRights;

TEST(WriteFile, KeepsBackupModeAndLinks) {
  TempFolder at;
  const std::string file = at / "a.dat", backup = at / "a.bak", link = at / "link.dat";
  const std::string bytes("one\0\r\n\xFF", 7);
  ASSERT_EQ(write_file(file, bytes, backup), kNoFailure);
  EXPECT_EQ(read_file(file).bytes, bytes);
  EXPECT_FALSE(file_exists(backup));
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  ASSERT_EQ(symlink("a.dat", link.c_str()), 0);
  for (const char* text : {"two", "three", ""}) {
    const std::string before = read_file(file).bytes;
    ASSERT_EQ(write_file(link, text, backup), kNoFailure);
    EXPECT_EQ(read_file(file).bytes, text);
    EXPECT_EQ(read_file(backup).bytes, before);
  }
  EXPECT_TRUE(fs::is_symlink(link));
  struct stat info;
  ASSERT_EQ(stat(file.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);
  EXPECT_EQ(write_file(file, "four", file), kNoFailure);  // a backup of the same name is none
  EXPECT_EQ(read_file(file).bytes, "four");
  EXPECT_EQ(at.files(), 3);
}

TEST(WriteFile, NamesTheFailure) {
  TempFolder at;
  ASSERT_EQ(write_file(at / "a.dat", "x"), kNoFailure);
  EXPECT_EQ(write_file(at / "none/a.dat", "x"), kFolderNotFound);
  EXPECT_EQ(write_file(at / "a.dat/b.dat", "x"), kFolderNotFound);
  EXPECT_EQ(write_file(at.path(), "x"), kFileError);
  EXPECT_EQ(write_file("/dev/null", "x"), kFileError);
  ASSERT_EQ(symlink("round", (at / "round").c_str()), 0);
  EXPECT_NE(write_file(at / "round", "x"), kNoFailure);
  EXPECT_EQ(read_file(at / "none.dat").failure, kFileNotFound);
  EXPECT_EQ(read_file(at / "none/a.dat").failure, kFolderNotFound);
  EXPECT_EQ(read_file(at.path()).failure, kFileError);
  EXPECT_EQ(read_file("/dev/zero").failure, kFileError);
  ASSERT_EQ(mkfifo((at / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(read_file(at / "pipe").failure, kFileError);
  EXPECT_EQ(make_folders(at / "a.dat/b"), kFolderNotFound);
  EXPECT_EQ(make_folders(at / "b/c/d"), kNoFailure);
  EXPECT_EQ(make_folders(at / "b/c/d"), kNoFailure);
  EXPECT_TRUE(folder_exists(at / "b/c/d"));
}

TEST(WriteFile, IsRefusedWithoutTheRight) {
  TempFolder at;
  const std::string file = at / "a.dat", secret = at / "secret.dat", held = at / "held/a.dat";
  ASSERT_EQ(make_folders(at / "held"), kNoFailure);
  for (const std::string& name : {file, secret, held}) ASSERT_EQ(write_file(name, "x"), kNoFailure);
  ASSERT_EQ(chmod(at.path().c_str(), 0777) + chmod(file.c_str(), 0444) + chmod(secret.c_str(), 0), 0);
  ASSERT_EQ(chmod((at / "held").c_str(), 0555), 0);
  {
    const WithoutRights nobody;
    EXPECT_EQ(write_file(file, "y", at / "a.bak"), kPermissionDenied) << "the file is protected";
    EXPECT_EQ(write_file(held, "y", at / "held/a.bak"), kPermissionDenied) << "its folder is";
    EXPECT_EQ(read_file(secret).failure, kPermissionDenied);
    EXPECT_EQ(read_file(file).bytes + read_file(held).bytes, "xx");
  }
  ASSERT_EQ(chmod((at / "held").c_str(), 0755), 0);
  EXPECT_EQ(at.files() + at.files("held"), 4) << "nothing is left of the attempts";
}

// Calls that fail at a chosen place: once, or as if the program had ended there.
struct Fault {
  int at = 0;  // counted from 1, 0 for none
  int error = EIO;
  bool ends = false;
  int calls = 0;

  bool hits() {
    ++calls;
    if (!at || calls < at || (calls > at && !ends)) return false;
    errno = error;
    return true;
  }
};

Fault fault;

// A failing write leaves half of its bytes.
ssize_t faulty_write(int file, const void* bytes, std::size_t count) {
  const bool dead = fault.ends && fault.at && fault.calls >= fault.at;
  if (!fault.hits()) return system_calls().write(file, bytes, (count + 1) / 2);
  if (!dead && system_calls().write(file, bytes, count / 2) < 0) return -1;
  errno = fault.error;
  return -1;
}

FileCalls faulty_calls() {
  return {
      [](const char* path) { return fault.hits() ? -1 : system_calls().create(path); },
      faulty_write,
      [](int file, mode_t mode) { return fault.hits() ? -1 : system_calls().change_mode(file, mode); },
      [](int file) { return fault.hits() ? -1 : system_calls().sync(file); },
      [](int file) {
        const int closed = system_calls().close(file);
        return fault.hits() ? -1 : closed;
      },
      [](const char* from, const char* to) { return fault.hits() ? -1 : system_calls().link(from, to); },
      [](const char* from, const char* to) { return fault.hits() ? -1 : system_calls().rename(from, to); },
      [](const char* path) { return fault.hits() ? -1 : system_calls().remove(path); }};
}

constexpr const char* kOld = "the former content, whole";
constexpr const char* kNew = "the new content, whole as well, and longer";

// Writes over a file at a place with a backup; the fault strikes at its step.
int write_with(const Fault& chosen, const std::string& file, const std::string& backup) {
  EXPECT_EQ(write_file(file, "older"), kNoFailure);
  EXPECT_EQ(write_file(file, kOld, backup), kNoFailure);
  fault = chosen;
  return write_file(file, kNew, backup, faulty_calls());
}

TEST(WriteFile, FailingAtAnyStepLeavesTheOldFileOrTheNewOne) {
  TempFolder at;
  const std::string file = at / "a.dat", backup = at / "a.bak";
  ASSERT_EQ(write_with({}, file, backup), kNoFailure);
  const int steps = fault.calls;
  ASSERT_GT(steps, 10);
  for (bool ends : {false, true}) {
    for (int step = 1; step <= steps; ++step) {
      TempFolder folder;
      const std::string target = folder / "a.dat", kept = folder / "a.bak";
      const int failure = write_with({step, EIO, ends}, target, kept);
      const std::string found = read_file(target).bytes;
      SCOPED_TRACE(testing::Message() << "step " << step << (ends ? ", program ended" : ""));
      EXPECT_EQ(found, failure ? kOld : kNew);
      const std::string former = read_file(kept).bytes;
      EXPECT_TRUE(former == "older" || former == kOld) << former << ": the backup is never missing";
      if (!ends) {
        EXPECT_LE(folder.files(), 2) << "a temporary file is left";
      }
    }
  }
}

TEST(WriteFile, RemovesWhatAKilledProgramLeft) {
  TempFolder at;
  const pid_t dead = fork();
  if (dead == 0) _exit(0);
  ASSERT_EQ(waitpid(dead, nullptr, 0), dead);
  for (const pid_t owner : {dead, getpid()})
    ASSERT_EQ(write_unflushed(at / (".ternovale." + std::to_string(owner) + ".7.part"), "x"), kNoFailure);
  ASSERT_EQ(write_file(at / "a.dat", "x"), kNoFailure);
  EXPECT_EQ(at.files(), 2) << "of the parts only that of a living program is left";
}

TEST(BackgroundWriter, FailingAtAnyStepLeavesTheOldFileOrTheNewOne) {
  BackgroundWriter writer;
  for (int step = 0; step == 0 || step <= fault.calls; ++step) {
    TempFolder at;
    const std::string file = at / "a.dat";
    int failure = kNoFailure;
    writer.post(file, [&] { return failure = write_with({step, ENOSPC, false}, file, at / "a.bak"); });
    writer.drain();
    EXPECT_EQ(read_file(file).bytes, failure ? kOld : kNew) << "step " << step;
    const auto told = writer.take_failure();
    EXPECT_EQ(told ? told->failure : kNoFailure, failure);
    EXPECT_LE(at.files(), 2) << "a temporary file is left";
  }
}

TEST(BackgroundWriter, WritesTheLatestOfEachFile) {
  TempFolder at;
  int written = 0;
  const auto version = [&](const std::string& name, int n) {
    return [&written, file = at / name, n] { return ++written, write_unflushed(file, std::to_string(n)); };
  };
  {
    BackgroundWriter writer;
    for (int n = 1; n <= 2000; ++n)
      for (const char* name : {"a", "b"}) writer.post(at / name, version(name, n));
    writer.drain();
    EXPECT_EQ(at.files(), 2);
    EXPECT_EQ(read_file(at / "a").bytes + read_file(at / "b").bytes, "20002000");
    EXPECT_LT(written, 200) << "each version was written";
    writer.post(at / "a", version("a", 7));
    writer.post(at / "b", [&]() -> int { throw std::bad_alloc(); });
    writer.drain();
    const auto failed = writer.take_failure();
    ASSERT_TRUE(failed.has_value());
    EXPECT_EQ(failed->file, at / "b");
    writer.post(at / "a", version("a", 8));
  }
  EXPECT_EQ(read_file(at / "a").bytes, "8") << "the end writes what is left";
}

TEST(WriteFile, MapsTheSystemsErrors) {
  TempFolder at;
  const struct {
    int error, failure;
  } cases[] = {{ENOSPC, kDiskFull},        {EDQUOT, kDiskFull}, {EACCES, kPermissionDenied},
               {EROFS, kPermissionDenied}, {EIO, kFileError},   {EPERM, kPermissionDenied}};
  for (const auto& c : cases) {
    EXPECT_EQ(write_with({2, c.error}, at / "a.dat", {}), c.failure);
    EXPECT_EQ(read_file(at / "a.dat").bytes, kOld);
  }
}

// File systems without hard links: the backup is a copy.
TEST(WriteFile, CopiesTheBackupWhereLinksAreUnknown) {
  TempFolder at;
  ASSERT_EQ(write_file(at / "a.dat", kOld), kNoFailure);
  FileCalls calls = system_calls();
  calls.link = [](const char*, const char*) {
    errno = EPERM;
    return -1;
  };
  ASSERT_EQ(write_file(at / "a.dat", kNew, at / "a.bak", calls), kNoFailure);
  EXPECT_EQ(read_file(at / "a.dat").bytes, kNew);
  EXPECT_EQ(read_file(at / "a.bak").bytes, kOld);
  EXPECT_EQ(at.files(), 2);
}

TEST(ResolvePath, FindsNamesThatDifferInCase) {
  TempFolder at;
  for (const char* folder : {"data", "Data", "Data/Powders"}) ASSERT_EQ(make_folders(at / folder), 0);
  for (const char* name : {"data/exact.DAT", "Data/Powders/Ünder.pro", "data/Two.x", "data/tWO.x"}) {
    ASSERT_EQ(write_file(at / name, "x"), 0);
  }
  const struct {
    const char *asked, *found;
  } cases[] = {{"data/exact.DAT", "data/exact.DAT"},
               {"data\\exact.dat", "data/exact.DAT"},
               {"DATA\\EXACT.dat", "data/exact.DAT"},
               {"data/powders/ÜNDER.PRO", "Data/Powders/Ünder.pro"},  // the other folder holds it
               {"data/two.x", "data/Two.x"},
               {"data/none.x", "data/none.x"},
               {"Data", "Data"},
               {"../none", "../none"}};
  for (const auto& c : cases) {
    EXPECT_EQ(resolve_path(at.path(), c.asked), at / c.found);
    EXPECT_EQ(resolve_path(at.path().substr(0, at.path().size() - 1), c.asked), at / c.found);
  }
  EXPECT_EQ(resolve_path("/none", at / "DATA/Exact.dat"), at / "data/exact.DAT");
}

TEST(FilesIn, FitsPatternsWithoutCase) {
  TempFolder at;
  for (const char* name : {"b.BUL", "a.bul", "c.pro", "Ternofw.bul", "plain", ".hidden.bul"}) {
    ASSERT_EQ(write_file(at / name, "x"), 0);
  }
  ASSERT_EQ(make_folders(at / "folder.bul"), 0);
  using Names = std::vector<std::string>;
  EXPECT_EQ(files_in(at.path(), "*.bul"), (Names{"Ternofw.bul", "a.bul", "b.BUL"}));
  EXPECT_EQ(files_in(at.path(), "TERNO*.b*"), Names{"Ternofw.bul"});
  EXPECT_EQ(files_in(at.path(), "c.pro"), Names{"c.pro"});
  EXPECT_EQ(files_in(at.path(), "*.*").size(), 5u);
  EXPECT_EQ(files_in(at.path(), "*l*l"), Names{});
  EXPECT_TRUE(files_in(at / "none", "*").empty());
}

}  // namespace
}  // namespace tv
