#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/record.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

#include "platform/x11/recorded_event.h"
#include "platform/x11/x_display.h"

namespace kivra::x11 {

/// All key and button events in the order in which the server takes them in, frozen keyboard or
/// not, key repeats included. The requests by which the program posts keys are recorded in the same
/// stream, so that an event right behind such a request is known to be the program's own.
class RecordStream {
 public:
  /// `posting` is the connection on which the program posts keys and grabs the keyboard. Throws
  /// std::runtime_error when the server refuses.
  explicit RecordStream(Display* posting);
  ~RecordStream();
  RecordStream(const RecordStream&) = delete;
  RecordStream& operator=(const RecordStream&) = delete;

  int fd() const { return ConnectionNumber(data_.get()); }

  /// How the next posted key is to be taken: an own event, or, when it only gives back what the
  /// user had typed, nothing at all. One call for each key, before it is posted.
  struct Posted {
    bool isReplay = false;
    std::int64_t userData = 0;
  };
  void expect(const Posted& posted);

  /// Takes in what the server has sent; does not wait.
  void drain();

  /// Waits until the server has carried out all requests of the posting connection, and takes in
  /// everything up to there.
  void catchUp();

  /// Waits at most `timeout` for the server to send something.
  bool wait(std::chrono::milliseconds timeout);

  /// Taken in, oldest first; the reader removes.
  std::deque<RecordedEvent>& events() { return events_; }

  /// The number of events that stood in `events` when the latest recorded keyboard grab froze the
  /// keyboard, and when the latest posted key was taken in.
  std::size_t countAtGrab() const { return countAtGrab_; }
  std::size_t countAtLastPosted() const { return countAtLastPosted_; }

 private:
  static void intercept(XPointer self, XRecordInterceptData* data);
  void takeRequest(const unsigned char* request);
  void takeEvent(const unsigned char* event);

  Display* posting_;
  DisplayPointer data_;
  XRecordContext context_ = 0;
  bool isOn_ = false;
  int testOpcode_;
  std::deque<RecordedEvent> events_;
  std::deque<Posted> expected_;
  struct Pending {
    std::uint8_t type = 0;
    std::uint8_t code = 0;
    Posted posted;
  };
  std::optional<Pending> pending_;
  std::uint64_t fencesSent_ = 0;
  std::uint64_t fencesSeen_ = 0;
  std::size_t countAtGrab_ = 0;
  std::size_t countAtLastPosted_ = 0;
};

}  // namespace kivra::x11
