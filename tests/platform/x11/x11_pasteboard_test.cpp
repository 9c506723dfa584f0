#include "platform/x11/x11_pasteboard.h"

#include <gtest/gtest.h>

#include <fstream>

#include "event_loop.h"
#include "platform/platform_error.h"
#include "platform/qt/qt_run_loop.h"
#include "selection_owner.h"
#include "x_session.h"

namespace kivra::x11 {
namespace {

using namespace std::chrono_literals;
using Way = SelectionOwner::Way;

class X11PasteboardTest : public testing::Test {
 protected:
  std::unique_ptr<X11Pasteboard> pasteboard(const SelectionWaits& waits = {}) {
    return std::make_unique<X11Pasteboard>(
        runLoop_, X11Pasteboard::Options{.display = session_.display(), .waits = waits});
  }

  /// What the program does before it writes something of its own, and after.
  void overwrite(X11Pasteboard& pasteboard) {
    pasteboard.clearContents();
    pasteboard.setString("замена", pasteboardTypeString);
  }
  void putBack(X11Pasteboard& pasteboard, const std::vector<PasteboardItem>& items) {
    pasteboard.clearContents();
    if (!items.empty()) pasteboard.writeObjects(items);
  }

  /// Another program takes the clipboard with these bytes; returns when it has it.
  std::unique_ptr<e2e::ChildProcess> copyElsewhere(const std::string& bytes,
                                                   const std::string& target) {
    std::ofstream(session_.path("copied"), std::ios::binary) << bytes;
    const auto before = pasteboard_->changeCount();
    auto xclip = session_.start({"xclip", "-quiet", "-selection", "clipboard", "-t", target, "-i",
                                 session_.path("copied")});
    EXPECT_TRUE(e2e::waitFor([&] { return pasteboard_->changeCount() != before; })) << "xclip";
    return xclip;
  }

  /// What another program pastes. Keeps the main thread waiting.
  std::string pasteElsewhere(const std::string& target) {
    return session_.run({"xclip", "-selection", "clipboard", "-t", target, "-o"});
  }

  /// Text that repeats itself nowhere within a piece.
  static std::string picture(std::size_t size) {
    std::string bytes;
    for (std::size_t at = 0; bytes.size() < size; ++at) bytes += std::to_string(at) + '\0';
    return bytes;
  }

  e2e::XSession session_{{.windowManager = false, .accessibility = false}};
  qt::QtRunLoop runLoop_;
  std::unique_ptr<X11Pasteboard> pasteboard_ = pasteboard();
};

TEST_F(X11PasteboardTest, ReadsWhatAnotherProgramCopied) {
  const auto xclip = copyElsewhere("привет, мир", "UTF8_STRING");
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), "привет, мир");
  const auto items = pasteboard_->pasteboardItems();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0], (PasteboardItem{{pasteboardTypeString, "привет, мир"}}));
}

TEST_F(X11PasteboardTest, ReadsTextThatIsOnlyOfferedInLatin1) {
  const auto other = pasteboard();
  other->clearContents();
  other->setString("caf\xe9", "STRING");
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), "café");
}

TEST_F(X11PasteboardTest, OffersTextUnderAllItsNamesWhileTheMainThreadWaits) {
  pasteboard_->clearContents();
  pasteboard_->setString("ёлка é", pasteboardTypeString);
  for (const char* target : {"UTF8_STRING", "text/plain", "text/plain;charset=utf-8", "TEXT"}) {
    EXPECT_EQ(pasteElsewhere(target), "ёлка é") << target;
  }
  EXPECT_EQ(pasteElsewhere("STRING"), "???? \xe9");
  EXPECT_EQ(pasteElsewhere("image/png"), "");
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), "ёлка é");
}

TEST_F(X11PasteboardTest, CountsChangesByWhomever) {
  auto last = pasteboard_->changeCount();
  const auto changed = [&] { return std::exchange(last, pasteboard_->changeCount()) < last; };
  EXPECT_FALSE(changed());
  pasteboard_->clearContents();
  EXPECT_TRUE(changed());
  pasteboard_->setString("a", pasteboardTypeString);
  EXPECT_TRUE(changed());
  EXPECT_FALSE(changed());
  const auto first = copyElsewhere("same", "UTF8_STRING");
  EXPECT_TRUE(changed());
  const auto second = copyElsewhere("same", "UTF8_STRING");
  EXPECT_TRUE(changed());
  EXPECT_FALSE(changed()) << "reading is no change";
}

