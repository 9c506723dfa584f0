#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kivra {

/// What a node of a tree of controls is. The order is that of `viewKindNames`.
enum class ViewKind : std::uint8_t {
  empty,
  vStack,
  hStack,
  form,     ///< sections one below the other, scrolled where they do not fit
  section,  ///< rows under a header
  tabs,
  tab,
  text,
  label,  ///< a symbol and a text
  symbol,
  labeledRow,  ///< a text on the leading side, its children or its value on the trailing one
  toggle,
  picker,
  textField,
  secureField,
  button,
  progress,
  spacer,  ///< takes the room that a stack has left
};

/// The name of a kind: "VStack", "Toggle".
inline constexpr const char* viewKindNames[] = {
    "Empty",  "VStack",    "HStack",      "Form",   "Section",    "Tabs",
    "Tab",    "Text",      "Label",       "Symbol", "LabeledRow", "Toggle",
    "Picker", "TextField", "SecureField", "Button", "Progress",   "Spacer"};

/// Fonts, colours and looks by name; the order is that of `viewStyleNames`.
enum class ViewStyle : std::uint8_t {
  title2,
  title3,
  headline,
  callout,
  large,  ///< of a symbol: 36 points
  bold,
  secondary,
  accent,
  green,
  orange,
  grouped,     ///< of a form: each section on a ground of its own
  card,        ///< on a rounded ground
  borderless,  ///< of a button
};

inline constexpr const char* viewStyleNames[] = {
    "title2", "title3", "headline", "callout", "large", "bold",      "secondary",
    "accent", "green",  "orange",   "grouped", "card",  "borderless"};

/// Where the children of a stack stand across its direction.
enum class ViewAlignment : std::uint8_t { center, leading, top };

/// What a control shows: nothing, on or off, a text, or the number of the chosen option (or tab).
using ViewValue = std::variant<std::monostate, bool, std::string, std::size_t>;

struct View;

/// Rows that are made when they are looked at: a list may be long.
class ViewRows {
 public:
  virtual ~ViewRows() = default;

  virtual std::size_t count() const = 0;
  /// Tells one row from another for as long as both exist.
  virtual std::string id(std::size_t index) const = 0;
  virtual View row(std::size_t index) const = 0;

  /// What a desktop finds the row by when its first letters are typed.
  virtual std::string searchText(std::size_t /*index*/) const { return {}; }
  /// The user removes the row by a key, where a desktop has one for it.
  virtual void remove(std::size_t /*index*/) const {}
};

/// A node of the tree of controls that fills a window: plain values, drawn by the backend, and the
/// functions that the backend calls when the user acts. Closures may outlive their tree by a turn
/// of the run loop.
struct View {
  ViewKind kind = ViewKind::empty;
  std::string text;               ///< what it says; of a section its header
  std::string symbol;             ///< the name of its symbol
  std::string placeholder;        ///< of an empty field
  std::string accessibilityName;  ///< what a screen reader says where `text` says nothing
  std::string help;               ///< of a button: more about it, where a desktop shows such hints
  std::vector<ViewStyle> style;

  ViewValue value;
  std::vector<std::string> options;  ///< of a picker
  bool isEnabled = true;

  int spacing = 0;  ///< points between the children of a stack
  int padding = 0;  ///< points around it on all sides
  int width = 0;    ///< points; 0: what it needs
  int height = 0;
  ViewAlignment alignment = ViewAlignment::center;

  std::vector<View> children;
  std::shared_ptr<const ViewRows> rows;  ///< of a section: more rows below its children

  std::function<void()> action;                  ///< of a button
  std::function<void()> undo;                    ///< of a form: takes back what was last removed
  std::function<void(const ViewValue&)> assign;  ///< of a control: the user gave it this value
};

constexpr const char* name(ViewKind kind) { return viewKindNames[static_cast<std::size_t>(kind)]; }
constexpr const char* name(ViewStyle style) {
  return viewStyleNames[static_cast<std::size_t>(style)];
}

}  // namespace kivra
