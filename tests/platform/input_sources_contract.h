#pragma once

#include <string>
#include <vector>

#include "platform/event_taps_contract.h"
#include "platform/input_sources.h"

namespace kivra {

/// What input sources do, in order with the keys. `Backend` is one of EventTapsContract with two
/// functions more: `InputSources& sources()`, us and ru, and `choose(index)`, by which the user
/// selects one of them.
template <class Backend>
class InputSourcesContract : public EventTapsContract<Backend> {
 protected:
  InputSources& sources() { return this->backend_.sources(); }
  std::shared_ptr<const InputSource> source(std::size_t index) {
    return sources().createInputSourceList().value().at(index);
  }
  std::string current() {
    const auto source = sources().copyCurrentKeyboardInputSource();
    return source ? source->id : "none";
  }
  std::optional<std::string> character(std::size_t index, std::uint16_t key,
                                       std::uint32_t modifiers) {
    return sources().keyTranslate(*source(index)->unicodeKeyLayoutData, key, modifiers,
                                  sources().keyboardType());
  }
};
TYPED_TEST_SUITE_P(InputSourcesContract);

TYPED_TEST_P(InputSourcesContract, ListsKeyboardLayoutsInTheirOrder) {
  const auto list = this->sources().createInputSourceList();
  ASSERT_TRUE(list);
  ASSERT_EQ(list->size(), 2U);
  EXPECT_NE(list->at(0)->id, list->at(1)->id);
  for (const auto& source : *list) {
    EXPECT_EQ(source->category, keyboardInputSourceCategory);
    EXPECT_TRUE(source->isSelectCapable);
    ASSERT_TRUE(source->languages && !source->languages->empty());
    EXPECT_TRUE(source->unicodeKeyLayoutData);
  }
  EXPECT_EQ(list->at(0)->languages->front(), "en");
  EXPECT_EQ(list->at(1)->languages->front(), "ru");
}

TYPED_TEST_P(InputSourcesContract, TranslatesKeysInEachLayout) {
  EXPECT_EQ(this->character(0, key_codes::a, 0), "a");
  EXPECT_EQ(this->character(0, key_codes::a, translateShift), "A");
  EXPECT_EQ(this->character(1, key_codes::a, 0), "ф");
  EXPECT_EQ(this->character(1, key_codes::a, translateShift), "Ф");
  EXPECT_EQ(this->character(1, key_codes::leftShift, 0), std::nullopt);
  EXPECT_EQ(this->character(1, key_codes::leftArrow, 0), std::nullopt);
}

TYPED_TEST_P(InputSourcesContract, KeysPostedAfterASelectionMeetIt) {
  this->tap(0, nullptr);
  for (const std::size_t index : {0U, 1U, 0U, 1U}) {
    this->sources().selectInputSource(*this->source(index));
    this->post(key_codes::a);
  }
  this->backend_.settle();
  EXPECT_EQ(this->backend_.text(), "aфaф");
  EXPECT_EQ(this->current(), this->source(1)->id);
}

TYPED_TEST_P(InputSourcesContract, ACallbackSeesWhatItsKeyMetAndThenWhatItSelects) {
  std::vector<std::string> seen;
  this->tap(this->bit(EventType::keyDown), [&](EventType, const Event& event) {
    seen.push_back(this->current());
    if (event.keyCode != key_codes::space) return EventVerdict::pass;
    this->sources().selectInputSource(*this->source(0));
    seen.push_back(this->current());
    this->post(key_codes::a);
    return EventVerdict::drop;
  });
  this->type({key_codes::a});
  this->backend_.choose(1);
  this->type({key_codes::a, key_codes::space, key_codes::a});
  const auto us = this->source(0)->id;
  const auto ru = this->source(1)->id;
  EXPECT_EQ(seen, (std::vector{us, ru, ru, us, us}));
  EXPECT_EQ(this->backend_.text(), "aфaa");
  EXPECT_EQ(this->current(), us);
}

REGISTER_TYPED_TEST_SUITE_P(InputSourcesContract, ListsKeyboardLayoutsInTheirOrder,
                            TranslatesKeysInEachLayout, KeysPostedAfterASelectionMeetIt,
                            ACallbackSeesWhatItsKeyMetAndThenWhatItSelects);

}  // namespace kivra
