#include "support/view_builders.h"

#include <utility>

namespace kivra::views {

namespace {

View node(ViewKind kind, std::string text = {}) {
  View view;
  view.kind = kind;
  view.text = std::move(text);
  return view;
}

View stack(ViewKind kind, int spacing, Children children) {
  auto view = node(kind);
  view.spacing = spacing;
  view.children = std::move(children);
  return view;
}

/// Backends give a control values of its own kind only; others are left alone.
template <class T>
std::function<void(const ViewValue&)> assignment(std::function<void(const T&)> assign) {
  return [assign = std::move(assign)](const ViewValue& value) {
    if (const auto* typed = std::get_if<T>(&value)) assign(*typed);
  };
}

View field(ViewKind kind, std::string placeholder, Binding<std::string> text) {
  auto view = node(kind);
  view.placeholder = std::move(placeholder);
  view.value = std::move(text.value);
  view.assign = assignment(std::move(text.assign));
  return view;
}

}  // namespace

View vStack(int spacing, Children children) {
  return stack(ViewKind::vStack, spacing, std::move(children));
}

View hStack(int spacing, Children children) {
  return stack(ViewKind::hStack, spacing, std::move(children));
}

View text(std::string text, Styles style) {
  auto view = node(ViewKind::text, std::move(text));
  view.style = std::move(style);
  return view;
}

View note(std::string text) {
  return views::text(std::move(text), {ViewStyle::callout, ViewStyle::secondary});
}

View label(std::string text, std::string symbol, Styles style) {
  auto view = node(ViewKind::label, std::move(text));
  view.symbol = std::move(symbol);
  view.style = std::move(style);
  return view;
}

View symbol(std::string symbol, Styles style) {
  auto view = node(ViewKind::symbol);
  view.symbol = std::move(symbol);
  view.style = std::move(style);
  return view;
}

View labeledRow(std::string title, View trailing) {
  auto view = node(ViewKind::labeledRow, std::move(title));
  view.children.push_back(std::move(trailing));
  return view;
}

View labeledRow(std::string title, std::string value) {
  auto view = node(ViewKind::labeledRow, std::move(title));
  view.value = std::move(value);
  return view;
}

View progress() { return node(ViewKind::progress); }

View spacer() { return node(ViewKind::spacer); }

View form(Children sections) {
  auto view = node(ViewKind::form);
  view.style = {ViewStyle::grouped};
  view.children = std::move(sections);
  return view;
}

View section(std::string header, Children rows) {
  auto view = node(ViewKind::section, std::move(header));
  view.children = std::move(rows);
  return view;
}

View tabs(std::vector<View> tabs, Binding<std::size_t> selection) {
  auto view = node(ViewKind::tabs);
  view.children = std::move(tabs);
  view.value = selection.value;
  view.assign = assignment(std::move(selection.assign));
  return view;
}

View tab(std::string title, std::string symbol, View content) {
  auto view = node(ViewKind::tab, std::move(title));
  view.symbol = std::move(symbol);
  view.children.push_back(std::move(content));
  return view;
}

View toggle(std::string title, Binding<bool> isOn) {
  auto view = node(ViewKind::toggle, std::move(title));
  view.value = isOn.value;
  view.assign = assignment(std::move(isOn.assign));
  return view;
}

View textField(std::string placeholder, Binding<std::string> text) {
  return field(ViewKind::textField, std::move(placeholder), std::move(text));
}

View secureField(std::string placeholder, Binding<std::string> text) {
  return field(ViewKind::secureField, std::move(placeholder), std::move(text));
}

View button(std::string title, std::function<void()> action, bool isEnabled) {
  auto view = node(ViewKind::button, std::move(title));
  view.action = std::move(action);
  view.isEnabled = isEnabled;
  return view;
}

View picker(std::string title, std::vector<std::string> options,
            Binding<std::optional<std::size_t>> selection) {
  auto view = node(ViewKind::picker, std::move(title));
  view.options = std::move(options);
  if (selection.value) view.value = *selection.value;
  view.assign = [assign = std::move(selection.assign)](const ViewValue& value) {
    if (const auto* index = std::get_if<std::size_t>(&value)) assign(*index);
  };
  return view;
}

}  // namespace kivra::views