TEST_F(X11PasteboardTest, GivesBackEverythingThatWasThere) {
  const auto other = pasteboard();
  const std::vector<PasteboardItem> saved = {
      {{pasteboardTypeString, "текст"},
       {"text/html", "<b>текст</b>"},
       {"image/png", picture(5U << 20U)},
       {"image/bmp", picture(7U << 20U)},
       {"application/x-empty", ""},
       {"x-special/gnome-copied-files", "copy\nfile:///tmp/a\nfile:///tmp/b"}}};
  other->clearContents();
  other->writeObjects(saved);
  const auto before = pasteboard_->pasteboardItems();
  ASSERT_EQ(before.size(), 1U);
  for (const auto& [type, data] : saved[0]) {
    ASSERT_TRUE(before[0].contains(type)) << type;
    EXPECT_TRUE(before[0].at(type) == data) << type;
  }

  overwrite(*pasteboard_);
  EXPECT_EQ(other->stringForType(pasteboardTypeString), "замена");
  EXPECT_EQ(pasteElsewhere("text/html"), "");

  putBack(*pasteboard_, before);
  const auto after = other->pasteboardItems();
  ASSERT_EQ(after.size(), 1U);
  EXPECT_TRUE(after[0] == before[0]);
  EXPECT_EQ(pasteElsewhere("text/html"), "<b>текст</b>");
}

TEST_F(X11PasteboardTest, ExchangesLargeImagesWithOtherPrograms) {
  const auto image = picture(30U << 20U);
  const auto xclip = copyElsewhere(image, "image/png");
  const auto items = pasteboard_->pasteboardItems();
  ASSERT_EQ(items.size(), 1U);
  ASSERT_TRUE(items[0].contains("image/png"));
  EXPECT_TRUE(items[0].at("image/png") == image);
  overwrite(*pasteboard_);
  putBack(*pasteboard_, items);
  EXPECT_TRUE(pasteElsewhere("image/png") == image);
}

TEST_F(X11PasteboardTest, EmptyStaysEmpty) {
  EXPECT_TRUE(pasteboard_->pasteboardItems().empty());
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), std::nullopt);
  const auto xclip = copyElsewhere("a", "UTF8_STRING");
  pasteboard_->clearContents();
  EXPECT_TRUE(pasteboard_->pasteboardItems().empty());
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "");
}

TEST_F(X11PasteboardTest, ClearsBeforeLongWhenNothingIsWritten) {
  const auto other = pasteboard();
  const auto xclip = copyElsewhere("a", "UTF8_STRING");
  pasteboard_->clearContents();
  EXPECT_TRUE(qt::turnUntil([&] { return other->pasteboardItems().empty(); }));
}

TEST_F(X11PasteboardTest, ShowsNobodyTheEmptyMomentBeforeWriting) {
  const auto other = pasteboard();
  const auto before = other->changeCount();
  pasteboard_->clearContents();
  pasteboard_->setString("a", pasteboardTypeString);
  EXPECT_EQ(other->changeCount(), before + 1);
}

TEST_F(X11PasteboardTest, GivesUpAnOwnerThatDoesNotAnswerAndServesTheRunLoopMeanwhile) {
  const auto impatient = pasteboard({.idle = 100ms});
  const auto xclip = copyElsewhere("a", "UTF8_STRING");
  xclip->signal(SIGSTOP);
  int ticks = 0;
  const auto timer = runLoop_.scheduleRepeatingTimer(5ms, [&] { ++ticks; });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THROW(impatient->pasteboardItems(), PlatformError);
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took, 90ms);
  EXPECT_LT(took, 1s);
  EXPECT_GE(ticks, 5);
  EXPECT_EQ(impatient->stringForType(pasteboardTypeString), std::nullopt);
  xclip->signal(SIGCONT);
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "a") << "nothing was taken from it";
  // The answers that come now are nobody's any more.
  impatient->clearContents();
  impatient->setString("b", pasteboardTypeString);
  EXPECT_EQ(impatient->stringForType(pasteboardTypeString), "b");
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "b");
}

TEST_F(X11PasteboardTest, WaitsForAnOwnerThatIsSlow) {
  const SelectionOwner owner(session_.display(), {{"TARGETS", {.bytes = "", .delay = 1200ms}},
                                                  {"UTF8_STRING", {.bytes = "текст"}},
                                                  {"text/html", {.bytes = "<b>", .delay = 700ms}}});
  const std::vector<PasteboardItem> all = {{{pasteboardTypeString, "текст"}, {"text/html", "<b>"}}};
  EXPECT_EQ(pasteboard_->pasteboardItems(), all);
}

TEST_F(X11PasteboardTest, ReadsPiecesAndKeepsEveryByte) {
  const auto image = picture(6U << 20U);
  const SelectionOwner owner(session_.display(),
                             {{"image/png", {.bytes = image, .way = Way::inPieces}},
                              {"text/uri-list", {.bytes = "file:///a\r\nfile:///b\r\n"}}});
  const auto items = pasteboard_->pasteboardItems();
  overwrite(*pasteboard_);
  putBack(*pasteboard_, items);
  EXPECT_TRUE(pasteElsewhere("image/png") == image);
  EXPECT_EQ(pasteElsewhere("text/uri-list"), "file:///a\r\nfile:///b\r\n");
}

