#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct xkb_compose_table;
struct xkb_context;

namespace kivra {

/// How dead keys combine with the next key: the compose table of the en_US.UTF-8 locale, read at
/// first use. Without such a table no key is a dead key.
class XkbCompose {
 public:
  XkbCompose() = default;
  ~XkbCompose();
  XkbCompose(const XkbCompose&) = delete;
  XkbCompose& operator=(const XkbCompose&) = delete;

  /// Whether the symbol waits for a next key.
  bool isDead(std::uint32_t symbol);

  /// What the two give together; nothing when they do not combine.
  std::optional<std::string> combined(std::uint32_t dead, std::uint32_t next);

 private:
  xkb_compose_table* table();

  xkb_context* context_ = nullptr;
  xkb_compose_table* table_ = nullptr;
  bool isLoaded_ = false;
};

}  // namespace kivra
