#pragma once

#include <functional>
#include <memory>
#include <string>

#include "hotkeys/model/hotkey.h"
#include "platform/local_key_monitors.h"
#include "support/observable.h"
#include "support/view_builders.h"
#include "ui/hotkey_conflicts.h"

namespace kivra {

/// Shows a hotkey and lets the user replace it by pressing another. While it records, no key press
/// reaches the program's windows.
class HotkeyRecorderRow : public Observable,
                          public std::enable_shared_from_this<HotkeyRecorderRow> {
 public:
  struct Environment {
    LocalKeyMonitors& monitors;
    EnglishCharacter englishCharacter;
    const Terms& terms;
    std::shared_ptr<HotkeyConflicts> conflicts;
  };

  /// `hotkey` gives the hotkey as it is now.
  HotkeyRecorderRow(std::string title, std::function<Binding<Hotkey>()> hotkey,
                    Environment environment);
  ~HotkeyRecorderRow();

  View body();

  void startRecording();
  void stopRecording();

 private:
  EventVerdict handle(const Event& event);
  void toggleRecording();

  std::string title_;
  std::function<Binding<Hotkey>()> hotkey_;
  Environment env_;
  bool recording_ = false;
  std::shared_ptr<LocalKeyMonitor> monitor_;
};

}  // namespace kivra
