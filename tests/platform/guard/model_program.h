#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "platform/guard/guard_bench.h"

namespace kivra::guard {

/// A program that corrects every word: it keeps the keys that it is told of, answers a Space with
/// the same keys in the other layout, forgets them when the word is broken, and can take its last
/// correction back.
class ModelProgram {
 public:
  /// `pause`, in milliseconds, is what the application needs between erasing and typing.
  ModelProgram(GuardBench& bench, std::uint32_t pause) : bench_(bench), pause_(pause) {}

  /// Handles all reports up to a Space that awaits a verdict; none while an undo is to be sent.
  void read();
  /// Handles all reports and answers nothing.
  void readToTheEnd();
  /// The next report is a Space that awaits a verdict.
  bool isAsked() const { return asked_.has_value(); }
  void answer();

  /// Nothing has been typed since the last correction, as far as the program knows.
  bool canUndo() const { return undo_.has_value() && word_.empty(); }
  /// Decides to undo; sent with `sendUndo`.
  void undo();
  bool hasUndoToSend() const { return post_.has_value(); }
  void sendUndo();

  /// How many of its scripts have been typed.
  int typed() const { return decided_ - refused_; }
  int decided() const { return decided_; }

  template <class Digest>
  void addTo(Digest& digest, std::uint32_t number) const {
    const auto addWord = [&digest](const std::vector<Key>& word) {
      for (const auto& key : word) digest.add(key.code).add(key.flags);
      digest.add(word.size());
    };
    addWord(word_);
    digest.add(undo_.has_value());
    if (undo_) {
      addWord(undo_->word);
      digest.add(undo_->from);
    }
    digest.add(asked_ ? asked_->number - number : 1).add(post_ ? post_->number - number : 1);
    if (post_) digest.add(post_->keys.size());
    for (const auto& report : inbox_) {
      digest.add(report.number - number).add(report.kind).add(report.keyCode).add(report.group);
      digest.add(report.flags).add(report.awaitsVerdict);
    }
    digest.add(lastNumber_ - number).add((decided_ - refused_) % 2);
  }

 private:
  struct Key {
    std::uint16_t code = 0;
    std::uint64_t flags = 0;
  };
  struct Correction {
    std::vector<Key> word;
    std::uint32_t from = 0;
  };
  struct Post {
    std::uint32_t number = 0;
    std::vector<PostedKey> keys;
  };

  void fetch();
  void handle(const Report& report);
  std::vector<PostedKey> retyping(std::size_t erased, std::uint32_t group,
                                  const std::vector<Key>& word) const;

  GuardBench& bench_;
  std::uint32_t pause_;
  std::deque<Report> inbox_;
  std::vector<Key> word_;
  std::optional<Correction> undo_;
  std::optional<Report> asked_;
  std::optional<Post> post_;
  std::uint32_t lastNumber_ = 0;
  int decided_ = 0;
  int refused_ = 0;
};

}  // namespace kivra::guard
