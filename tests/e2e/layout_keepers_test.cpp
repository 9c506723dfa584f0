// Programs of the desktop that keep the selected layout themselves.

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "bus_client.h"
#include "kivra_session.h"
#include "stubborn_shell.h"

namespace kivra::e2e {
namespace {

/// A session whose windows have a layout each, as a small program of the distribution keeps it; a
/// new window begins in the first.
struct WindowLayouts : KivraSession {
  WindowLayouts() {
    if (!waitFor([this] { return layout() >= 0; })) throw std::runtime_error("no kbdd");
  }

  /// The number that indicators show, from 0; less than that while nobody answers.
  int layout() const {
    const auto reply = bus.call({"ru.gentoo.KbddService", "/ru/gentoo/KbddService"},
                                "ru.gentoo.kbdd", "getCurrentLayout");
    guint32 number = 0;
    if (!reply) return -1;
    g_variant_get(reply.get(), "(u)", &number);
    return static_cast<int>(number);
  }

  bool isSelected(unsigned int group) {
    return waitFor([&] { return typist.group() == group && layout() == static_cast<int>(group); });
  }

  BusClient bus{session.environment().at("DBUS_SESSION_BUS_ADDRESS")};
  std::unique_ptr<ChildProcess> keeper = session.start({"kbdd", "-n"});
};

TEST(LayoutKeepers, CorrectionSelectsTheLayoutOfItsWindow) {
  WindowLayouts desktop;
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  EXPECT_TRUE(desktop.isSelected(1));
  {
    TestWindow other(desktop.session.display());
    EXPECT_TRUE(desktop.isSelected(0));
  }
  desktop.window.focus();
  EXPECT_TRUE(desktop.isSelected(1));
}

TEST(LayoutKeepers, LayoutThatComesWithAWindowCounts) {
  WindowLayouts desktop;
  desktop.typist.type("ghbdtn ");
  desktop.window.textAfter("привет ");
  {
    TestWindow other(desktop.session.display());
    ASSERT_TRUE(desktop.isSelected(0));
    desktop.typist.type("hello ghbdtn ");
    EXPECT_EQ(other.textAfter("hello привет "), "hello привет ");
    desktop.typist.type("hello ");
    EXPECT_EQ(other.textAfter("hello привет hello "), "hello привет hello ");
    ASSERT_TRUE(desktop.isSelected(0));
  }
  desktop.window.focus();
  ASSERT_TRUE(desktop.isSelected(1));
  desktop.typist.type("vbh hello ");
  EXPECT_EQ(desktop.window.textAfter("привет мир hello "), "привет мир hello ");
}

bool isCorrected(const TestWindow& window) {
  return std::ranges::any_of(
      window.keys(), [](const auto& key) { return key.down && key.code == keys::backspace; });
}

TEST(LayoutKeepers, ShellThatUndoesLocksSelectsThroughItsExtension) {
  KivraSession desktop;
  const StubbornShell shell(desktop.session.display(),
                            desktop.session.environment().at("DBUS_SESSION_BUS_ADDRESS"));
  const auto isSelected = [&](unsigned int group) {
    return waitFor([&] { return shell.selected() == group && desktop.typist.group() == group; });
  };
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  ASSERT_TRUE(isSelected(1));
  desktop.window.clear();
  desktop.typist.type("vbh ");
  EXPECT_EQ(desktop.window.textAfter("мир "), "мир ");
  EXPECT_FALSE(isCorrected(desktop.window));
  desktop.typist.type("hello ");
  EXPECT_EQ(desktop.window.textAfter("мир hello "), "мир hello ");
  EXPECT_TRUE(isSelected(0));
}

}  // namespace
}  // namespace kivra::e2e
