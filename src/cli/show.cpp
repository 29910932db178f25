#include "cli/show.h"

#include <fmt/format.h>

#include "screens/output_window.h"

namespace tv {
namespace {

constexpr const char* kInks[] = {"black", "red", "magenta", "grey"};
constexpr const char* kPapers[] = {"white", "red", "magenta", "yellow", "grey", "failed"};
constexpr const char* kDrawKinds[] = {"line", "polyline", "circle", "band", "text"};
constexpr const char* kStyles[] = {"solid", "dash", "dot", "dash_dot"};
constexpr const char* kAligns[] = {"left", "centre", "right"};

template <class Enum, std::size_t N>
const char* name_of(const char* const (&names)[N], Enum value) {
  return names[static_cast<std::size_t>(value)];
}

Json field_json(const Field& f, ControlKind kind) {
  Json json{{"text", f.text},
            {"ink", name_of(kInks, f.ink)},
            {"paper", name_of(kPapers, f.paper)},
            {"enabled", f.enabled},
            {"visible", f.visible}};
  if (f.stale) json["stale"] = true;
  if (!f.reason.empty()) json["reason"] = f.reason;
  if (kind == ControlKind::check || kind == ControlKind::option) json["checked"] = f.checked;
  if (kind == ControlKind::list || kind == ControlKind::combo) {
    json["items"] = Json::array();
    for (const ListItem& item : f.items) json["items"].push_back(item.text);
    json["selected"] = f.selected;
  }
  return json;
}

std::string colour_text(Colour c) { return fmt::format("#{:02x}{:02x}{:02x}{:02x}", c.r, c.g, c.b, c.a); }

Json item_json(const DrawItem& item) {
  Json json{{"kind", name_of(kDrawKinds, item.kind)}, {"points", Json::array()}};
  for (const Point& p : item.points) json["points"].push_back({p.x, p.y});
  json["colour"] = colour_text(item.colour);
  switch (item.kind) {
    case DrawKind::text:
      json["text"] = item.text;
      json["size"] = item.size;
      json["bold"] = item.bold;
      json["align"] = name_of(kAligns, item.align);
      json["angle"] = item.angle;
      break;
    case DrawKind::circle:
      json["radius"] = item.radius;
      json["filled"] = item.filled;
      [[fallthrough]];
    case DrawKind::line:
    case DrawKind::polyline:
      json["width"] = item.width;
      json["style"] = name_of(kStyles, item.style);
      break;
    case DrawKind::band:
      break;
  }
  return json;
}

}  // namespace

Json screen_json(const Session& s, std::string_view name) {
  const Screen& screen = s.screens.find(name)->second;
  Json json{{"screen", name}, {"visible", screen.visible}};
  if (!screen.hint.empty()) json["hint"] = {{"field", screen.hint_field}, {"text", screen.hint}};
  json["fields"] = Json::object();
  for (const Control& control : controls_of(*screen.spec))
    json["fields"][control.name] = field_json(screen.fields.find(control.name)->second, control.kind);
  return json;
}

Json boxes_json(const std::vector<ShownBox>& boxes) {
  Json list = Json::array();
  for (const ShownBox& box : boxes)
    list.push_back({{"kind", box.kind},
                    {"message", box.keys},
                    {"title", box.title},
                    {"text", box.text},
                    {"answer", box.answer}});
  return {{"boxes", std::move(list)}};
}

Json draw_json(const DrawList& list) {
  Json json{{"width", list.width}, {"height", list.height}, {"items", Json::array()}};
  for (const DrawItem& item : list.items) json["items"].push_back(item_json(item));
  return json;
}

std::string bare_text(const Session& s, std::string_view screen, std::string_view control) {
  const ControlKind kind = *control_kind(*s.screens.find(screen)->second.spec, control);
  if (kind == ControlKind::view && screen == screen_name(s, Role::output)) return output_text(s);
  return field(s, screen, control).text;
}

}  // namespace tv
