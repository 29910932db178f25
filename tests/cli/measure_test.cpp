// The commands around measured velocities: what they answer, and what they refuse.
#include <gtest/gtest.h>

#include "calculators/band.h"
#include "cli_run.h"
#include "data/settings_keys.h"
#include "session/prediction.h"

namespace tv::test {
namespace {

TEST(Measure, StringsOfAFile) {
  const Scratch scratch;
  const std::string file =
      scratch.write("ladder.csv", "Charge (gr);Speed (FPS);Note\n41,0;2650,0;\n41,0;2662,0;\n41,5;2700,0;\n");
  const Json json = cli_in(scratch, {"measured", file, "--format", "json"}).json();
  ASSERT_EQ(json["series"].size(), 2U);
  EXPECT_EQ(json["unit_read"], "fps");
  EXPECT_EQ(json["series"][0]["charge_grains"], 41.0);
  EXPECT_NEAR(json["series"][0]["mean"].get<double>(), 2656 * 0.3048, 1e-6);
  EXPECT_NEAR(json["series"][0]["sd"].get<double>(), 12 / std::sqrt(2) * 0.3048, 1e-6);
  EXPECT_TRUE(json["series"][1]["sd"].is_null()) << "one shot has no spread";
  EXPECT_EQ(cli_in(scratch, {"measured", file, "--unit", "mps", "--column", "1", "--format", "json"})
                .json()["series"][0]["velocity"][0],
            41.0)
      << "the user's word goes before what was found";

  const CliAnswer bad = cli_in(scratch, {"measured", scratch.write("bad.csv", "Speed\n800\nfast\n810\n")});
  EXPECT_EQ(bad.exit, 3);
  EXPECT_NE(bad.err.find("Line: 3"), std::string::npos) << bad.err;
}

TEST(Measure, FitMeetsWhatWasMeasured) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  const Json fit = cli_in(scratch, {"fit", load, "--point", "38.7=2600,10fps", "--format", "json"}).json();
  EXPECT_NEAR(fit["after"]["vMuzzle"].get<double>(), 2600 * 0.3048, 0.05);
  EXPECT_EQ(fit["fitted"][0]["key"], "abkof0");
  // The load of the answer is that load: it gives the figures it was told with.
  const Json again = cli_in(scratch, {"shot", load, "--format", "json", "--set",
                                      "abkof0=" + fit["load"]["abkof0"].get<std::string>()})
                         .json();
  EXPECT_NEAR(again["result"]["pMax"].get<double>(), fit["after"]["pMax"].get<double>(), 1);

  const Json none = cli_in(scratch, {"fit", load, "--point", "38.7=2000", "--format", "json"}).json();
  EXPECT_EQ(none["verdict"], "undetermined");
  EXPECT_TRUE(none["after"].is_null() && none["fitted"].empty()) << none;
}

TEST(Measure, BandAndCrossCheck) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  const auto band = [&](const char* seed) {
    return cli_in(scratch, {"band", load, "--format", "json", "--seed", seed, "--draws", "500", "--spread",
                            "abkof0=0", "--spread", "powwht=1"})
        .json();
  };
  const Json json = band("7");
  EXPECT_EQ(json, band("7"));
  EXPECT_NE(json["pMax"]["q"], band("8")["pMax"]["q"]);
  EXPECT_EQ(json["effects"][0]["key"], "powwht");
  EXPECT_NEAR(json["effects"][0]["spread"].get<double>(), 1, 1e-9);
  EXPECT_NEAR(json["effects"][0]["amount"].get<double>(), 0.387, 1e-9);
  const Json shot = cli_in(scratch, {"shot", load, "--format", "json"}).json();
  EXPECT_EQ(json["pMax"]["value"], shot["result"]["pMax"]);
  const Json check = cli_in(scratch, {"crosscheck", load, "--format", "json"}).json();
  EXPECT_EQ(check["closed"]["vMuzzle"], shot["result"]["vMuzzle"]);
  EXPECT_LT(std::fabs(check["percent"]["pMax"].get<double>()), 1);
  EXPECT_EQ(kept_spreads(Options()), standard_spreads());
}

TEST(Measure, RefusalsAreTold) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  const struct {
    std::vector<std::string> arguments;
    int exit;
    const char* told;
  } cases[] = {
      {{"measured", scratch.path() + "none.csv"}, 3, "none.csv"},
      {{"fit", load}, 1, "nothing to fit"},
      {{"fit", load, "--point", "38.7"}, 2, "38.7"},
      {{"fit", load, "--point", "38.7=-5"}, 2, "-5"},
      {{"fit", load, "--set", "powwht=90", "--point", "38.7=800"}, 1, "MPgn"},
      {{"band", load, "--spread", "speed=1"}, 2, "abkof0"},
      {{"band", load, "--spread", "abkof0=much"}, 2, "much"},
      {{"crosscheck", load, "--set", "powwht=90"}, 1, "MPgn"},
  };
  for (const auto& c : cases) {
    const CliAnswer answer = cli_in(scratch, c.arguments);
    SCOPED_TRACE(answer.err);
    EXPECT_EQ(answer.exit, c.exit);
    EXPECT_NE(answer.err.find(c.told), std::string::npos) << c.told;
    EXPECT_EQ(answer.out, "");
  }
}

}  // namespace
}  // namespace tv::test
