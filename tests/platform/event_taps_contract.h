#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_posting.h"
#include "platform/event_tap.h"

namespace kivra {

inline constexpr std::uint16_t keyS = 1;
inline constexpr std::uint16_t keyD = 2;

/// What taps and posting do together. `Backend` is default-constructible, stands before an empty
/// text with the layouts us and ru, and has
/// - `EventTaps& taps()`, `EventPosting& posting()`;
/// - the hands: `press(keyCode)`, `release(keyCode)`, `click()`;
/// - `pressUnanswered(keyCode)`: the program has no time for the key until it is too late;
/// - `settle()`: everybody does what there is to do, in particular after a tap was created;
/// - `std::string text()`, what the application has.
template <class Backend>
class EventTapsContract : public ::testing::Test {
 protected:
  static constexpr std::uint64_t bit(EventType type) {
    return 1ULL << static_cast<std::uint32_t>(type);
  }

  void tap(std::uint64_t mask, const EventTapCallback& callback) {
    backend_.taps().setConsumableKeys({{.keyCode = key_codes::space}});
    port_ = backend_.taps().eventTapCreate(mask, [this, callback](EventType type, Event event) {
      event.type = type;
      if (event.userData == 0) users_.push_back(event);
      return event.userData == 0 ? callback(type, event) : EventVerdict::pass;
    });
    ASSERT_TRUE(port_);
    source_ = backend_.taps().createRunLoopSource(*port_);
    backend_.taps().runLoopAddSource(*source_);
    backend_.taps().eventTapEnable(*port_, true);
    backend_.settle();
    users_.clear();
  }

  /// The hands are faster than the program.
  void type(std::initializer_list<std::uint16_t> keys) {
    for (const auto key : keys) {
      backend_.press(key);
      backend_.release(key);
    }
    backend_.settle();
  }

  void post(std::uint16_t key, std::uint64_t flags = 0, const std::string& text = {}) {
    const auto source = backend_.posting().eventSourceCreate(0);
    for (const auto down : {true, false}) {
      auto event = backend_.posting().createKeyboardEvent(*source, key, down);
      ASSERT_EQ(event, (KeyboardEvent{.keyCode = key, .down = down, .unicodeString = {}}));
      event->flags = flags;
      event->userData = 7;
      event->unicodeString = text;
      backend_.posting().eventPost(*event);
    }
  }

  /// The user's events as the tap was asked about them.
  std::vector<Event> asked() { return std::exchange(users_, {}); }
  std::vector<Event> downs(std::initializer_list<std::uint16_t> keys) {
    std::vector<Event> events;
    for (const auto key : keys) events.push_back({.keyCode = key});
    return events;
  }

