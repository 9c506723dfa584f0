#include "layout/keycode_map.h"

#include <gtest/gtest.h>

#include <memory>

#include "layout/fake_input_sources.h"

namespace kivra {
namespace {

using Sources = std::vector<FakeInputSources::Source>;

/// A source that can be taken as one of the language, changed by `spoil`.
template <class Spoil>
FakeInputSources::Source spoilt(const std::string& language, Spoil spoil) {
  auto source = *FakeInputSources::source("spoilt", {language}, {});
  spoil(source);
  return std::make_shared<const InputSource>(std::move(source));
}

std::string idOf(const Layout* layout) { return layout == nullptr ? "none" : layout->source().id; }

TEST(KeycodeMap, TakesTheFirstSourceThatFitsForEachLanguage) {
  FakeInputSources sources;
  sources.list = Sources{
      spoilt("ru", [](auto& source) { source.category = "TISCategoryPaletteInputSource"; }),
      spoilt("ru", [](auto& source) { source.category.reset(); }),
      spoilt("ru", [](auto& source) { source.isSelectCapable = false; }),
      spoilt("ru", [](auto& source) { source.languages.reset(); }),
      spoilt("ru", [](auto& source) { source.languages->clear(); }),
      spoilt("ru",
             [](auto& source) {
               source.languages = {"de", "ru", "en"};
             }),
      spoilt("RU", [](auto& /*source*/) {}),
      spoilt("en-US", [](auto& /*source*/) {}),
      spoilt("en", [](auto& source) { source.unicodeKeyLayoutData.reset(); }),
      FakeInputSources::source("en 1", {"en", "ru"}, {}),
      FakeInputSources::source("ru 1", {"ru", "en"}, {}),
      FakeInputSources::source("ru 2", {"ru"}, {}),
      FakeInputSources::source("en 2", {"en"}, {}),
  };
  const KeycodeMap map(sources);
  EXPECT_EQ(idOf(map.russian()), "ru 1");
  EXPECT_EQ(idOf(map.english()), "en 1");
  EXPECT_EQ(map.russian()->language(), "ru");
  EXPECT_EQ(map.english()->language(), "en");
}

TEST(KeycodeMap, LooksForSourcesOnceAndCanDoWithout) {
  FakeInputSources sources;
  const KeycodeMap unreadable(sources);
  EXPECT_EQ(idOf(unreadable.russian()) + idOf(unreadable.english()), "nonenone");
  const TableLayout::Table letter = {{{0, false}, "x"}};
  sources.list = Sources{FakeInputSources::source("en", {"en"}, letter)};
  const KeycodeMap half(sources);
  sources.list->push_back(FakeInputSources::source("ru", {"ru"}, letter));
  EXPECT_EQ(idOf(half.russian()) + idOf(half.english()), "noneen");
  EXPECT_FALSE(half.isWordKey(0, false)) << "no key belongs to words while a layout is missing";
  EXPECT_TRUE(KeycodeMap(sources).isWordKey(0, false));
}

TEST(KeycodeMap, TellsTheFirstLanguageOfTheCurrentSource) {
  FakeInputSources sources;
  const KeycodeMap map(sources);
  EXPECT_EQ(map.currentLanguage(), std::nullopt);
  sources.current = FakeInputSources::source("", {"de", "ru"}, {});
  EXPECT_EQ(map.currentLanguage(), "de");
  sources.current = spoilt("", [](auto& source) { source.languages.reset(); });
  EXPECT_EQ(map.currentLanguage(), std::nullopt);
  sources.current = FakeInputSources::source("", {}, {});
  EXPECT_EQ(map.currentLanguage(), std::nullopt);
}

class KeycodeMapKeys : public testing::Test {
 protected:
  /// One row a key: code, Shift, what it gives in Russian and in English ("" for nothing).
  struct Row {
    std::uint16_t code;
    bool shift;
    const char* russian;
    const char* english;
    bool isWordKey;
  };
  static constexpr Row rows[] = {
      {0, false, "ф", "a", true},      {0, true, "Ф", "A", true},
      {1, false, "б", ",", true},      {2, false, ".", "/", false},
      {3, false, "1", "!", true},      {4, true, "", "b", true},
      {5, false, "бв", "--", false},   {6, false, "", "", false},
      {7, false, "-", "٣", true},      {8, false, "½", "²", false},
      {9, false, "и\u0306", "", true}, {10, false, "\u0301", "", true},
      {127, false, "ю", "", true},     {127, true, "!", "@", false},
      {128, false, "", "z", true},     {300, true, "Ж", ":", true},
      {300, false, ".", ":", false},
  };

  KeycodeMapKeys() {
    TableLayout::Table russian;
    TableLayout::Table english;
    for (const auto& row : rows) {
      russian[{row.code, row.shift}] = row.russian;
      english[{row.code, row.shift}] = row.english;
    }
    sources_.list = Sources{FakeInputSources::source("ru", {"ru"}, russian),
                            FakeInputSources::source("en", {"en"}, english)};
    map_ = std::make_unique<KeycodeMap>(sources_);
  }

  FakeInputSources sources_;
  std::unique_ptr<KeycodeMap> map_;
};

TEST_F(KeycodeMapKeys, GiveWhatTheLayoutsSay) {
  const auto wanted = [](const char* text) {
    return *text == '\0' ? std::nullopt : std::optional<std::string>(text);
  };
  for (const auto& row : rows) {
    EXPECT_EQ(map_->russian()->character(row.code, row.shift), wanted(row.russian)) << row.code;
    EXPECT_EQ(map_->english()->character(row.code, row.shift), wanted(row.english)) << row.code;
  }
  EXPECT_EQ(map_->english()->character(4, false), std::nullopt);
  EXPECT_FALSE(sources_.sawOtherStates);
}

TEST_F(KeycodeMapKeys, BelongToWordsWhenEitherLayoutGivesOneLetterOrDigit) {
  for (const auto& row : rows) {
    EXPECT_EQ(map_->isWordKey(row.code, row.shift), row.isWordKey) << row.code;
  }
}

TEST_F(KeycodeMapKeys, AreReadWithoutTheOnesThatGiveNothing) {
  EXPECT_EQ(KeycodeMap::text({{0, true}, {6, false}, {128, false}, {5, false}, {127, false}},
                             *map_->russian()),
            "Фбвю");
  EXPECT_EQ(KeycodeMap::text({}, *map_->russian()), "");
}

TEST_F(KeycodeMapKeys, OfRealKeyboardsAreNotTranslatedAgain) {
  const auto before = sources_.translations;
  map_->isWordKey(127, true);
  map_->english()->character(0, false);
  EXPECT_EQ(sources_.translations, before);
}

}  // namespace
}  // namespace kivra
