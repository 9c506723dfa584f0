#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "application_session.h"

namespace kivra::e2e {

/// The tests of one suite share a session. Keys come at the pace of a person, since it is the
/// application that tells where the focus is and what is selected.
class SharedSession : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    desktop = std::make_unique<ApplicationSession>();
    desktop->startKivra();
  }
  static void TearDownTestSuite() { desktop.reset(); }

  void SetUp() override {
    typist.selectGroup(0);
    typist.setPace(std::chrono::milliseconds(10), std::chrono::milliseconds(50));
  }

  static inline std::unique_ptr<ApplicationSession> desktop;
  Typist typist{desktop->session};
};

}  // namespace kivra::e2e
