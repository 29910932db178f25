// What a script relies on: streams, files, keys, and many runs in one process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "cli_run.h"

namespace tv::test {
namespace {

const std::string kLoad = load_file("308_winchester_168");

CliAnswer shot(const Scratch& scratch, std::vector<std::string> more, const std::string& input = {}) {
  more.insert(more.begin(), "shot");
  return cli_in(scratch, more, input);
}
std::vector<Json> lines_of(const std::string& text) {
  std::vector<Json> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(Json::parse(line));
  return lines;
}
double number(const Json& json) { return json.get<double>(); }

TEST(Contract, AnAnswerThatCannotBeWrittenIsNone) {
  for (const std::vector<const char*>& arguments : std::vector<std::vector<const char*>>{
           {"x", "shot", kLoad.c_str()}, {"x", "--help"}, {"x", "keys"}, {"x", "play", "-"}}) {
    std::istringstream in("focus\n");
    std::ostream full(nullptr);
    std::ostringstream err;
    EXPECT_EQ(run(static_cast<int>(arguments.size()), arguments.data(), in, full, err), 3) << arguments[1];
    EXPECT_NE(err.str().find("could not be written"), std::string::npos);
  }
}

TEST(Contract, InputsAreReadWhereverTheyLieAndNeverReplaced) {
  const Scratch scratch;
  const std::string bytes = read_bytes(kLoad), json = shot(scratch, {kLoad, "--format", "json"}).out;
  EXPECT_EQ(shot(scratch, {"-", "--format", "json"}, bytes).out, json);
  EXPECT_EQ(shot(scratch, {kLoad, "--format", "json", "--output", "-"}).out, json);
  const std::string own = scratch.write("own.dat", bytes), link = scratch.path() + "link.dat";
  std::filesystem::create_symlink(own, link);
  const std::string powders = scratch.write("own.pro", read_bytes(delivered("powders/ternofw.pro")));
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"shot", own, "--output", link},
           {"shot", kLoad, own, "--output", own},
           {"shot", own, "--diagram", "3:" + own},
           {"load-table", link, "--output", own},
           {"powder-table", kLoad, "--powders", powders, "--strategy", "0", "--output", powders},
           {"records", powders, "--output", powders}})
    EXPECT_EQ(cli_in(scratch, arguments).exit, 2) << arguments[0];
  EXPECT_EQ(read_bytes(own), bytes);
  EXPECT_EQ(shot(scratch, {"/dev/zero"}).exit, 3);
  EXPECT_EQ(shot(scratch, {""}).exit, 3);
  EXPECT_TRUE(std::filesystem::is_empty(scratch.root()));
  EXPECT_EQ(cli_in(scratch, {"play", scratch.path()}).exit, 3);
  EXPECT_EQ(cli_in(scratch, {"play", "/dev/zero"}).exit, 1);
  EXPECT_EQ(cli({"--root", scratch.path() + "mistyped", "play", "-"}).exit, 3);
  EXPECT_FALSE(std::filesystem::exists(scratch.path() + "mistyped"));
  EXPECT_EQ(cli_in(scratch, {"load-table", kLoad, "--format", "xlsx", "--output", "-"}).out.substr(0, 2),
            "PK");
  EXPECT_EQ(cli_in(scratch, {"load-table", kLoad, "--step-percent", "nan"}).exit, 2);
}

TEST(Contract, DefaultsIgnoreTheSettings) {
  const Scratch scratch;
  scratch.write("root/ternofw.set", "[startup]\r\nlanfile=lan/tn_german.lan\r\nmetyes=0\r\nmpayes=0\r\n");
  const auto text = [&](std::vector<std::string> first) {
    first.insert(first.begin(), {"--root", scratch.root()});
    first.insert(first.end(), {"shot", kLoad});
    return cli(first).out;
  };
  const Scratch fresh;
  EXPECT_NE(text({}), text({"--defaults"}));
  EXPECT_EQ(text({"--defaults"}), shot(fresh, {kLoad}).out);
}

