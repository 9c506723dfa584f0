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
    : display_(XOpenDisplay(display.c_str())), client_(address) {
  if (display_ == nullptr) throw std::runtime_error("no display " + display);
  XkbQueryExtension(display_, nullptr, &xkbEvent_, nullptr, nullptr, nullptr);
  XkbSelectEventDetails(display_, XkbUseCoreKbd, XkbStateNotify, XkbGroupLockMask,
                        XkbGroupLockMask);
  lock();
  service_.emplace(client_, BusObject{"kivra.InputSource", "/kivra/InputSource"}, shellInterface,
                   GDBusInterfaceVTable{onCall, nullptr, nullptr, {}}, this);
  events_ = g_unix_fd_source_new(ConnectionNumber(display_), G_IO_IN);
  g_source_set_callback(events_, G_SOURCE_FUNC(onReadable), this, nullptr);
  g_source_attach(events_, service_->context());
}

StubbornShell::~StubbornShell() {
  service_.reset();
  g_source_destroy(events_);
  g_source_unref(events_);
  XCloseDisplay(display_);
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
