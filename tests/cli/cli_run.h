// The command line program inside the test: arguments and input in, exit code and both streams out.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/cli.h"
#include "temp_folder.h"

namespace tv::test {

using Json = nlohmann::ordered_json;

// A folder of its own; its sub-folder root/ is the data root of the commands.
struct Scratch : tv_test::TempFolder {
  Scratch() { std::filesystem::create_directory(root()); }
  std::string root() const { return path() + "root"; }
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
