#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kivra {

/// One edge of a minimal acyclic automaton, 8 bytes, as it lies in the cache file. The edges that
/// leave one state stand next to one another; a state is the position of its first edge.
struct AutomatonEdge {
  /// Bits 0-7 the letter code, bit 8 "a word ends here", bit 9 "last edge of this state", from bit
  /// 10 on the state that the edge leads to (0: none).
  std::uint32_t packed = 0;
  /// Words of this state that come before this edge's in alphabetical order.
  std::uint32_t wordsBefore = 0;

  [[nodiscard]] char letter() const { return static_cast<char>(packed & 0xFFU); }
  [[nodiscard]] bool endsWord() const { return (packed & 0x100U) != 0; }
  [[nodiscard]] bool isLast() const { return (packed & 0x200U) != 0; }
  [[nodiscard]] std::uint32_t target() const { return packed >> 10U; }

  bool operator==(const AutomatonEdge&) const = default;
};

/// A set of encoded words, read in place. Every word has a number, its position in alphabetical
/// order, by which data about it is found.
class WordAutomaton {
 public:
  WordAutomaton() = default;

  /// Reads `edges` in place; state `root` is where words begin (0: the empty set). The edges must
  /// have passed `isSound`, and must outlive this object.
  WordAutomaton(std::span<const AutomatonEdge> edges, std::uint32_t root)
      : edges_(edges), root_(root) {}

  /// True when no walk through `edges` can leave them or run in a circle, and the word numbers stay
  /// below `wordCount`: a damaged file must not be walked.
  static bool isSound(std::span<const AutomatonEdge> edges, std::uint32_t root,
                      std::uint32_t wordCount);

  /// The number of an encoded word, or nothing when it is not in the set.
  [[nodiscard]] std::optional<std::uint32_t> find(std::string_view word) const;

  [[nodiscard]] std::uint32_t root() const { return root_; }
  [[nodiscard]] const AutomatonEdge& edge(std::uint32_t position) const { return edges_[position]; }

 private:
  std::span<const AutomatonEdge> edges_;
  std::uint32_t root_ = 0;
};

/// Builds the automaton from words given in ascending order of their bytes, merging equal endings
/// as it goes, so that it never holds more than the result and one open path.
class WordAutomatonBuilder {
 public:
  WordAutomatonBuilder();

  /// Adds the next word; it must be greater than the one before, and not empty.
  void add(std::string_view word);

  /// Closes the automaton and returns its root. `edges()` is complete after that.
  std::uint32_t finish();

  [[nodiscard]] const std::vector<AutomatonEdge>& edges() const { return edges_; }
  [[nodiscard]] std::uint32_t wordCount() const { return words_; }

 private:
  struct OpenState {
    std::vector<AutomatonEdge> edges;
    std::uint32_t words = 0;
  };

  void closeBelow(std::size_t depth);
  std::uint32_t intern(OpenState& state);
  [[nodiscard]] bool equalsStored(std::uint32_t position,
                                  const std::vector<AutomatonEdge>& state) const;

  std::vector<AutomatonEdge> edges_;
  std::unordered_multimap<std::uint64_t, std::uint32_t> known_;
  std::vector<OpenState> path_;
  std::string last_;
  std::uint32_t words_ = 0;
};

}  // namespace kivra
