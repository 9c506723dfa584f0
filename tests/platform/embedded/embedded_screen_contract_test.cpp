// Windows and status bar, with the user of kivra-desk before them.

#include "platform/embedded/embedded_desktop.h"
#include "platform/status_bar_contract.h"
#include "platform/windows_contract.h"
#include "user.h"

namespace kivra {
namespace {

class EmbeddedScreen {
 public:
  Windows& windows() { return desktop_.windows; }
  StatusBar& bar() { return desktop_.statusBar; }

  bool isShown(const std::string& name) const {
    const auto window = desktop_.windows.find(name);
    return window && window->isShown;
  }
  bool shows(const std::string& name, const std::string& text) const {
    return desktop_.windows.toJson(name).dump().find("\"text\":\"" + text + '"') !=
           std::string::npos;
  }
  void close(const std::string& name) { user_.close(name); }
  void press(const std::string& name, const std::string& text) {
    unlessDisabled([&] { user_.press(name, text); });
  }
  void type(const std::string& name, const std::string& placeholder, const std::string& text) {
    for (std::size_t i = 1; i <= text.size(); ++i) {
      user_.edit(name, placeholder, text.substr(0, i));
    }
  }
  std::vector<MenuItem> openMenu() const { return desktop_.statusBar.openMenu(); }
  void choose(const std::string& title) {
    unlessDisabled([&] { user_.choose(title); });
  }

 private:
  static void unlessDisabled(const std::function<void()>& action) {
    try {
      action();
    } catch (const desk::ScriptError& error) {
      if (std::string(error.what()).find("is disabled") == std::string::npos) throw;
    }
  }

  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
  desk::User user_{desktop_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, WindowsContract, EmbeddedScreen);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, StatusBarContract, EmbeddedScreen);

}  // namespace
}  // namespace kivra
