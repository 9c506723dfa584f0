#pragma once

#include "platform/terms.h"

namespace kivra::embedded {

/// The words that the program's texts were written with.
class EmbeddedTerms : public Terms {
 public:
  std::string term(Term term) const override;
  std::optional<std::string> keyName(std::uint16_t /*keyCode*/) const override {
    return std::nullopt;
  }
};

}  // namespace kivra::embedded
