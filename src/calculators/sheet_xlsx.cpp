// The few parts of a workbook that hold its cells: the list of sheets, the shared texts and each sheet.
#include <unzip.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <pugixml.hpp>

#include "calculators/sheet.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr int kMostColumns = 256, kMostLines = 1 << 20;

// The bytes at hand as the archive's file.
struct Bytes {
  std::string_view bytes;
  std::size_t at = 0;
};
Bytes& of(void* stream) { return *static_cast<Bytes*>(stream); }

void* open_bytes(void* opaque, const void*, int) { return opaque; }
uLong read_bytes(void*, void* stream, void* to, uLong size) {
  Bytes& b = of(stream);
  const std::size_t n = std::min<std::size_t>(size, b.bytes.size() - b.at);
  std::memcpy(to, b.bytes.data() + b.at, n);
  b.at += n;
  return n;
}
uLong write_bytes(void*, void*, const void*, uLong) { return 0; }
ZPOS64_T tell_bytes(void*, void* stream) { return of(stream).at; }
long seek_bytes(void*, void* stream, ZPOS64_T offset, int origin) {
  Bytes& b = of(stream);
  const std::size_t from = origin == SEEK_CUR ? b.at : origin == SEEK_END ? b.bytes.size() : 0;
  if (offset > b.bytes.size() || from + offset > b.bytes.size()) return -1;
  b.at = from + static_cast<std::size_t>(offset);
  return 0;
}
int no_error(void*, void*) { return 0; }

class Archive {
public:
  explicit Archive(std::string_view bytes) : bytes_{bytes} {
    zlib_filefunc64_def calls{open_bytes, read_bytes, write_bytes, tell_bytes,
                              seek_bytes, no_error,   no_error,    &bytes_};
    zip_.reset(unzOpen2_64("", &calls));
  }
  explicit operator bool() const { return zip_ != nullptr; }

  // Unpacked whole; nothing if it is missing, damaged, encrypted or larger than what is left of the bytes
  // that a workbook may unpack to.
  std::optional<std::string> part(const std::string& name) {
    if (unzLocateFile(zip_.get(), name.c_str(), 2) != UNZ_OK) return {};
    if (unzOpenCurrentFile(zip_.get()) != UNZ_OK) return {};
    std::string out;
    char block[1 << 14];
    int n = 0;
    while ((n = unzReadCurrentFile(zip_.get(), block, sizeof block)) > 0 && out.size() <= left_)
      out.append(block, static_cast<std::size_t>(n));
    const bool whole = unzCloseCurrentFile(zip_.get()) == UNZ_OK && n == 0 && out.size() <= left_;
    if (!whole) return {};
    left_ -= out.size();
    return out;
  }

private:
  struct Close {
    void operator()(void* zip) const { unzClose(zip); }
  };
  Bytes bytes_;
  std::unique_ptr<void, Close> zip_;
  std::size_t left_ = 4 * kMostSheetBytes;
};

// Names without the prefix that a writer may have given them.
std::string_view local_name(const char* name) {
  const std::string_view whole = name;
  return whole.substr(whole.rfind(':') + 1);
}
bool is(pugi::xml_node node, std::string_view name) { return local_name(node.name()) == name; }
pugi::xml_node child(pugi::xml_node node, std::string_view name) {
  for (const pugi::xml_node c : node.children())
    if (is(c, name)) return c;
  return {};
}
std::string_view attribute(pugi::xml_node node, std::string_view name) {
  for (const pugi::xml_attribute a : node.attributes())
    if (local_name(a.name()) == name) return a.value();
  return {};
}

// A text, or its runs one after the other; readings of signs are left out.
std::string text_of(pugi::xml_node node) {
  std::string text;
  for (const pugi::xml_node c : node.children()) {
    if (is(c, "t")) text += c.child_value();
    if (is(c, "r")) text += child(c, "t").child_value();
  }
  return text;
}

struct Named {
  std::string name, file;
};

