// A folder of its own for a test, removed with all it holds.
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
    std::string pattern = (std::filesystem::temp_directory_path() / "tv-test-XXXXXX").string();
    if (mkdtemp(pattern.data())) path_ = pattern + "/";
  }
  ~TempFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }  // with its closing '/'
  std::string operator/(const std::string& name) const { return path_ + name; }

  // Makes the folders on the way; gives the file's whole name.
  std::string write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + name).parent_path());
    std::ofstream(path_ + name, std::ios::binary) << bytes;
    return path_ + name;
  }
  std::string read(const std::string& name) const {
    std::ifstream file(path_ + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  int files(const std::string& folder = {}) const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(path_ + folder), {}));
  }

private:
  std::string path_;
};

}  // namespace tv_test
