// The command line program inside the test: arguments and input in, exit code and both streams out.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/cli.h"

namespace tv::test {

using Json = nlohmann::ordered_json;

// A folder of its own, gone when the test ends; its sub-folder root/ is the data root of the commands.
class Scratch {
public:
  Scratch() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tv-cli-XXXXXX").string();
    path_ = std::string(mkdtemp(pattern.data())) + "/";
    std::filesystem::create_directory(root());
  }
  ~Scratch() { std::filesystem::remove_all(path_); }
  Scratch(const Scratch&) = delete;

  const std::string& path() const { return path_; }
  std::string root() const { return path_ + "root"; }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ + name, std::ios::binary) << bytes;
    return path_ + name;
  }

private:
  std::string path_;
};

inline std::string read_bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct CliAnswer {
  int exit = -1;
  std::string out, err;
  Json json() const { return Json::parse(out); }
};

inline CliAnswer cli(std::vector<std::string> arguments, const std::string& input = {}) {
  arguments.insert(arguments.begin(), "ternovale-cli");
  std::vector<const char*> argv;
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  std::istringstream in(input);
  std::ostringstream out, err;
  CliAnswer answer;
  answer.exit = run(static_cast<int>(argv.size()), argv.data(), in, out, err);
  answer.out = out.str();
  answer.err = err.str();
  return answer;
}

inline CliAnswer cli_in(const Scratch& scratch, std::vector<std::string> arguments,
                        const std::string& input = {}) {
  arguments.insert(arguments.begin(), {"--root", scratch.root(), "--language", "english"});
  return cli(std::move(arguments), input);
}

// The answers of a script, one object a line.
struct Played {
  int exit = -1;
  std::vector<Json> lines;
  std::string err;
  const Json& last() const { return lines.back(); }
};

inline Played play(const Scratch& scratch, const std::string& script) {
  const CliAnswer answer = cli_in(scratch, {"play", "-"}, script);
  Played played{answer.exit, {}, answer.err};
  std::istringstream lines(answer.out);
  for (std::string line; std::getline(lines, line);) played.lines.push_back(Json::parse(line));
  return played;
}

inline std::string delivered(const std::string& name) { return std::string(TV_SHARE_DIR) + "/data/" + name; }
inline std::string load_file(const std::string& name) { return delivered("loads/" + name + ".dat"); }

}  // namespace tv::test
