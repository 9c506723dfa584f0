#pragma once

#include "support/lazy.h"
#include "text/apple_translate_engine.h"
#include "text/correct_action.h"
#include "text/deepl_engine.h"
#include "text/foundation_model_engine.h"
#include "text/keychain_store.h"
#include "text/text_access.h"
#include "text/text_engines.h"
#include "text/translate_action.h"

namespace kivra {

class Services;

/// The shared instances that read, translate and correct text.
class TextServices {
 public:
  /// `services` must outlive this object, and is not used before the first instance is asked for.
  explicit TextServices(Services& services);

  Lazy<KeychainStore> keychain;
  Lazy<TextAccess> textAccess;
  Lazy<DeepLEngine> deepL;
  Lazy<FoundationModelEngine> foundationModel;
  Lazy<AppleTranslateEngine> appleTranslate;
  Lazy<TextEngines> engines;
  Lazy<CorrectAction> correctAction;
  Lazy<TranslateAction> translateAction;
};

}  // namespace kivra
