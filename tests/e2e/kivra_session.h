#pragma once

#include <string>

#include "test_window.h"
#include "typist.h"
#include "x_session.h"

namespace kivra::e2e {

/// A session in which Kivra runs and corrects, with a test window that has the focus.
struct KivraSession {
  explicit KivraSession(const XSession::Options& options = {});

  /// Starts Kivra once more and waits until it corrects.
  void startKivra();

  XSession session;
  TestWindow window{session.display()};
  Typist typist{session};
};

/// Makes this the whole dictionary of replacements of a program that starts afterwards.
void storeReplacement(XSession& session, const std::string& pattern,
                      const std::string& replacement);

/// What the embedded desktop makes of the keys that give this text in the English layout.
std::string embeddedResult(const std::string& typed);

}  // namespace kivra::e2e
