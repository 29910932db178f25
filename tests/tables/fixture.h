// A load and powders for the tests of the tables; the powders are invented.
#pragma once

#include <random>
#include <string>

#include "example_loads.h"
#include "tables/load_table.h"
#include "tables/powder_table.h"
#include "text/language.h"
#include "text/number.h"

namespace tv::test {

struct Shot {
  CalcState s;
  ShotCurve curve;
  ShotResult result;
  bool run() {
    convertUnits(s);
    return prepareShot(s) == SetUp::ok && runShot(s, curve, result).ok();
  }
  double velocity() const { return curve.v[static_cast<std::size_t>(result.lastIdx)]; }
};

inline Shot rifle() {
  Shot shot;
  CalcState& s = shot.s;
  s = test::rifle_load();
  convertUnits(s);
  prepareShot(s);
  return shot;
}

inline TableHead head() {
  TableHead h;
  h.block = {"Example Rifle", "Example 150", "Example R", true,    "48.500", "3.149",
             "2.800",         "71.12",       "24.0",      "609.6", "42.00",  "2.722"};
  h.Veffm = 3.149;
  return h;
}

inline Record powder(std::string name, double Ba0, double bulkdn = 0.92, double Exw = 3900) {
  Record r;
  r[powder_field::name] = std::move(name);
  r[powder_field::Exw] = general(Exw);
  r[powder_field::Kap] = "1.231";
  r[powder_field::Pdens] = "1.6";
  r[powder_field::Ba0] = general(Ba0);
  r[powder_field::PDko] = "1.0";
  r[powder_field::Limz1] = "0.5";
  r[powder_field::Ba1] = "1.7320508";
  r[powder_field::bulkdn] = general(bulkdn);
  r[powder_field::mean_burn_rate] = general(Ba0);
  return r;
}

inline RecordTable powders() {
  RecordTable table;
  for (int i = 0; i < 8; ++i)
    table.rows.push_back(powder("Example " + std::string(1, static_cast<char>('A' + i)), 0.45 + 0.06 * i));
  table.rows.push_back(powder("No bulk density", 0.6, 0));
  table.rows.push_back(powder("Energy out of range", 0.6, 0.9, 20000));
  table.rows.push_back(powder("Too slow for the band", 0.2));
  return table;
}

// The load with the values of a record.
inline void take(CalcState& s, const Record& r) {
  s.Exw = read_number(r[powder_field::Exw]);
  s.Kap = read_number(r[powder_field::Kap]);
  s.Pdens = read_number(r[powder_field::Pdens]);
  s.Ba0 = read_number(r[powder_field::Ba0]);
  s.PDko = read_number(r[powder_field::PDko]);
  s.Limz1 = read_number(r[powder_field::Limz1]);
  s.Ba1 = read_number(r[powder_field::Ba1]);
  s.bulkdn = read_number(r[powder_field::bulkdn]);
}

inline PowderTable run(Shot& shot, const RecordTable& list, const PowderCriteria& criteria,
                       const PowderRunHooks& hooks = {}) {
  PowderTable table;
  RunPowderTable(shot.s, shot.curve, shot.result, list, criteria, head(), {}, hooks, table);
  return table;
}

inline const PowderRow* find(const PowderTable& table, const std::string& name) {
  for (const PowderRow& row : table.rows)
    if (row.name == name) return &row;
  return nullptr;
}

inline Language language() {
  Language l;
  EXPECT_NE(l.read(std::string(TV_SOURCE_DIR) + "/tests/tables/test.lan"), LanguageRead::unreadable);
  return l;
}

}  // namespace tv::test
