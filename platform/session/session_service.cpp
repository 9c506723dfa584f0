#include "platform/session/session_service.h"

#include <gio/gio.h>

#include <string_view>
#include <utility>

#include "platform/io/loop_thread.h"
#include "platform/session/session_names.h"

namespace kivra {

namespace {

constexpr const char* description = R"(<node>
 <interface name="org.freedesktop.Application">
  <method name="Activate"><arg type="a{sv}" direction="in"/></method>
  <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
  <method name="ActivateAction"><arg type="s" direction="in"/><arg type="av" direction="in"/>
   <arg type="a{sv}" direction="in"/></method>
 </interface>
 <interface name="app.kivra.Kivra.Control">
  <method name="Run"><arg type="as" direction="in"/><arg type="ay" direction="in"/>
   <arg type="i" direction="out"/><arg type="s" direction="out"/><arg type="s" direction="out"/>
  </method>
 </interface>
</node>)";

struct UnrefInvocation {
  void operator()(GDBusMethodInvocation* invocation) const { g_object_unref(invocation); }
};
using Invocation = std::shared_ptr<GDBusMethodInvocation>;

std::vector<std::string> strings(GVariant* array) {
  std::vector<std::string> result;
  GVariantIter iterator;
  g_variant_iter_init(&iterator, array);
  const char* text = nullptr;
  while (g_variant_iter_next(&iterator, "&s", &text) != 0) result.emplace_back(text);
  return result;
}

std::string bytes(GVariant* array) {
  gsize size = 0;
  const auto* data = g_variant_get_fixed_array(array, &size, 1);
  return data == nullptr ? "" : std::string(static_cast<const char*>(data), size);
}

/// What is no UTF-8 the bus would refuse.
GVariant* newString(const std::string& text) {
  return g_variant_new_take_string(
      g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
}

}  // namespace

/// The objects on the bus and the thread that serves them; the program's own loop is not glib's.
class SessionService::Server {
 public:
  Server(CallOnMainThread callOnMainThread, Handlers handlers)
      : callOnMainThread_(std::move(callOnMainThread)),
        handlers_(std::make_shared<Handlers>(std::move(handlers))),
        thread_([this] { serve(); }, [this] { finish(); }) {
    thread_.begun().wait();
  }

 private:
  void serve() {
    // The connection that the claim to be the only instance is made on: what answers for the
    // program's name is what owns it.
    bus_ = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus_ == nullptr) return;
    g_dbus_connection_set_exit_on_close(bus_, FALSE);
    registrations_ = registerObjects();
  }

  void finish() {
    for (const auto registration : registrations_) {
      g_dbus_connection_unregister_object(bus_, registration);
    }
    // The answer to the command that ended the program.
    if (bus_ != nullptr) g_dbus_connection_flush_sync(bus_, nullptr, nullptr);
  }

  std::vector<guint> registerObjects() {
    static constexpr GDBusInterfaceVTable table = {onCall, nullptr, nullptr, {}};
    auto* const node = g_dbus_node_info_new_for_xml(description, nullptr);
    std::vector<guint> registrations;
    for (auto* const* interface = node->interfaces; *interface != nullptr; ++interface) {
      registrations.push_back(g_dbus_connection_register_object(
          bus_, session_names::path, *interface, &table, this, nullptr, nullptr));
    }
    g_dbus_node_info_unref(node);
    return registrations;
  }

  static void onCall(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                     const char* interface, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* taken, gpointer self) {
    const auto& server = *static_cast<Server*>(self);
    const Invocation invocation(taken, UnrefInvocation());
    g_object_ref(taken);  // answering takes one reference, the pointer holds the other
    if (std::string_view(interface) == session_names::control) {
      server.run(invocation, arguments);
    } else if (std::string_view(method) == "ActivateAction") {
      server.activateAction(invocation, arguments);
    } else {
      server.callOnMainThread_([invocation, handlers = server.handlers_] {
        handlers->activate();
        g_dbus_method_invocation_return_value(invocation.get(), nullptr);
      });
    }
  }

  void run(const Invocation& invocation, GVariant* arguments) const {
    auto* const words = g_variant_get_child_value(arguments, 0);
    auto* const input = g_variant_get_child_value(arguments, 1);
    callOnMainThread_(
        [invocation, handlers = handlers_, words = strings(words), input = bytes(input)] {
          const auto reply = handlers->run(words, input);
          g_dbus_method_invocation_return_value(
              invocation.get(), g_variant_new("(i@s@s)", reply.status, newString(reply.output),
                                              newString(reply.message)));
        });
    g_variant_unref(words);
    g_variant_unref(input);
  }

  /// An action of the desktop entry is a command of one word.
  void activateAction(const Invocation& invocation, GVariant* arguments) const {
    const char* action = nullptr;
    g_variant_get_child(arguments, 0, "&s", &action);
    callOnMainThread_([invocation, handlers = handlers_, action = std::string(action)] {
      const auto reply = handlers->run({action}, "");
      if (reply.status == 0) {
        g_dbus_method_invocation_return_value(invocation.get(), nullptr);
      } else {
        g_dbus_method_invocation_return_error(
            invocation.get(), G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS, "%s", reply.message.c_str());
      }
    });
  }

  CallOnMainThread callOnMainThread_;
  std::shared_ptr<Handlers> handlers_;
  GDBusConnection* bus_ = nullptr;
  std::vector<guint> registrations_;
  LoopThread thread_;
};

SessionService::SessionService(CallOnMainThread callOnMainThread, Handlers handlers)
    : server_(std::make_unique<Server>(std::move(callOnMainThread), std::move(handlers))) {}

SessionService::~SessionService() = default;

}  // namespace kivra
