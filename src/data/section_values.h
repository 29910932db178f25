// Values of sections that had another name in older files: read from either, written to the present one.
#pragma once

#include <string>
#include <string_view>

#include "text/sectioned_file.h"

namespace tv {

// The name that the section had in older files; empty if it had none.
std::string_view former_section(std::string_view section);

// The value, that of the former section if the present one holds none.
std::string section_value(const SectionedFile& file, std::string_view section, std::string_view key);

// The same key of a former section that is still in the file is emptied: else a value that a user emptied
// would come back from there.
void put_text(SectionedFile& file, std::string_view section, std::string_view key, std::string_view value);
void put_number(SectionedFile& file, std::string_view section, std::string_view key, double value);

}  // namespace tv
