#pragma once

#include <cstdint>
#include <utility>

namespace kivra::wayland {

/// The text field that has the focus, as far as applications tell the input method of one.
class FieldWatch {
 public:
  /// What an application says of a field: numbers of the text-input protocols, which are the same
  /// in all their versions where they are used here.
  struct Content {
    std::uint32_t hints = 0;
    std::uint32_t purpose = 0;
  };

  /// The input method serves a field with this content from now on, or none.
  void enter(const Content& content);
  void leave();

  bool isInField() const { return isInField_; }
  /// It is for a password, or for what is to be kept from others.
  bool isSecret() const;
  /// Whether the focus has gone from or to a field since this was asked.
  bool takeMove() { return std::exchange(hasMoved_, false); }

 private:
  Content content_;
  bool isInField_ = false;
  bool hasMoved_ = false;
};

}  // namespace kivra::wayland
