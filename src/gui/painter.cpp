#include "gui/painter.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPolygonF>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>

#include "gui/captions.h"
#include "text/codepage.h"
#include "text/file.h"

namespace tv {
namespace {

// Fonts have whole pixel sizes; the rest of a size is a factor on the painter.
struct SizedFont {
  QFont font;
  double factor = 1;
};

SizedFont sized_font(double size, bool bold, bool italic, const std::string& name) {
  const int pixels = std::max(1, static_cast<int>(std::lround(size)));
  QFont font(qt(name));
  font.setPixelSize(pixels);
  font.setBold(bold);
  font.setItalic(italic);
  font.setHintingPreference(QFont::PreferNoHinting);  // the same widths on every device
  return {font, size / pixels};
}

Qt::PenStyle pen_style(LineStyle style) {
  switch (style) {
    case LineStyle::solid:
      return Qt::SolidLine;
    case LineStyle::dash:
      return Qt::DashLine;
    case LineStyle::dot:
      return Qt::DotLine;
    case LineStyle::dash_dot:
      return Qt::DashDotLine;
  }
  return Qt::SolidLine;
}

QPolygonF polygon(const std::vector<Point>& points) {
  QPolygonF line;
  line.reserve(static_cast<qsizetype>(points.size()));
  for (const Point& p : points) line << QPointF(p.x, p.y);
  return line;
}

void draw_text(QPainter& painter, const DrawItem& item, const std::string& font_name) {
  const SizedFont sized = sized_font(item.size, item.bold, item.italic, font_name);
  const QString text = qt(item.text);
  const double width = QFontMetricsF(sized.font).horizontalAdvance(text);
  const double shift = item.align == Align::left ? 0 : item.align == Align::right ? -width : -width / 2;
  painter.save();
  painter.translate(item.points[0].x, item.points[0].y);
  painter.rotate(-item.angle);
  painter.scale(sized.factor, sized.factor);
  painter.setFont(sized.font);
  painter.setPen(qt_colour(item.colour));
  painter.drawText(QPointF(shift, 0), text);
  painter.restore();
}

void draw_item(QPainter& painter, const DrawItem& item, const std::string& font) {
  if (item.points.empty()) return;
  painter.setPen(QPen(qt_colour(item.colour), item.width, pen_style(item.style), Qt::FlatCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  switch (item.kind) {
    case DrawKind::line:
    case DrawKind::polyline:
      if (item.filled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(qt_colour(item.colour));
        painter.drawPolygon(polygon(item.points));
      } else {
        painter.drawPolyline(polygon(item.points));
      }
      break;
    case DrawKind::circle:
      if (item.filled) painter.setBrush(qt_colour(item.colour));
      painter.drawEllipse(QPointF(item.points[0].x, item.points[0].y), item.radius, item.radius);
      break;
    case DrawKind::band:
      if (item.points.size() > 1)
        painter.fillRect(
            QRectF(QPointF(item.points[0].x, item.points[0].y), QPointF(item.points[1].x, item.points[1].y))
                .normalized(),
            qt_colour(item.colour));
      break;
    case DrawKind::text:
      draw_text(painter, item, font);
      break;
  }
}

bool write_svg(const DrawList& list, QIODevice& out) {
  QSvgGenerator generator;
  generator.setOutputDevice(&out);
  generator.setSize(QSize(static_cast<int>(std::ceil(list.width)), static_cast<int>(std::ceil(list.height))));
  generator.setViewBox(QRectF(0, 0, list.width, list.height));
  QPainter painter;
  if (!painter.begin(&generator)) return false;
  replay(painter, list);
  return painter.end();
}

// One page of the list's own size, 96 units to the inch.
bool write_pdf(const DrawList& list, QIODevice& out) {
  QPdfWriter writer(&out);
  writer.setPageSize(QPageSize(QSizeF(list.width * 0.75, list.height * 0.75), QPageSize::Point));
  writer.setPageMargins(QMarginsF());
  QPainter painter;
  if (!painter.begin(&writer)) return false;
  painter.scale(writer.width() / list.width, writer.height() / list.height);
  replay(painter, list);
  return painter.end();
}

bool write_as(const DrawList& list, const std::string& type, QIODevice& out) {
  if (type == "svg") return write_svg(list, out);
  if (type == "pdf") return write_pdf(list, out);
  return draw_image(list, 2).save(&out, type == "bmp" ? "BMP" : "PNG");
}

}  // namespace

QColor qt_colour(const Colour& colour) { return {colour.r, colour.g, colour.b, colour.a}; }

void replay(QPainter& painter, const DrawList& list) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.fillRect(QRectF(0, 0, list.width, list.height), qt_colour(list.background));
  for (const DrawItem& item : list.items) draw_item(painter, item, list.font);
  painter.restore();
}

double qt_text_width(const std::string& text, double size, bool bold, bool italic, const std::string& font) {
  const SizedFont sized = sized_font(size, bold, italic, font);
  return QFontMetricsF(sized.font).horizontalAdvance(qt(text)) * sized.factor;
}

QImage draw_image(const DrawList& list, double scale) {
  QImage image(static_cast<int>(std::ceil(list.width * scale)),
               static_cast<int>(std::ceil(list.height * scale)), QImage::Format_RGB32);
  image.fill(qt_colour(list.background));
  QPainter painter(&image);
  painter.scale(scale, scale);
  replay(painter, list);
  return image;
}

int save_picture(const DrawList& list, const std::string& file) {
  // Whole in memory first, so that a failing painter leaves the former file alone.
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  if (!write_as(list, lower(file_extension(file)), buffer)) return kFileError;
  return write_file(file, buffer.data().toStdString());
}

}  // namespace tv
