// Every delivered cartridge with the bullet that comes with it, a usual barrel and the best delivered powder, held to the
// velocity that such a cartridge is known for.
#include <cmath>
#include <fstream>
#include <optional>
#include <sstream>

#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

class DeliveredCartridgeShots : public Started {};

struct Usual {
  std::string cartridge;
  double barrel, grains, mps, more;
};

std::vector<Usual> known_velocities() {
  std::vector<Usual> known;
  std::ifstream file(TV_SOURCE_DIR "/tests/delivered/known_velocities.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(';')) continue;
    const std::size_t at = line.find(" | ");
    std::string numbers = line.substr(at);
    std::ranges::replace(numbers, '|', ' ');
    Usual usual{line.substr(0, at), 0, 0, 0, 0.07};
    std::istringstream columns(numbers);
    columns >> usual.barrel >> usual.grains >> usual.mps;
    if (double more = 0; columns >> more) usual.more = more;
    known.push_back(usual);
  }
  return known;
}

// Peak pressure and velocity at a charge; nothing where the charge does not fit.
std::optional<std::pair<double, double>> shot(CalcState& s, double grains) {
  static ShotCurve curve;
  ShotResult result;
  s.chargeGr = grains;
  convertUnits(s);
  if (prepareShot(s) != SetUp::ok || !runShot(s, curve, result).ok()) return {};
  return std::pair{result.pMax / 1e6, result.vMuzzle};
}

// The velocity of a powder at the charge that reaches the pressure, or of a full case if none does.
double velocity_at(CalcState s, double MPa) {
  double low = 0, high = s.bulkdn * s.dim.Veff / dicht_H2;
  for (int i = 0; i < 30; ++i) {
    const double charge = i ? (low + high) / 2 : high;
    const auto figures = shot(s, charge);
    const bool below = figures && figures->first < MPa;
    if (below && charge == high) return figures->second;
    (below ? low : high) = charge;
  }
  const auto figures = shot(s, low);
  return figures ? figures->second : 0;
}

TEST_F(DeliveredCartridgeShots, ReachTheVelocityTheyAreKnownFor) {
  const auto known = known_velocities();
  EXPECT_EQ(s.set(RecordKind::cartridges).file.table.rows.size(), known.size());
  for (const Usual& usual : known) {
    SCOPED_TRACE(usual.cartridge);
    s.load.bultyp.clear();
    s.state.dim.buldin = 0;
    take_cartridge(s, row(RecordKind::cartridges, usual.cartridge));
    type("Form3", "Llenz", std::to_string(usual.barrel));
    const CartridgeDimensions& d = s.state.dim;
    SCOPED_TRACE(s.load.bultyp);
    EXPECT_LT(d.Bsd, std::min(0.6 * d.Glen, d.Hlen)) << "the bullet's head stands out";
    EXPECT_GT(d.Veff, 0.45 * d.Volf);
    EXPECT_LT(std::fabs(std::log(d.Bwg / usual.grains)), std::log(1.6)) << "a usual bullet";
    const double start = s.state.start_pressure, limit = d.zul_P > 0 ? d.zul_P : 360;
    double best = 0;
    for (int powder = 0; powder <= s.set(RecordKind::powders).file.table.last(); ++powder) {
      take_powder(s, powder);
      EXPECT_EQ(s.state.start_pressure, start);
      best = std::max(best, velocity_at(s.state, 0.9 * limit));
    }
    const double expected = usual.mps * std::pow(usual.grains / d.Bwg, 0.42);
    EXPECT_GT(best, 0.93 * expected);
    EXPECT_LT(best, (1.01 + usual.more) * expected);
  }
}

}  // namespace
}  // namespace tv_test
