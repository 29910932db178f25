// Replays draw lists: on the screen, on a printer, into pictures and documents.
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <string>

#include "output/draw_list.h"

class QPainter;

namespace tv {

QColor qt_colour(const Colour& colour);

// Paints the list with its top left at the painter's origin, in its logical units.
void replay(QPainter& painter, const DrawList& list);

// Width of a text in logical units, the same on every device: for the layout of draw lists.
double qt_text_width(const std::string& text, double size, bool bold, bool italic, const std::string& font);

QImage draw_image(const DrawList& list, double scale);

// Writes the list as a picture, by the extension of the file: png, bmp (at twice the size), svg or pdf. The
// former file stands until the new one is whole. Answers with the failure number, 0 if all went well.
int save_picture(const DrawList& list, const std::string& file);

}  // namespace tv
