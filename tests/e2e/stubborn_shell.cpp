#include "stubborn_shell.h"

#include <X11/XKBlib.h>
#include <glib-unix.h>

#include <stdexcept>

namespace kivra::e2e {

namespace {

constexpr auto shellInterface = R"(<node><interface name="kivra.InputSource">
<method name="SelectGroup"><arg type="u" direction="in"/></method></interface></node>)";

}  // namespace

StubbornShell::StubbornShell(const std::string& display, const std::string& address)
    : display_(XOpenDisplay(display.c_str())),
      client_(address),
      context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)),
      description_(g_dbus_node_info_new_for_xml(shellInterface, nullptr)) {
  if (display_ == nullptr) throw std::runtime_error("no display " + display);
  XkbQueryExtension(display_, nullptr, &xkbEvent_, nullptr, nullptr, nullptr);
  XkbSelectEventDetails(display_, XkbUseCoreKbd, XkbStateNotify, XkbGroupLockMask,
                        XkbGroupLockMask);
  lock();
  offerExtension();
  thread_ = std::thread([this] { serve(); });
}

StubbornShell::~StubbornShell() {
  g_main_context_invoke(
      context_, [](gpointer loop) { return g_main_loop_quit(static_cast<GMainLoop*>(loop)), 0; },
      loop_);
  thread_.join();
  g_dbus_node_info_unref(description_);
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
  XCloseDisplay(display_);
}

void StubbornShell::offerExtension() {
  g_main_context_push_thread_default(context_);
  const GDBusInterfaceVTable table{onCall, nullptr, nullptr, {}};
  g_dbus_connection_register_object(client_.connection(), "/kivra/InputSource",
                                    description_->interfaces[0], &table, this, nullptr, nullptr);
  g_main_context_pop_thread_default(context_);
  client_.call({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
               "RequestName", g_variant_new("(su)", "kivra.InputSource", 0U));
}

void StubbornShell::serve() {
  g_main_context_push_thread_default(context_);
  auto* const source = g_unix_fd_source_new(ConnectionNumber(display_), G_IO_IN);
  g_source_set_callback(source, G_SOURCE_FUNC(onReadable), this, nullptr);
  g_source_attach(source, context_);
  g_main_loop_run(loop_);
  g_source_destroy(source);
  g_source_unref(source);
  g_main_context_pop_thread_default(context_);
}

gboolean StubbornShell::onReadable(int /*fd*/, GIOCondition /*condition*/, gpointer self) {
  static_cast<StubbornShell*>(self)->readEvents();
  return G_SOURCE_CONTINUE;
}

void StubbornShell::readEvents() {
  while (XPending(display_) > 0) {
    XkbEvent event;
    XNextEvent(display_, &event.core);
    if (event.type != xkbEvent_ || event.any.xkb_type != XkbStateNotify) continue;
    if (static_cast<unsigned int>(event.state.locked_group) != selected_) lock();
  }
}

void StubbornShell::lock() {
  XkbLockGroup(display_, XkbUseCoreKbd, selected_);
  XFlush(display_);
}

void StubbornShell::onCall(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                           const char* /*interface*/, const char* /*method*/, GVariant* arguments,
                           GDBusMethodInvocation* invocation, gpointer self) {
  auto& shell = *static_cast<StubbornShell*>(self);
  guint32 group = 0;
  g_variant_get(arguments, "(u)", &group);
  shell.selected_ = group;
  shell.lock();
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

}  // namespace kivra::e2e
