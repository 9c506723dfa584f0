#include "platform/guard/interleaved_session.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <map>

#include "platform/guard/guard_state.h"

namespace kivra::guard {

InterleavedSession::InterleavedSession(std::string_view phrase, const World& world,
                                       Choices& choices, States& seen)
    : phrase_(phrase), world_(world), choices_(choices), seen_(seen) {
  bench_.enable(spaces());
}

bool InterleavedSession::play() {
  try {
    playPhrase();
  } catch (const SeenBefore&) {
    return false;
  }
  return true;
}

std::string InterleavedSession::verify() const {
  const auto& screen = bench_.screen;
  if (screen.down().any()) return "a key is down";
  if (screen.faults() > 0) return "a key twice, or a BackSpace too many";
  if (screen.isCapsOn() != isCapsOn_) return "the lock";
  if (!isDead_ && bench_.guard.deadline()) return "something waits";
  if (!isDead_ && screen.group() != static_cast<std::uint32_t>(program_.typed() % 2)) {
    return "the layout";
  }
  return verifyText();
}

InterleavedSession::Origin InterleavedSession::originOf(char32_t character) {
  static const auto origins = [] {
    std::map<char32_t, Origin> found;
    for (const char letter : std::string_view("qwertyuiopasdfghjklzxcvbnm ")) {
      const auto key = keyOf(letter);
      for (const auto group : {1U, 0U}) {
        for (const auto shift : {true, false}) {
          found[Layouts::plain().character(key, group, shift)] = {{key, shift}, group};
        }
      }
    }
    return found;
  }();
  return origins.at(character);
}

std::string InterleavedSession::verifyText() const {
  const auto hasCaps = phrase_.find('c') != std::string_view::npos;
  const auto& characters = bench_.screen.characters();
  if (characters.size() != typedKeys_.size()) return "the number of letters";
  std::uint32_t group = 2;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto [typed, of] = originOf(characters[i]);
    const auto isRight = hasCaps ? typed.key == typedKeys_[i].key : typed == typedKeys_[i];
    if (!isRight) return "letter " + std::to_string(i);
    const auto isApart = typed.key == KEY_SPACE || i == wordStart_;
    if (!isApart && group != 2 && group != of) return "a word of two layouts";
    group = isApart && typed.key == KEY_SPACE ? 2 : of;
  }
  return "";
}

void InterleavedSession::playPhrase() {
  gap();
  for (const char element : phrase_) {
    ++elements_;
    const auto key = keyFor(element);
    letGoOfSome(key);
    if (element == 'u' && !isHeld(KEY_LEFTSHIFT)) press(KEY_LEFTSHIFT);
    press(key);
  }
  ++elements_;
  while (!held_.empty()) release(held_.front());
  bench_.pass(std::chrono::seconds(10));
  if (!isDead_) program_.readToTheEnd();
}

void InterleavedSession::press(std::uint16_t key) {
  story_ += " +" + std::to_string(key);
  for (auto& held : held_) held.isOld = true;
  held_.push_back({key, false});
  if (key == KEY_CAPSLOCK) {
    isCapsOn_ = !isCapsOn_;
  } else if (key != KEY_LEFTSHIFT) {
    typedKeys_.push_back({key, key != KEY_SPACE && isHeld(KEY_LEFTSHIFT)});
  }
  if (isDead_) {
    bench_.screen.press(key);
  } else {
    bench_.press(key);
  }
  gap();
}

void InterleavedSession::release(const Held& held) {
  const auto key = held.key;
  story_ += " -" + std::to_string(key);
  std::erase_if(held_, [key](const Held& other) { return other.key == key; });
  if (isDead_) {
    if (bench_.screen.down().test(key)) bench_.screen.release(key);
  } else {
    bench_.release(key);
  }
  gap();
}

std::uint16_t InterleavedSession::keyFor(char element) {
  if (element == 'c') return KEY_CAPSLOCK;
  if (element == '_') return KEY_SPACE;
  return keyOf("ghbdtncfvs"[letters_++]);
}

// A key rolls over one other at most, Shift over all of its letters.
void InterleavedSession::letGoOfSome(std::uint16_t next) {
  lookedAt_ = 0;
  for (const auto& held : std::vector(held_)) {
    ++lookedAt_;
    const auto mustGo = held.key == next || (held.isOld && held.key != KEY_LEFTSHIFT);
    if (mustGo || !world_.rolls || choices_.choose(2) == 0) release(held);
  }
}

bool InterleavedSession::isHeld(std::uint16_t key) const {
  return std::ranges::find(held_, key, &Held::key) != held_.end();
}

// Everybody but the hands, until it is their turn again.
void InterleavedSession::gap() {
  while (!isDead_) {
    program_.read();
    if (choices_.isNew() && !seen_.insert(state()).second) throw SeenBefore();
    const auto possible = moves();
    const auto move = possible[choices_.choose(possible.size())];
    if (move == Move::handsOn) return;
    make(move);
  }
}

std::vector<InterleavedSession::Move> InterleavedSession::moves() const {
  std::vector moves{Move::handsOn};
  const auto isPausing = GuardState::isPausing(bench_.guard);
  if (GuardState::isDeciding(bench_.guard)) moves.push_back(Move::timeOut);
  if (isPausing) moves.push_back(Move::pauseEnd);
  if (program_.hasUndoToSend()) {
    moves.push_back(Move::arrive);
  } else {
    if (program_.isAsked()) moves.push_back(Move::answer);
    if (world_.hasUndo && program_.canUndo()) moves.push_back(Move::undo);
  }
  if (world_.hasDisturbances && !isDisturbed_) {
    moves.insert(moves.end(), {Move::click, Move::die});
    if (!isPausing) moves.push_back(Move::focus);
  }
  return moves;
}

void InterleavedSession::make(Move move) {
  constexpr std::array names = {"",         "answer", "late",  "undo", "post",
                                "pauseEnd", "focus",  "click", "die"};
  story_ += std::string(" ") + names.at(static_cast<std::size_t>(move));
  switch (move) {
    case Move::answer:
      program_.answer();
      break;
    case Move::timeOut:
      bench_.pass(KeyboardGuard::decisionTime);
      break;
    case Move::pauseEnd:
      bench_.pass(std::chrono::milliseconds(world_.pause));
      break;
    case Move::undo:
      program_.undo();
      break;
    case Move::arrive:
      program_.sendUndo();
      break;
    default:
      isDisturbed_ = true;
      wordStart_ = typedKeys_.size();
      if (move == Move::focus) bench_.moveFocus();
      if (move == Move::click) bench_.click();
      if (move == Move::die) die();
      break;
  }
}

// The guard ends as well, whoever watches it lets go of its keys, and hands type on without it.
void InterleavedSession::die() {
  bench_.hangUp();
  bench_.serve();
  bench_.guard.letGo();
  KeySet held;
  for (const auto& [key, isOld] : held_) held.set(key);
  bench_.screen.letGo(held);
  isDead_ = true;
}

std::uint64_t InterleavedSession::state() const {
  Digest digest;
  digest.add(elements_).add(lookedAt_).add(wordStart_).add(isDisturbed_).add(isDead_);
  for (const auto& [key, isOld] : held_) digest.add(key).add(isOld);
  for (const auto& typed : typedKeys_) digest.add(typed.key).add(typed.shift);
  bench_.screen.addTo(digest);
  program_.addTo(digest, GuardState::number(bench_.guard));
  GuardState::add(digest, bench_.guard);
  return digest.value();
}

}  // namespace kivra::guard
