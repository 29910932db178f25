#include "data/section_values.h"

namespace tv {
namespace {

void empty_former(SectionedFile& file, std::string_view section, std::string_view key) {
  const std::string_view former = former_section(section);
  if (!former.empty() && file.has_key(former, key)) file.set(former, key, "");
}

}  // namespace

std::string_view former_section(std::string_view section) {
  if (section == "constants") return "konstanten";
  if (section == "metrics") return "abmessungen";
  if (section == "chargedata") return "treibladung";
  return {};
}

std::string section_value(const SectionedFile& file, std::string_view section, std::string_view key) {
  const std::string_view former = former_section(section);
  return former.empty() ? file.get(section, key) : file.get2(section, former, key);
}

void put_text(SectionedFile& file, std::string_view section, std::string_view key, std::string_view value) {
  file.set(section, key, value);
  empty_former(file, section, key);
}

void put_number(SectionedFile& file, std::string_view section, std::string_view key, double value) {
  file.set_number(section, key, value);
  empty_former(file, section, key);
}

}  // namespace tv