std::vector<Named> list_of_sheets(Archive& archive) {
  pugi::xml_document book, links;
  const auto text = archive.part("xl/workbook.xml"), targets = archive.part("xl/_rels/workbook.xml.rels");
  if (!text || !targets || !book.load_string(text->c_str()) || !links.load_string(targets->c_str()))
    return {};
  std::vector<Named> sheets;
  for (const pugi::xml_node sheet : child(child(book, "workbook"), "sheets").children()) {
    // Of its two attributes the one with a prefix names the link.
    std::string_view link;
    for (const pugi::xml_attribute a : sheet.attributes())
      if (std::string_view(a.name()).ends_with(":id")) link = a.value();
    for (const pugi::xml_node target : child(links, "Relationships").children()) {
      if (attribute(target, "Id") != link) continue;
      std::string file(attribute(target, "Target"));
      file = file.starts_with('/') ? file.substr(1) : "xl/" + file;
      sheets.push_back({std::string(attribute(sheet, "name")), file});
    }
  }
  return sheets;
}

std::vector<std::string> shared_texts(Archive& archive) {
  std::vector<std::string> texts;
  pugi::xml_document document;
  const auto part = archive.part("xl/sharedStrings.xml");
  if (part && document.load_string(part->c_str()))
    for (const pugi::xml_node item : child(document, "sst").children()) texts.push_back(text_of(item));
  return texts;
}

// "AB12" is column 27, counted from 0; -1 if there are no letters.
int column_of(std::string_view place) {
  int column = 0;
  for (const char c : place) {
    if (c < 'A' || c > 'Z' || column > kMostColumns) break;
    column = column * 26 + (c - 'A' + 1);
  }
  return column - 1;
}

std::string cell_text(pugi::xml_node cell, const std::vector<std::string>& texts) {
  const std::string_view type = attribute(cell, "t");
  if (type == "inlineStr") return text_of(child(cell, "is"));
  const std::string value = child(cell, "v").child_value();
  if (type == "s") {
    const auto index = static_cast<std::size_t>(read_number(value));
    return index < texts.size() ? texts[index] : "";
  }
  const bool number = type.empty() || type == "n";
  return number && !value.empty() ? general(read_number(value)) : value;
}

int whole(std::string_view digits, int otherwise) {
  int value = otherwise;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

SheetRow row_of(pugi::xml_node node, int line, const std::vector<std::string>& texts) {
  SheetRow row{whole(attribute(node, "r"), line), {}};
  for (const pugi::xml_node cell : node.children()) {
    if (!is(cell, "c")) continue;
    const int named = column_of(attribute(cell, "r"));
    const auto column = named >= 0 ? static_cast<std::size_t>(named) : row.cells.size();
    if (column >= kMostColumns) continue;
    if (column >= row.cells.size()) row.cells.resize(column + 1);
    row.cells[column] = left(trim(cell_text(cell, texts)), kMostCharacters);
  }
  return row;
}

}  // namespace

SheetsRead read_workbook(std::string_view bytes) {
  const SheetsRead damaged{{}, Unread::bad_workbook, 1};
  Archive archive(bytes);
  if (!archive) return damaged;
  const std::vector<Named> list = list_of_sheets(archive);
  const std::vector<std::string> texts = shared_texts(archive);
  SheetsRead read;
  std::size_t cells = 0;
  for (const Named& named : list) {
    const auto part = archive.part(named.file);
    pugi::xml_document document;
    if (!part || !document.load_string(part->c_str())) return damaged;
    Sheet sheet{named.name, {}};
    for (const pugi::xml_node node : child(child(document, "worksheet"), "sheetData").children()) {
      const int line = sheet.rows.empty() ? 1 : sheet.rows.back().line + 1;
      sheet.rows.push_back(row_of(node, line, texts));
      cells += sheet.rows.back().cells.size();
      if (cells > kMostCells || line > kMostLines) return {{}, Unread::too_large, line};
    }
    read.sheets.push_back(std::move(sheet));
  }
  return read.sheets.empty() ? damaged : read;
}

}  // namespace tv
