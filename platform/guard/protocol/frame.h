#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "platform/guard/protocol/guard_protocol.h"

namespace kivra::guard {

/// A frame as it came: its kind and the bytes behind the header.
struct Frame {
  FrameKind kind = FrameKind::hello;
  std::vector<std::byte> payload;

  /// The record at the start of the payload; nothing when the payload is too short for it.
  template <class Record>
  std::optional<Record> head() const {
    static_assert(std::is_trivially_copyable_v<Record>);
    if (payload.size() < sizeof(Record)) return std::nullopt;
    Record record;
    std::memcpy(&record, payload.data(), sizeof record);
    return record;
  }

  /// The records that follow the first `skipped` bytes; bytes that make no whole record are left
  /// out.
  template <class Record>
  std::vector<Record> records(std::size_t skipped) const {
    static_assert(std::is_trivially_copyable_v<Record>);
    if (payload.size() < skipped) return {};
    std::vector<Record> records((payload.size() - skipped) / sizeof(Record));
    if (records.empty()) return records;
    std::memcpy(records.data(), payload.data() + skipped, records.size() * sizeof(Record));
    return records;
  }
};

enum class SendResult { sent, wouldBlock, closed };

/// Sends a frame of one record and of those in `rest`, without waiting.
SendResult sendFrame(int fd, FrameKind kind, std::span<const std::byte> record,
                     std::span<const std::byte> rest);

template <class Record>
SendResult sendRecord(int fd, FrameKind kind, const Record& record) {
  return sendFrame(fd, kind, std::as_bytes(std::span(&record, 1)), {});
}

/// What the other end has said of itself: whether its frames can be understood.
class Greeting {
 public:
  /// True for a frame that may be read on: the other end has greeted and is of this version.
  bool accepts(const Frame& frame);
  /// It has greeted, and is of this version.
  bool isHeard() const { return isHeard_; }
  /// It has turned out to be of another build.
  bool isForeign() const { return isForeign_; }

 private:
  bool isHeard_ = false;
  bool isForeign_ = false;
};

struct Received {
  std::optional<Frame> frame;  ///< nothing when none is there
  bool isClosed = false;       ///< the other end is gone, or sends what is no frame
};

/// The next frame, without waiting.
Received receiveFrame(int fd);

}  // namespace kivra::guard
