#include "text/file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "text/codepage.h"
#include "text/file_calls.h"

namespace tv {
namespace {

namespace fs = std::filesystem;

std::string folder_or_dot(const std::string& path) {
  const std::string folder = file_folder(path);
  return folder.empty() ? "." : folder;
}

int failure_of(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
      return folder_exists(folder_or_dot(path)) ? kFileNotFound : kFolderNotFound;
    case ENOTDIR:
      return kFolderNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return kPermissionDenied;
    case ENOSPC:
    case EDQUOT:
      return kDiskFull;
    default:
      return kFileError;
  }
}

// The file at the end of a chain of links, which need not exist. Empty if the chain does not end.
std::string follow_links(std::string path) {
  constexpr int kLongestChain = 40;
  for (int i = 0; i < kLongestChain; ++i) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return path;
    path = target.is_absolute() ? target.string() : file_folder(path) + target.string();
  }
  return {};
}

// 0, or errno.
int write_all(int file, std::string_view bytes, const FileCalls& calls) {
  while (!bytes.empty()) {
    const ssize_t written = calls.write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? errno : EIO;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

constexpr int kTries = 1000;

constexpr std::string_view kPartHead = ".ternovale.", kPartTail = ".part";

std::string temporary_name(const std::string& target, int i) {
  return file_folder(target) + std::string(kPartHead) + std::to_string(getpid()) + "." + std::to_string(i) +
         std::string(kPartTail);
}

// The process that a temporary file of that name belongs to, 0 if it is no such name.
pid_t owner_of(std::string_view name) {
  if (!name.starts_with(kPartHead) || !name.ends_with(kPartTail)) return 0;
  pid_t owner = 0;
  const std::string_view rest = name.substr(kPartHead.size());
  const auto end = std::from_chars(rest.data(), rest.data() + rest.size(), owner);
  return end.ec == std::errc() && *end.ptr == '.' ? owner : 0;
}

bool is_gone(pid_t process) { return kill(process, 0) < 0 && errno == ESRCH; }

// A new file of a name that nobody else uses, beside the target. -1 and errno on failure.
int create_beside(const std::string& target, std::string& name, const FileCalls& calls) {
  for (int i = 0; i < kTries; ++i) {
    name = temporary_name(target, i);
    const int file = calls.create(name.c_str());
    if (file >= 0 || errno != EEXIST) return file;
  }
  return -1;
}

// Writes and flushes the file under a temporary name. 0, or errno and then nothing is left of it.
int write_beside(const std::string& target, std::string_view bytes, const struct stat* old, std::string& name,
                 const FileCalls& calls) {
  const int file = create_beside(target, name, calls);
  if (file < 0) return errno;
  int error = write_all(file, bytes, calls);
  if (!error && old && calls.change_mode(file, old->st_mode & 07777) < 0) error = errno;
  if (!error && calls.sync(file) < 0) error = errno;
  if (calls.close(file) < 0 && !error) error = errno;
  if (error) calls.remove(name.c_str());
  return error;
}

bool same_file(const std::string& a, const std::string& b) {
  struct stat x, y;
  return stat(a.c_str(), &x) == 0 && stat(b.c_str(), &y) == 0 && x.st_dev == y.st_dev && x.st_ino == y.st_ino;
}

// A second name of the target beside the backup, of a name that nobody else uses. False where the file system
// knows no such thing.
bool link_beside(const std::string& target, const std::string& backup, std::string& name,
                 const FileCalls& calls) {
  for (int i = 0; i < kTries; ++i) {
    name = temporary_name(backup, i);
    if (calls.link(target.c_str(), name.c_str()) == 0) return true;
    if (errno != EEXIST) return false;
  }
  return false;
}

// The present file becomes the backup, by a second name or, where there is no such thing, by a copy. The
// former backup stands until that takes its place in one step.
void keep_backup(const std::string& target, const std::string& backup, const FileCalls& calls) {
  // A backup of the file's own name would be the loss of the file; two names of one file are a former backup.
  if (same_file(target, backup) && file_name_only(target) == file_name_only(backup)) return;
  std::string name;
  if (!link_beside(target, backup, name, calls)) {
    const FileRead old = read_file(target);
    if (old.failure || write_beside(backup, old.bytes, nullptr, name, calls)) return;
  }
  calls.rename(name.c_str(), backup.c_str());
  calls.remove(name.c_str());  // still there if that failed, or if both were names of one file already
}

// Makes the new name last. The file is whole with or without it, so its failure is none of the write.
void sync_folder(const std::string& folder, const FileCalls& calls) {
  const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  calls.sync(file);
  calls.close(file);
}

// Path below a folder, its elements compared without case where the exact ones lead nowhere. Empty if there
// is none.
std::string find_folded(const std::string& folder, std::string_view path) {
  while (!path.empty() && path.front() == '/') path.remove_prefix(1);
  if (path.empty()) return folder;
  const std::size_t end = path.find('/');
  const std::string element(path.substr(0, end));
  const std::string_view rest = end == std::string_view::npos ? std::string_view() : path.substr(end);
  std::vector<std::string> names = {element};
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), none; !error && entry != none;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name != element && same_fold(name, element)) names.push_back(name);
  }
  std::sort(names.begin() + 1, names.end());
  for (const std::string& name : names) {
    std::string found = folder + name;
    if (!fs::exists(found, error)) continue;
    if (rest.empty()) return found;
    found = find_folded(found + "/", rest);
    if (!found.empty()) return found;
  }
  return {};
}

