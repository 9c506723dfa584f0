#include "report.h"

#include <array>
#include <variant>

#include "app/core_controller.h"

namespace kivra::desk {

namespace {

using embedded::Json;

const char* kindName(UndoStack::ActionKind kind) {
  constexpr std::array names = {"layoutSwitch", "doubleCapital", "replacement", "translate",
                                "correct"};
  return names[static_cast<std::size_t>(kind)];
}

Json shown(const DefaultsValue& value) {
  if (const auto* data = std::get_if<Data>(&value)) return data->bytes;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return std::get<std::vector<std::string>>(value);
}

Json undoKind(const UndoStack& undoStack) {
  return undoStack.last() ? Json(kindName(undoStack.last()->kind)) : Json(nullptr);
}

Json undoToken(const UndoStack& undoStack) {
  const auto& last = undoStack.last();
  return last && last->learnedToken ? Json(*last->learnedToken) : Json(nullptr);
}

Json replacements(const ReplacementStore& store) {
  auto pairs = Json::array();
  for (const auto& entry : store.entries()) {
    pairs.push_back(Json::array({entry.pattern, entry.replacement}));
  }
  return pairs;
}

Json persistent(DefaultsDatabase& defaults) {
  auto values = Json::object();
  for (const auto& [key, value] : defaults.dictionaryRepresentation()) values[key] = shown(value);
  return values;
}

}  // namespace

Json report(Session& session) {
  auto& app = session.app();
  auto& desktop = session.desktop();
  const auto& field = desktop.application.front().field;
  const auto [begin, end] = field.selection();
  const auto source = desktop.inputSources.copyCurrentKeyboardInputSource();
  Json state;
  state["text"] = field.text();
  state["selection"] = Json::array({begin, end});
  state["source"] = source ? Json(source->id) : Json(nullptr);
  state["undo"] = undoKind(app.services.undoStack);
  state["token"] = undoToken(app.services.undoStack);
  state["exceptions"] = app.services.exceptions().tokens();
  state["replacements"] = replacements(app.services.replacements());
  state["pasteboard"] = desktop.pasteboard.toJson();
  state["running"] = app.services.coreController().isIntercepting();
  state["clock"] = desktop.time.now().count();
  state["persistent"] = persistent(desktop.defaults);
  return Json{{"report", std::move(state)}};
}

}  // namespace kivra::desk
