// Runs the program on the desktop and prints what its tap gets and what it posts. It takes the
// program's place: two of them cannot run in one session.

#include <filesystem>
#include <iostream>
#include <string_view>

#include "app/kivra_app.h"
#include "asked_questions.h"
#include "linux_desktop.h"
#include "platform/qt/qt_application.h"
#include "platform/replaced_events.h"
#include "traced_events.h"

namespace {

constexpr const char* usage =
    "usage: kivra-events [--words]   runs Kivra and prints live which keys its tap gets and what "
    "it "
    "decides; with --words also what it asks at the end of each word\n";

// At once, also into a file: the last line may be what is wanted after a kill.
void print(const std::string& line) { std::cout << line << std::endl; }

std::string guardProgram() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kivra-keyboard-guard";
}

}  // namespace

int main(int count, char** values) {
  kivra::qt::QtApplication application(count, values);
  const auto tellsWords = count == 2 && std::string_view(values[1]) == "--words";
  if (count > 1 && !tellsWords) {
    std::cerr << usage;
    return 2;
  }
  kivra::LinuxDesktop desktop(guardProgram());
  const auto whole = desktop.platform();
  kivra::events::TracedEventTaps taps(whole, print);
  kivra::events::TracedEventPosting posting(whole.eventPosting, print);
  kivra::KivraApp kivra(kivra::withEvents(whole, taps, posting));
  if (tellsWords) {
    kivra.services.layoutSwitcher().setObserver(
        [](const kivra::Answer& answer) { print(kivra::events::questionLine(answer)); });
  }
  kivra.delegate->applicationDidFinishLaunching();
  return application.run();
}
