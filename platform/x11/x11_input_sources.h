#pragma once

#include "platform/guard/input_group.h"
#include "platform/guard/posted_keys.h"
#include "platform/input_sources.h"
#include "platform/log.h"
#include "platform/x11/x11_connection.h"

namespace kivra::x11 {

/// The XKB groups of the session as input sources.
class X11InputSources : public InputSources {
 public:
  X11InputSources(X11Connection& connection, guard::PostedKeys& posted, guard::InputGroup& group,
                  Log& log)
      : connection_(connection), posted_(posted), group_(group), log_(log) {}

  /// The keyboard map has changed.
  void invalidate() { isRead_ = false; }

  std::optional<std::vector<std::shared_ptr<const InputSource>>> createInputSourceList() override;
  std::shared_ptr<const InputSource> copyCurrentKeyboardInputSource() override;
  void selectInputSource(const InputSource& source) override;
  std::uint32_t keyboardType() override { return 0; }
  std::optional<std::string> keyTranslate(const KeyboardLayoutData& layout, std::uint16_t keyCode,
                                          std::uint32_t modifierState,
                                          std::uint32_t keyboardType) override;

 private:
  void read();
  void reportMissingLanguages();

  X11Connection& connection_;
  guard::PostedKeys& posted_;
  guard::InputGroup& group_;
  Log& log_;
  bool isRead_ = false;
  std::vector<std::shared_ptr<const InputSource>> sources_;
};

}  // namespace kivra::x11
