#include "platform/session/application_identifiers.h"

#include <gtest/gtest.h>

namespace kivra {
namespace {

TEST(ApplicationIdentifiers, ProgramsOfSeveralSystemsHaveTheirSkipListNames) {
  EXPECT_EQ(bundleIdentifier("XTerm"), "com.apple.Terminal");
  EXPECT_EQ(bundleIdentifier("org.gnome.Terminal"), "com.apple.Terminal");
  EXPECT_EQ(bundleIdentifier("Code"), "com.microsoft.VSCode");
  EXPECT_EQ(bundleIdentifier("jetbrains-idea-ce"), "com.jetbrains.idea-ce");
  EXPECT_EQ(bundleIdentifier("com.jetbrains.CLion"), "com.jetbrains.clion");
  EXPECT_EQ(bundleIdentifier("steam_app_570"), "com.valvesoftware.app.570");
}

TEST(ApplicationIdentifiers, OthersKeepTheirNames) {
  EXPECT_EQ(bundleIdentifier("org.kde.kate"), "org.kde.kate");
  EXPECT_EQ(bundleIdentifier("Codeblocks"), "Codeblocks");
  EXPECT_EQ(bundleIdentifier("xterminator"), "xterminator");
}

}  // namespace
}  // namespace kivra
