#include "calculators/cell.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>

#include "engine/calc_state.h"
#include "text/codepage.h"

namespace tv {
namespace {

struct UnitName {
  std::string_view name;
  CellUnit unit;
};
constexpr UnitName kUnits[] = {
    {"m/s", CellUnit::mps},     {"mps", CellUnit::mps},      {"m/sec", CellUnit::mps},
    {"м/с", CellUnit::mps},     {"fps", CellUnit::fps},      {"ft/s", CellUnit::fps},
    {"f/s", CellUnit::fps},     {"ft/sec", CellUnit::fps},   {"фут/с", CellUnit::fps},
    {"gr", CellUnit::grain},    {"grs", CellUnit::grain},    {"gn", CellUnit::grain},
    {"grain", CellUnit::grain}, {"grains", CellUnit::grain}, {"гран", CellUnit::grain},
    {"g", CellUnit::gram},      {"gram", CellUnit::gram},    {"grams", CellUnit::gram},
    {"gramm", CellUnit::gram},  {"г", CellUnit::gram},       {"mpa", CellUnit::MPa},
    {"мпа", CellUnit::MPa},     {"psi", CellUnit::psi},      {"bar", CellUnit::bar},
    {"бар", CellUnit::bar},
};

// Words of headings, in lower case: "=" the whole heading, "^" the begin of a word in it, else anywhere.
constexpr std::string_view kStatistics[] = {
    "average", "^avg",   "^mean",  "mittel",  "durchschnitt", "moyenne", "сред",   "std",       "^stdev",
    "=sd",     "^s.d.",  "deviat", "abweich", "écart",        "отклон",  "spread", "streuung",  "разброс",
    "=es",     "^e.s.",  "^high",  "^low",    "^max",         "^min",    "höchst", "niedrigst", "^delta",
    "δ",       "median", "^range", "макс",    "мин",          "^count",  "^total"};
constexpr std::string_view kOther[] = {"energ",   "енерг",  "энерг",  "=ke",  "^power",  "factor", "faktor",
                                       "facteur", "moment", "impuls", "time", "zeit",    "heure",  "врем",
                                       "date",    "datum",  "дата",   "note", "comment", "temper"};
constexpr std::string_view kVelocity[] = {"speed",   "velocity", "^vel", "geschw", "vitesse",
                                          "скорост", "=v",       "fps",  "m/s",    "ft/s"};
constexpr std::string_view kPressure[] = {"pressure", "druck", "pression", "давлен", "^psi", "^mpa", "=pmax"};
constexpr std::string_view kCharge[] = {"charge", "ladung", "заряд", "pulver", "poudre", "^powder", "навеск"};
constexpr std::string_view kSeries[] = {"series", "serie", "série", "^string", "^group", "gruppe", "серия"};
constexpr std::string_view kShot[] = {"=#", "^shot", "schuss", "schuß", "^tir", "^coup", "выстрел",
                                      "№",  "=no",   "=no.",   "=nr",   "=nr.", "=n",    "=index"};
constexpr std::string_view kExcluded[] = {"exclud", "ignor", "omit", "sighter", "ausgeschl"};
constexpr std::string_view kNoReading[] = {"=-",   "=--",   "=---",    "=n/a",   "=na",
                                           "^err", "=miss", "=missed", "=?",     "=0",
                                           "=0.0", "=0,0",  "fehler",  "erreur", "ошибка"};
constexpr std::string_view kUnitLabels[] = {"unit",     "einheit", "unité",   "единиц", "speed",
                                            "velocity", "geschw",  "vitesse", "скорост"};

bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}
bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool names(std::string_view heading, std::string_view word) {
  if (word.starts_with('=')) return heading == word.substr(1);
  const bool begins = word.starts_with('^');
  if (begins) word.remove_prefix(1);
  for (std::size_t at = heading.find(word); at != std::string_view::npos; at = heading.find(word, at + 1))
    if (!begins || at == 0 || !is_letter(heading[at - 1])) return true;
  return false;
}

bool names_any(std::string_view text, std::span<const std::string_view> words) {
  const std::string heading = lower(trim(text));
  return std::ranges::any_of(words, [&](std::string_view word) { return names(heading, word); });
}

CellUnit unit_named(std::string_view word) {
  std::string name = lower(word);
  std::erase(name, '.');
  const auto found = std::ranges::find(kUnits, name, &UnitName::name);
  return found == std::end(kUnits) ? CellUnit::none : found->unit;
}

// Without the signs that only make digits readable.
std::string without_gaps(std::string_view cell) {
  std::string text(trim(cell));
  for (const std::string_view gap : {"\u00A0", "\u202F", "\u2009", "\u2019", "'"})
    for (std::size_t at = text.find(gap); at != std::string::npos; at = text.find(gap))
      text.replace(at, gap.size(), gap == "'" || gap == "\u2019" ? "" : " ");
  for (std::size_t i = 1; i + 1 < text.size(); ++i)
    if (text[i] == ' ' && is_digit(text[i - 1]) && is_digit(text[i + 1])) text.erase(i, 1);
  return text;
}

// One decimal point at most, no thousands; empty when the signs make no number.
std::string with_point(std::string digits) {
  const auto points = std::ranges::count(digits, '.'), commas = std::ranges::count(digits, ',');
  if (points > 0 && commas > 0) {
    const char decimal = digits[digits.find_last_of(".,")];
    if (std::ranges::count(digits, decimal) > 1) return {};
    std::erase(digits, decimal == '.' ? ',' : '.');
  } else if (commas > 1 || points > 1) {
    std::erase(digits, commas > 1 ? ',' : '.');
  } else if (commas == 1 && digits.find(',') == 1 && digits.size() == 5) {
    std::erase(digits, ',');
  }
  std::ranges::replace(digits, ',', '.');
  return digits;
}

}  // namespace