  Backend backend_;
  std::shared_ptr<EventTapPort> port_;
  std::shared_ptr<RunLoopSource> source_;
  std::vector<Event> users_;
};
TYPED_TEST_SUITE_P(EventTapsContract);

TYPED_TEST_P(EventTapsContract, WhatIsPostedStandsBehindItsKeyAndBeforeTheNext) {
  int words = 0;
  this->tap(this->bit(EventType::keyDown), [&](EventType, const Event& event) {
    if (event.keyCode != key_codes::space) return EventVerdict::pass;
    this->post(keyD);
    this->post(0, 0, "ё©");
    return ++words == 1 ? EventVerdict::drop : EventVerdict::pass;
  });
  this->type({key_codes::a, key_codes::space, keyS, key_codes::space, key_codes::a});
  EXPECT_EQ(this->backend_.text(), "adё©s dё©a");
  EXPECT_EQ(this->asked(),
            this->downs({key_codes::a, key_codes::space, keyS, key_codes::space, key_codes::a}))
      << "what the program posts is never the user's";
}

TYPED_TEST_P(EventTapsContract, PostsWithExactlyTheFlagsThatAnEventHas) {
  this->tap(this->bit(EventType::keyDown),
            [](EventType, const Event&) { return EventVerdict::pass; });
  this->backend_.press(key_codes::leftShift);
  this->post(key_codes::a);
  this->post(key_codes::a, event_flags::shift);
  this->backend_.settle();
  this->type({keyS});
  this->backend_.release(key_codes::leftShift);
  this->backend_.settle();
  this->post(key_codes::a, event_flags::shift);
  this->backend_.settle();
  this->type({keyD});
  EXPECT_EQ(this->backend_.text(), "aASAd");
}

TYPED_TEST_P(EventTapsContract, TellsTheModifiersThatAreHeld) {
  this->tap(this->bit(EventType::keyDown) | this->bit(EventType::flagsChanged),
            [](EventType, const Event&) { return EventVerdict::pass; });
  this->backend_.press(key_codes::leftShift);
  this->type({key_codes::a});
  this->backend_.release(key_codes::leftShift);
  this->backend_.settle();
  Event held{.type = EventType::flagsChanged, .keyCode = key_codes::leftShift};
  held.flags = event_flags::shift;
  const Event key{.keyCode = key_codes::a, .flags = event_flags::shift};
  const Event released{.type = EventType::flagsChanged, .keyCode = key_codes::leftShift};
  EXPECT_EQ(this->asked(), (std::vector{held, key, released}));
}

TYPED_TEST_P(EventTapsContract, AsksOnlyForTheTypesOfTheMask) {
  this->tap(this->bit(EventType::leftMouseDown),
            [](EventType, const Event&) { return EventVerdict::drop; });
  this->type({key_codes::a, key_codes::space});
  EXPECT_TRUE(this->asked().empty());
  this->backend_.click();
  this->backend_.settle();
  EXPECT_EQ(this->asked(), std::vector{Event{.type = EventType::leftMouseDown}});
  EXPECT_EQ(this->backend_.text(), "a ");
}

TYPED_TEST_P(EventTapsContract, AsksNothingWhileTheTapIsOffOrGone) {
  this->tap(this->bit(EventType::keyDown),
            [](EventType, const Event&) { return EventVerdict::drop; });
  this->backend_.taps().eventTapEnable(*this->port_, false);
  this->backend_.settle();
  this->type({key_codes::space});
  EXPECT_TRUE(this->asked().empty());
  this->backend_.taps().eventTapEnable(*this->port_, true);
  this->backend_.settle();
  this->type({key_codes::space});
  EXPECT_EQ(this->asked(), this->downs({key_codes::space}));
  this->port_.reset();
  this->type({key_codes::space});
  EXPECT_TRUE(this->asked().empty());
  EXPECT_EQ(this->backend_.text(), "  ");
}

TYPED_TEST_P(EventTapsContract, AnAnswerThatComesTooLateChangesNothing) {
  this->tap(this->bit(EventType::keyDown), [this](EventType type, const Event&) {
    if (type == EventType::keyDown) this->post(keyD);
    return EventVerdict::drop;
  });
  this->backend_.pressUnanswered(key_codes::space);
  this->backend_.settle();
  const auto told = this->asked();
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.back().type, EventType::tapDisabledByTimeout) << "whatever the mask";
  this->backend_.release(key_codes::space);
  this->type({key_codes::space});
  EXPECT_EQ(this->backend_.text(), "  ");
  EXPECT_TRUE(this->asked().empty()) << "the tap is off";
  this->backend_.taps().eventTapEnable(*this->port_, true);
  this->backend_.settle();
  this->type({key_codes::space});
  EXPECT_EQ(this->backend_.text(), "  d");
}

REGISTER_TYPED_TEST_SUITE_P(EventTapsContract, WhatIsPostedStandsBehindItsKeyAndBeforeTheNext,
                            PostsWithExactlyTheFlagsThatAnEventHas, TellsTheModifiersThatAreHeld,
                            AsksOnlyForTheTypesOfTheMask, AsksNothingWhileTheTapIsOffOrGone,
                            AnAnswerThatComesTooLateChangesNothing);

}  // namespace kivra
