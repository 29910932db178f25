// The figures that docs/measured.md tells of a measured gun are those that the program gives.
#include <cmath>
#include <sstream>

#include "calculators/powder_fit.h"
#include "session/started.h"
#include "text/file.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

constexpr double kBase_in = 1.353;  // bolt face to bullet base

struct Row {
  double barrel_in, measured_fps, told_fps, told_percent;  // no percent: fitted here
};

std::vector<Row> told_rows() {
  std::istringstream text(read_file(std::string(TV_SOURCE_DIR) + "/docs/measured.md").bytes);
  std::vector<Row> rows;
  for (std::string line; std::getline(text, line);) {
    Row row{};
    if (std::sscanf(line.c_str(), "| %lf | %lf | %lf | %lf |", &row.barrel_in, &row.measured_fps,
                    &row.told_fps, &row.told_percent) >= 3)
      rows.push_back(row);
  }
  return rows;
}

class MeasuredGun : public Started {
protected:
  ShotFigures shot(double barrel_in) {
    s.state.dim.Wob = (barrel_in - kBase_in) * kMmPerInch;
    convertUnits(s.state);
    EXPECT_EQ(prepareShot(s.state), SetUp::ok);
    EXPECT_TRUE(runShot(s.state, s.curve, s.result).ok());
    return {s.result.pMax, s.result.vMuzzle * kFeetPerMetre};
  }
};

TEST_F(MeasuredGun, FiguresOfTheDocument) {
  load("556x45_62_measured");
  EXPECT_NEAR(s.state.dim.Plen - s.state.dim.Glen, kBase_in, 1e-9);
  const std::vector<Row> rows = told_rows();
  ASSERT_EQ(rows.size(), 6u);
  double squares = 0;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.barrel_in);
    const double v = shot(row.barrel_in).vMuzzle, percent = 100 * (v / row.measured_fps - 1);
    EXPECT_NEAR(v, row.told_fps, 0.51);
    EXPECT_NEAR(percent, row.told_percent, 0.051);
    if (row.barrel_in != 16) squares += percent * percent;
  }
  EXPECT_NEAR(std::sqrt(squares / 5), 1.6, 0.05);
  EXPECT_NEAR(shot(16).pMax / 1e6, 408, 0.5);
}

// The fit at 16 in, from another powder, with the assumptions of the document's second table.
TEST_F(MeasuredGun, FitAtOneBarrel) {
  const struct {
    double PDko, Limz1, start_pressure, Ba0, peak_MPa;
  } cases[] = {{0.9, 0.44, 30e6, 0.551, 408},
               {0.9, 0.34, 30e6, 0.573, 433},
               {0.9, 0.54, 30e6, 0.535, 385},
               {1.4, 0.44, 30e6, 0.528, 400},
               {0.9, 0.44, 0, 0.575, 385}};
  load("556x45_62_measured");
  for (const auto& c : cases) {
    CalcState state = s.state;
    state.PDko = c.PDko;
    state.Limz1 = c.Limz1;
    state.Ba1 = std::sqrt(1 + c.PDko * c.Limz1) / std::sqrt(1 - c.Limz1);
    state.start_pressure = c.start_pressure;
    state.Ba0 = 0.7;
    const FitPoint point{25, 2990 / kFeetPerMetre, 0, 1};
    const PowderFit fit = fit_powder(state, {&point, 1});
    EXPECT_EQ(fit.verdict, FitVerdict::barely) << "one velocity tells nothing of its scatter";
    EXPECT_NEAR(fit.state.Ba0, c.Ba0, 0.00051);
    EXPECT_NEAR(fit.after.pMax / 1e6, c.peak_MPa, 0.51);
  }
}

}  // namespace
}  // namespace tv_test
