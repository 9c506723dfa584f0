#pragma once

#include <gio/gio.h>

#include <set>
#include <string>
#include <vector>

#include "platform/atspi/accessible_object.h"

namespace kivra {

/// Asks the applications of an accessibility bus about their windows. Browsers tell of their pages,
/// and of the fields of their own windows, only to those who ask. For one thread, whose main
/// context takes the answers; nothing here waits, so that an application that does not answer holds
/// up nobody else.
class AccessibleApplications {
 public:
  /// Requests under way end once `cancellable` is cancelled.
  explicit AccessibleApplications(GCancellable* cancellable) : cancellable_(cancellable) {}
  AccessibleApplications(const AccessibleApplications&) = delete;
  AccessibleApplications& operator=(const AccessibleApplications&) = delete;

  /// From now on asks on this bus, where no application has been met yet.
  void setBus(GDBusConnection* bus);

  /// Asks each application that has come since.
  void meet();

  /// Turns the thread's main context until no request is under way.
  void finish();

 private:
  using Objects = std::vector<AccessibleObject>;
  using Take = void (AccessibleApplications::*)(const Objects&);
  struct Request {
    AccessibleApplications& sender;
    Take take;
  };

  void askForWindows(const Objects& applications);
  void askAbout(const Objects& windows);
  void send(const AccessibleObject& object, const char* method, Take take);
  static void onAnswer(GObject* bus, GAsyncResult* result, gpointer request);

  GCancellable* cancellable_;
  GDBusConnection* bus_ = nullptr;
  std::set<std::string> met_;  // by their names on the bus
  int pending_ = 0;            // requests without an answer
};

}  // namespace kivra
