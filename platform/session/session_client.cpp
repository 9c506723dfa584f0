#include "platform/session/session_client.h"

#include <gio/gio.h>

#include "platform/io/variant_pointer.h"
#include "platform/session/session_names.h"

namespace kivra::session_client {

namespace {

constexpr int activationWait = 2000;  // ms
constexpr int commandWait = 25000;    // ms

struct FreeError {
  void operator()(GError* error) const { g_error_free(error); }
};

/// The answer to the call or, when there is none, why.
struct Called {
  VariantPointer reply;
  std::unique_ptr<GError, FreeError> error;
};

Called call(const char* interface, const char* method, GVariant* arguments, int wait) {
  const VariantPointer owned(g_variant_ref_sink(arguments));
  GError* error = nullptr;
  // Never closed: it is the one that a claim to be the only instance may be made on.
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return {};
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  VariantPointer reply(g_dbus_connection_call_sync(
      bus, session_names::service, session_names::path, interface, method, owned.get(), nullptr,
      G_DBUS_CALL_FLAGS_NO_AUTO_START, wait, nullptr, &error));
  return {std::move(reply), std::unique_ptr<GError, FreeError>(error)};
}

bool isNobodyThere(const Called& called) {
  return !called.error ||
         g_error_matches(called.error.get(), G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != 0 ||
         g_error_matches(called.error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != 0;
}

}  // namespace

void activate() {
  call(session_names::application, "Activate", g_variant_new("(a{sv})", nullptr), activationWait);
}

std::optional<CommandReply> run(const std::vector<std::string>& words, const std::string& input) {
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE("as"));
  for (const auto& word : words) g_variant_builder_add(&list, "s", word.c_str());
  auto* const bytes = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, input.data(), input.size(), 1);
  const auto called =
      call(session_names::control, "Run", g_variant_new("(as@ay)", &list, bytes), commandWait);
  if (!called.reply) {
    if (isNobodyThere(called)) return std::nullopt;
    throw NoAnswer(called.error->message);
  }
  if (g_variant_is_of_type(called.reply.get(), G_VARIANT_TYPE("(iss)")) == 0) {
    throw NoAnswer("an answer of another form");
  }
  CommandReply reply;
  const char* output = nullptr;
  const char* message = nullptr;
  g_variant_get(called.reply.get(), "(i&s&s)", &reply.status, &output, &message);
  reply.output = output;
  reply.message = message;
  return reply;
}

}  // namespace kivra::session_client
