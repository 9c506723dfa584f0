#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/alerts.h"
#include "platform/http_client.h"
#include "platform/keychain.h"
#include "platform/language_model.h"
#include "platform/local_key_monitors.h"
#include "platform/locale.h"
#include "platform/pasteboard.h"
#include "platform/status_bar.h"
#include "platform/translation.h"
#include "platform/windows.h"

/// The services that the desktop program does not have yet. Each gives the answer that its
/// interface has for what cannot be had, so that the rest of the program works without it.
namespace kivra::absent {

class AbsentAccessibility : public Accessibility {
 public:
  AccessibilityElementPointer createSystemWide() override { return nullptr; }
  AccessibilityValue copyAttributeValue(AccessibilityElement& /*element*/,
                                        std::string_view /*attribute*/) override {
    return std::monostate();
  }
};

class AbsentAlerts : public Alerts {
 public:
  /// As if the last button had been pressed.
  int runModal(const Alert& alert) override {
    const auto buttons = static_cast<int>(alert.buttons.size());
    return alertFirstButtonReturn + std::max(buttons - 1, 0);
  }
  void beep() override {}
};

class AbsentHttpClient : public HttpClient {
 public:
  void data(HttpRequest /*request*/, Completion<HttpResponse> completion) override {
    completion(PlatformError("no network client"));
  }
};

class AbsentKeychain : public Keychain {
 public:
  std::optional<std::string> itemCopyMatching(const KeychainItem& /*item*/) override {
    return std::nullopt;
  }
  KeychainStatus itemUpdate(const KeychainItem& /*item*/, std::string_view /*data*/) override {
    return KeychainStatus::notAvailable;
  }
  KeychainStatus itemAdd(const KeychainItem& /*item*/, std::string_view /*data*/) override {
    return KeychainStatus::notAvailable;
  }
  KeychainStatus itemDelete(const KeychainItem& /*item*/) override {
    return KeychainStatus::notAvailable;
  }
};

class AbsentLanguageModel : public LanguageModel {
 public:
  bool isAvailable() override { return false; }
  void respond(LanguageModelRequest /*request*/, Completion<std::string> completion) override {
    completion(PlatformError("no language model"));
  }
};

class AbsentLocalKeyMonitors : public LocalKeyMonitors {
 public:
  std::shared_ptr<LocalKeyMonitor> addLocalMonitor(
      std::uint64_t /*mask*/, std::function<EventVerdict(const Event&)> /*handler*/) override {
    return nullptr;
  }
  void removeMonitor(const std::shared_ptr<LocalKeyMonitor>& /*monitor*/) override {}
};

class AbsentLocale : public Locale {
 public:
  std::vector<std::string> preferredLanguages() override { return {}; }
};

/// Nothing can be read, and nothing of the user's is touched.
class AbsentPasteboard : public Pasteboard {
 public:
  std::int64_t changeCount() override { return 0; }
  std::vector<PasteboardItem> pasteboardItems() override { return {}; }
  std::optional<std::string> stringForType(std::string_view /*type*/) override {
    return std::nullopt;
  }
  void clearContents() override {}
  void writeObjects(const std::vector<PasteboardItem>& /*items*/) override {}
  void setString(std::string_view /*text*/, std::string_view /*type*/) override {}
};

class AbsentStatusBar : public StatusBar {
 public:
  std::unique_ptr<StatusItem> statusItem(double /*length*/) override {
    return std::make_unique<Item>();
  }

 private:
  class Item : public StatusItem {
    void setButtonImage(const std::string& /*symbol*/,
                        const std::string& /*accessibilityDescription*/) override {}
    void setAppearsDisabled(bool /*disabled*/) override {}
    void setMenu(std::function<std::vector<MenuItem>()> /*menuNeedsUpdate*/) override {}
  };
};

class AbsentTranslation : public Translation {
 public:
  void status(TranslationLanguages /*languages*/, std::string /*text*/,
              Completion<TranslationStatus> completion) override {
    completion(TranslationStatus::unsupported);
  }
  std::shared_ptr<TranslationSession> session(TranslationLanguages /*languages*/) override {
    return std::make_shared<Session>();
  }

 private:
  class Session : public TranslationSession {
    void prepareTranslation(std::string /*text*/, Completion<std::monostate> completion) override {
      completion(PlatformError("no translator"));
    }
    void translate(std::string /*text*/, Completion<std::string> completion) override {
      completion(PlatformError("no translator"));
    }
  };
};

class AbsentWindows : public Windows {
 public:
  std::unique_ptr<Window> windowCreate(const WindowAttributes& /*attributes*/) override {
    return std::make_unique<Unseen>();
  }

 private:
  class Unseen : public Window {
    void setContent(View /*content*/) override {}
    void setContentSize(WindowSize /*size*/) override {}
    void center() override {}
    void setAlphaValue(double /*alpha*/) override {}
    void setLevel(int /*level*/) override {}
    void makeKeyAndOrderFront() override {}
    void orderBack() override {}
    void close() override {}
    void setCloseHandler(std::function<void()> /*handler*/) override {}
  };
};

}  // namespace kivra::absent
