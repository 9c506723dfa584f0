#include "platform/x11/x11_pasteboard.h"

#include <gtest/gtest.h>

#include <fstream>

#include "event_loop.h"
#include "platform/qt/qt_run_loop.h"
#include "x_session.h"

namespace kivra::x11 {
namespace {

using namespace std::chrono_literals;

class X11PasteboardTest : public testing::Test {
 protected:
  std::unique_ptr<X11Pasteboard> pasteboard() {
    return std::make_unique<X11Pasteboard>(runLoop_,
                                           X11Pasteboard::Options{.display = session_.display()});
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

  pasteboard_->clearContents();
  pasteboard_->setString("замена", pasteboardTypeString);
  EXPECT_EQ(other->stringForType(pasteboardTypeString), "замена");
  EXPECT_EQ(pasteElsewhere("text/html"), "");

  pasteboard_->clearContents();
  pasteboard_->writeObjects(before);
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
  pasteboard_->clearContents();
  pasteboard_->writeObjects(items);
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
  const auto xclip = copyElsewhere("a", "UTF8_STRING");
  xclip->signal(SIGSTOP);
  int ticks = 0;
  const auto timer = runLoop_.scheduleRepeatingTimer(5ms, [&] { ++ticks; });
  const auto start = std::chrono::steady_clock::now();
  const auto items = pasteboard_->pasteboardItems();
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(items.empty() || items[0].empty());
  EXPECT_GE(took, 90ms);
  EXPECT_LT(took, 1s);
  EXPECT_GE(ticks, 5);
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), std::nullopt);
  xclip->signal(SIGCONT);
  // The answers that come now are nobody's any more.
  pasteboard_->clearContents();
  pasteboard_->setString("b", pasteboardTypeString);
  EXPECT_EQ(pasteboard_->stringForType(pasteboardTypeString), "b");
  EXPECT_EQ(pasteElsewhere("UTF8_STRING"), "b");
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
