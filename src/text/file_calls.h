// The calls to the system that write_file makes, one by one, so that each can be made to fail.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tv {

// As the functions of the system of the same names: -1 and errno on failure.
struct FileCalls {
  int (*create)(const char* path);  // a new file for writing, fails if there is one
  ssize_t (*write)(int file, const void* bytes, std::size_t count);
  int (*change_mode)(int file, mode_t mode);
  int (*sync)(int file);
  int (*close)(int file);
  int (*link)(const char* from, const char* to);
  int (*rename)(const char* from, const char* to);
  int (*remove)(const char* path);
};

FileCalls system_calls();

int write_file(const std::string& path, std::string_view bytes, const std::string& backup,
               const FileCalls& calls);

}  // namespace tv
