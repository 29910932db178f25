// A language file from any bytes: the texts that nobody may be without are always there, and a file without
// them counts as damaged.
#include <cstdlib>

#include "lines.h"
#include "text/language.h"

TV_STRUCTURED_MUTATOR

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  tv::Language language;
  language.take(std::string_view(reinterpret_cast<const char*>(data), size));
  for (const int n : {1, 2, 3, 14, 18}) require(!language.fastmsg("fwarn", n).empty());
  for (const int n : {5, 6, 11, 53, 57, 61, 70, 76}) require(!language.failure(n).empty());
  require(language.notice().size() > 6 && language.notice().find('\n') != std::string::npos);
  language.msg(428);
  language.text("form3", "Llenm");
  language.fileout(1);
  return 0;
}
