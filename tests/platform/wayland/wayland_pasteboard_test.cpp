#include "platform/wayland/wayland_pasteboard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "event_loop.h"
#include "offering_client.h"
#include "platform/platform_error.h"
#include "platform/qt/qt_run_loop.h"
#include "sway_server.h"
#include "x_session.h"

namespace kivra::wayland {
namespace {

using namespace std::chrono_literals;
using Way = OfferingClient::Way;

class WaylandPasteboardTest : public ::testing::Test {
 protected:
  WaylandPasteboardTest() { sway_.enter(); }

  std::unique_ptr<WaylandPasteboard> pasteboard(const SelectionWaits& waits = {}) {
    return std::make_unique<WaylandPasteboard>(runLoop_,
                                               WaylandPasteboard::Options{.waits = waits});
  }

  static void putBack(Pasteboard& pasteboard, const std::vector<PasteboardItem>& items) {
    pasteboard.clearContents();
    pasteboard.writeObjects(items);
  }

  /// Bytes that repeat themselves nowhere within a piece.
  static std::string picture(std::size_t size) {
    std::string bytes;
    for (std::size_t at = 0; bytes.size() < size; ++at) bytes += std::to_string(at) + '\0';
    return bytes;
  }

  e2e::SwayServer sway_;
  qt::QtRunLoop runLoop_;
};

TEST_F(WaylandPasteboardTest, GivesBackEverythingThatAnotherProgramOffered) {
  const auto ours = pasteboard();
  const auto another = pasteboard();
  std::optional<OfferingClient> owner(
      std::in_place, OfferingClient::Answers{{"text/plain;charset=utf-8", {.bytes = "текст"}},
                                             {"text/html", {.bytes = "<b>текст</b>"}},
                                             {"application/x-empty", {.bytes = ""}},
                                             {"image/png", {.bytes = picture(30U << 20U)}}});
  const auto items = ours->pasteboardItems();
  ours->clearContents();
  ours->setString("замена", pasteboardTypeString);
  EXPECT_EQ(another->stringForType(pasteboardTypeString), "замена");
  EXPECT_TRUE(e2e::waitFor([&] { return !owner->isOwner(); }));
  owner.reset();
  putBack(*ours, items);
  const auto after = another->pasteboardItems();
  ASSERT_EQ(after.size(), 1U);
  EXPECT_EQ(after[0].size(), 4U);
  EXPECT_EQ(after[0].at("text/plain;charset=utf-8"), "текст");
  EXPECT_EQ(after[0].at("text/html"), "<b>текст</b>");
  EXPECT_EQ(after[0].at("application/x-empty"), "");
  EXPECT_TRUE(after[0].at("image/png") == picture(30U << 20U));
}

TEST_F(WaylandPasteboardTest, ReadsATextUnderEachOfItsNames) {
  const auto ours = pasteboard();
  for (const char* type : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain"}) {
    const OfferingClient owner({{type, {.bytes = "ёлка"}}});
    EXPECT_EQ(ours->stringForType(pasteboardTypeString), "ёлка") << type;
  }
}

TEST_F(WaylandPasteboardTest, PutsBackOnlyWhatIsNoLongerThere) {
  const auto ours = pasteboard();
  const OfferingClient owner({{"UTF8_STRING", {.bytes = "a"}}});
  putBack(*ours, ours->pasteboardItems());
  EXPECT_TRUE(owner.isOwner());
}

TEST_F(WaylandPasteboardTest, ShowsNobodyTheEmptyMomentBeforeWriting) {
  const auto ours = pasteboard();
  const auto another = pasteboard();
  ours->setString("a", pasteboardTypeString);
  const auto before = another->changeCount();
  ours->clearContents();
  ours->setString("b", pasteboardTypeString);
  EXPECT_EQ(another->changeCount(), before + 1);
}

TEST_F(WaylandPasteboardTest, GivesUpAnOwnerThatDoesNotAnswerAndServesTheRunLoopMeanwhile) {
  const auto impatient = pasteboard({.idle = 100ms});
  const OfferingClient owner({{"UTF8_STRING", {.bytes = "", .way = Way::silent}}});
  int ticks = 0;
  const auto timer = runLoop_.scheduleRepeatingTimer(5ms, [&] { ++ticks; });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THROW(impatient->pasteboardItems(), PlatformError);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 90ms);
  EXPECT_GE(ticks, 5);
  EXPECT_EQ(impatient->stringForType(pasteboardTypeString), std::nullopt);
  EXPECT_TRUE(owner.isOwner());
}

TEST_F(WaylandPasteboardTest, WaitsForAnOwnerThatIsSlow) {
  const auto ours = pasteboard();
  const OfferingClient owner({{"UTF8_STRING", {.bytes = "текст", .delay = 1200ms}},
                              {"text/html", {.bytes = "<b>", .delay = 700ms}}});
  const std::vector<PasteboardItem> all = {{{pasteboardTypeString, "текст"}, {"text/html", "<b>"}}};
  EXPECT_EQ(ours->pasteboardItems(), all);
}

TEST_F(WaylandPasteboardTest, LeavesAnOwnerAloneThatSendsWithoutEnd) {
  const auto impatient = pasteboard({.whole = 500ms});
  const OfferingClient owner(
      {{"UTF8_STRING", {.bytes = "текст"}},
       {"video/mp4", {.bytes = picture(1U << 10U), .way = Way::withoutEnd}}});
  EXPECT_THROW(impatient->pasteboardItems(), PlatformError);
  EXPECT_TRUE(owner.isOwner());
}

TEST_F(WaylandPasteboardTest, KeepsWhatWasReadOfAnOwnerThatDiesHalfWay) {
  const auto ours = pasteboard();
  const OfferingClient owner(
      {{"UTF8_STRING", {.bytes = "текст"}},
       {"image/png", {.bytes = picture(1U << 20U), .way = Way::diesHalfWay}}});
  const std::vector<PasteboardItem> kept = {{{pasteboardTypeString, "текст"}}};
  EXPECT_EQ(ours->pasteboardItems(), kept);
}

TEST_F(WaylandPasteboardTest, ReadsTheOwnerThatCameWhileAnotherWasRead) {
  const auto ours = pasteboard();
  const OfferingClient first(
      {{"UTF8_STRING", {.bytes = "старый"}}, {"text/html", {.bytes = "", .way = Way::silent}}});
  std::optional<OfferingClient> second;
  runLoop_.asyncAfter(100ms, [&] {
    second.emplace(OfferingClient::Answers{{"text/rtf", {.bytes = "новый"}}});
  });
  EXPECT_EQ(ours->pasteboardItems(), (std::vector<PasteboardItem>{{{"text/rtf", "новый"}}}));
}

TEST_F(WaylandPasteboardTest, OutlivesAReaderThatGoesAwayHalfWay) {
  const auto ours = pasteboard();
  ours->clearContents();
  ours->writeObjects({{{"image/png", picture(30U << 20U)}}});
  {
    const auto hasty = pasteboard({.whole = 1ms});
    EXPECT_THROW(hasty->pasteboardItems(), PlatformError);
  }
  EXPECT_TRUE(pasteboard()->stringForType("image/png") == picture(30U << 20U));
}

TEST_F(WaylandPasteboardTest, SurvivesTheCompositorAndItsAbsence) {
  WaylandPasteboard nowhere(runLoop_, {.display = "/nowhere"});
  nowhere.clearContents();
  nowhere.setString("a", pasteboardTypeString);
  EXPECT_TRUE(nowhere.pasteboardItems().empty());
  EXPECT_EQ(nowhere.changeCount(), 0);
  const auto ours = pasteboard();
  ours->setString("a", pasteboardTypeString);
  sway_.kill();
  EXPECT_TRUE(qt::turnUntil([&] { return ours->pasteboardItems().empty(); }));
  ours->setString("b", pasteboardTypeString);
  EXPECT_EQ(ours->stringForType(pasteboardTypeString), std::nullopt);
}

TEST_F(WaylandPasteboardTest, TurnsTheRunLoopWhileTheCompositorStandsStill) {
  const auto impatient = pasteboard({.idle = 100ms});
  impatient->changeCount();
  const OfferingClient owner({{"UTF8_STRING", {.bytes = "a"}}});
  ::kill(sway_.pid(), SIGSTOP);
  bool hasTurned = false;
  runLoop_.asyncAfter(1ms, [&] { hasTurned = true; });
  impatient->stringForType(pasteboardTypeString);
  ::kill(sway_.pid(), SIGCONT);
  EXPECT_TRUE(hasTurned);
  EXPECT_EQ(impatient->stringForType(pasteboardTypeString), "a");
}

}  // namespace
}  // namespace kivra::wayland
