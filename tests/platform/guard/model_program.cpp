#include "platform/guard/model_program.h"

#include <algorithm>
#include <utility>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

void ModelProgram::fetch() {
  while (const auto report = bench_.report()) inbox_.push_back(*report);
}

void ModelProgram::read() {
  for (fetch(); !asked_ && !post_ && !inbox_.empty(); fetch()) {
    const auto report = inbox_.front();
    inbox_.pop_front();
    handle(report);
  }
}

void ModelProgram::readToTheEnd() {
  do {
    asked_.reset();
    post_.reset();
    read();
  } while (asked_);
}

void ModelProgram::handle(const Report& report) {
  switch (report.kind) {
    case ReportKind::keyDown:
      if (report.awaitsVerdict != 0) {
        asked_ = report;
        return;
      }
      word_.push_back({report.keyCode, report.flags});
      if (!evdevCode(report.keyCode)) word_.clear();
      break;
    case ReportKind::flagsChanged:
      if (report.awaitsVerdict != 0) bench_.verdict(report.number, false);
      break;
    case ReportKind::timedOut:
      undo_.reset();
      bench_.order({.kind = OrderKind::enable});
      break;
    case ReportKind::refused:
      undo_.reset();
      ++refused_;
      break;
    default:
      word_.clear();
      undo_.reset();
      break;
  }
  if (report.kind != ReportKind::refused) lastNumber_ = std::max(lastNumber_, report.number);
}

void ModelProgram::answer() {
  const auto space = *std::exchange(asked_, std::nullopt);
  const auto word = std::exchange(word_, {});
  lastNumber_ = space.number;
  undo_.reset();
  if (word.empty()) {
    bench_.verdict(space.number, false);
    return;
  }
  ++decided_;
  undo_ = Correction{word, space.group};
  bench_.verdict(space.number, true, retyping(word.size(), 1 - space.group, word));
}

void ModelProgram::undo() {
  const auto correction = *std::exchange(undo_, std::nullopt);
  post_ = Post{lastNumber_, retyping(correction.word.size() + 1, correction.from, correction.word)};
}

void ModelProgram::sendUndo() {
  const auto post = *std::exchange(post_, std::nullopt);
  ++decided_;
  bench_.post(post.number, post.keys);
}

std::vector<PostedKey> ModelProgram::retyping(std::size_t erased, std::uint32_t group,
                                              const std::vector<Key>& word) const {
  std::vector<PostedKey> keys;
  const auto stroke = [&keys](std::uint16_t code, std::uint64_t flags) {
    keys.push_back({.keyCode = code, .flags = flags});
    keys.push_back({.down = 0, .keyCode = code, .flags = flags});
  };
  for (std::size_t i = 0; i < erased; ++i) stroke(key_codes::deleteKey, 0);
  if (pause_ > 0) keys.push_back({.kind = PostedKey::Kind::pause, .value = pause_});
  keys.push_back({.kind = PostedKey::Kind::selectGroup, .value = group});
  for (const auto& key : word) stroke(key.code, key.flags & event_flags::shift);
  stroke(key_codes::space, 0);
  return keys;
}

}  // namespace kivra::guard
