#include "platform/wayland/client/compiled_map.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

namespace kivra::wayland {

CompiledMap compiledMap(const std::string& text) {
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref);
  return {xkb_keymap_new_from_string(context.get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                     XKB_KEYMAP_COMPILE_NO_FLAGS),
          xkb_keymap_unref};
}

std::string takeMapText(int fd, std::size_t size) {
  std::string text;
  void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
  if (memory != MAP_FAILED) {
    const auto* const begin = static_cast<const char*>(memory);
    text.assign(begin, ::strnlen(begin, size));
    ::munmap(memory, size);
  }
  ::close(fd);
  return text;
}

}  // namespace kivra::wayland
