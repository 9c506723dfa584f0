#pragma once

#include <functional>

#include "app/pause.h"
#include "app/text_services.h"
#include "layout/exception_store.h"
#include "layout/key_output.h"
#include "layout/keycode_map.h"
#include "layout/layout_switcher.h"
#include "layout/replacement_store.h"
#include "layout/undo_stack.h"
#include "layout/word_validator.h"
#include "platform/platform.h"
#include "settings/settings_store.h"
#include "settings/user_defaults.h"
#include "support/lazy.h"
#include "ui/permissions.h"

namespace kivra {

class CoreController;

/// The shared instances of one run of the program on one desktop. Each is made at its first use and
/// kept until the run ends; making one wires in the others that it uses.
class Services {
 public:
  explicit Services(const Platform& platform);
  ~Services();
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  const Platform platform;

  /// Opens the settings window; does nothing before the program has put up its status item.
  std::function<void()> showSettingsWindow = [] {};

 private:
  UserDefaults defaults_;

 public:
  UndoStack undoStack;
  Lazy<SettingsStore> settings;
  Lazy<Pause> pause;
  Lazy<Permissions> permissions;
  Lazy<ExceptionStore> exceptions;
  Lazy<ReplacementStore> replacements;
  Lazy<KeycodeMap> keycodeMap;
  Lazy<WordValidator> wordValidator;
  Lazy<KeyOutput> keyOutput;
  Lazy<LayoutSwitcher> layoutSwitcher;
  TextServices text;
  Lazy<CoreController> coreController;
};

}  // namespace kivra
