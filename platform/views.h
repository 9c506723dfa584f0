#pragma once

#include <string>
#include <vector>

namespace kivra {

/// A node of the tree of controls that fills a window: plain values, drawn by the backend.
struct View {
  std::string kind;   ///< "VStack", "Text", "Progress", "Empty"
  std::string text;   ///< what it says, where it says something
  std::string style;  ///< of a text: fonts and colours by name, separated by spaces
  int spacing = 0;    ///< points between the children of a stack
  int padding = 0;    ///< points around it on all sides
  std::vector<View> children;

  bool operator==(const View&) const = default;
};

}  // namespace kivra
