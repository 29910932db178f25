// A folder of its own for a test, removed with all it holds.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace tv {

class Scratch {
public:
  Scratch() {
    std::string name = (std::filesystem::temp_directory_path() / "tv_text_XXXXXX").string();
    if (mkdtemp(name.data())) path_ = name + "/";
  }
  ~Scratch() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string operator/(const std::string& name) const { return path_ + name; }
  const std::string& path() const { return path_; }

private:
  std::string path_;
};

}  // namespace tv
