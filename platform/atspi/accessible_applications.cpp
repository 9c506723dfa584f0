#include "platform/atspi/accessible_applications.h"

#include <memory>

#include "platform/io/variant_pointer.h"

namespace kivra {

namespace {

constexpr int answerTimeout = 2000;  // ms

}  // namespace

void AccessibleApplications::setBus(GDBusConnection* bus) {
  bus_ = bus;
  met_.clear();
}

void AccessibleApplications::meet() {
  send({accessibleRegistry, accessibleRoot}, "GetChildren", &AccessibleApplications::askForWindows);
}

void AccessibleApplications::finish() {
  while (pending_ > 0) g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
}

void AccessibleApplications::askForWindows(const Objects& applications) {
  for (const auto& application : applications) {
    if (met_.contains(application.busName)) continue;
    send(application, "GetChildren", &AccessibleApplications::askAbout);
  }
}

void AccessibleApplications::askAbout(const Objects& windows) {
  for (const auto& window : windows) {
    met_.insert(window.busName);
    // Chromium takes this question, unlike that for the role, for the sign of a reader of pages.
    send(window, "GetRelationSet", nullptr);
  }
}

void AccessibleApplications::send(const AccessibleObject& object, const char* method, Take take) {
  if (bus_ == nullptr) return;
  ++pending_;
  g_dbus_connection_call(bus_, object.busName.c_str(), object.path.c_str(), accessibleInterface,
                         method, nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, answerTimeout,
                         cancellable_, onAnswer, new Request{*this, take});
}

void AccessibleApplications::onAnswer(GObject* bus, GAsyncResult* result, gpointer request) {
  const std::unique_ptr<Request> sent(static_cast<Request*>(request));
  --sent->sender.pending_;
  const VariantPointer reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  if (!reply || sent->take == nullptr) return;
  if (g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(a(so))")) == 0) return;
  Objects objects;
  const VariantPointer list(g_variant_get_child_value(reply.get(), 0));
  for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
    const char* name = nullptr;
    const char* path = nullptr;
    g_variant_get_child(list.get(), i, "(&s&o)", &name, &path);
    objects.push_back({name, path});
  }
  (sent->sender.*sent->take)(objects);
}

}  // namespace kivra
