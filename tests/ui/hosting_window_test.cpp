#include "ui/hosting_window.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "platform/embedded/embedded_windows.h"
#include "platform/embedded/virtual_time.h"

namespace kivra {
namespace {

/// Shows a number, which becomes another while the body asks a slow service.
class SlowView : public HostedView {
 public:
  std::function<void()> ask = [] {};

  View body() override {
    View shown;
    shown.text = std::to_string(number_);
    std::exchange(ask, [] {})();
    return shown;
  }

  void setNumber(int number) {
    willChange();
    number_ = number;
  }

 private:
  int number_ = 1;
};

TEST(HostingWindow, ShowsTheNewestBodyWhenOneIsOvertaken) {
  embedded::Effects effects{[](const embedded::Json&) {}};
  embedded::VirtualTime time{effects};
  embedded::EmbeddedWindows windows;
  const auto view = std::make_shared<SlowView>();
  const auto window = HostingWindow::create(windows, time, "slow", "Slow", view);
  const auto shown = [&] { return windows.find("slow")->content.text; };
  EXPECT_EQ(shown(), "1");
  view->ask = [&] {
    view->setNumber(2);
    time.runFor(std::chrono::microseconds(0));
    EXPECT_EQ(shown(), "2");
  };
  window->makeKeyAndOrderFront();
  EXPECT_EQ(shown(), "2");
}

}  // namespace
}  // namespace kivra
