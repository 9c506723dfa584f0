#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/views.h"

namespace kivra {

/// A value shown by a control, and what is done with the value that the user gives it.
template <class T>
struct Binding {
  T value;
  std::function<void(const T&)> assign;
};

/// Nodes of a tree of controls.
namespace views {

using Styles = std::vector<ViewStyle>;
using Children = std::vector<View>;

View vStack(int spacing, Children children);
View hStack(int spacing, Children children);
View text(std::string text, Styles style = {});
/// A text that explains the control above it.
View note(std::string text);
View label(std::string text, std::string symbol, Styles style = {});
View symbol(std::string symbol, Styles style = {});
View labeledRow(std::string title, View trailing);
View labeledRow(std::string title, std::string value);
View progress();
/// Takes the room that a stack has left.
View spacer();

View form(Children sections);
View section(std::string header, Children rows);
View tabs(std::vector<View> tabs, Binding<std::size_t> selection);
View tab(std::string title, std::string symbol, View content);

View toggle(std::string title, Binding<bool> isOn);
View textField(std::string placeholder, Binding<std::string> text);
/// A field that hides what is typed.
View secureField(std::string placeholder, Binding<std::string> text);
View button(std::string title, std::function<void()> action, bool isEnabled = true);

/// Offers the options by their titles; the binding's value is the number of the chosen one, or none
/// when what is stored is not among them.
View picker(std::string title, std::vector<std::string> options,
            Binding<std::optional<std::size_t>> selection);

}  // namespace views

}  // namespace kivra
