// The records of bullets, cartridges and guns as values: what their editors work on, read from the texts of a
// file and written back in the form each field has there.
#pragma once

#include <string>

#include "data/record_table.h"
#include "engine/calc_state.h"
#include "geometry/bore_area.h"
#include "geometry/case_volume.h"
#include "geometry/coefficients.h"

namespace tv {

struct BulletRecord {
  std::string name;
  CartridgeDimensions dim;   // of it buldin, Bwg, Glen and the tail
  std::string gfunc = "G1";  // drag function of the coefficients, G1 or G7
  CoefficientRows bc;        // row 1 is the bullet's own; 0 where it is not known
  double start_MPa = 0;      // uncoated; below 1 there is none
  bool operator==(const BulletRecord&) const = default;
};
// A tail of an unknown type counts as flat. Of a single coefficient the rows hold the first only.
BulletRecord bullet_of(const Record& r);
Record record_of(const BulletRecord& b);

struct CartridgeRecord {
  std::string name, method, picture;
  CartridgeDimensions dim;  // of it Volf, Hlen, Zkal, sebf, qfq, zul_P, Plen
  CaseBody body;
  double caswht = 0;  // grains
  double ZD_in = 0, ZB_in = 0, FD_in = 0,
         FB_in = 0;  // the rifling: grooves and lands, diameter and width or radius
  int ZZ_no = 0;     // number of grooves
  bool Polyg = false;
  bool operator==(const CartridgeRecord&) const = default;
};
CartridgeRecord cartridge_of(const Record& r);
Record record_of(const CartridgeRecord& c);

// The rifling in mm, and back. Widths or radii are those of the profile.
Rifling rifling_of(const CartridgeRecord& c);
void set_rifling(CartridgeRecord& c, const Rifling& r);

struct GunRecord {
  std::string name, CalDat, Text1;
  double Llen = 0;   // inch
  double sight = 0;  // height of the sight over the bore, inch
  double twist = 0;  // inch; below zero a left-hand twist
  double weight_kg = 0;
  double gmoacli = 0;             // minutes of angle per click
  int gclidst = 0;                // reference distance of the click: 0 100 m, 1 100 yd
  CartridgeDimensions cartridge;  // its own copy: Volf, Hlen, Zkal, sebf, qfq, zul_P, Plen
  std::string method;
  bool operator==(const GunRecord&) const = default;
};
GunRecord gun_of(const Record& r);
Record record_of(const GunRecord& g);
// The cartridge as its file has it takes the place of the gun's copy.
void chamber(GunRecord& g, const CartridgeRecord& c);

}  // namespace tv
