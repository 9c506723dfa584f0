#pragma once

#include <string>

#include "layout/exception_store.h"
#include "platform/application.h"
#include "text/text_action.h"

namespace kivra {

/// Corrects the selected text, or the whole field, in its place. The first correction that fails
/// for want of a key tells the user where to get one.
class CorrectAction : public TextAction {
 public:
  CorrectAction(const Environment& environment, const ExceptionStore& exceptions,
                Application& application)
      : TextAction(environment), exceptions_(exceptions), application_(application) {}

  /// Starts a correction and returns; ignored while one runs.
  void run();

 private:
  Task<void> correctSelection(Running running);
  void tellNotConfigured(const std::exception& failure);

  const ExceptionStore& exceptions_;
  Application& application_;
  bool warnedNotConfigured_ = false;
};

}  // namespace kivra
