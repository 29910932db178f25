// Builds the widgets of a screen from the rows of its form. Each widget's objectName is its control's name.
#pragma once

#include <QWidget>

#include "gui/desk.h"

namespace tv {

QWidget* build_form(Desk& desk, const ScreenSpec& spec, QWidget* parent);

// Gives labels, fields and units of all groups below each other the same edges; after each captioning.
void align_form(QWidget* root);

}  // namespace tv
