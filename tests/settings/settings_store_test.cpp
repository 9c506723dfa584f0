#include "settings/settings_store.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_defaults_database.h"
#include "platform/embedded/embedded_terms.h"

namespace kivra {
namespace {

class SettingsStoreTest : public testing::Test {
 protected:
  embedded::EmbeddedDefaultsDatabase database_;
  UserDefaults defaults_{database_};
};

TEST_F(SettingsStoreTest, HasItsDefaultsAndStoresNone) {
  const SettingsStore settings(defaults_);
  EXPECT_TRUE(settings.isEnabled() && settings.pauseAsManualSwitch() &&
              settings.autoSwitchEnabled() && settings.autoFixDoubleCapitals() &&
              settings.autoCorrectTypos());
  EXPECT_EQ(settings.skipBundleIDs().size(), 7U);
  EXPECT_EQ(settings.translationEngine(), EngineKind::appleTranslate);
  EXPECT_EQ(settings.translateCombo().displayText(embedded::EmbeddedTerms()), "⌃fn");
  EXPECT_EQ(settings.correctCombo().displayText(embedded::EmbeddedTerms()), "⇧fn");
  EXPECT_EQ(settings.ctrlFnTargetLang(), "EN-US");
  EXPECT_EQ(settings.manualSwitchHotkey(), (Hotkey{35, 0xC0000}));
  EXPECT_EQ(settings.translateHotkey1(), (Hotkey{14, 0xC0000}));
  EXPECT_EQ(settings.translateHotkey2(), (Hotkey{2, 0xC0000}));
  EXPECT_EQ(settings.correctHotkey(), (Hotkey{8, 0xC0000}));
  EXPECT_EQ(settings.translateHotkey1Lang() + settings.translateHotkey2Lang(), "EN-USDE");
  EXPECT_TRUE(database_.dictionaryRepresentation().empty());
}

TEST_F(SettingsStoreTest, WritesEveryAssignmentInItsStoredForm) {
  SettingsStore settings(defaults_);
  settings.isEnabled.set(false);
  settings.skipBundleIDs.set({"org.example."});
  settings.translationEngine.set(EngineKind::deepL);
  settings.translateHotkey1.set({17, 0x100000});
  settings.correctCombo.set(ModifierCombo::off());
  settings.translateHotkey2Lang.set("FR");
  const std::map<std::string, DefaultsValue> wanted = {
      {"kivra.isEnabled", false},
      {"kivra.skipBundleIDs", std::vector<std::string>{"org.example."}},
      {"kivra.translationEngine", std::string("deepL")},
      {"kivra.hotkey.translateEN", Data{R"({"keyCode":17,"modifiers":1048576})"}},
      {"kivra.combo.correct", Data{R"({"modifiers":[]})"}},
      {"kivra.hotkey.translate2.lang", std::string("FR")},
  };
  EXPECT_EQ(database_.dictionaryRepresentation(), wanted);
  const SettingsStore reopened(defaults_);
  EXPECT_EQ(reopened.translateHotkey1(), settings.translateHotkey1());
  EXPECT_FALSE(reopened.isEnabled());
}

TEST_F(SettingsStoreTest, TakesDefaultsForWhatItCannotReadAndLeavesItStored) {
  database_.setObject(std::string("false"), "kivra.isEnabled");
  database_.setObject(std::string("com.example"), "kivra.skipBundleIDs");
  database_.setObject(std::string("DeepL"), "kivra.translationEngine");
  database_.setObject(Data{"{"}, "kivra.hotkey.correct");
  database_.setObject(std::string(R"({"modifiers":["fn","shift"]})"), "kivra.combo.translate");
  const auto before = database_.dictionaryRepresentation();
  const SettingsStore settings(defaults_);
  EXPECT_TRUE(settings.isEnabled());
  EXPECT_EQ(settings.skipBundleIDs(), defaultSkipBundleIDs());
  EXPECT_EQ(settings.translationEngine(), EngineKind::appleTranslate);
  EXPECT_EQ(settings.correctHotkey().keyCode, 8);
  EXPECT_EQ(settings.translateCombo().displayText(embedded::EmbeddedTerms()), "⌃fn")
      << "text is not data";
  EXPECT_EQ(database_.dictionaryRepresentation(), before);
}

TEST_F(SettingsStoreTest, AnnouncesAChangeBeforeItHappens) {
  SettingsStore settings(defaults_);
  std::vector<bool> seen;
  auto subscription = settings.observe([&] { seen.push_back(settings.isEnabled()); });
  settings.isEnabled.set(false);
  settings.isEnabled.set(false);
  subscription.reset();
  settings.isEnabled.set(true);
  EXPECT_EQ(seen, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace kivra
