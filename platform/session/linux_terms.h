#pragma once

#include "platform/terms.h"

namespace kivra {

/// The words of Linux desktops, and the keys as PC keyboards have them printed on.
class LinuxTerms : public Terms {
 public:
  std::string term(Term term) const override;
  std::optional<std::string> keyName(std::uint16_t keyCode) const override;
};

}  // namespace kivra