TEST_F(X11PasteboardTest, LeavesAnOwnerAloneThatSendsWithoutEnd) {
  const auto impatient = pasteboard({.whole = 500ms});
  const SelectionOwner owner(
      session_.display(), {{"UTF8_STRING", {.bytes = "текст"}},
                           {"video/mp4", {.bytes = picture(1U << 10U), .way = Way::withoutEnd}}});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THROW(impatient->pasteboardItems(), PlatformError);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 3s);
  EXPECT_TRUE(owner.isOwner());
}

TEST_F(X11PasteboardTest, LeavesOutOnlyFurtherEncodingsOfAPictureThatTakeLong) {
  const auto impatient = pasteboard({.alternatives = 100ms});
  const SelectionOwner owner(session_.display(), {{"image/bmp", {.bytes = "", .way = Way::silent}},
                                                  {"image/png", {.bytes = "png"}},
                                                  {"text/html", {.bytes = "<img>"}}});
  const std::vector<PasteboardItem> kept = {{{"image/png", "png"}, {"text/html", "<img>"}}};
  EXPECT_EQ(impatient->pasteboardItems(), kept);
}

TEST_F(X11PasteboardTest, KeepsWhatWasReadOfAnOwnerThatDiesHalfWay) {
  const SelectionOwner owner(
      session_.display(), {{"UTF8_STRING", {.bytes = "текст"}},
                           {"image/png", {.bytes = picture(1U << 20U), .way = Way::diesHalfWay}}});
  const auto start = std::chrono::steady_clock::now();
  const auto items = pasteboard_->pasteboardItems();
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2s) << "the dead were waited for";
  EXPECT_EQ(items, (std::vector<PasteboardItem>{{{pasteboardTypeString, "текст"}}}));
  putBack(*pasteboard_, items);
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "текст");
}

TEST_F(X11PasteboardTest, ReadsTheOwnerThatCameWhileAnotherWasRead) {
  const SelectionOwner first(
      session_.display(),
      {{"UTF8_STRING", {.bytes = "старый"}}, {"text/html", {.bytes = "", .way = Way::silent}}});
  std::optional<SelectionOwner> second;
  runLoop_.asyncAfter(100ms, [&] {
    second.emplace(session_.display(), SelectionOwner::Answers{{"text/rtf", {.bytes = "новый"}}});
  });
  EXPECT_EQ(pasteboard_->pasteboardItems(), (std::vector<PasteboardItem>{{{"text/rtf", "новый"}}}));
}

TEST_F(X11PasteboardTest, AsksForNothingThatWouldChangeSomething) {
  SelectionOwner::Answers answers = {{"UTF8_STRING", {.bytes = "текст"}}};
  for (const char* target :
       {"DELETE", "INSERT_SELECTION", "INSERT_PROPERTY", "SAVE_TARGETS", "MULTIPLE", "TIMESTAMP",
        "PIXMAP", "_MOTIF_LOSE_SELECTION", "_MOTIF_SNAPSHOT", "XmTRANSFER_SUCCESS"}) {
    answers[target] = {.bytes = "done"};
  }
  const SelectionOwner owner(session_.display(), answers);
  pasteboard_->pasteboardItems();
  EXPECT_EQ(owner.asked(), (std::set<std::string>{"TARGETS", "UTF8_STRING"}));
}

TEST_F(X11PasteboardTest, PutsBackOnlyWhatIsNoLongerThere) {
  std::optional<SelectionOwner> owner(std::in_place, session_.display(),
                                      SelectionOwner::Answers{{"UTF8_STRING", {.bytes = "a"}}});
  putBack(*pasteboard_, pasteboard_->pasteboardItems());
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "a");
  EXPECT_TRUE(owner->isOwner());
  const auto items = pasteboard_->pasteboardItems();
  const SelectionOwner copied(session_.display(), {{"UTF8_STRING", {.bytes = "b"}}});
  putBack(*pasteboard_, items);
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "a");
  EXPECT_TRUE(e2e::waitFor([&] { return !copied.isOwner(); }));
  // Nothing that could be read was there, and it still is.
  owner.emplace(session_.display(), SelectionOwner::Answers{{"PIXMAP", {.bytes = "1234"}}});
  putBack(*pasteboard_, pasteboard_->pasteboardItems());
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), std::nullopt);
  EXPECT_TRUE(owner->isOwner());
}

TEST_F(X11PasteboardTest, SurvivesTheServerAndItsAbsence) {
  X11Pasteboard nowhere(runLoop_, {.display = ":59999"});
  nowhere.clearContents();
  nowhere.setString("a", pasteboardTypeString);
  EXPECT_TRUE(nowhere.pasteboardItems().empty());
  EXPECT_EQ(nowhere.changeCount(), 0);
  pasteboard_->setString("a", pasteboardTypeString);
  session_.killServer();
  EXPECT_TRUE(e2e::waitFor([&] { return pasteboard_->pasteboardItems().empty(); }));
  pasteboard_->setString("b", pasteboardTypeString);
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), std::nullopt);
}

}  // namespace
}  // namespace kivra::x11
