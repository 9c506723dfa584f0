#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/pasteboard.h"
#include "platform/selection/selection_contents.h"
#include "platform/selection/selection_reader.h"

namespace kivra {

/// The clipboard of a display, where one program owns what others read, on a connection of its own.
/// Belongs to one thread. Without a display, or once it is gone, the selection is empty and nothing
/// can be written.
class Selection {
 public:
  explicit Selection(const SelectionWaits& waits) : waits_(waits) {}
  virtual ~Selection() = default;
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

  /// Readable when there are events to handle; -1 without a connection.
  virtual int fd() const = 0;
  virtual void handleEvents() = 0;

  /// Takes the selection and offers these items; no items: nobody owns the selection.
  virtual void own(const std::vector<PasteboardItem>& items) = 0;

  /// All that is there, and the change count from which on it was there.
  struct Contents {
    std::vector<PasteboardItem> items{};
    std::int64_t changeCount = 0;
  };

  std::int64_t changeCount();

  /// Nothing when an owner that lives does not hand over everything.
  std::optional<Contents> contents();
  std::optional<std::string> text(const std::string& type);

 protected:
  enum class Owner { nobody, us, another };

  virtual bool isConnected() const = 0;
  /// Handles what happened before the call.
  virtual void catchUp() = 0;
  virtual Owner owner() = 0;
  /// What is offered while the selection is owned.
  virtual const SelectionContents& offered() const = 0;
  virtual SelectionReader& reader() = 0;

  const SelectionWaits& waits() const { return waits_; }
  void noteNewOwner() { ++changeCount_; }
  /// The owner that was asked last is gone, or has given way to another: it answers no more.
  bool isAskedInVain() const { return changeCount_ != askedAt_; }

 private:
  PasteboardItem ownItem() const;
  std::optional<std::string> textOfOwner(const std::string& type, SelectionReader::Moment until);

  SelectionWaits waits_;
  std::int64_t changeCount_ = 0;
  std::int64_t askedAt_ = 0;  // the change count when the owner was last asked for something
};

}  // namespace kivra
