#pragma once

#include <utility>

#include "platform/locale.h"

namespace kivra::embedded {

/// The languages that the user prefers: Russian, until told otherwise.
class EmbeddedLocale : public Locale {
 public:
  void setPreferredLanguages(std::vector<std::string> languages) {
    preferred_ = std::move(languages);
  }

  std::vector<std::string> preferredLanguages() override { return preferred_; }

 private:
  std::vector<std::string> preferred_ = {"ru-RU"};
};

}  // namespace kivra::embedded
