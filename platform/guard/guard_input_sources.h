#pragma once

#include "platform/guard/display_layouts.h"
#include "platform/guard/posted_keys.h"
#include "platform/log.h"
#include "platform/xkb/xkb_input_sources.h"

namespace kivra::guard {

/// The groups of the session's keyboard map as input sources. One is selected by the guard, in
/// order with the keys that are posted.
class GuardInputSources : public XkbInputSources {
 public:
  GuardInputSources(DisplayLayouts& display, PostedKeys& posted, Log& log)
      : display_(display), posted_(posted), log_(log) {}

  /// The keyboard map has changed.
  void invalidate() { isRead_ = false; }

  /// The group that the event being handled met; nothing when it has been handled.
  void meetGroup(std::optional<std::uint32_t> group);

  std::optional<std::vector<Source>> createInputSourceList() override;
  Source copyCurrentKeyboardInputSource() override;
  void selectInputSource(const InputSource& source) override;

 private:
  void read();
  void reportMissingLanguages();

  DisplayLayouts& display_;
  PostedKeys& posted_;
  Log& log_;
  bool isRead_ = false;
  std::vector<Source> sources_;
  std::optional<std::uint32_t> groupOfEvent_;  // changed by what is selected meanwhile
  std::optional<std::uint32_t> lastGroup_;     // for displays that tell none
};

}  // namespace kivra::guard
