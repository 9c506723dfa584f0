#pragma once

#include "platform/locale.h"

namespace kivra {

/// The languages of the session's environment: LANGUAGE, then the first of LC_ALL, LC_MESSAGES and
/// LANG that is set.
class EnvironmentLocale : public Locale {
 public:
  std::vector<std::string> preferredLanguages() override;
};

}  // namespace kivra
