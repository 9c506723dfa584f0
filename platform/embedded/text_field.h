#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kivra::embedded {

/// The text of one field with its selection, edited as an ordinary text view does. Positions given
/// and answered count user-perceived characters.
class TextField {
 public:
  TextField() = default;
  explicit TextField(std::string_view text);

  std::string text() const;
  std::size_t length() const;
  std::pair<std::size_t, std::size_t> selection() const;
  std::string selectedText() const;

  /// False, and nothing changes, when the range does not lie in the text.
  bool select(std::size_t begin, std::size_t end);
  void selectAll();

  /// Replaces the selection; the cursor stands behind what was inserted.
  void insert(std::string_view text);

  /// Like `insert`; can be taken back with `undoPaste`.
  void paste(std::string_view text);

  /// Puts back what the last paste replaced, if the pasted text still stands where it was put.
  void undoPaste();

  /// Erases the selection, or the character before (behind) the cursor.
  void deleteBackward();
  void deleteForward();

  enum class Target { left, right, beginning, end };

  /// Moves the cursor; with `extend` the other end of the selection stays.
  void move(Target target, bool extend);

  /// Takes out everything before the cursor.
  std::string takeTextBeforeCursor();

 private:
  struct Paste {
    std::size_t location;
    std::u16string inserted;
    std::u16string removed;
  };

  // UTF-16 offsets into text_ from here on.
  std::size_t begin() const { return std::min(anchor_, head_); }
  std::size_t end() const { return std::max(anchor_, head_); }
  std::size_t before(std::size_t offset) const;
  std::size_t behind(std::size_t offset) const;
  std::size_t offsetOfCharacter(std::size_t index) const;
  std::size_t characterAtOffset(std::size_t offset) const;
  std::size_t destination(Target target, bool extend) const;
  void replace(std::size_t from, std::size_t to, std::u16string_view with);

  std::u16string text_;
  std::size_t anchor_ = 0;
  std::size_t head_ = 0;  // the end of the selection that moves
  std::optional<Paste> lastPaste_;
};

}  // namespace kivra::embedded
