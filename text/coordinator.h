#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/completion.h"
#include "platform/translation.h"
#include "support/observable.h"
#include "support/task.h"

namespace kivra {

/// What the host view's translation task is bound to: it runs when this changes.
struct TranslationConfiguration {
  TranslationLanguages languages;
  int version = 0;

  /// Makes the task run again for the same languages.
  void invalidate() { ++version; }

  bool operator==(const TranslationConfiguration&) const = default;
};

/// Carries a request from the engine to the host view's translation task and the answer back.
class Coordinator : public Observable {
 public:
  /// The request that waits for the host view's task.
  struct Pending {
    std::string text;
    bool needsDownload = false;            ///< the language pack must be had first
    Completion<std::string> continuation;  ///< called exactly once
  };

  const std::optional<TranslationConfiguration>& configuration() const { return configuration_; }
  void setConfiguration(TranslationConfiguration configuration);

  /// Whether the panel that announces the download is shown.
  bool downloadVisible() const { return downloadVisible_; }
  void setDownloadVisible(bool visible);

  std::optional<Pending> pending;

  /// The host view's translation task: serves the pending request, if there is one.
  Task<void> handle(std::shared_ptr<TranslationSession> session);

 private:
  std::optional<TranslationConfiguration> configuration_;
  bool downloadVisible_ = false;
};

}  // namespace kivra
