// Two loads that tests and benches share.
#pragma once

#include "engine/shot.h"

namespace tv::test {

// A magnum rifle with 180 grains of bullet; powder not burnt at the muzzle.
inline CalcState worked_load() {
  CalcState s;
  s.dim.Bwg = 180;
  s.dim.Veff = 79.8;
  s.dim.qfq = 47.32;
  s.dim.Wob = 549.63;
  s.dim.sebf = 0.5;
  s.chargeGr = 73;
  s.Exw = 3935;
  s.Kap = 1.231;
  s.Pdens = 1.61;
  s.Ba0 = 0.388;
  s.PDko = 1.4217;
  s.Ba1 = 2.1342;
  s.Limz1 = 0.595;
  s.start_pressure = 25e6;
  return s;
}

// A .30 calibre rifle of medium case with all that the tables look at.
inline CalcState rifle_load() {
  CalcState s;
  s.dim.Zkal = s.dim.buldin = 0.308;
  s.dim.Bwg = 150;
  s.dim.Glen = 1.1;
  s.dim.Hlen = 2.015;
  s.dim.Plen = 2.8;
  s.dim.Llen = 24;
  s.dim.Wob = (24 - (2.8 - 1.1)) * kMmPerInch;
  s.dim.qfq = 47.51;
  s.dim.Volf = 56;
  s.dim.Vvg = 7.5;
  s.dim.Veff = 48.5;
  s.dim.sebf = 0.5;
  s.dim.zul_P = 415;
  s.Exw = 3900;
  s.Kap = 1.231;
  s.Pdens = 1.6;
  s.Ba0 = 0.6;
  s.PDko = 1.0;
  s.Limz1 = 0.5;
  s.Ba1 = 1.7320508;
  s.bulkdn = 0.92;
  s.chargeGr = 42;
  s.start_pressure = 25e6;
  s.fill = 97.6;
  return s;
}

}  // namespace tv::test
