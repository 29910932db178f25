#include "gui/icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QStringList>
#include <algorithm>
#include <string>
#include <vector>

namespace tv {
namespace {

// Strokes on a field of 24 x 24. A small letter begins a stroke in a colour: k foreground, r red, b blue,
// g green, y amber, w background; "F" fills it. M move, L line, Q curve, C circle (centre, radius),
// R rectangle (corner, size), Z close.
constexpr const char* kPrinter = "k M7 9 L7 3 L17 3 L17 9 R3.5 9 17 7 M7 14 L7 21 L17 21 L17 14 Z ";
constexpr const char* kAxes = "k M4 3 L4 20 L21 20 ";
constexpr const char* kPressure = "r M5 19 Q7 2 11 6 Q14 14 20 16 ";
constexpr const char* kVelocity = "b M5 19 Q9 10 20 7 ";
constexpr const char* kArrow = "k M15 23 L21 23 M19 21.5 L21.5 23 L19 24 ";
constexpr const char* kClock = "k C18 8 4.5 M18 5.5 L18 8 L20 9 ";

const std::vector<std::pair<std::string, std::string>>& drawings() {
  const auto join = [](std::initializer_list<const char*> parts) {
    std::string all;
    for (const char* part : parts) all += part;
    return all;
  };
  static const std::vector<std::pair<std::string, std::string>> table = {
      {"rech",
       "k R5 2 14 20 b F R8 5 8 4 k F C9 13 1.1 F C12 13 1.1 F C15 13 1.1 F C9 17.5 1.1 F C12 17.5 1.1 r F "
       "C15 "
       "17.5 1.5"},
      {"grf_akt_dat", join({kPrinter, "k M9 17 L15 17 M9 19 L13 19"})},
      {"grf_weg_zeit", join({kPrinter, "r M8.5 20 Q10 15 12 17.5 Q13 19 15.5 19.5"})},
      {"lab_lod", "k M3 19 L3 5 L9 5 L11 7.5 L19 7.5 L19 10 M3 19 L6.5 10 L22 10 L18.5 19 Z"},
      {"lab_new",
       "k M5 2.5 L15 2.5 L19 6.5 L19 21.5 L5 21.5 Z M14.5 2.5 L14.5 7 L19 7 g M12 10 L12 18 M8 14 L16 14"},
      {"lab_save", "k M4 4 L17 4 L20 7 L20 20 L4 20 Z M8 4 L8 9 L15 9 L15 4 b R7 13 10 7"},
      {"addinfo",
       "k M5 2.5 L15 2.5 L19 6.5 L19 21.5 L5 21.5 Z M14.5 2.5 L14.5 7 L19 7 b M8 11 L16 11 M8 14.5 L16 "
       "14.5 M8 18 L13 18"},
      {"refdruck",
       join({kAxes, "r M5 19 Q7 2 11 6 Q14 14 20 16 k F C6.5 12 1.4 F C11 7.5 1.4 F C15 14 1.4"})},
      {"weg_press", join({kAxes, kPressure, kArrow})},
      {"weg_vel", join({kAxes, kVelocity, kArrow})},
      {"weg_press_vel", join({kAxes, kPressure, kVelocity, kArrow})},
      {"Zeit_press", join({kAxes, kPressure, kClock})},
      {"zeit_vel", join({kAxes, "b M5 19 Q13 18 20 14 ", kClock})},
      {"Zeit_press_vel", join({kAxes, kPressure, "b M5 19 Q13 18 20 14 ", kClock})},
      {"ld_tab",
       "k R3 4 18 16 M3 8.5 L21 8.5 M3 12.5 L21 12.5 M3 16.3 L21 16.3 M9 4 L9 20 r F R9.6 13.1 10.8 2.6"},
      {"pp_tab",
       "k R3 4 18 16 M3 8.5 L21 8.5 M9 4 L9 20 M15 4 L15 20 b F C6 12 1.3 g F C6 16.5 1.3 k M10.5 12 L13.5 "
       "12 M10.5 16.5 L13.5 16.5 M16.5 12 L19.5 12 M16.5 16.5 L19.5 16.5"},
      {"nodia",
       "k M8 5 L21 5 M8 10 L21 10 M8 15 L21 15 M8 20 L17 20 b F C4 5 1.3 F C4 10 1.3 F C4 15 1.3 F C4 20 "
       "1.3"},
      {"toggleunits", "b M4 8 L19 8 M15.5 4.5 L19.5 8 L15.5 11.5 r M20 16 L5 16 M8.5 12.5 L4.5 16 L8.5 19.5"},
      {"savecalc", join({kAxes, kPressure, "g M17 3 L17 11 M13 7 L21 7"})},
      {"delcalc", join({kAxes, kPressure, "r M14 3.5 L21 10.5 M21 3.5 L14 10.5"})},
      {"warning", "y F M12 3 L22 21 L2 21 Z k M12 9 L12 15 F C12 18 1"},
      {"program",
       "b F R1 1 22 22 w M4 4 L4 20 L21 20 y M4.5 19.5 Q7 1 11 6 Q14 14 20.5 16 w M4.5 19.5 Q9 10 20 7"},
  };
  return table;
}

QColor stroke_colour(char letter, const QPalette& palette, QPalette::ColorGroup group) {
  const bool dark = palette.color(QPalette::Window).lightness() < 128;
  if (group == QPalette::Disabled && letter != 'w') return palette.color(group, QPalette::WindowText);
  switch (letter) {
    case 'r':
      return dark ? QColor(255, 110, 110) : QColor(190, 20, 20);
    case 'b':
      return dark ? QColor(110, 170, 255) : QColor(20, 80, 190);
    case 'g':
      return dark ? QColor(110, 220, 110) : QColor(20, 130, 40);
    case 'y':
      return QColor(255, 200, 40);
    case 'w':
      return Qt::white;
    default:
      return palette.color(group, QPalette::WindowText);
  }
}

void draw(QPainter& painter, const std::string& strokes, const QPalette& palette,
          QPalette::ColorGroup group) {
  const QStringList words = QString::fromStdString(strokes).split(' ', Qt::SkipEmptyParts);
  QPainterPath path;
  QColor colour = stroke_colour('k', palette, group);
  bool fill = false;
  const auto finish = [&] {
    if (fill)
      painter.fillPath(path, colour);
    else
      painter.strokePath(path, QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    path = {};
    fill = false;
  };
  for (qsizetype i = 0; i < words.size(); ++i) {
    const QString& word = words[i];
    const char letter = word[0].toLatin1();
    const auto number = [&](qsizetype k) { return words.value(i + k).toDouble(); };
    const double first = word.mid(1).toDouble();
    switch (letter) {
      case 'F':
        finish(), fill = true;
        break;
      case 'M':
        path.moveTo(first, number(1)), i += 1;
        break;
      case 'L':
        path.lineTo(first, number(1)), i += 1;
        break;
      case 'Q':
        path.quadTo(first, number(1), number(2), number(3)), i += 3;
        break;
      case 'C':
        path.addEllipse(QPointF(first, number(1)), number(2), number(2)), i += 2;
        break;
      case 'R':
        path.addRect(first, number(1), number(2), number(3)), i += 3;
        break;
      case 'Z':
        path.closeSubpath();
        break;
      default:
        finish(), colour = stroke_colour(letter, palette, group);
    }
  }
  finish();
}

class VectorIcon : public QIconEngine {
public:
  explicit VectorIcon(std::string strokes) : strokes_(std::move(strokes)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const double side = std::min(rect.width(), rect.height());
    painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
    painter->scale(side / 25, side / 25);
    draw(*painter, strokes_, QApplication::palette(),
         mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  QIconEngine* clone() const override { return new VectorIcon(strokes_); }

private:
  std::string strokes_;
};

}  // namespace

QIcon command_icon(std::string_view command) {
  const auto at =
      std::ranges::find_if(drawings(), [&](const auto& drawing) { return drawing.first == command; });
  return at == drawings().end() ? QIcon() : QIcon(new VectorIcon(at->second));
}

QIcon warning_icon() { return command_icon("warning"); }
QIcon program_icon() { return command_icon("program"); }

}  // namespace tv
