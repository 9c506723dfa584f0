#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/http_client.h"
#include "platform/keychain.h"
#include "platform/language_model.h"
#include "platform/locale.h"
#include "platform/pasteboard.h"
#include "platform/translation.h"

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

}  // namespace kivra::absent
