#include <filesystem>
#include <string>

#include "app/kivra_app.h"
#include "linux_desktop.h"
#include "platform/qt/qt_application.h"

namespace {

/// The guard lies beside the program, or where packages put programs that nobody calls by hand.
std::string guardProgram() {
  constexpr const char* name = "kivra-keyboard-guard";
  const auto directory = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto beside = directory / name;
  const auto installed = directory.parent_path() / "libexec" / "kivra" / name;
  return std::filesystem::exists(beside) ? beside : installed;
}

}  // namespace

int main(int count, char** values) {
  kivra::qt::QtApplication application(count, values);
  kivra::LinuxDesktop desktop(guardProgram());
  kivra::KivraApp kivra(desktop.platform());
  kivra.delegate->applicationDidFinishLaunching();
  return application.run();
}
