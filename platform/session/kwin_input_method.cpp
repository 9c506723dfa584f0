#include "platform/session/kwin_input_method.h"

#include <gio/gio.h>

#include <algorithm>
#include <fstream>
#include <string_view>
#include <utility>
#include <vector>

namespace kivra {

namespace {

constexpr const char* group = "Wayland";
constexpr const char* heading = "[Wayland]";
constexpr const char* method = "InputMethod";
// KDE's own settings write the path with the mark for variables in it.
constexpr const char* expandedMethod = "InputMethod[$e]";
constexpr const char* replacedMethod = "InputMethodBeforeKivra";

/// A file of KDE's settings, of which all that is not changed stays as it is.
class Settings {
 public:
  explicit Settings(std::filesystem::path file) : file_(std::move(file)) {
    std::ifstream input(file_);
    for (std::string line; std::getline(input, line);) lines_.push_back(line);
  }

  std::string value(const std::string& key) const {
    const auto found = find(key);
    return found == end() ? "" : found->substr(key.size() + 1);
  }

  void set(const std::string& key, const std::string& value) {
    if (const auto found = find(key); found != end()) lines_.erase(found);
    if (value.empty()) return;
    auto header = std::ranges::find(lines_, heading);
    if (header == lines_.end()) header = lines_.insert(lines_.end(), heading);
    lines_.insert(header + 1, key + "=" + value);
  }

  bool save() const {
    std::error_code error;
    // It may lie elsewhere, with a link to it here.
    const auto place = std::filesystem::weakly_canonical(file_, error);
    std::filesystem::create_directories(place.parent_path(), error);
    auto unfinished = place;
    unfinished += ".kivra";
    std::ofstream output(unfinished);
    for (const auto& line : lines_) output << line << '\n';
    output.close();
    if (!output) return false;
    if (std::filesystem::exists(place)) {
      std::filesystem::permissions(unfinished, std::filesystem::status(place).permissions(), error);
    }
    std::filesystem::rename(unfinished, place, error);
    return !error;
  }

 private:
  using Lines = std::vector<std::string>;

  Lines::const_iterator end() const { return lines_.end(); }
  Lines::const_iterator find(const std::string& key) const {
    const auto header = std::ranges::find(lines_, heading);
    if (header == end()) return end();
    const auto next =
        std::find_if(header + 1, end(), [](const auto& line) { return line.starts_with('['); });
    const auto found = std::find_if(header + 1, next,
                                    [&](const auto& line) { return line.starts_with(key + "="); });
    return found == next ? end() : found;
  }

  std::filesystem::path file_;
  Lines lines_;
};

std::string methodIn(const Settings& settings) {
  const auto expanded = settings.value(expandedMethod);
  return expanded.empty() ? settings.value(method) : expanded;
}

/// As KDE's programs tell each other of a change in a file of settings.
void tellKwin() {
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return;
  auto* const key =
      g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, method, std::string_view(method).size(), 1);
  auto* const keys = g_variant_new_array(G_VARIANT_TYPE_BYTESTRING, &key, 1);
  auto* const groups = g_variant_new_dict_entry(g_variant_new_string(group), keys);
  auto* const changes = g_variant_new_array(nullptr, &groups, 1);
  g_dbus_connection_emit_signal(bus, nullptr, "/kwinrc", "org.kde.kconfig.notify", "ConfigChanged",
                                g_variant_new_tuple(&changes, 1), nullptr);
  g_dbus_connection_flush_sync(bus, nullptr, nullptr);
  g_object_unref(bus);
}

}  // namespace

KwinInputMethod::KwinInputMethod()
    : file_(std::filesystem::path(g_get_user_config_dir()) / "kwinrc"),
      ours_(std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "share" /
            "applications" / "app.kivra.Kivra.InputMethod.desktop") {}

std::string KwinInputMethod::current() const { return methodIn(Settings(file_)); }

void KwinInputMethod::takeOver() const {
  const auto before = current();
  if (before != ours_) write(ours_, before);
}

void KwinInputMethod::giveBack() const {
  if (isOurs()) write(Settings(file_).value(replacedMethod), {});
}

void KwinInputMethod::write(const std::string& entry, const std::string& replaced) const {
  Settings settings(file_);
  settings.set(expandedMethod, {});
  settings.set(method, entry);
  settings.set(replacedMethod, replaced);
  if (settings.save()) tellKwin();
}

}  // namespace kivra
