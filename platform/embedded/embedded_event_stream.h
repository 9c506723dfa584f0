#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "platform/embedded/effects.h"
#include "platform/embedded/embedded_application.h"
#include "platform/embedded/embedded_session.h"
#include "platform/event_posting.h"
#include "platform/event_tap.h"
#include "platform/monitor_list.h"

namespace kivra::embedded {

/// The login session's event stream: the user's events and the program's go through the tap, if one
/// is installed and enabled, and on to the application in front.
class EmbeddedEventStream : public EventTaps, public EventPosting {
 public:
  EmbeddedEventStream(Effects& effects, EmbeddedApplication& application,
                      const EmbeddedSession& session, const MonitorList& monitors)
      : effects_(effects), application_(application), session_(session), monitors_(monitors) {}

  /// From now on no tap is created.
  void setRefusesTaps(bool refuses) { refusesTaps_ = refuses; }

  /// The user does something; true when it reached the application.
  bool send(const Event& event);

  /// The system switches the tap off and says why.
  void disableTap(EventType reason);

  std::shared_ptr<EventTapPort> eventTapCreate(std::uint64_t mask,
                                               EventTapCallback callback) override;
  std::shared_ptr<RunLoopSource> createRunLoopSource(EventTapPort& port) override;
  void runLoopAddSource(RunLoopSource& source) override;
  void runLoopRemoveSource(RunLoopSource& source) override;
  void eventTapEnable(EventTapPort& port, bool enable) override;

  /// What was posted last has not been typed: the user had typed on.
  void refusePosted() const {
    if (refused_) refused_();
  }

  std::unique_ptr<EventSource> eventSourceCreate(int stateId) override;
  std::optional<KeyboardEvent> createKeyboardEvent(EventSource& source, std::uint16_t keyCode,
                                                   bool down) override;
  void eventPost(const KeyboardEvent& event) override;
  void onRefusal(const std::function<void()>& called) override { refused_ = called; }

 private:
  struct Tap;
  struct Source;

  bool passesTap(EventType type, const Event& event);
  void deliver(const KeyboardEvent& event);
  void deliverPosted();

  Effects& effects_;
  EmbeddedApplication& application_;
  const EmbeddedSession& session_;
  const MonitorList& monitors_;
  bool refusesTaps_ = false;
  std::weak_ptr<Tap> tap_;
  std::deque<KeyboardEvent> posted_;
  std::function<void()> refused_;
  bool isInCallback_ = false;
};

}  // namespace kivra::embedded
