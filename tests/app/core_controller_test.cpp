#include "app/core_controller.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

class CoreControllerTest : public testing::Test {
 protected:
  CoreControllerTest() {
    desktop_.spellChecker.setDictionary("ru", {"мир"}, {});
    desktop_.spellChecker.setDictionary("en", {"hello"}, {});
    controller_->start();
  }

  bool press(std::uint16_t code, std::uint64_t flags = 0) {
    return desktop_.events.send({.keyCode = code, .flags = flags});
  }
  /// Types a word that Russian has and English has not; true when its end was consumed.
  bool typeMendedWord() {
    desktop_.inputSources.select("us");
    for (const auto code : std::initializer_list<std::uint16_t>{9, 11, 4}) press(code);
    return !press(key_codes::space);
  }
  void shift(bool down) {
    desktop_.events.send({.type = EventType::flagsChanged,
                          .keyCode = key_codes::leftShift,
                          .flags = down ? event_flags::shift : 0});
  }
  void doubleTapShift() {
    for (const auto down : {true, false, true, false}) shift(down);
  }
  void record(std::optional<std::string> token) {
    services_.undoStack.setLast({UndoStack::ActionKind::translate, std::move(token), [this] {
                                   ++undone_;
                                   wasEmptyAtUndo_ = !services_.undoStack.last();
                                   knewTokenAtUndo_ = services_.exceptions().contains("слово");
                                 }});
  }

  std::vector<std::string> log_;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) {
                                       if (effect.contains("log")) log_.push_back(effect["log"]);
                                     },
                                     nullptr};
  Services services_{desktop_.platform()};
  std::shared_ptr<CoreController> controller_ = CoreController::create(services_);
  int undone_ = 0;
  bool wasEmptyAtUndo_ = false;
  bool knewTokenAtUndo_ = false;
};

TEST_F(CoreControllerTest, LetsEverythingPassWhileSwitchedOff) {
  constexpr auto chord = event_flags::control | event_flags::option;
  record("слово");
  shift(true);
  services_.settings().isEnabled.set(false);
  shift(false);
  EXPECT_FALSE(typeMendedWord());
  EXPECT_TRUE(press(35, chord));
  doubleTapShift();
  EXPECT_EQ(undone_, 0);
  EXPECT_TRUE(controller_->isIntercepting());
  services_.settings().isEnabled.set(true);
  EXPECT_FALSE(press(35, chord));
  EXPECT_TRUE(typeMendedWord());
}

TEST_F(CoreControllerTest, UndoesTheLastActionOnceThenLearnsItsToken) {
  doubleTapShift();
  EXPECT_TRUE(services_.exceptions().tokens().empty());
  record("Слово");
  doubleTapShift();
  EXPECT_EQ(undone_, 1);
  EXPECT_TRUE(wasEmptyAtUndo_);
  EXPECT_FALSE(knewTokenAtUndo_) << "learned after the undo has run";
  EXPECT_TRUE(services_.exceptions().contains("слово"));
  doubleTapShift();
  EXPECT_EQ(undone_, 1);
  record(std::nullopt);
  doubleTapShift();
  EXPECT_EQ(undone_, 2);
  EXPECT_EQ(services_.exceptions().tokens().size(), 1U);
}

TEST_F(CoreControllerTest, HasNothingToUndoInWhatWasNotTyped) {
  record("слово");
  desktop_.events.refusePosted();
  doubleTapShift();
  EXPECT_EQ(undone_, 0);
  EXPECT_TRUE(services_.exceptions().tokens().empty());
}

TEST_F(CoreControllerTest, KeepsARefusedTapUntilItIsRestarted) {
  desktop_.events.setRefusesTaps(true);
  controller_->restart();
  EXPECT_TRUE(controller_->hasEventTap());
  EXPECT_FALSE(controller_->isIntercepting());
  desktop_.events.setRefusesTaps(false);
  controller_->start();
  EXPECT_FALSE(controller_->isIntercepting()) << "only a restart replaces it";
  EXPECT_EQ(log_.size(), 1U);
  EXPECT_FALSE(typeMendedWord());
  controller_->restart();
  EXPECT_TRUE(controller_->isIntercepting());
  EXPECT_TRUE(typeMendedWord());
}

TEST_F(CoreControllerTest, EventsPassOnceItIsGone) {
  controller_.reset();
  EXPECT_FALSE(typeMendedWord());
  EXPECT_TRUE(press(35, event_flags::control | event_flags::option));
}

}  // namespace
}  // namespace kivra
