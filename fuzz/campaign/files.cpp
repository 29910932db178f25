// campaign_files COUNT SEED FOLDER: mutated files of every kind through the command line program. Each run must
// end by itself, with one of the four exit codes, a reason where it refuses, and finite figures where it does
// not. The runs are made by child processes, so that one that dies is counted, its files are kept in FOLDER, and
// the others go on. Prints what was tried, how it ended and what was found; status 1 when something was.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <functional>
#include <random>

#include <fmt/core.h>

#include "cli/cli_run.h"

namespace {

namespace fs = std::filesystem;
using namespace tv::test;
using Random = std::minstd_rand;

constexpr double kLongest = 20;  // s, for one run with sanitizers on a busy machine

// Where the mutated file lies and what is run with it.
struct Kind {
  const char* name;
  const char* seed;    // below the delivered folder
  const char* target;  // below the scratch folder
  std::function<std::vector<std::string>(const std::string& file, Random&)> arguments;
};

std::string share(const std::string& file) { return std::string(TV_SHARE_DIR) + "/" + file; }
const std::string kLoad = load_file("308_winchester_168");

std::vector<std::string> load_command(const std::string& file, Random& random) {
  switch (random() % 4) {
    case 0:
      return {"load-table", file, "--format", "json"};
    case 1:
      return {"powder-table", file,
              "--powders",    delivered("powders/ternofw.pro"),
              "--strategy",   std::to_string(random() % 9),
              "--format",     "json"};
    default:
      return {"shot", file, "--format", "json", "--curve"};
  }
}

const Kind kKinds[] = {
    {"load", "data/loads/308_winchester_168.dat", "hostile.dat", load_command},
    {"load with tail and friction", "data/loads/8x57_is_196_friction.dat", "hostile.dat", load_command},
    {"bullets", "data/bullets/ternofw.bul", "hostile.bul",
     [](const std::string& file, Random& random) -> std::vector<std::string> {
       if (random() % 2) return {"records", file, "--format", "json"};
       return {"shot", kLoad, "--records", file, "--bullet", ".308 , 150 , SP", "--format", "json"};
     }},
    {"cartridges", "data/calibers/ternofw.vol", "hostile.vol",
     [](const std::string& file, Random& random) -> std::vector<std::string> {
       if (random() % 2) return {"records", file, "--format", "json"};
       return {"shot",  kLoad,       "--records", file,  "--cartridge", ".30-06 Springfield",
               "--set", "powwht=45", "--format",  "json"};
     }},
    {"powders", "data/powders/ternofw.pro", "hostile.pro",
     [](const std::string& file, Random& random) -> std::vector<std::string> {
       if (random() % 2) return {"records", file, "--format", "json"};
       return {"powder-table", kLoad, "--powders", file, "--strategy", std::to_string(random() % 9),
               "--format",     "json"};
     }},
    {"guns", "data/weapons/ternofw.gun", "hostile.gun",
     [](const std::string& file, Random&) -> std::vector<std::string> {
       return {"records", file, "--format", "json"};
     }},
    {"units", "lan/english.cnv", "hostile.cnv",
     [](const std::string& file, Random&) -> std::vector<std::string> {
       return {"records", file, "--format", "json"};
     }},
    {"settings", "", "root/ternofw.set",
     [](const std::string&, Random&) -> std::vector<std::string> {
       return {"shot", kLoad, "--format", "json"};
     }},
    {"language", "lan/tn_english.lan", "root/lan/tn_english.lan",
     [](const std::string&, Random&) -> std::vector<std::string> {
       return {"shot", kLoad, "--format", "json"};
     }},
    {"script", "", "hostile.play",
     [](const std::string& file, Random&) -> std::vector<std::string> {
       return {"--defaults", "play", file};
     }},
};

constexpr const char* kScript =
    "open load \"%\"\ntype Form4.MPgn \"38,5\"\npress Form4.CalcAll\npick Form3.Bnam #3\nshow Form5\nmenu "
    "pp_tab\n"
    "toggle Form3.TAIL\nkey Form4 \"Up\"\nanswer yes no ok cancel \"7\"\ndraw Form7.Pict1\ndrag Form7.Pict1 "
    "5 200 30 40\n"
    "choose FormPsel.searchwhat 3\nboxes\ntext Form7.Text1\nfocus\nclipboard \"x\"\n";

std::string seed_of(const Kind& kind, const Scratch& scratch) {
  if (*kind.seed) return read_bytes(share(kind.seed));
  if (std::string_view(kind.name) == "script") {
    std::string script = kScript;
    return script.replace(script.find('%'), 1, kLoad);
  }
  // Settings as the program itself leaves them.
  const std::string own = scratch.path() + "made";
  fs::create_directory(own);
  cli({"--root", own, "play", "-"},
      "open load \"" + kLoad + "\"\npress Form4.CalcAll\nanswer ok\nmenu Ende\n");
  return read_bytes(own + "/ternofw.set");
}

constexpr const char* kHostile[] = {"",
                                    "-1",
                                    "1e308",
                                    "-1e308",
                                    "1e-308",
                                    "1e999",
                                    "nan",
                                    "inf",
                                    "0x1F",
                                    "38,7",
                                    "1E",
                                    "\"",
                                    "\"\"",
                                    ",,,,",
                                    "[",
                                    "]",
                                    "=",
                                    ";",
                                    "\r",
                                    "\n",
                                    "\\\\",
                                    "%s%n",
                                    "../../../../etc/passwd",
                                    "\xFF\xFE",
                                    "99999999999999999999",
                                    "0"};

std::string mutated(std::string bytes, Random& random) {
  const auto at = [&] { return random() % (bytes.size() + 1); };
  for (unsigned changes = 1 + random() % 8; changes > 0 && !bytes.empty(); --changes) {
    const std::size_t place = std::min<std::size_t>(at(), bytes.size() - 1), length = 1 + random() % 40;
    switch (random() % 9) {
      case 0:
        bytes[place] = static_cast<char>(random());
        break;
      case 1:
        bytes.erase(place, length);
        break;
      case 2:
        bytes.insert(place, bytes.substr(at() % bytes.size(), length));
        break;
      case 3:
        if (random() % 10 == 0) bytes.resize(place);
        break;
      case 4:
        bytes.insert(place, std::string(1 + random() % 3000, static_cast<char>(random())));
        break;
      default: {
        // The value of a line or a field becomes another one.
        const std::size_t from = bytes.find_first_of("=,\"", place);
        if (from == std::string::npos) break;
        const std::size_t end = std::min(bytes.find_first_of(",\"\r\n", from + 1), bytes.size());
        bytes.replace(from + 1, end - from - 1, kHostile[random() % std::size(kHostile)]);
      }
    }
  }
  return bytes;
}

bool finite_numbers(const Json& json) {
  if (json.is_number()) return std::isfinite(json.get<double>());
  if (!json.is_structured()) return true;
  for (const Json& part : json)
    if (!finite_numbers(part)) return false;
  return true;
}

// What is wrong with an answer; nothing if it is as it should be.
const char* wrong(const Kind& kind, const CliAnswer& answer) {
  if (answer.exit < 0 || answer.exit > 3) return "exit code";
  if (answer.exit != 0 && answer.err.empty()) return "refused without a reason";
  if (std::string_view(kind.name) == "script") return nullptr;
  if (answer.out.empty()) return answer.exit == 0 ? "no answer" : nullptr;
  const Json json = Json::parse(answer.out, nullptr, false);
  if (json.is_discarded()) return "answer is no JSON";
  if (answer.exit == 1 && !json.contains("rows") && json["error"]["text"] == "")
    return "refused without words";
  return finite_numbers(json) ? nullptr : "a figure that is not finite";
}

// Shared with the children.
struct Counts {
  long next, found;
  std::array<long, 4> exits;
  std::array<long, std::size(kKinds)> tried;
};

void keep(const std::string& folder, const std::string& file, long n, const char* why) {
  fs::create_directories(folder);
  std::error_code error;
  fs::copy_file(file, fmt::format("{}/{}-{}", folder, n, fs::path(file).filename().string()),
                fs::copy_options::overwrite_existing, error);
  fmt::print("found: {} at {}\n", why, n);
  std::fflush(stdout);
}

void run_one(long n, unsigned seed, const std::vector<std::string>& seeds, const Scratch& scratch,
             Counts& counts, const std::string& folder) {
  Random random(static_cast<unsigned>(n) * 2654435761U + seed);
  for (int i = 0; i < 5; ++i) random();
  const std::size_t which = random() % std::size(kKinds);
  const Kind& kind = kKinds[which];
  ++counts.tried[which];
  fs::remove_all(scratch.root());
  fs::create_directories(scratch.root() + "/lan");
  const std::string file = scratch.write(kind.target, mutated(seeds[which], random));
  std::vector<std::string> arguments = kind.arguments(file, random);
  arguments.insert(arguments.begin(), {"--root", scratch.root()});
  const auto begin = std::chrono::steady_clock::now();
  const CliAnswer answer = cli(arguments);
  const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  if (answer.exit >= 0 && answer.exit < 4) ++counts.exits[static_cast<std::size_t>(answer.exit)];
  const char* why = took > kLongest ? "took too long" : wrong(kind, answer);
  if (!why) return;
  ++counts.found;
  keep(folder, file, n, why);
}

}  // namespace

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::stol(argv[1]) : 1000;
  const auto seed = static_cast<unsigned>(argc > 2 ? std::stoul(argv[2]) : 1);
  const std::string folder = argc > 3 ? argv[3] : "found";
  const Scratch scratch;
  std::vector<std::string> seeds;
  for (const Kind& kind : kKinds) seeds.push_back(seed_of(kind, scratch));
  void* memory = mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  auto& counts = *new (memory) Counts{};
  while (counts.next < count) {
    const pid_t child = fork();
    if (child == 0) {
      while (counts.next < count) {
        const long n = counts.next++;
        alarm(static_cast<unsigned>(3 * kLongest));
        run_one(n, seed, seeds, scratch, counts, folder);
      }
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) continue;
    ++counts.found;
    for (const Kind& kind : kKinds)
      if (fs::exists(scratch.path() + kind.target))
        keep(folder, scratch.path() + kind.target, counts.next - 1, "the program died");
  }
  fmt::print("mutated files: {} tried; done {}, refused {}, usage {}, unreadable {}; found {}\n", count,
             counts.exits[0], counts.exits[1], counts.exits[2], counts.exits[3], counts.found);
  for (std::size_t i = 0; i < std::size(kKinds); ++i)
    fmt::print("  {:<28} {}\n", kKinds[i].name, counts.tried[i]);
  return counts.found > 0;
}
