// The common head of all text views: what the load was, as the screens showed it.
#pragma once

#include <string>

#include "engine/calc_state.h"
#include "text/language.h"

namespace tv {

// Names and values of the load, noted when a run begins so that a view never shows figures under names that
// have changed since.
struct DataBlock {
  std::string cartridge, bullet, powder;
  bool coated = false;       // fproof
  std::string Veffz, Veffm;  // effective case capacity, grains of water and cm3
  std::string Plenz, Plenm;  // cartridge overall length, inch and mm
  std::string Llenz, Llenm;  // barrel length, inch and mm
  std::string MPgn, MPgm;    // charge, grains and grams
};

// The block of a load: its figures as the fields write them, but from the values that run, which a field's
// text may lag behind.
DataBlock data_block_of(const CalcState& s, const std::string& cartridge, const std::string& bullet,
                        const std::string& powder, bool coated);

enum class BlockKind { powder_table = 3, load_table = 4, point_list = 5 };

// Lines of a label of 19 characters, ": " and the value, each ended by CR LF. The table of powders has no
// powder line, and only the point list has the charge.
std::string CartridgeDataBlock(const DataBlock& block, BlockKind kind, const Language& language);

}  // namespace tv
