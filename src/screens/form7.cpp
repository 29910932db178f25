// Form7: diagrams, point list and tables in one place.
#include "screens/all.h"
#include "screens/output_window.h"
#include "session/entry.h"
#include "session/run.h"
#include "session/tables.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form7";

// Where the pointer is, and what it has begun.
struct State {
  struct Press {
    Point at;
    DiagramFrame frame;
    DiagramView view;
    bool dragged = false;
  };
  std::optional<Press> press;
  std::optional<Point> pointer;
  ReadOut told;
  unsigned rows_of = 0;  // revision of the rows on show
};

constexpr Row kPlace[] = {
    {RowShape::block, nullptr, {surface("Pict1")}},
    {RowShape::block, nullptr, {Place{"Text1", ControlKind::view}}},
    {RowShape::block, nullptr, {Place{"tab_rows", ControlKind::list, nullptr, ListOf::leads}}}};
constexpr Row kReadOut[] = {{RowShape::bare, nullptr, {display("x1"), display("y1"), display("y2")}}};
constexpr Group kForm[] = {{nullptr, 0, kPlace}, {nullptr, 0, kReadOut}};

Diagram diagram(const Session& s, const Extent& e) {
  return output_diagram(s, e.width, e.height, e.text_width, e.dark);
}

// Out of date, nothing can be read: the figures would be those of other inputs.
bool reads(const Session& s) {
  const State& state = own<State>(s, kName);
  return state.pointer && diagram_shown(s) && !output_stale(s) && !(state.press && state.press->dragged);
}

// What a click beside an axis would fit, as texts by the mode of the fit: "Click: charge for a peak of 350 MPa".
std::string click_hint(const Session& s, const DiagramFrame& frame, Point at) {
  const auto click = output_click(s, frame, at);
  if (!click || !(click->value > 0)) return {};
  const DiagramOptions o = diagram_options(s);
  const std::string units[] = {o.pressure_unit, o.velocity_unit, "ms", o.distance_unit, o.distance_unit};
  return s.language.fastmsg("fclick", click->mode) + " " + general(click->value) + " " +
         units[static_cast<std::size_t>(click->mode)];
}

// What stands at the pointer now; figures that have changed since are read anew.
void read(Session& s, const Extent& e) {
  State& state = own<State>(s, kName);
  state.told = {};
  if (!reads(s)) return;
  if (const auto told = read_out(diagram(s, e).frame, diagram_options(s), diagram_run(s), *state.pointer))
    state.told = *told;
}

DrawList draw(const Session& s, const Extent& e) {
  Diagram shown = diagram(s, e);
  if (!reads(s)) return std::move(shown.list);
  const Point at = *own<State>(s, kName).pointer;
  const DrawList over =
      pointer_overlay(output_chart(s, e.dark), shown.frame, at, e.text_width, click_hint(s, shown.frame, at));
  shown.list.items.insert(shown.list.items.end(), over.items.begin(), over.items.end());
  return std::move(shown.list);
}

void press_at(Session& s, Point at, const Extent& e) {
  own<State>(s, kName).press = State::Press{at, diagram(s, e).frame, s.output.view, false};
}

// The picture follows a drag inside the plot; where there is nothing to move this is no click any more all
// the same.
void drag_to(Session& s, Point at) {
  State& state = own<State>(s, kName);
  if (!state.press) return;
  state.press->dragged = true;
  const State::Press& press = *state.press;
  if (!inside_plot(press.frame, press.at) || is_whole(press.view)) return;
  s.output.view = drag_view(press.frame, press.view, press.at, at);
  outputs_changed(s);
}

// A click counts on release: beside an axis it fits the load, on the legend it picks or hides a curve.
void release_at(Session& s, Point at, const Extent& e) {
  State& state = own<State>(s, kName);
  const bool clicked = state.press && !state.press->dragged;
  state.press.reset();
  if (!clicked) return;
  const Diagram shown = diagram(s, e);
  if (const LegendHit hit = legend_hit(shown, at); hit.curve)
    click_legend(s, hit);
  else
    click_output(s, shown.frame, at);
  outputs_changed(s);
}

void double_click_at(Session& s, Point at, const Extent& e) {
  if (inside_plot(diagram(s, e).frame, at))
    output_switch(s);
  else
    press_at(s, at, e);  // two quick clicks
}

void pointer(Session& s, const Pointer& p, const Extent& e) {
  State& state = own<State>(s, kName);
  state.pointer = p.at;
  switch (p.what) {
    case Pointer::What::press:
      press_at(s, p.at, e);
      break;
    case Pointer::What::drag:
      drag_to(s, p.at);
      break;
    case Pointer::What::release:
      release_at(s, p.at, e);
      break;
    case Pointer::What::double_click:
      double_click_at(s, p.at, e);
      break;
    case Pointer::What::wheel:
      if (!state.press) zoom_output(s, diagram(s, e).frame, p.at, p.turns);
      outputs_changed(s);
      break;
    case Pointer::What::away:
      state.pointer.reset();
      state.press.reset();
      break;
    case Pointer::What::move:
      break;
  }
  read(s, e);
}

bool clickable(const Session& s, Point at, const Extent& e) {
  return output_click(s, diagram(s, e).frame, at).has_value();
}

constexpr Surface kSurfaces[] = {
    {.control = "Pict1", .draw = draw, .pointer = pointer, .clickable = clickable}};

// A row becomes the load, by double click or Enter.
void take_row(Session& s, int i) { take_table_row(s, i); }

constexpr ControlAction kActions[] = {{"tab_rows", take_row}};

// The rows of a table as they are copied.
void show_rows(Session& s) {
  State& state = own<State>(s, kName);
  if (state.rows_of == s.output.revision) return;
  state.rows_of = s.output.revision;
  Field& list = field(s, kName, "tab_rows");
  list.items.clear();
  list.selected = -1;
  const std::string text = output_table(s) ? output_table_rows(s) : std::string();
  for (std::size_t from = 0, to = 0; (to = text.find('\n', from)) != std::string::npos; from = to + 1)
    list.items.push_back({text.substr(from, to - from)});
  if (!list.items.empty()) list.items.erase(list.items.begin());  // the heads
}

void refresh(Session& s) {
  show_rows(s);
  const ReadOut& told = own<State>(s, kName).told;
  set_text(s, kName, "x1", told.x);
  set_text(s, kName, "y1", told.y1);
  set_text(s, kName, "y2", told.y2);
}

}  // namespace

extern const ScreenSpec kForm7{.name = kName,
                               .section = "form7",
                               .shape = ScreenShape::child,
                               .role = Role::output,
                               .form = kForm,
                               .actions = kActions,
                               .surfaces = kSurfaces,
                               .refresh = refresh,
                               .key = output_key};

}  // namespace tv
