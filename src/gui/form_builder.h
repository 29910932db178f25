// Builds the widgets of a screen from the rows of its form. Each widget's objectName is its control's name.
#pragma once

#include <QWidget>
#include <span>
#include <vector>

#include "gui/desk.h"

namespace tv {

QWidget* build_form(Desk& desk, const ScreenSpec& spec, std::span<const Group> groups, QWidget* parent);

// Gives labels, fields and units of all groups below each other the same edges, over all the forms given; after
// each captioning.
void align_forms(const std::vector<QWidget*>& roots);

}  // namespace tv
