// The live drawing of the seated cartridge on the dimensions' form.
#include "gui/captions.h"
#include "gui/draw_surface.h"
#include "gui/painter.h"
#include "gui/windows.h"
#include "screens/dimension_drawing.h"
#include "screens/entry.h"

namespace tv {

std::function<void()> make_cartridge_view(Desk& desk, QWidget* root) {
  auto* surface = dynamic_cast<DrawSurface*>(root->findChild<QWidget*>("drawing"));
  surface->setProperty(kOwn, true);
  Session& s = desk.session();
  surface->draw = [&s](double width, double height, bool dark) {
    return dimension_drawing(s, width, height, qt_text_width, dark);
  };
  surface->clicked = [&desk, &s] { desk.act([&s] { press(s, "Form3", "shpic"); }); };
  return [surface, &s] {
    surface->setCursor(field(s, "Form3", "shpic").visible ? Qt::PointingHandCursor : Qt::ArrowCursor);
    surface->setProperty(kReason, qt(seating_warning(s)));
    surface->setToolTip(tip_text(s, surface));
    surface->setAccessibleDescription(surface->toolTip());
    surface->update();
  };
}

}  // namespace tv
