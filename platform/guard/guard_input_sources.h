#pragma once

#include "platform/guard/display_layouts.h"
#include "platform/guard/posted_keys.h"
#include "platform/input_sources.h"
#include "platform/log.h"

namespace kivra::guard {

/// The groups of the session's keyboard map as input sources. One is selected by the guard, in
/// order with the keys that are posted.
class GuardInputSources : public InputSources {
 public:
  GuardInputSources(DisplayLayouts& display, PostedKeys& posted, Log& log)
      : display_(display), posted_(posted), log_(log) {}

  /// The keyboard map has changed.
  void invalidate() { isRead_ = false; }

  /// The group that the event being handled met; nothing when it has been handled.
  void meetGroup(std::optional<std::uint32_t> group);

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

  DisplayLayouts& display_;
  PostedKeys& posted_;
  Log& log_;
  bool isRead_ = false;
  std::vector<std::shared_ptr<const InputSource>> sources_;
  std::optional<std::uint32_t> groupOfEvent_;  // changed by what is selected meanwhile
  std::optional<std::uint32_t> lastGroup_;     // for displays that tell none
};

}  // namespace kivra::guard
