#include "tables/data_block.h"

namespace tv {

std::string CartridgeDataBlock(const DataBlock& block, BlockKind kind, const Language& language) {
  std::string text;
  const auto line = [&text](const std::string& label, const std::string& value) {
    text += fit(label, 19) + ": " + value + "\r\n";
  };
  line(language.fastmsg("fcartrd"), block.cartridge);
  line(language.fastmsg("fbullet"), block.bullet + (block.coated ? ", " + language.fastmsg("ffriprv") : ""));
  line(language.text("form3", "Veffm"), block.Veffz + " grain H2O = " + block.Veffm + " cm³");
  line(language.fastmsg("fcol"), block.Plenz + " inch = " + block.Plenm + " mm");
  line(language.fastmsg("fcharge6"), block.Llenz + " inch = " + block.Llenm + " mm");
  if (kind == BlockKind::powder_table) return text;
  line(language.fastmsg("fpow"), block.powder);
  if (kind == BlockKind::load_table) return text;
  line(language.fastmsg("fcharge"), block.MPgn + " grains = " + block.MPgm + " grams");
  return text;
}

}  // namespace tv
