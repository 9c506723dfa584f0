#pragma once

#include <filesystem>
#include <string>

namespace kivra {

/// Which input method KWin starts, as its configuration has it (kwinrc, [Wayland] InputMethod: the
/// path of a desktop entry). KWin takes up a change at once.
class KwinInputMethod {
 public:
  KwinInputMethod();

  /// The path of the entry; empty when there is none.
  std::string current() const;
  bool isOurs() const { return current() == ours_; }

  /// Names the guard, and keeps what stood there; the user has agreed to it.
  void takeOver() const;
  /// Puts back what stood there, if the guard is named now.
  void giveBack() const;

 private:
  void write(const std::string& entry, const std::string& replaced) const;

  std::filesystem::path file_;
  std::string ours_;
};

}  // namespace kivra