// The peak to the limit: told as figures and as a note.
TEST(Contract, LimitNotesAndFiguresInSI) {
  const Scratch scratch;
  struct Case {
    const char *maxzul, *state, *note;
  };
  for (const Case& c : {Case{"415", "below", ""}, Case{"390", "near", "fwarn2"},
                        Case{"341", "over", "fwarn1"}, Case{"0", "unknown", "fwarn3"}}) {
    const std::string set = "maxzul=" + std::string(c.maxzul);
    const Json json = shot(scratch, {kLoad, "--set", set, "--format", "json"}).json();
    EXPECT_EQ(json["limit"]["state"], c.state);
    EXPECT_EQ(json["notes"][0] == c.note, *c.note != '\0') << json["notes"];
    if (c.maxzul == std::string("0"))
      EXPECT_TRUE(json["limit"]["share"].is_null());
    else
      EXPECT_NEAR(number(json["limit"]["share"]), number(json["result"]["pMax"]) / 1e6 / std::stod(c.maxzul),
                  1e-9);
  }
  const Json json = shot(scratch, {kLoad, "--format", "json", "--curve"}).json();
  const double v = number(json["result"]["vMuzzle"]), kg = 168 / 15432.358353;
  EXPECT_NEAR(number(json["result"]["energy"]), kg * v * v / 2, 1);
  // 38.7 gr at 0.89 g/cm3 under the bullet
  const double cm3 = std::stod(json["load"]["brennr"].get<std::string>()) / 0.998 / 15.432358353;
  const double bulk = std::stod(json["load"]["bulkdn"].get<std::string>());
  EXPECT_NEAR(number(json["result"]["loadingRatio"]), 38.7 / 15.432358353 / bulk / cm3, 2e-4);
  const auto burnt = json["result"]["burnIdx"].get<std::size_t>();
  EXPECT_EQ(json["result"]["xBurnout"], json["curve"]["x"][burnt]);
  EXPECT_NEAR(number(json["result"]["tBurnout"]),
              number(json["curve"]["t"][burnt]) - number(json["result"]["t10"]), 1e-12);
}

// What nobody could type is refused; every key says what could be.
TEST(Contract, SetsAreHeldToWhatCouldBeTyped) {
  const Scratch scratch;
  for (const char* set :
       {"ausinn=3", "friyes=yes", "anfdru=25", "sebert=9", "gesweg=300", "brennr=40", "powtmp=20.5",
        "bulgew=", "laflen=24in", "fripas=31000000", "molyco=0.2", "conlen=-1", "tailon=2", "maxzul=1e9",
        "lod2nd=0.99", "pattyp=.308", "bultyp=?", "condia=9", "mulbc1=99"}) {
    const CliAnswer answer = shot(scratch, {kLoad, "--set", set, "--format", "json"});
    EXPECT_EQ(answer.exit, 1) << set;
    const std::string key(set, std::string(set).find('='));
    EXPECT_EQ(answer.json()["error"]["field"], key);
  }
  const Json keys = cli_in(scratch, {"keys", "--format", "json"}).json()["keys"];
  int tried = 0;
  for (const Json& key : keys) {
    if (!key["range"].is_array()) continue;
    SCOPED_TRACE(key.dump());
    const double least = number(key["range"][0]), most = number(key["range"][1]);
    EXPECT_LT(least, most);
    for (const double beyond : {least - 0.01 * (most - least) - 1, most + 0.01 * (most - least) + 1}) {
      const std::string set = key["key"].get<std::string>() + "=" + Json(std::floor(beyond)).dump();
      EXPECT_EQ(shot(scratch, {kLoad, "--set", set}).exit, 1);
      ++tried;
    }
  }
  EXPECT_GT(tried, 60);
}

TEST(Contract, PicksAreThoseOfTheLists) {
  const Scratch scratch;
  const auto result = [&](std::vector<std::string> more) {
    more.insert(more.begin(), kLoad);
    more.insert(more.end(), {"--set", "powwht=40", "--format", "json"});
    const CliAnswer answer = shot(scratch, more);
    EXPECT_EQ(answer.exit, 0) << answer.err;
    return answer.exit == 0 ? answer.json() : Json();
  };
  const Json by_option = result({"--powder", "Example R-05 medium rifle"});
  EXPECT_EQ(by_option["result"], result({"--set", "pulver=Example R-05 medium rifle"})["result"]);
  EXPECT_NE(by_option["load"]["exwarm"], result({})["load"]["exwarm"]);
  EXPECT_EQ(result({"--bullet", ".308 , 150 , SP"})["load"]["bulgew"], "150");
  EXPECT_EQ(result({"--cartridge", ".30-06 Springfield"})["load"]["commen"], "") << "a new load begins";
  // A file of records joins the list, and its own record of a name goes first.
  std::string powders = read_bytes(delivered("powders/ternofw.pro"));
  const std::string name = "Example R-05 medium rifle";
  powders.replace(powders.find(name), name.size(), "Mine, of this very name  ");
  const std::string file = scratch.write("mine.pro", powders);
  EXPECT_EQ(result({"--records", file, "--powder", "Mine, of this very name"})["result"],
            by_option["result"]);
}

