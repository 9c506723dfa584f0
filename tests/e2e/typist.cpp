#include "typist.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <thread>

#include "platform/xkb/virtual_keys.h"
#include "platform/xkb/xkb_layout.h"

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;

const std::map<std::string_view, std::uint8_t>& namedKeys() {
  static const std::map<std::string_view, std::uint8_t> names = {{"ctrl", keys::control},
                                                                 {"shift", keys::shift},
                                                                 {"alt", keys::alt},
                                                                 {"super", 133},
                                                                 {"BackSpace", keys::backspace},
                                                                 {"Tab", keys::tab},
                                                                 {"Return", keys::enter},
                                                                 {"Escape", keys::escape},
                                                                 {"space", keys::space},
                                                                 {"End", 115},
                                                                 {"Left", 113},
                                                                 {"Home", 110},
                                                                 {"Delete", 119},
                                                                 {"F4", 70},
                                                                 {"F9", 75}};
  return names;
}

}  // namespace

Typist::Typist(XSession& session)
    : session_(session),
      keyboard_(&session.server().keyboard()),
      display_(XOpenDisplay(session.display().c_str())) {
  if (display_ == nullptr) throw std::runtime_error("no display " + session.display());
  const auto layout = XkbLayout::named("us");
  constexpr std::uint16_t keyLimit = 64;  // no keypad
  for (const auto shift : {false, true}) {
    for (std::uint16_t key = 0; key < keyLimit; ++key) {
      const auto character = layout->character(key, shift);
      if (!character || character->size() != 1) continue;
      const auto code = static_cast<std::uint8_t>(*evdevCode(key) + xkbOffset);
      keys_.try_emplace(character->front() == '\r' ? '\n' : character->front(), Key{code, shift});
    }
  }
}

Typist::~Typist() { XCloseDisplay(display_); }

void Typist::use(int keyboard, bool isReopened) {
  if (!isReopened) keyboard_->waitUntilRead();
  keyboard_ = &session_.server().keyboard(keyboard, isReopened);
}

void Typist::leaveFor(int keyboard) { keyboard_ = &session_.server().keyboard(keyboard); }

std::chrono::microseconds Typist::nextHold() {
  // The constants are those of the C standard's example of rand.
  random_ = random_ * 1103515245 + 12345;
  const auto percent = (random_ >> 16) % 101;
  return pace_.hold + pace_.spread * percent / 100;
}

std::vector<Typist::Event> Typist::eventsOf(std::string_view text) {
  std::vector<Event> events;
  std::map<std::uint8_t, std::size_t> releases;  // where in `events` each key was last let go of
  auto time = 0us;
  bool isShiftDown = false;
  for (const auto character : text) {
    const auto& key = keys_.at(character);
    if (key.shift != isShiftDown) events.push_back({time - pace_.key / 4, keys::shift, key.shift});
    isShiftDown = key.shift;
    if (const auto last = releases.find(key.code); last != releases.end()) {
      auto& release = events[last->second];
      release.time = std::min(release.time, time - pace_.key / 4);
    }
    events.push_back({time, key.code, true});
    releases[key.code] = events.size();
    events.push_back({time + nextHold(), key.code, false});
    time += pace_.key;
  }
  if (isShiftDown) events.push_back({time - pace_.key / 4, keys::shift, false});
  std::ranges::stable_sort(events, {}, &Event::time);
  return events;
}

void Typist::type(std::string_view text) {
  // A key that would be late for the one before it comes at its own time: the pace is even.
  const auto start = std::chrono::steady_clock::now() + pace_.key / 4;
  for (const auto& event : eventsOf(text)) {
    if (pace_.key > 0us) std::this_thread::sleep_until(start + event.time);
    key(event.code, event.isDown);
  }
  if (pace_.key > 0us) std::this_thread::sleep_for(std::max(0us, pace_.key - pace_.hold));
}

void Typist::key(std::uint8_t code, bool isDown) {
  if (watcher_) watcher_(code, isDown);
  keyboard_->key(code, isDown);
}

void Typist::tap(std::uint8_t code) {
  press(code);
  std::this_thread::sleep_for(pace_.hold);
  release(code);
  std::this_thread::sleep_for(std::max(0us, pace_.key - pace_.hold));
}

void Typist::chord(const std::vector<std::uint8_t>& codes) {
  for (const auto code : codes) press(code);
  for (auto code = codes.rbegin(); code != codes.rend(); ++code) release(*code);
}

void Typist::chord(std::string_view names) {
  std::vector<std::uint8_t> codes;
  while (!names.empty()) {
    const auto name = names.substr(0, names.find('+'));
    codes.push_back(name.size() == 1 ? keys_.at(name[0]).code : namedKeys().at(name));
    names.remove_prefix(std::min(names.size(), name.size() + 1));
  }
  chord(codes);
}

void Typist::click() {
  XTestFakeButtonEvent(display_, 1, True, CurrentTime);
  XTestFakeButtonEvent(display_, 1, False, CurrentTime);
  XSync(display_, False);
}

void Typist::addMasterDevices(std::string name) {
  int major = 2;
  int minor = 2;
  XIQueryVersion(display_, &major, &minor);
  XIAnyHierarchyChangeInfo change{};
  change.add = {.type = XIAddMaster, .name = name.data(), .send_core = True, .enable = True};
  XIChangeHierarchy(display_, &change, 1);
  XSync(display_, False);
}

void Typist::removeMasterDevices(const std::string& name) {
  int count = 0;
  auto* const devices = XIQueryDevice(display_, XIAllMasterDevices, &count);
  for (int i = 0; i < count; ++i) {
    if (name + " keyboard" != devices[i].name) continue;
    XIAnyHierarchyChangeInfo change{};
    change.remove.type = XIRemoveMaster;
    change.remove.deviceid = devices[i].deviceid;
    change.remove.return_mode = XIFloating;
    XIChangeHierarchy(display_, &change, 1);
  }
  XIFreeDeviceInfo(devices);
  XSync(display_, False);
}

void Typist::selectGroup(unsigned int group) {
  XkbLockGroup(display_, XkbUseCoreKbd, group);
  XSync(display_, False);
}

unsigned int Typist::group() {
  XkbStateRec state{};
  XkbGetState(display_, XkbUseCoreKbd, &state);
  return state.group;
}

unsigned int Typist::locks() {
  XkbStateRec state{};
  XkbGetState(display_, XkbUseCoreKbd, &state);
  return state.locked_mods;
}

bool Typist::isAnyKeyDown() {
  std::array<char, 32> keys{};
  XQueryKeymap(display_, keys.data());
  return std::ranges::any_of(keys, [](char byte) { return byte != 0; });
}

}  // namespace kivra::e2e
