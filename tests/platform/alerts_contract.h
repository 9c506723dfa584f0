#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/alerts.h"

namespace kivra {

/// What alerts do. `Backend` is default-constructible and has `Alerts& alerts()`; `press(title)`
/// and `close()`, what the user does with the alert that is shown next; and `Alert shown()`, the
/// last as the user saw it.
template <class Backend>
class AlertsContract : public ::testing::Test {
 protected:
  int pressed(const std::string& title) {
    backend_.press(title);
    return backend_.alerts().runModal(alert_);
  }

  Backend backend_;
  const Alert alert_{.messageText = "Нужен <b>ключ</b>",
                     .informativeText = "Где его взять",
                     .buttons = {"Открыть настройки…", "Не сейчас", "Позже"}};
};
TYPED_TEST_SUITE_P(AlertsContract);

TYPED_TEST_P(AlertsContract, AnswersTheButton) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(this->pressed(this->alert_.buttons[static_cast<std::size_t>(i)]), 1000 + i);
  }
  const auto shown = this->backend_.shown();
  EXPECT_EQ(shown.messageText, this->alert_.messageText);
  EXPECT_EQ(shown.informativeText, this->alert_.informativeText);
  EXPECT_EQ(shown.buttons, this->alert_.buttons);
}

TYPED_TEST_P(AlertsContract, ClosingIsTheLastButton) {
  this->backend_.close();
  EXPECT_EQ(this->backend_.alerts().runModal(this->alert_), 1002);
  this->backend_.close();
  EXPECT_EQ(this->backend_.alerts().runModal({"Только сказано", "", {}}), 1000);
}

REGISTER_TYPED_TEST_SUITE_P(AlertsContract, AnswersTheButton, ClosingIsTheLastButton);

}  // namespace kivra
