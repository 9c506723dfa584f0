#include "platform/engines/package_service.h"

#include <gio/gio.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/io/bus_connection.h"
#include "platform/io/thread_context.h"
#include "platform/io/variant_pointer.h"

namespace kivra {

namespace {

constexpr auto service = "org.freedesktop.PackageKit";
constexpr auto servicePath = "/org/freedesktop/PackageKit";
constexpr auto transactionInterface = "org.freedesktop.PackageKit.Transaction";

// Numbers of PkExitEnum, PkFilterEnum and PkTransactionFlagEnum, the latter two as bits.
constexpr std::uint32_t exitSuccess = 1;
constexpr std::uint64_t notInstalled = 1U << 3U;
constexpr std::uint64_t onlyTrusted = 1U << 1U;

constexpr int serviceTimeout = 30000;  // ms
constexpr auto wholeTimeout = std::chrono::minutes(10);
constexpr guint stopRequestInterval = 100;  // ms

constexpr const char* noService = "Служба установки пакетов недоступна.";
constexpr const char* noPackage = "Языкового пакета нет в источниках пакетов.";
constexpr const char* notDone = "Языковой пакет не установлен.";

/// One piece of work of the service, which tells by signals how it goes.
class Transaction {
 public:
  Transaction(GDBusConnection* bus, GMainContext* context) : bus_(bus), context_(context) {
    const auto reply = call(servicePath, service, "CreateTransaction", nullptr, "(o)");
    if (!reply) return;
    const char* path = nullptr;
    g_variant_get(reply.get(), "(&o)", &path);
    path_ = path;
    subscription_ = g_dbus_connection_signal_subscribe(bus_, service, transactionInterface, nullptr,
                                                       path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                       onSignal, this, nullptr);
    const char* const hints[] = {"interactive=true", "background=false", nullptr};
    call(path_.c_str(), transactionInterface, "SetHints", g_variant_new("(^as)", hints), "()");
  }
  ~Transaction() {
    if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(bus_, subscription_);
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// Answers whether the work ended well before it was stopped.
  bool run(const char* method, GVariant* arguments, const std::stop_token& stop);

  std::string package;  ///< the last one that the service named
  std::string failure;

 private:
  VariantPointer call(const char* path, const char* interface, const char* method,
                      GVariant* arguments, const char* replyType) {
    return VariantPointer(g_dbus_connection_call_sync(
        bus_, service, path, interface, method, arguments, G_VARIANT_TYPE(replyType),
        G_DBUS_CALL_FLAGS_NONE, serviceTimeout, nullptr, nullptr));
  }

  static void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* name,
                       GVariant* arguments, gpointer self) {
    static_cast<Transaction*>(self)->signal(name, arguments);
  }
  void signal(const std::string& name, GVariant* arguments);

  GDBusConnection* bus_;
  GMainContext* context_;
  std::string path_;
  guint subscription_ = 0;
  std::optional<std::uint32_t> exit_;
};

bool Transaction::run(const char* method, GVariant* arguments, const std::stop_token& stop) {
  const VariantPointer owned(g_variant_ref_sink(arguments));
  if (path_.empty()) return false;
  if (!call(path_.c_str(), transactionInterface, method, arguments, "()")) return false;
  const auto deadline = std::chrono::steady_clock::now() + wholeTimeout;
  auto* const tick = g_timeout_source_new(stopRequestInterval);
  g_source_set_callback(
      tick, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
  g_source_attach(tick, context_);
  while (!exit_ && !stop.stop_requested() && std::chrono::steady_clock::now() < deadline) {
    g_main_context_iteration(context_, TRUE);
  }
  g_source_destroy(tick);
  g_source_unref(tick);
  if (!exit_) call(path_.c_str(), transactionInterface, "Cancel", nullptr, "()");
  return exit_ == exitSuccess;
}

void Transaction::signal(const std::string& name, GVariant* arguments) {
  const char* text = nullptr;
  if (name == "Package" && g_variant_is_of_type(arguments, G_VARIANT_TYPE("(uss)")) != 0) {
    g_variant_get(arguments, "(u&s&s)", nullptr, &text, nullptr);
    package = text;
  } else if (name == "ErrorCode" && g_variant_is_of_type(arguments, G_VARIANT_TYPE("(us)")) != 0) {
    g_variant_get(arguments, "(u&s)", nullptr, &text);
    failure = text;
  } else if (name == "Finished" && g_variant_is_of_type(arguments, G_VARIANT_TYPE("(uu)")) != 0) {
    std::uint32_t exit = 0;
    g_variant_get(arguments, "(uu)", &exit, nullptr);
    exit_ = exit;
  } else if (name == "Destroy" && !exit_) {
    exit_ = 0;
  }
}

}  // namespace

std::optional<std::string> installPackage(const std::string& name, const std::stop_token& stop) {
  const auto context = newThreadContext();
  const auto bus = connectToBus(G_BUS_TYPE_SYSTEM);
  if (!bus) return noService;
  const char* const names[] = {name.c_str(), nullptr};
  std::string package;
  {
    Transaction resolving(bus.get(), context.get());
    if (!resolving.run("Resolve", g_variant_new("(t^as)", notInstalled, names), stop)) {
      return resolving.failure.empty() ? noService : resolving.failure;
    }
    package = resolving.package;
  }
  if (package.empty()) return noPackage;
  const char* const packages[] = {package.c_str(), nullptr};
  Transaction installing(bus.get(), context.get());
  if (installing.run("InstallPackages", g_variant_new("(t^as)", onlyTrusted, packages), stop)) {
    return std::nullopt;
  }
  return installing.failure.empty() ? notDone : installing.failure;
}

}  // namespace kivra
