// Chronograph exports from any bytes: read or refused with a line, and what is read are velocities of guns.
#include "calculators/chronograph.h"

#include <cstdlib>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void check(const tv::ChronographRead& read) {
  require((read.error == tv::Unread::none) == !read.series.empty());
  require(read.error == tv::Unread::none || read.line >= 1);
  for (const tv::MeasuredSeries& series : read.series) {
    require(!series.shots.empty() && series.shots.size() <= 999 && series.charge_gr >= 0);
    for (const tv::MeasuredShot& shot : series.shots) require(shot.velocity >= 10 && shot.velocity <= 3000);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  check(tv::read_chronograph(bytes));
  check(tv::read_chronograph(bytes, {tv::CellUnit::fps, {tv::ColumnRole::shot, tv::ColumnRole::velocity}}));
  return 0;
}
