#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/input_sources.h"

namespace kivra {

/// Layout data as a table: key code and Shift to what the key produces.
struct TableLayout : KeyboardLayoutData {
  using Table = std::map<std::pair<std::uint16_t, bool>, std::string>;
  explicit TableLayout(Table keys) : table(std::move(keys)) {}

  Table table;
};

/// Input sources with whatever properties a test wants; writes down what is selected.
class FakeInputSources : public InputSources {
 public:
  using Source = std::shared_ptr<const InputSource>;

  static Source source(std::string id, std::vector<std::string> languages,
                       TableLayout::Table keys) {
    return std::make_shared<const InputSource>(
        InputSource{.id = std::move(id),
                    .category = keyboardInputSourceCategory,
                    .isSelectCapable = true,
                    .languages = std::move(languages),
                    .unicodeKeyLayoutData = std::make_shared<TableLayout>(std::move(keys))});
  }

  std::optional<std::vector<Source>> createInputSourceList() override { return list; }
  Source copyCurrentKeyboardInputSource() override { return current; }
  void selectInputSource(const InputSource& source) override {
    if (onSelect) onSelect(source.id);
  }
  std::uint32_t keyboardType() override { return 40; }
  std::optional<std::string> keyTranslate(const KeyboardLayoutData& layout, std::uint16_t keyCode,
                                          std::uint32_t modifierState,
                                          std::uint32_t keyboardType) override {
    ++translations;
    sawOtherStates |= (modifierState != 0 && modifierState != translateShift) || keyboardType != 40;
    const auto& table = dynamic_cast<const TableLayout&>(layout).table;
    const auto found = table.find({keyCode, modifierState == translateShift});
    return found == table.end() ? std::nullopt : std::optional(found->second);
  }

  std::optional<std::vector<Source>> list;
  Source current;
  std::function<void(const std::string& id)> onSelect;
  int translations = 0;
  bool sawOtherStates = false;  ///< a modifier state or a keyboard type that nobody should pass
};

}  // namespace kivra
