#include "platform/spelling/word_automaton.h"

#include <algorithm>

namespace kivra {
namespace {

constexpr std::uint32_t wordEnd = 0x100;
constexpr std::uint32_t last = 0x200;
constexpr std::uint32_t targetShift = 10;

std::uint64_t hashOf(const std::vector<AutomatonEdge>& state) {
  std::uint64_t hash = 1469598103934665603ULL;
  for (const AutomatonEdge& edge : state) hash = (hash ^ edge.packed) * 1099511628211ULL;
  return hash;
}

}  // namespace

bool WordAutomaton::isSound(std::span<const AutomatonEdge> edges, std::uint32_t root,
                            std::uint32_t wordCount) {
  if (root == 0) return wordCount == 0;
  if (root >= edges.size() || !edges.back().isLast()) return false;
  // States are stored after the states they lead to, so a target always lies before its edge. The
  // words below each state are counted on the way, and must agree with what the edges say.
  std::vector<std::uint32_t> words(edges.size(), 0);
  std::size_t first = 1;
  for (std::size_t i = 1; i < edges.size(); ++i) {
    const AutomatonEdge& edge = edges[i];
    if (edge.target() >= first) return false;
    if (edge.wordsBefore != words[first]) return false;
    if (edge.target() != 0 && words[edge.target()] == 0) return false;
    words[first] += (edge.endsWord() ? 1U : 0U) + words[edge.target()];
    if (words[first] > wordCount) return false;
    if (edge.isLast()) first = i + 1;
  }
  return words[root] == wordCount;
}

std::optional<std::uint32_t> WordAutomaton::find(std::string_view word) const {
  std::uint32_t state = root_;
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (state == 0) return std::nullopt;
    std::uint32_t at = state;
    while (edges_[at].letter() != word[i]) {
      if (edges_[at].isLast()) return std::nullopt;
      ++at;
    }
    const AutomatonEdge& edge = edges_[at];
    number += edge.wordsBefore;
    if (i + 1 == word.size()) {
      return edge.endsWord() ? std::optional(number) : std::nullopt;
    }
    if (edge.endsWord()) ++number;
    state = edge.target();
  }
  return std::nullopt;
}

WordAutomatonBuilder::WordAutomatonBuilder() : edges_(1), path_(1) {}

void WordAutomatonBuilder::add(std::string_view word) {
  const auto differ = std::mismatch(word.begin(), word.end(), last_.begin(), last_.end());
  const auto common = static_cast<std::size_t>(differ.first - word.begin());
  closeBelow(common);
  for (std::size_t depth = common; depth < word.size(); ++depth) {
    OpenState& state = path_[depth];
    const auto letter = static_cast<unsigned char>(word[depth]);
    const std::uint32_t end = depth + 1 == word.size() ? wordEnd : 0;
    state.edges.push_back({letter | end, state.words});
    state.words += end != 0 ? 1U : 0U;
    path_.emplace_back();
  }
  last_.assign(word);
  ++words_;
}

void WordAutomatonBuilder::closeBelow(std::size_t depth) {
  while (path_.size() > depth + 1) {
    OpenState closed = std::move(path_.back());
    path_.pop_back();
    OpenState& parent = path_.back();
    const std::uint32_t target = intern(closed);
    parent.edges.back().packed |= target << targetShift;
    parent.words += closed.words;
  }
}

std::uint32_t WordAutomatonBuilder::intern(OpenState& state) {
  if (state.edges.empty()) return 0;
  state.edges.back().packed |= last;
  const std::uint64_t hash = hashOf(state.edges);
  const auto [begin, end] = known_.equal_range(hash);
  for (auto it = begin; it != end; ++it) {
    if (equalsStored(it->second, state.edges)) return it->second;
  }
  const auto position = static_cast<std::uint32_t>(edges_.size());
  edges_.insert(edges_.end(), state.edges.begin(), state.edges.end());
  known_.emplace(hash, position);
  return position;
}

bool WordAutomatonBuilder::equalsStored(std::uint32_t position,
                                        const std::vector<AutomatonEdge>& state) const {
  if (position + state.size() > edges_.size()) return false;
  return std::equal(state.begin(), state.end(), edges_.begin() + position);
}

std::uint32_t WordAutomatonBuilder::finish() {
  closeBelow(0);
  return intern(path_.front());
}

}  // namespace kivra
