// Builds the widgets of a screen from its layout table. Each widget's objectName is its control's name.
#pragma once

#include <QWidget>

#include "gui/layout.h"
#include "session/session.h"

namespace tv {

// A control that the layout places but the screen table does not know is left out; its name is added to
// `unknown` if that is given.
QWidget* build_form(const FormLayout& layout, QWidget* parent, std::vector<std::string>* unknown = nullptr);

// Gives labels, fields and units of all groups below each other the same edges; after each captioning.
void align_form(QWidget* root);

// One widget by the kind of its control; null for a kind that only windows of their own have.
QWidget* make_control(std::string_view screen, std::string_view control, QWidget* parent);

}  // namespace tv
