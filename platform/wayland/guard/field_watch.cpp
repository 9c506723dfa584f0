#include "platform/wayland/guard/field_watch.h"

namespace kivra::wayland {

namespace {

constexpr std::uint32_t password = 8;
constexpr std::uint32_t pin = 9;  // a date in version 1
constexpr std::uint32_t hiddenText = 0x40;
constexpr std::uint32_t sensitiveData = 0x80;

}  // namespace

void FieldWatch::enter(const Content& content) {
  if (!std::exchange(isInField_, true)) hasMoved_ = true;
  content_ = content;
}

void FieldWatch::leave() {
  if (std::exchange(isInField_, false)) hasMoved_ = true;
}

bool FieldWatch::isSecret() const {
  if (!isInField_) return false;
  return content_.purpose == password || content_.purpose == pin ||
         (content_.hints & (hiddenText | sensitiveData)) != 0;
}

}  // namespace kivra::wayland
