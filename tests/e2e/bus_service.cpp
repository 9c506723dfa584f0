#include "bus_service.h"

namespace kivra::e2e {

BusService::BusService(const BusClient& client, const BusObject& object, const char* description,
                       const GDBusInterfaceVTable& table, void* self)
    : context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)),
      description_(g_dbus_node_info_new_for_xml(description, nullptr)) {
  g_main_context_push_thread_default(context_);
  g_dbus_connection_register_object(client.connection(), object.path.c_str(),
                                    description_->interfaces[0], &table, self, nullptr, nullptr);
  g_main_context_pop_thread_default(context_);
  client.call({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
              "RequestName", g_variant_new("(su)", object.name.c_str(), 0U));
  thread_ = std::thread([this] { serve(); });
}

BusService::~BusService() {
  g_main_context_invoke(
      context_, [](gpointer loop) { return g_main_loop_quit(static_cast<GMainLoop*>(loop)), 0; },
      loop_);
  thread_.join();
  g_dbus_node_info_unref(description_);
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void BusService::serve() {
  g_main_context_push_thread_default(context_);
  g_main_loop_run(loop_);
  g_main_context_pop_thread_default(context_);
}

}  // namespace kivra::e2e
