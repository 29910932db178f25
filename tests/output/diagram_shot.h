// A shot to draw, and what tests look for in its picture.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "engine/shot.h"
#include "example_loads.h"
#include "output/diagram.h"

namespace tv {

// A finished shot: a magnum rifle, 180 grains of bullet, maximum 430 MPa.
struct Shot {
  CalcState state;
  std::unique_ptr<ShotCurve> curve = std::make_unique<ShotCurve>();
  ShotResult result;
  DiagramRun run() const { return {&state, curve.get(), &result}; }
};

inline Shot magnum() {
  Shot shot;
  CalcState& s = shot.state;
  s = test::worked_load();
  s.dim.Llen = 24;
  s.dim.zul_P = 430;
  convertUnits(s);
  EXPECT_EQ(prepareShot(s), SetUp::ok);
  EXPECT_TRUE(runShot(s, *shot.curve, shot.result).ok());
  return shot;
}

inline const Language& english() {
  static const Language language = [] {
    Language l;
    EXPECT_EQ(l.read(TV_SHARE_DIR "/lan/tn_english.lan"), LanguageRead::good);
    return l;
  }();
  return language;
}

inline DiagramOptions of_type(int type) {
  DiagramOptions options;
  options.type = type;
  return options;
}

inline Diagram draw(const Shot& shot, const DiagramOptions& options, double width = 640,
                    double height = 480) {
  return draw_diagram(shot.run(), options, english(), width, height, estimated_text_width);
}

inline const DrawItem* text_item(const DrawList& list, const std::string& text) {
  for (const DrawItem& item : list.items) {
    if (item.kind == DrawKind::text && item.text == text) return &item;
  }
  return nullptr;
}

inline std::vector<const DrawItem*> items_of(const DrawList& list, DrawKind kind) {
  std::vector<const DrawItem*> out;
  for (const DrawItem& item : list.items) {
    if (item.kind == kind) out.push_back(&item);
  }
  return out;
}

}  // namespace tv
