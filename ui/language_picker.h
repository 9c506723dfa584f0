#pragma once

#include <string>

#include "support/view_builders.h"

namespace kivra {

/// Offers the languages into which texts are translated.
struct LanguagePicker {
  std::string title;
  Binding<std::string> selection;  ///< the code of the language

  View body() const;
};

}  // namespace kivra
