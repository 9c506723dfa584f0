#pragma once

#include <memory>
#include <string>

#include "platform/application.h"
#include "platform/run_loop.h"
#include "platform/translation.h"
#include "platform/windows.h"
#include "text/coordinator.h"
#include "text/host_view.h"
#include "text/text_engine.h"

namespace kivra {

/// The system's offline translator. It hands out sessions only to a view on the screen: the engine
/// keeps an invisible window for it, which becomes a small panel while a language pack is fetched.
/// One request at a time; correcting is not supported.
class AppleTranslateEngine : public TextEngine,
                             public std::enable_shared_from_this<AppleTranslateEngine> {
 public:
  AppleTranslateEngine(Translation& translation, Windows& windows, Application& application,
                       RunLoop& runLoop);

  Task<std::string> translate(std::string text, std::string target,
                              std::optional<std::string> source) override;
  Task<std::string> correct(std::string text) override;

 private:
  class Panel;

  void createHostWindow();
  void showPanel();
  void hidePanel();
  void handOver(Coordinator::Pending request, const TranslationLanguages& languages);

  Translation& translation_;
  Windows& windows_;
  Application& application_;
  RunLoop& runLoop_;
  std::shared_ptr<Coordinator> coordinator_ = std::make_shared<Coordinator>();
  std::unique_ptr<Window> hostWindow_;
  std::shared_ptr<HostView> hostView_;
};

}  // namespace kivra
