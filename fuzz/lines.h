// Structured mutation for files of lines: whole lines and values change, so that what comes out is still read.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace tv_fuzz {

inline constexpr std::string_view kValues[] = {
    "",      "0",  "-1",   "1",   "38,7", "1e308", "-1e308", "1e-308", "nan", "inf", "0x1F",  "1E",
    "99999", "\"", "\"\"", " 5 ", "a\"b", "1;2",   "[x]",    "True",   "-",   "*.",  "1.5.2", "\xFF"};

struct Line {
  std::size_t begin, end;  // without its break
};
inline std::vector<Line> lines_of(std::string_view text) {
  std::vector<Line> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back({at, end});
    at = end + 1;
  }
  return lines;
}

// One change: the value of a line, a line dropped, doubled or moved; or a few bytes by the fuzzer itself.
inline std::string mutated(std::string text, unsigned seed) {
  std::minstd_rand random(seed);
  const std::vector<Line> lines = lines_of(text);
  if (lines.empty()) return text;
  const Line line = lines[random() % lines.size()];
  const std::string whole = text.substr(line.begin, line.end - line.begin) + "\n";
  switch (random() % 4) {
    case 0: {
      const std::size_t separators = whole.find_first_of("=,\"");
      const std::size_t from = separators == std::string::npos ? 0 : separators + 1;
      return text.replace(line.begin + from, line.end - line.begin - std::min(from, line.end - line.begin),
                          kValues[random() % std::size(kValues)]);
    }
    case 1:
      return text.erase(line.begin, line.end - line.begin + 1);
    case 2:
      return text.insert(line.begin, whole);
    default:
      text.erase(line.begin, line.end - line.begin + 1);
      return text.insert(std::min(text.size(), lines[random() % lines.size()].begin), whole);
  }
}

inline std::size_t mutate(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
  if (seed % 2 == 0) return LLVMFuzzerMutate(data, size, most);
  const std::string text = mutated(std::string(reinterpret_cast<const char*>(data), size), seed / 2);
  const std::size_t length = std::min(text.size(), most);
  std::memcpy(data, text.data(), length);
  return length;
}

}  // namespace tv_fuzz

#define TV_STRUCTURED_MUTATOR                                                                            \
  extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, \
                                                 unsigned seed) {                                        \
    return tv_fuzz::mutate(data, size, most, seed);                                                      \
  }