TEST(Contract, SweepsAreShotsOfTheirOwn) {
  const Scratch scratch;
  const CliAnswer answer = shot(scratch, {kLoad, "--sweep", "powwht=38:38.6:0.3", "--sweep",
                                          "patlan=2.8:2.7:0.1", "--set", "laflen=22", "--format", "jsonl"});
  ASSERT_EQ(answer.exit, 0) << answer.err;
  const std::vector<Json> lines = lines_of(answer.out);
  ASSERT_EQ(lines.size(), 6U) << "both ends, and a grid";
  EXPECT_EQ(lines[3]["powwht"], 38.3);
  for (const Json& line : lines) {
    const CliAnswer alone =
        shot(scratch, {kLoad, "--set", "laflen=22", "--set", "powwht=" + line["powwht"].dump(), "--set",
                       "patlan=" + line["patlan"].dump(), "--format", "json"});
    for (const char* part : {"load", "result", "limit", "panel", "notes", "warnings"})
      EXPECT_EQ(line[part], alone.json()[part]) << part;
  }
  const std::string csv = shot(scratch, {kLoad, "--sweep", "powwht=38:38.6:0.3", "--format", "csv"}).out;
  EXPECT_EQ(std::ranges::count(csv, '\n'), 4);
  for (const char* wrong : {"powwht", "powwht=1:2", "powwht=1:2:0", "powwht=1:2:nan", "pulver=1:2:1",
                            "no=1:2:1", "powwht=0:1e9:1e-9"})
    EXPECT_EQ(shot(scratch, {kLoad, "--sweep", wrong}).exit, 2) << wrong;
}

// One that fails is a line, and the others go on.
TEST(Contract, ManyLoadsInOneProcess) {
  const Scratch scratch;
  const std::string other = load_file("9mm_luger_124"), none = scratch.path() + "none.dat";
  const std::string list = scratch.write("list", kLoad + "\r\n" + none + "\n\n" + other);
  for (const std::vector<std::string>& which :
       std::vector<std::vector<std::string>>{{kLoad, none, other}, {"--loads", list}, {"--loads", "-"}}) {
    std::vector<std::string> arguments = which;
    arguments.insert(arguments.end(), {"--format", "jsonl"});
    const CliAnswer answer = shot(scratch, arguments, read_bytes(list));
    EXPECT_EQ(answer.exit, 1);
    const std::vector<Json> lines = lines_of(answer.out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0]["result"], shot(scratch, {kLoad, "--format", "json"}).json()["result"]);
    EXPECT_EQ(lines[1]["file"], none);
    EXPECT_NE(lines[1]["error"]["text"].get<std::string>().find("none.dat"), std::string::npos);
    EXPECT_EQ(lines[2]["result"], shot(scratch, {other, "--format", "json"}).json()["result"]);
  }
  // A run outside the range of its key, and one that bursts the case; the next is as if they had not been.
  const CliAnswer sweep = shot(scratch, {kLoad, "--sweep", "powwht=0:100:50", "--format", "csv"});
  EXPECT_EQ(sweep.exit, 1);
  EXPECT_NE(sweep.out.find(",0,,"), std::string::npos) << sweep.out;
  EXPECT_NE(sweep.out.find("428msg"), std::string::npos);
  EXPECT_NE(sweep.out.find("msg182"), std::string::npos);
  EXPECT_EQ(shot(scratch, {"--loads", none}).exit, 3);
  EXPECT_EQ(shot(scratch, {kLoad, other, "--save", none}).exit, 2);
}

TEST(Contract, FitsDrawsAndStores) {
  const Scratch scratch;
  const std::string saved = scratch.path() + "saved.dat", picture = scratch.path() + "d.svg";
  const Json json = shot(scratch, {kLoad, "--fit", "charge:velocity=750", "--save", saved, "--diagram",
                                   "6:" + picture, "--format", "json"})
                        .json();
  EXPECT_NEAR(number(json["result"]["vMuzzle"]), 750, 0.1);
  EXPECT_EQ(shot(scratch, {saved, "--format", "json"}).json()["result"], json["result"]);
  EXPECT_NE(read_bytes(picture).find("<polyline"), std::string::npos);
  const Json peak = shot(scratch, {kLoad, "--fit", "charge:pmax=300", "--format", "json"}).json();
  EXPECT_NEAR(number(peak["result"]["pMax"]) / 1e6, 300, 0.1);
  const Json fill = shot(scratch, {kLoad, "--fit", "charge:fill=95", "--format", "json"}).json();
  EXPECT_NEAR(number(fill["result"]["loadingRatio"]), 0.95, 1e-3);
  EXPECT_EQ(shot(scratch, {kLoad, "--fit", "charge:pmax=99999", "--format", "json"}).exit, 1);
  for (const char* wrong : {"charge:pmax=nan", "charge:pmax=", "barrel:pmax=300", "charge:pmax=-3"})
    EXPECT_EQ(shot(scratch, {kLoad, "--fit", wrong}).exit, 2) << wrong;
  EXPECT_EQ(shot(scratch, {kLoad, "--diagram", "3,9:" + picture}).exit, 0);
  EXPECT_NE(read_bytes(picture).find("Bullet acceleration"), std::string::npos);
  for (const char* wrong : {"7:", "6,1:", "0,16:", "3,:", ",3:", "3"})
    EXPECT_EQ(shot(scratch, {kLoad, "--diagram", wrong + picture}).exit, 2) << wrong;
  EXPECT_EQ(shot(scratch, {kLoad, "--diagram", "3:" + scratch.path() + "d.png"}).exit, 2);
}

}  // namespace
}  // namespace tv::test
