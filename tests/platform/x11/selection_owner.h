#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kivra::x11 {

/// Another program that owns the clipboard and answers as the test says, for as long as it lives.
class SelectionOwner {
 public:
  enum class Way { whole, inPieces, withoutEnd, diesHalfWay, silent };

  struct Answer {
    std::string bytes;
    Way way = Way::whole;
    std::chrono::milliseconds delay{0};
  };
  /// Answers by target; "TARGETS" only says when that is answered.
  using Answers = std::map<std::string, Answer>;

  /// Returns when it owns the clipboard.
  SelectionOwner(const std::string& display, Answers answers);
  ~SelectionOwner();
  SelectionOwner(const SelectionOwner&) = delete;
  SelectionOwner& operator=(const SelectionOwner&) = delete;

  /// The targets that it was asked for.
  std::set<std::string> asked() const;
  bool isOwner() const { return !isLost_; }

 private:
  struct Transfer {
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    xcb_atom_t type = XCB_ATOM_NONE;
    Answer answer{};
    std::size_t sent = 0;
  };

  xcb_atom_t atom(const std::string& name);
  std::string name(xcb_atom_t atom);
  void own();
  void serve();
  void answer(const xcb_selection_request_event_t& request);
  bool put(const xcb_selection_request_event_t& request);
  void putTargets(const xcb_selection_request_event_t& request);
  bool sendPiece();

  Answers answers_;
  xcb_connection_t* connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  Transfer transfer_;
  mutable std::mutex mutex_;
  std::set<std::string> asked_;
  std::atomic<bool> isEnding_{false};
  std::atomic<bool> isLost_{false};
  std::thread thread_;
};

}  // namespace kivra::x11
