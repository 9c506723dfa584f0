#include "text/apple_translate_engine.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_desktop.h"
#include "text_test_support.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
using embedded::EmbeddedTranslation;

class AppleTranslateEngineTest : public testing::Test {
 protected:
  AppleTranslateEngineTest() {
    desktop_.translation.setPair({std::nullopt, "en-US"}, pair(TranslationStatus::installed));
    desktop_.translation.setPair({std::nullopt, "de"}, pair(TranslationStatus::supported));
  }

  static EmbeddedTranslation::Pair pair(TranslationStatus status) {
    return {status, {.reply = "done", .failure = {}, .delay = 1s}, {}};
  }

  void translate(test::Outcome& outcome, const std::string& target) {
    startTask(desktop_.time, engine_,
              await(engine_->translate("Привет", target, std::nullopt), outcome));
  }

  std::shared_ptr<const embedded::WindowState> window() const {
    return desktop_.windows.find("translation");
  }

  int translations_ = 0;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) {
                                       if (effect.contains("translation")) ++translations_;
                                     },
                                     nullptr};
  std::shared_ptr<AppleTranslateEngine> engine_ = std::make_shared<AppleTranslateEngine>(
      desktop_.translation, desktop_.windows, desktop_.session, desktop_.time);
};

TEST_F(AppleTranslateEngineTest, KeepsOneInvisibleWindow) {
  EXPECT_EQ(window(), nullptr);
  test::Outcome first;
  translate(first, "EN-US");
  desktop_.time.serve();
  const auto made = window();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->attributes.contentSize, (WindowSize{1, 1}));
  EXPECT_EQ(made->attributes.alphaValue, 0);
  EXPECT_EQ(made->attributes.collectionBehavior, 17U);
  EXPECT_TRUE(made->attributes.ignoresMouseEvents);
  EXPECT_TRUE(made->content.kind == ViewKind::empty);
  desktop_.time.runFor(1s);
  EXPECT_EQ(first.result, "done");
  test::Outcome again;
  translate(again, "EN-US");
  desktop_.time.runFor(1s);
  EXPECT_EQ(again.result, "done");
  EXPECT_EQ(translations_, 2) << "the same pair runs the task again";
  EXPECT_EQ(window(), made);
}

TEST_F(AppleTranslateEngineTest, ShowsThePanelWhileAPackIsFetched) {
  test::Outcome outcome;
  translate(outcome, "DE");
  desktop_.time.serve();
  const auto state = window();
  ASSERT_NE(state, nullptr);
  EXPECT_EQ(state->attributes.contentSize, (WindowSize{420, 140}));
  EXPECT_EQ(state->attributes.alphaValue, 1);
  EXPECT_EQ(state->level, 3);
  EXPECT_TRUE(state->isShown);
  ASSERT_EQ(state->content.children.size(), 3U);
  EXPECT_EQ(state->content.children[0].text, "Kivra — Apple Translate");
  EXPECT_EQ(state->content.children[1].text,
            "Нужен языковой пакет. Подтверди загрузку в системном диалоге.");
  desktop_.time.runFor(1s);
  EXPECT_EQ(outcome.result, "done");
  EXPECT_EQ(state->attributes.contentSize, (WindowSize{1, 1}));
  EXPECT_EQ(state->attributes.alphaValue, 0);
  EXPECT_EQ(state->level, 0);
  EXPECT_FALSE(state->isShown);
  desktop_.time.serve();
  EXPECT_TRUE(state->content.kind == ViewKind::empty);
}

TEST_F(AppleTranslateEngineTest, HidesThePanelWhenNoAnswerComes) {
  test::Outcome outcome;
  translate(outcome, "DE");
  desktop_.time.serve();
  desktop_.time.dropAll();
  EXPECT_FALSE(outcome.ended);
  EXPECT_EQ(window()->attributes.alphaValue, 0);
}

TEST_F(AppleTranslateEngineTest, OneRequestAtATime) {
  test::Outcome first;
  test::Outcome second;
  translate(first, "EN-US");
  translate(second, "DE");
  desktop_.time.runFor(2s);
  EXPECT_EQ(first.result, "done");
  EXPECT_EQ(second.failure, "Предыдущая операция ещё выполняется");
  EXPECT_EQ(translations_, 1);
}

TEST_F(AppleTranslateEngineTest, OnlyTranslates) {
  EXPECT_EQ(test::outcome(engine_->correct("текст")).failure,
            "Движок не поддерживает эту операцию");
  test::Outcome outcome;
  translate(outcome, "PL");
  desktop_.time.serve();
  EXPECT_EQ(outcome.failure, "Языковая пара не поддерживается (→ PL)");
}

}  // namespace
}  // namespace kivra
