#include "linux_text_services.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "event_loop.h"
#include "platform/pasteboard.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/session/standard_error_log.h"
#include "platform/x11/x11_pasteboard.h"
#include "text/clipboard.h"
#include "x_session.h"

namespace kivra {
namespace {

/// The session of the whole process.
class LinuxTextServicesTest : public testing::Test {
 protected:
  LinuxTextServicesTest() {
    for (const auto& [name, value] : session_.environment()) {
      ::setenv(name.c_str(), value.c_str(), 1);
    }
    ::setenv("LC_ALL", "ru_RU.UTF-8", 1);
    bus_.emplace();
    services_.emplace(runLoop_, *bus_, log_, [] { return [] { return false; }; });
    pasteboard_.emplace(runLoop_);
  }

  e2e::XSession session_{{.windowManager = false}};
  qt::QtRunLoop runLoop_;
  StandardErrorLog log_;
  std::optional<AccessibilityBus> bus_;
  std::optional<LinuxTextServices> services_;
  std::optional<x11::X11Pasteboard> pasteboard_;
};

TEST_F(LinuxTextServicesTest, WorkTogetherInASessionOfTheirOwn) {
  EXPECT_NE(services_->accessibility.createSystemWide(), nullptr);
  EXPECT_EQ(services_->locale.preferredLanguages(), (std::vector<std::string>{"ru-RU"}));
  EXPECT_EQ(services_->languageRecognizer.dominantLanguage("Добрый день, как дела?"), "ru");
  pasteboard_->clearContents();
  pasteboard_->setString("из буфера", pasteboardTypeString);
  EXPECT_EQ(session_.run({"xclip", "-selection", "clipboard", "-o"}), "из буфера");
  const auto status = qt::answerOf<TranslationStatus>([&](auto completion) {
    services_->translation.status({"en", "es"}, "", std::move(completion));
  });
  EXPECT_EQ(std::get<TranslationStatus>(status), TranslationStatus::installed);
}

// The clipboard as the text half uses it, over what another program copied.
TEST_F(LinuxTextServicesTest, BorrowTheClipboardAndGiveItBack) {
  const auto before = pasteboard_->changeCount();
  const auto xclip = session_.start({"sh", "-c",
                                     "printf '<b>мой</b>' | "
                                     "xclip -quiet -selection clipboard -t text/html -i"});
  ASSERT_TRUE(e2e::waitFor([&] { return pasteboard_->changeCount() != before; }));
  Clipboard clipboard(*pasteboard_);
  const auto saved = clipboard.snapshot();
  pasteboard_->clearContents();
  pasteboard_->setString("чужой", pasteboardTypeString);
  EXPECT_NE(pasteboard_->changeCount(), saved.changeCount);
  clipboard.restore(saved);
  EXPECT_EQ(session_.run({"xclip", "-selection", "clipboard", "-t", "text/html", "-o"}),
            "<b>мой</b>");
}

}  // namespace
}  // namespace kivra
