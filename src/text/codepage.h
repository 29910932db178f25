// Text inside the program is UTF-8; files are single bytes in a code page.
#pragma once

#include <string>
#include <string_view>

namespace tv {

enum class CodePage { cp1252, cp1251 };

// "1251" gives cp1251, anything else cp1252.
CodePage code_page_named(std::string_view number);

// Every byte has its character (bytes the page leaves undefined become the C1 code point of the same number),
// so that any file survives reading and writing byte for byte.
std::string to_utf8(std::string_view bytes, CodePage page);

// Characters that the page does not have are dropped: a "?" in their place would be a text nobody entered.
// Malformed UTF-8 is passed as single bytes.
std::string from_utf8(std::string_view text, CodePage page);

// What of a text that a user enters the page can hold: what it gives survives writing and reading as it is.
std::string drop_foreign(std::string_view text, CodePage page);

// Text held from a file, read by the old page, as the new page would have read it.
std::string reread(std::string_view text, CodePage old_page, CodePage new_page);

// Characters (not bytes) of UTF-8 text: one character is one byte in a file.
std::size_t length(std::string_view text);
std::string left(std::string_view text, std::size_t characters);
std::string pad_right(std::string_view text, std::size_t width);  // with blanks; longer text stays whole
std::string pad_left(std::string_view text, std::size_t width);   // right-aligned in the width
std::string fit(std::string_view text, std::size_t width);        // padded or cut to the width
std::string_view trim(std::string_view text);                     // blanks and tabs at both ends
std::string_view trim_left(std::string_view text);
std::string_view trim_right(std::string_view text);

// Upper case of ASCII, Latin-1 and Cyrillic letters, never by the C locale.
std::string upper(std::string_view text);
std::string lower(std::string_view text);
bool same_fold(std::string_view a, std::string_view b);  // equal but for case

// Order by the encoded bytes of a file: negative, 0, positive.
int compare_bytes(std::string_view a, std::string_view b, CodePage page);

// A line break inside a value is kept as character 172 in files.
inline constexpr std::string_view kBreakMark = "\u00AC";
inline constexpr std::string_view kPieceMark = "\u00A6";  // 166, joins the pieces of one field
std::string marks_to_breaks(std::string_view text);       // 172 becomes "\n"
std::string breaks_to_marks(std::string_view text);       // CR LF, LF or CR become 172

}  // namespace tv
