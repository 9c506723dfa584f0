#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/embedded/embedded_desktop.h"

namespace kivra::desk {

/// Types text on the embedded desktop as a person would who never looks at the layout indicator:
/// each character with the key that gives it in the English layout, else in the Russian one.
class Typist {
 public:
  /// Called after each typed key with its code and whether it reached the application.
  using AfterKey = std::function<void(std::uint16_t keyCode, bool passed)>;

  Typist(embedded::EmbeddedDesktop& desktop, AfterKey afterKey);

  /// Reads the enabled layouts again.
  void learnKeys();

  void type(std::string_view text);

 private:
  struct Key {
    std::uint16_t code = 0;
    bool shift = false;
  };

  void learnLayout(const std::string& language, const std::string& fallbackLayout);
  std::shared_ptr<const KeyboardLayoutData> enabledLayout(const std::string& language) const;
  void typeCharacter(const std::string& character);
  void press(const Key& key);
  void holdShift(bool hold);
  void insertWithoutKey(const std::string& character);

  embedded::EmbeddedDesktop& desktop_;
  AfterKey afterKey_;
  std::unordered_map<std::string, Key> keys_;
  bool isShiftHeld_ = false;
};

}  // namespace kivra::desk
