#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>

#include "platform/qt/tray_icon.h"

namespace kivra::qt {
namespace {

constexpr auto symbol = "keyboard.badge.ellipsis";
const QColor pale(0xF0, 0xE0, 0xD0);

QImage drawn(bool isOff, const TrayLook& look, int size = 16) {
  return trayIcon(symbol, isOff, look).pixmap(size).toImage();
}

int difference(const QColor& a, const QColor& b) {
  return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                   std::abs(a.blue() - b.blue()), std::abs(a.alpha() - b.alpha())});
}

int differingPixels(const QImage& a, const QImage& b) {
  constexpr int plainToSee = 60;
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (difference(a.pixelColor(x, y), b.pixelColor(x, y)) > plainToSee) ++count;
    }
  }
  return count;
}

TEST(TrayIcon, IsDrawnInTheColourOfTheTray) {
  const auto image = drawn(false, {.foreground = pale}, 64);
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y).alpha() != 255) continue;
      EXPECT_EQ(image.pixelColor(x, y), pale);
      ++count;
    }
  }
  EXPECT_GT(count, 100);
}

TEST(TrayIcon, StandsOnAGroundOfItsOwnWhereTheTrayTellsNoColour) {
  const auto on = drawn(false, {});
  EXPECT_EQ(on.pixelColor(8, 2).alpha(), 255);
  EXPECT_GT(on.pixelColor(8, 2).saturation(), 100);
  EXPECT_LT(drawn(true, {}).pixelColor(13, 2).saturation(), 30);
}

TEST(TrayIcon, OffLooksOff) {
  constexpr int atLeast = 20;  // of 256
  EXPECT_GT(differingPixels(drawn(false, {}), drawn(true, {})), atLeast);
  EXPECT_GT(differingPixels(drawn(false, {.foreground = pale}), drawn(true, {.foreground = pale})),
            atLeast);
}

TEST(TrayIcon, IsNamedWhereTheNameIsInstalledAndTheTrayDrawsNames) {
  const QTemporaryDir data;
  const auto folder = data.path() + "/icons/hicolor/symbolic/apps";
  QDir().mkpath(folder);
  const auto before = qgetenv("XDG_DATA_DIRS");
  qputenv("XDG_DATA_DIRS", data.path().toLocal8Bit());
  EXPECT_EQ(trayIcon(symbol, false, {.drawsNames = true}).name(), "");
  for (const auto* name : {"app.kivra.Kivra-symbolic", "app.kivra.Kivra-off-symbolic"}) {
    ASSERT_TRUE(QFile(folder + "/" + name + ".svg").open(QIODevice::WriteOnly));
  }
  EXPECT_EQ(trayIcon(symbol, false, {.drawsNames = true}).name(), "app.kivra.Kivra-symbolic");
  EXPECT_EQ(trayIcon(symbol, true, {.drawsNames = true}).name(), "app.kivra.Kivra-off-symbolic");
  EXPECT_EQ(trayIcon(symbol, false, {}).name(), "");
  qputenv("XDG_DATA_DIRS", before);
}

}  // namespace
}  // namespace kivra::qt
