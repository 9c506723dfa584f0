// Kivra as users have it, but for the port on which it looks for a language model: the test's
// server stands there, whatever else the machine runs on the usual ports.

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "app/kivra_app.h"
#include "linux_desktop.h"
#include "platform/qt/qt_application.h"

int main(int count, char** values) {
  if (count != 2) throw std::runtime_error("usage: kivra-with-test-model PORT");
  const auto port = static_cast<std::uint16_t>(std::stoi(values[1]));
  kivra::qt::QtApplication application(count, values);
  kivra::LinuxDesktop desktop(KIVRA_GUARD, {.ports = {port}});
  kivra::KivraApp kivra(desktop.platform());
  kivra.delegate->applicationDidFinishLaunching();
  return application.run();
}
