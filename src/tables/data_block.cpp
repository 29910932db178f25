#include "tables/data_block.h"

#include "text/number.h"

namespace tv {

DataBlock data_block_of(const CalcState& s, const std::string& cartridge, const std::string& bullet,
                        const std::string& powder, bool coated) {
  const CartridgeDimensions& d = s.dim;
  DataBlock block;
  block.cartridge = cartridge;
  block.bullet = bullet;
  block.powder = powder;
  block.coated = coated;
  block.Veffz = format_number(d.Veff, "0.000");
  block.Veffm = format_number(d.Veff / dicht_H2 / kGrainsPerGram, "0.000");
  block.Plenz = format_number(d.Plen, "0.000");
  block.Plenm = format_number(d.Plen * kMmPerInch, "0.00");
  block.Llenz = format_number(d.Llen, "0.0##");
  block.Llenm = format_number(d.Llen * kMmPerInch, "##0.0##");
  block.MPgn = format_number(s.chargeGr, "##0.0#");
  block.MPgm = format_number(s.chargeGr / kGrainsPerGram, "##0.00#");
  return block;
}

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
