// Captions, tips and accessible names of all widgets, from the language in force, by one walk over a widget
// tree. A widget's key is its objectName, or the property "caption"; windows may set the property "section".
#pragma once

#include <QString>
#include <QWidget>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

inline QString qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string utf8(const QString& text) { return text.toStdString(); }

// A caption without its mnemonic, for accessible names and titles.
QString plain_caption(QString caption);

// For where the toolkit would take what looks like markup for markup.
QString plain_tip(const QString& text);

// Captions root and all its children from a section; the tips by the widgets' names.
void apply_captions(QWidget* root, const Session& s, std::string_view section);
// The name that the tip of a widget stands under: its own, or that of its label; its own also without a tip.
std::string tip_key(const Session& s, const QWidget* widget);
// The tip of a widget, or nothing where tips are switched off; before it the reason why a field is marked.
QString tip_text(const Session& s, const QWidget* widget);

// Names that the walk goes by.
inline constexpr const char* kCaptionKey = "caption";    // property: caption key other than the objectName
inline constexpr const char* kUnitKey = "unit";          // property of unit labels
inline constexpr const char* kUnitLabel = "unit_label";  // property of a field: the label of its unit
inline constexpr const char* kSpoken = "spoken";  // property: what a screen reader says of it, less the unit
inline constexpr const char* kEllipsis = "ellipsis";   // property of a command that asks for more
inline constexpr const char* kPageKeys = "page_keys";  // property: keys of tab pages, heads, entries
inline constexpr const char* kFixedText = "fixed";     // property: text that no language changes
inline constexpr const char* kOwn = "own";             // property: its window draws it, the binder does not
inline constexpr const char* kReason = "reason";       // property: why the field is marked
inline constexpr const char* kGroup = "group";         // property: number of a group that its screen may hide
inline constexpr const char* kOwnSection = "own_section";  // property: the walk stops before this widget

}  // namespace tv
