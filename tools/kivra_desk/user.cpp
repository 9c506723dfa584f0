#include "user.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace kivra::desk {

namespace {

using Wanted = std::function<bool(const View&)>;

/// The first node on the screen that is wanted: of tabs only the chosen one is there.
std::optional<View> find(const View& view, const Wanted& isWanted) {
  if (isWanted(view)) return view;
  for (std::size_t i = 0; i < view.children.size(); ++i) {
    const auto& child = view.children[i];
    const auto isHiddenTab = view.kind == ViewKind::tabs && view.value != ViewValue(i);
    if (isHiddenTab && !isWanted(child)) continue;
    if (auto found = find(child, isWanted)) return found;
  }
  for (std::size_t i = 0; view.rows && i < view.rows->count(); ++i) {
    if (auto found = find(view.rows->row(i), isWanted)) return found;
  }
  return std::nullopt;
}

View enabledControl(const View& content, const std::string& text, const Wanted& isWanted) {
  auto found = find(content, isWanted);
  if (!found) throw ScriptError("no such control: " + text);
  if (!found->isEnabled) throw ScriptError("the control is disabled: " + text);
  return std::move(*found);
}

/// The number of the tab with this text among its siblings.
std::size_t tabIndex(const View& tabs, const std::string& text) {
  const auto found = std::ranges::find(tabs.children, text, &View::text);
  return static_cast<std::size_t>(found - tabs.children.begin());
}

bool hasTab(const View& view, const std::string& text) {
  return view.kind == ViewKind::tabs && tabIndex(view, text) < view.children.size();
}

}  // namespace

void User::choose(const std::string& item) {
  const auto items = desktop_.statusBar.openMenu();
  const auto found = std::ranges::find_if(items, [&](const MenuItem& candidate) {
    return !candidate.isSeparator && candidate.title == item;
  });
  if (found == items.end()) throw ScriptError("no such menu item: " + item);
  if (!found->isEnabled) throw ScriptError("the menu item is disabled: " + item);
  found->action();
}

embedded::Json User::look(const std::string& window) const {
  constexpr std::string_view names[] = {"permissions", "settings", "translation"};
  if (std::ranges::find(names, window) == std::end(names)) {
    throw ScriptError("unknown window: " + window);
  }
  return {{"window", desktop_.windows.toJson(window)}};
}

void User::press(const std::string& window, const std::string& text) {
  const auto control = enabledControl(content(window), text, [&](const View& view) {
    if (view.kind == ViewKind::button) return view.text == text || view.accessibilityName == text;
    return hasTab(view, text) || (view.kind == ViewKind::toggle && view.text == text);
  });
  if (control.kind == ViewKind::tabs) {
    control.assign(tabIndex(control, text));
  } else if (control.kind == ViewKind::toggle) {
    control.assign(!std::get<bool>(control.value));
  } else {
    control.action();
  }
}

void User::edit(const std::string& window, const std::string& placeholder,
                const std::string& text) {
  enabledControl(content(window), placeholder, [&](const View& view) {
    return (view.kind == ViewKind::textField || view.kind == ViewKind::secureField) &&
           view.placeholder == placeholder;
  }).assign(text);
}

void User::pick(const std::string& window, const std::string& picker, const std::string& option) {
  const auto control = enabledControl(content(window), picker, [&](const View& view) {
    return view.kind == ViewKind::picker && view.text == picker;
  });
  const auto found = std::ranges::find(control.options, option);
  if (found == control.options.end()) throw ScriptError("no such option: " + option);
  control.assign(static_cast<std::size_t>(found - control.options.begin()));
}

void User::close(const std::string& window) {
  content(window);
  desktop_.windows.close(window);
}

const View& User::content(const std::string& window) const {
  const auto state = desktop_.windows.find(window);
  if (!state || !state->isShown) throw ScriptError("the window is not open: " + window);
  return state->content;
}

}  // namespace kivra::desk
