// A folder of its own for a test that works on files; gone when the test ends.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tv_test {

class TempFolder {
public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tv-data-XXXXXX").string();
    path_ = std::string(mkdtemp(pattern.data())) + "/";
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + name).parent_path());
    std::ofstream(path_ + name, std::ios::binary) << bytes;
    return path_ + name;
  }
  std::string read(const std::string& name) const {
    std::ifstream file(path_ + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

private:
  std::string path_;
};

}  // namespace tv_test