// "*" stands for any characters, also none.
bool fits(std::string_view name, std::string_view pattern) {
  const std::size_t star = pattern.find('*');
  if (star == std::string_view::npos) return name == pattern;
  if (name.substr(0, star) != pattern.substr(0, star)) return false;
  name.remove_prefix(star);
  pattern.remove_prefix(star + 1);
  // Every middle piece is best taken at its first place, the last must stand at the end.
  for (std::size_t next; (next = pattern.find('*')) != std::string_view::npos;) {
    const std::size_t at = name.find(pattern.substr(0, next));
    if (at == std::string_view::npos) return false;
    name.remove_prefix(at + next);
    pattern.remove_prefix(next + 1);
  }
  return name.ends_with(pattern);
}

}  // namespace

FileCalls system_calls() {
  return {[](const char* path) { return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); },
          ::write,
          ::fchmod,
          ::fsync,
          ::close,
          ::link,
          ::rename,
          ::unlink};
}

FileRead read_file(const std::string& path) {
  // Without waiting: a pipe would keep the program until somebody writes to it.
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return {{}, failure_of(errno, path)};
  struct stat info;
  FileRead read;
  if (fstat(file, &info) < 0 || !S_ISREG(info.st_mode)) {
    read.failure = kFileError;
  } else {
    read.bytes.reserve(static_cast<std::size_t>(info.st_size));
    std::array<char, 65536> buffer;
    for (ssize_t n; (n = ::read(file, buffer.data(), buffer.size())) != 0;) {
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) {
        read = {{}, failure_of(errno, path)};
        break;
      }
      read.bytes.append(buffer.data(), static_cast<std::size_t>(n));
    }
  }
  close(file);
  return read;
}

void remove_dead_parts(const std::string& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), none; !error && entry != none;
       entry.increment(error)) {
    const pid_t owner = owner_of(entry->path().filename().native());
    if (owner > 0 && is_gone(owner)) unlink(entry->path().c_str());
  }
}

int write_file(const std::string& path, std::string_view bytes, const std::string& backup) {
  remove_dead_parts(folder_or_dot(follow_links(path)));
  return write_file(path, bytes, backup, system_calls());
}

int write_unflushed(const std::string& path, std::string_view bytes) {
  FileCalls calls = system_calls();
  calls.sync = [](int) { return 0; };
  return write_file(path, bytes, {}, calls);
}

int write_file(const std::string& path, std::string_view bytes, const std::string& backup,
               const FileCalls& calls) {
  const std::string target = follow_links(path);
  if (target.empty() || file_name_only(target).empty()) return kFileError;
  struct stat old;
  const bool exists = stat(target.c_str(), &old) == 0;
  if (exists && !S_ISREG(old.st_mode)) return kFileError;
  // The change of names would not ask whether the file itself is write-protected.
  if (exists && access(target.c_str(), W_OK) < 0) return failure_of(errno, target);
  std::string name;
  if (const int error = write_beside(target, bytes, exists ? &old : nullptr, name, calls)) {
    return failure_of(error, target);
  }
  if (exists && !backup.empty()) keep_backup(target, backup, calls);
  if (calls.rename(name.c_str(), target.c_str()) < 0) {
    const int error = errno;
    calls.remove(name.c_str());
    return failure_of(error, target);
  }
  sync_folder(folder_or_dot(target), calls);
  return kNoFailure;
}

bool file_exists(const std::string& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

bool may_be_written(const std::string& path) {
  const std::string target = follow_links(path);
  if (access(folder_or_dot(target).c_str(), W_OK) < 0) return false;
  return access(target.c_str(), F_OK) < 0 || access(target.c_str(), W_OK) == 0;
}

bool folder_exists(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

int make_folders(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (folder_exists(path)) return kNoFailure;
  return error ? failure_of(error.value(), path) : kFileError;
}

int remove_file(const std::string& path) {
  std::error_code error;
  if (fs::remove(path, error)) return kNoFailure;
  return error ? failure_of(error.value(), path) : kFileNotFound;
}

std::string forward_slashes(std::string_view path) {
  std::string out(path);
  std::replace(out.begin(), out.end(), '\\', '/');
  return out;
}

std::string resolve_path(const std::string& root, std::string_view path) {
  const std::string wanted = forward_slashes(path);
  if (wanted.empty()) return root;
  const bool absolute = wanted.front() == '/';
  const std::string base = absolute ? "/" : root.empty() || root.back() == '/' ? root : root + "/";
  const std::string plain = absolute ? wanted : base + wanted;
  std::error_code error;
  if (fs::exists(plain, error)) return plain;
  const std::string found = find_folded(base, wanted);
  return found.empty() ? plain : found;
}

bool lies_in(const std::string& file, const std::string& folder) {
  std::error_code error;
  const fs::path outer = fs::weakly_canonical(folder + "/.", error);
  const fs::path inner = fs::weakly_canonical(file, error);
  return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

std::vector<std::string> files_in(const std::string& folder, std::string_view pattern) {
  const std::string wanted = pattern == "*.*" ? "*" : lower(pattern);
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), none; !error && entry != none;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    std::error_code ignored;
    if (name.front() != '.' && fits(lower(name), wanted) && entry->is_regular_file(ignored)) {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string file_name_only(std::string_view path) { return std::string(path.substr(path.rfind('/') + 1)); }

std::string file_folder(std::string_view path) { return std::string(path.substr(0, path.rfind('/') + 1)); }

std::string file_stem(std::string_view path) {
  const std::string name = file_name_only(path);
  return name.substr(0, name.rfind('.'));
}

std::string file_extension(std::string_view path) {
  const std::string name = file_name_only(path);
  const std::size_t point = name.rfind('.');
  return point == std::string::npos ? std::string() : upper(name.substr(point + 1));
}

bool file_has_extension(std::string_view path, std::string_view extension) {
  return file_extension(path) == upper(extension);
}

}  // namespace tv