double to_si(CellUnit unit) {
  switch (unit) {
    case CellUnit::fps:
      return 1 / kFeetPerMetre;
    case CellUnit::gram:
      return kGrainsPerGram;
    case CellUnit::MPa:
      return 1e6;
    case CellUnit::psi:
      return kPaPerPsi;
    case CellUnit::bar:
      return 1e5;
    default:
      return 1;
  }
}

std::optional<CellNumber> cell_number(std::string_view cell) {
  const std::string text = without_gaps(cell);
  const std::size_t first = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  const std::size_t end = std::min(text.find_first_not_of("0123456789.,", first), text.size());
  std::string digits = with_point(text.substr(first, end - first));
  std::string_view behind = std::string_view(text).substr(end);
  CellNumber number;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number.value);
  if (error != std::errc() || stop != digits.data() + digits.size()) return {};
  if (text.starts_with('-')) number.value = -number.value;
  behind = trim(behind);
  if (behind.empty()) return number;
  number.unit = unit_named(behind);
  return number.unit == CellUnit::none ? std::nullopt : std::optional(number);
}

CellUnit unit_in(std::string_view text) {
  constexpr std::string_view kGaps = " ()[]{},;:_-=";
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(kGaps);
    const CellUnit unit = unit_named(text.substr(0, end));
    if (unit != CellUnit::none) return unit;
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return CellUnit::none;
}

ColumnRole role_of(std::string_view heading) {
  if (cell_number(heading) || is_statistic(heading) || is_other_figure(heading)) return ColumnRole::none;
  if (velocity_distance(heading) || names_any(heading, kVelocity)) return ColumnRole::velocity;
  if (names_any(heading, kExcluded)) return ColumnRole::excluded;
  if (names_any(heading, kPressure)) return ColumnRole::pressure;
  if (names_any(heading, kCharge)) return ColumnRole::charge;
  if (names_any(heading, kSeries)) return ColumnRole::series;
  return names_any(heading, kShot) ? ColumnRole::shot : ColumnRole::none;
}

bool is_statistic(std::string_view label) { return names_any(label, kStatistics); }
bool is_other_figure(std::string_view label) { return names_any(label, kOther); }
bool is_no_reading(std::string_view cell) { return trim(cell).empty() || names_any(cell, kNoReading); }
bool asks_for_units(std::string_view label) { return names_any(label, kUnitLabels); }

std::optional<int> velocity_distance(std::string_view heading) {
  const std::string text = lower(trim(heading));
  if (!text.starts_with('v')) return {};
  const std::size_t digit = text.find_first_not_of(" _(", 1);
  int distance = 0;
  const char* begin = text.data() + std::min(digit, text.size());
  const auto [stop, error] = std::from_chars(begin, text.data() + text.size(), distance);
  if (error != std::errc()) return {};
  return distance;
}

std::optional<int> number_of(std::string_view heading) {
  std::string_view text = trim(heading);
  while (!text.empty() && (text.back() == ')' || text.back() == '.')) text.remove_suffix(1);
  std::size_t begin = text.size();
  while (begin > 0 && is_digit(text[begin - 1])) --begin;
  int number = 0;
  const auto [stop, error] = std::from_chars(text.data() + begin, text.data() + text.size(), number);
  if (error != std::errc() || (begin > 0 && is_digit(text[begin - 1]))) return {};
  return number;
}

}  // namespace tv
