#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "app/kivra_app.h"
#include "linux_desktop.h"
#include "platform/qt/qt_application.h"
#include "platform/session/kwin_input_method.h"
#include "platform/session/session_client.h"
#include "program_options.h"
#include "session_choice.h"
#include "session_control.h"

namespace {

constexpr const char* program = "kivra";

constexpr const char* usage = R"(Usage: kivra [--diagnose | --give-back-keyboard]

Mends what is typed in the wrong keyboard layout, double capitals and misspellings, in the session
in which it runs. A second start opens the settings of the first. kivractl switches it off and on
and manages what it has learned; kivra-desk runs it without a display.

  --diagnose   says what the session has of all that Kivra needs, and what mends what it lacks
  --give-back-keyboard
               puts back the input method that KWin had before Kivra; nothing on other desktops

Exit status: 0 it was ended, or runs already; 1 there is no display, or it was lost; 2 wrong usage.
)";

/// The guard lies beside the program, or where packages put programs that nobody calls by hand.
std::string guardProgram() {
  constexpr const char* name = "kivra-keyboard-guard";
  const auto directory = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto beside = directory / name;
  const auto installed = directory.parent_path() / "libexec" / "kivra" / name;
  return std::filesystem::exists(beside) ? beside : installed;
}

int complainOfDisplay() {
  const auto* const display = std::getenv("DISPLAY");
  std::cerr << "Kivra: нет дисплея: "
            << (display == nullptr || *display == '\0'
                    ? "ни DISPLAY, ни WAYLAND_DISPLAY не заданы"
                    : std::string("X-сервер ") + display + " не отвечает")
            << ". Запустите Kivra в графическом сеансе; без него есть kivra-desk.\n";
  return EXIT_FAILURE;
}

/// As the running program sees it or, while none runs, as one would that started now.
int diagnose() {
  try {
    if (const auto reply = kivra::session_client::run({"status"}, "")) {
      std::cout << reply->output;
      return std::cout.flush() ? reply->status : EXIT_FAILURE;
    }
  } catch (const kivra::session_client::NoAnswer& error) {
    std::cerr << "Kivra не отвечает: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
  kivra::LinuxDesktop desktop(guardProgram());
  for (const auto& line : desktop.diagnosis()) std::cout << line << '\n';
  return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** values) {
  if (const auto status = kivra::answerCommonOption({values + 1, values + count}, program, usage)) {
    return *status;
  }
  if (count == 2 && std::string_view(values[1]) == "--give-back-keyboard") {
    kivra::KwinInputMethod().giveBack();
    return EXIT_SUCCESS;
  }
  if (!kivra::hasDisplay()) return complainOfDisplay();
  kivra::qt::QtApplication application(count, values);
  // Qt has taken out what it knows, such as the number that a session manager gives.
  if (count > 1) {
    const std::string word = values[1];
    if (count == 2 && word == "--diagnose") return diagnose();
    return kivra::complainOfUsage(
        program, (word.starts_with('-') ? "unknown option " : "not wanted: ") + word);
  }
  kivra::LinuxDesktop desktop(guardProgram());
  kivra::KivraApp kivra(desktop.platform());
  kivra::SessionControl control(kivra);
  kivra.delegate->applicationDidFinishLaunching();
  control.noticeMissingTray([&desktop] { return desktop.hasTray(); });
  return application.run();
}
