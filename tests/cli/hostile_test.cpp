// Load files as they come from a broken disk: a message and an exit code, never a crash or a figure that is
// no number.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "cli_run.h"

namespace tv::test {
namespace {

bool finite_numbers(const Json& json) {
  if (json.is_null()) return false;
  if (json.is_number()) return std::isfinite(json.get<double>());
  if (!json.is_structured()) return true;
  for (const Json& part : json)
    if (!finite_numbers(part)) return false;
  return true;
}

// Any load file ends in one of three ways: a shot, a refusal that says where, or a file that is no load.
int try_load(const Scratch& scratch, const std::string& bytes) {
  const std::string file = scratch.write("hostile.dat", bytes);
  const CliAnswer answer = cli_in(scratch, {"shot", file, "--format", "json", "--curve"});
  if (answer.exit == 3) {
    EXPECT_EQ(answer.out, "");
    EXPECT_NE(answer.err.find("hostile.dat"), std::string::npos);
  } else if (answer.exit == 1) {
    EXPECT_FALSE(answer.json()["error"]["stage"].get<std::string>().empty());
  } else {
    EXPECT_EQ(answer.exit, 0);
    EXPECT_TRUE(finite_numbers(answer.json()));
  }
  return answer.exit;
}

TEST(HostileLoads, CutAnywhere) {
  const Scratch scratch;
  const std::string bytes = read_bytes(load_file("300_win_mag_190"));
  int shots = 0;
  for (std::size_t cut = 0; cut < bytes.size(); cut += 13) {
    SCOPED_TRACE(cut);
    shots += try_load(scratch, bytes.substr(0, cut)) == 0;
  }
  EXPECT_GT(shots, 0) << "the end of the file holds nothing that a shot needs";
}

TEST(HostileLoads, EmptyAndRubbish) {
  const Scratch scratch;
  EXPECT_EQ(try_load(scratch, ""), 3);
  EXPECT_EQ(try_load(scratch, std::string(100000, '\0')), 3);
  EXPECT_EQ(try_load(scratch, "[metrics]\n"), 1);
  EXPECT_EQ(try_load(scratch, "[chargedata]\npulver=" + std::string(1000000, 'x')), 1);
  std::mt19937 random(1);
  std::string bytes = read_bytes(load_file("9mm_luger_124"));
  for (int round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    std::string damaged = bytes;
    for (int hit = 0; hit <= round / 5; ++hit)
      damaged[random() % damaged.size()] = static_cast<char>(random());
    try_load(scratch, damaged);
  }
}

TEST(HostileLoads, WildNumbers) {
  const Scratch scratch;
  const std::string bytes = read_bytes(load_file("308_winchester_168"));
  for (const char* key : {"laflen", "patlan", "bullen", "hullen", "kalzug", "bulgew", "sebert", "volful",
                          "wirkqu", "limiz1", "abkof0", "abkof1", "exwarm", "kappax", "powden", "prodeg",
                          "powwht", "anfdru", "bulkdn", "conlen", "condia", "condid", "ausinn", "maxzul"})
    for (const char* value :
         {"-1", "1e308", "-1e308", "1e-308", "1e999", "nan", "inf", "1E", "0x1F", "99999999999"}) {
      SCOPED_TRACE(std::string(key) + "=" + value);
      const auto at = bytes.find(std::string(key) + "=");
      const auto end = bytes.find_first_of("\r\n", at);
      std::string wild = bytes;
      try_load(scratch, wild.replace(at, end - at, std::string(key) + "=" + value));
    }
}

std::string with_each(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
  return text;
}

// Line ends of either kind, a missing last one, the former names of the sections: the same load.
TEST(HostileLoads, FormsOfTheSameLoad) {
  const Scratch scratch;
  const std::string bytes = with_each(read_bytes(load_file("6_5x55_140")), "\r\n", "\n");
  const auto result = [&](const std::string& text) {
    const CliAnswer answer = cli_in(scratch, {"shot", scratch.write("form.dat", text), "--format", "json"});
    EXPECT_EQ(answer.exit, 0) << answer.err;
    return answer.exit == 0 ? answer.json()["result"] : Json();
  };
  const Json plain = result(bytes);
  EXPECT_EQ(result(with_each(bytes, "\n", "\r\n")), plain);
  EXPECT_EQ(result(bytes.substr(0, bytes.find_last_not_of('\n') + 1)), plain);
  const std::string former =
      with_each(with_each(bytes, "[metrics]", "[abmessungen]"), "[chargedata]", "[treibladung]");
  EXPECT_EQ(result(former), plain);
  EXPECT_EQ(result(with_each(former, "[abmessungen]", "[ABMESSUNGEN]")), plain);
}

}  // namespace
}  // namespace tv::test
