#include "platform/embedded/view_json.h"

#include <string>

namespace kivra::embedded {

namespace {

bool isControl(ViewKind kind) {
  return kind == ViewKind::toggle || kind == ViewKind::picker || kind == ViewKind::textField ||
         kind == ViewKind::secureField || kind == ViewKind::button;
}

/// The title behind the number that a picker or tabs have for a value.
Json chosenTitle(const View& view, std::size_t index) {
  if (view.kind == ViewKind::tabs) return view.children.at(index).text;
  return view.options.at(index);
}

Json valueJson(const View& view) {
  if (const auto* isOn = std::get_if<bool>(&view.value)) return *isOn;
  if (const auto* text = std::get_if<std::string>(&view.value)) return *text;
  if (const auto* index = std::get_if<std::size_t>(&view.value)) return chosenTitle(view, *index);
  return nullptr;
}

std::string styleNames(const View& view) {
  std::string names;
  for (const auto style : view.style) {
    if (!names.empty()) names += ' ';
    names += name(style);
  }
  return names;
}

void addText(Json& json, const char* member, const std::string& text) {
  if (!text.empty()) json[member] = text;
}

Json childrenJson(const View& view) {
  auto children = Json::array();
  for (const auto& child : view.children) children.push_back(viewJson(child));
  const auto rows = view.rows ? view.rows->count() : 0;
  for (std::size_t i = 0; i < rows; ++i) children.push_back(viewJson(view.rows->row(i)));
  return children;
}

}  // namespace

Json viewJson(const View& view) {
  Json json;
  json["kind"] = name(view.kind);
  addText(json, "text", view.text);
  if (!std::holds_alternative<std::monostate>(view.value) || view.kind == ViewKind::picker) {
    json["value"] = valueJson(view);
  }
  if (view.kind == ViewKind::picker) json["options"] = view.options;
  if (isControl(view.kind)) json["enabled"] = view.isEnabled;
  addText(json, "placeholder", view.placeholder);
  addText(json, "symbol", view.symbol);
  addText(json, "style", styleNames(view));
  if (auto children = childrenJson(view); !children.empty()) json["children"] = std::move(children);
  return json;
}

}  // namespace kivra::embedded
