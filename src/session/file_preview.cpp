// What a data file says of itself, for the file dialog.
#include "data/load_keys.h"
#include "data/record_file.h"
#include "session/file_names.h"
#include "text/file.h"

namespace tv {

std::string file_preview(Session& s, DialogKind kind, const std::string& file) {
  const CodePage page = s.language.page();
  switch (kind) {
    case DialogKind::load: {
      const SectionedFile load = read_sectioned(file, page);
      return load.bytes().empty() ? std::string() : load_preview(load);
    }
    case DialogKind::bullets:
    case DialogKind::cartridges:
    case DialogKind::powders:
    case DialogKind::guns:
    case DialogKind::black_powders:
      return read_comment(file, page);
    case DialogKind::vivacity:
      return marks_to_breaks(settings_read("vivacity", "vivcommnt", file, page));
    case DialogKind::reference:
      return marks_to_breaks(settings_read("referenz", "Laborierung", file, page));
    default:
      return {};
  }
}

}  // namespace tv
