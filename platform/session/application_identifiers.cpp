#include "platform/session/application_identifiers.h"

#include <algorithm>
#include <array>

namespace kivra {

namespace {

struct Row {
  std::string_view name;  // in lower case; with a final "*" all that begin so
  std::string_view identifier;
};

// For "*" rows what stands for the star is put behind the identifier.
constexpr std::array rows = {
    // terminals
    Row{"alacritty", "com.apple.Terminal"},
    Row{"blackbox", "com.apple.Terminal"},
    Row{"com.gexperts.tilix", "com.apple.Terminal"},
    Row{"com.mitchellh.ghostty", "com.apple.Terminal"},
    Row{"com.raggesilver.blackbox", "com.apple.Terminal"},
    Row{"cool-retro-term", "com.apple.Terminal"},
    Row{"deepin-terminal", "com.apple.Terminal"},
    Row{"foot", "com.apple.Terminal"},
    Row{"gnome-terminal", "com.apple.Terminal"},
    Row{"gnome-terminal-server", "com.apple.Terminal"},
    Row{"guake", "com.apple.Terminal"},
    Row{"kgx", "com.apple.Terminal"},
    Row{"kitty", "com.apple.Terminal"},
    Row{"konsole", "com.apple.Terminal"},
    Row{"lxterminal", "com.apple.Terminal"},
    Row{"mate-terminal", "com.apple.Terminal"},
    Row{"org.gnome.console", "com.apple.Terminal"},
    Row{"org.gnome.ptyxis", "com.apple.Terminal"},
    Row{"org.gnome.terminal", "com.apple.Terminal"},
    Row{"org.kde.konsole", "com.apple.Terminal"},
    Row{"org.kde.yakuake", "com.apple.Terminal"},
    Row{"org.wezfurlong.wezterm", "com.apple.Terminal"},
    Row{"qterminal", "com.apple.Terminal"},
    Row{"rxvt", "com.apple.Terminal"},
    Row{"st-256color", "com.apple.Terminal"},
    Row{"terminator", "com.apple.Terminal"},
    Row{"terminology", "com.apple.Terminal"},
    Row{"tilda", "com.apple.Terminal"},
    Row{"tilix", "com.apple.Terminal"},
    Row{"urxvt", "com.apple.Terminal"},
    Row{"uxterm", "com.apple.Terminal"},
    Row{"xfce4-terminal", "com.apple.Terminal"},
    Row{"xterm", "com.apple.Terminal"},
    Row{"yakuake", "com.apple.Terminal"},
    Row{"dev.warp.warp", "dev.warp.Warp-Stable"},
    // modal editors: letters are commands there, as in the terminal that they come from
    Row{"gnvim", "com.apple.Terminal"},
    Row{"goneovim", "com.apple.Terminal"},
    Row{"gvim", "com.apple.Terminal"},
    Row{"neovide", "com.apple.Terminal"},
    Row{"neovim-gtk", "com.apple.Terminal"},
    Row{"nvim-qt", "com.apple.Terminal"},
    Row{"org.daa.neovimgtk", "com.apple.Terminal"},
    Row{"org.vim.vim", "com.apple.Terminal"},
    // development environments
    Row{"code", "com.microsoft.VSCode"},
    Row{"code-oss", "com.microsoft.VSCode"},
    Row{"com.visualstudio.code", "com.microsoft.VSCode"},
    Row{"vscodium", "com.microsoft.VSCode"},
    Row{"com.vscodium.codium", "com.microsoft.VSCode"},
    Row{"codium", "com.microsoft.VSCode"},
    Row{"com.jetbrains.*", "com.jetbrains."},
    Row{"jetbrains-*", "com.jetbrains."},
    // games
    Row{"com.valvesoftware.steam", "com.valvesoftware.steam"},
    Row{"steam", "com.valvesoftware.steam"},
    Row{"steamwebhelper", "com.valvesoftware.steam"},
    Row{"steam_app_*", "com.valvesoftware.app."},
};

std::string lowered(std::string_view name) {
  std::string result(name);
  std::ranges::transform(result, result.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return result;
}

}  // namespace

std::string bundleIdentifier(std::string_view name) {
  const auto key = lowered(name);
  for (const auto& row : rows) {
    if (!row.name.ends_with('*')) {
      if (key == row.name) return std::string(row.identifier);
      continue;
    }
    const auto prefix = row.name.substr(0, row.name.size() - 1);
    if (key.starts_with(prefix)) return std::string(row.identifier) + key.substr(prefix.size());
  }
  return std::string(name);
}

std::vector<std::string> programNames(std::string_view entry) {
  const auto wanted = lowered(entry);
  std::vector<std::string> names;
  for (const auto& row : rows) {
    const auto identifier = lowered(row.identifier);
    const auto isMeant =
        wanted.ends_with('.') ? identifier.starts_with(wanted) : identifier == wanted;
    if (isMeant) names.emplace_back(row.name);
  }
  return names;
}

}  // namespace kivra
