// What the documents tell a reader to type runs as printed and answers as printed; their links lead
// somewhere.
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "cli_run.h"

namespace tv {
namespace {

namespace fs = std::filesystem;

struct Example {
  std::string commands, answer;  // the answer only where the document shows it
};

// In Markdown a block fenced as sh, and a block fenced as text behind it; in man pages the lines from the
// comment "sh" to the end of the block.
std::vector<Example> examples_of(const fs::path& document) {
  std::vector<Example> examples;
  std::string block;  // "sh", "text", or outside
  std::ifstream file(document);
  for (std::string line; std::getline(file, line);) {
    if (line == "```sh" || line == ".\\\" sh") {
      block = "sh";
      examples.emplace_back();
    } else if (line == "```text" && !examples.empty() && examples.back().answer.empty()) {
      block = "text";
    } else if (line == "```" || line == ".fi") {
      block.clear();
    } else if (block == "sh") {
      examples.back().commands += line + "\n";
    } else if (block == "text") {
      examples.back().answer += line + "\n";
    }
  }
  return examples;
}

std::vector<fs::path> documents() {
  std::vector<fs::path> found{TV_SOURCE_DIR "/README.md"};
  for (const char* folder : {"/docs", "/share/man"})
    for (const auto& entry : fs::recursive_directory_iterator(std::string(TV_SOURCE_DIR) + folder))
      if (entry.is_regular_file() && std::regex_match(entry.path().string(), std::regex(R"(.*\.(md|1))")))
        found.push_back(entry.path());
  return found;
}

// The build tree in place of an installation.
std::string here(std::string commands) {
  for (const auto& [installed, built] :
       {std::pair<std::string, std::string>{"/usr/share/ternovale", TV_SHARE_DIR},
        {" share/data", " " TV_SHARE_DIR "/data"},
        {"build/release/bin/", ""},
        {"\\-", "-"}})
    for (std::size_t at = commands.find(installed); at != std::string::npos;
         at = commands.find(installed, at + built.size()))
      commands.replace(at, installed.size(), built);
  return commands;
}

TEST(Documents, ExamplesRunAsPrinted) {
  int run = 0;
  for (const fs::path& document : documents()) {
    const test::Scratch scratch;  // the examples of one document follow one another
    for (const Example& example : examples_of(document)) {
      scratch.write("example.sh", here(example.commands));
      const std::string call = "cd " + scratch.path() +
                               " && HOME=$PWD PATH=" TV_BIN_DIR ":$PATH sh -e example.sh >out.txt 2>err.txt";
      EXPECT_EQ(std::system(call.c_str()), 0)
          << document << "\n"
          << example.commands << test::read_bytes(scratch.path() + "err.txt");
      const std::string out = test::read_bytes(scratch.path() + "out.txt");
      std::istringstream shown(example.answer);
      std::size_t at = 0;
      for (std::string line; std::getline(shown, line);) {
        if (line == "...") continue;
        const std::size_t found = out.find(line + "\n", at);
        EXPECT_NE(found, std::string::npos) << document << " shows: " << line << "\nbut it is:\n" << out;
        if (found != std::string::npos) at = found + line.size();
      }
      ++run;
    }
  }
  EXPECT_GE(run, 5);
}

// As installed: a page may name another page, a picture, or a document above the manual.
TEST(Documents, LinksLeadSomewhere) {
  const std::regex link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
  for (const auto& entry : fs::recursive_directory_iterator(TV_SHARE_DIR)) {
    if (entry.path().extension() != ".md") continue;
    const std::string page = test::read_bytes(entry.path().string());
    for (std::sregex_iterator at(page.begin(), page.end(), link), end; at != end; ++at)
      EXPECT_TRUE(fs::exists(entry.path().parent_path() / (*at)[1].str()))
          << entry.path() << ": " << (*at)[1];
  }
}

// As a shell calls it: the words so far, and what may stand next.
TEST(Documents, CompletionsTellWhatMayStandNext) {
  const auto next = [](const std::string& words) {
    const test::Scratch scratch;
    const std::string script = scratch.write("complete.sh", "source " TV_SOURCE_DIR
                                                            "/share/completions/ternovale-cli.bash\n"
                                                            "COMP_WORDS=(ternovale-cli " +
                                                                words +
                                                                ")\n"
                                                                "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                                                "_ternovale_cli && echo ${COMPREPLY[@]}\n");
    const std::string out = scratch.path() + "out.txt";
    EXPECT_EQ(std::system(("PATH=" TV_BIN_DIR ":$PATH bash " + script + " >" + out).c_str()), 0);
    return test::read_bytes(out);
  };
  EXPECT_EQ(next("powd"), "powder-table\n");
  EXPECT_EQ(next("--language fr"), "french\n");
  EXPECT_EQ(next("--language french shot --cur"), "--curve\n");
  EXPECT_EQ(next("shot x.dat --units \"\""), "metric imperial\n");
}

}  // namespace
}  // namespace tv
