#pragma once

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <string>

namespace kivra::wayland {

using CompiledMap = std::shared_ptr<xkb_keymap>;

/// The key map of a text in the format that compositors send; nothing for one that cannot be read.
CompiledMap compiledMap(const std::string& text);

/// The text that a compositor has sent; closes the descriptor. Empty when it cannot be read.
std::string takeMapText(int fd, std::size_t size);

}  // namespace kivra::wayland
