#include "session/measured_read.h"

namespace tv {
namespace {

constexpr const char* kReasons[] = {"",           "why_large",    "why_text",
                                    "why_quote",  "why_workbook", "why_velocity",
                                    "why_number", "why_range"};  // by Unread

}  // namespace

std::string unread_text(const Session& s, Unread error, int line) {
  return s.language.msg(433) + " " + std::to_string(line) + ". " +
         s.language.text("frmMeas", kReasons[static_cast<std::size_t>(error)]);
}

}  // namespace tv
