#include "fake_package_kit.h"

#include <algorithm>
#include <utility>

namespace kivra {

namespace {

constexpr auto description = R"(<node>
<interface name="org.freedesktop.PackageKit">
<method name="CreateTransaction"><arg type="o" direction="out"/></method></interface>
<interface name="org.freedesktop.PackageKit.Transaction">
<method name="SetHints"><arg type="as" direction="in"/></method>
<method name="Resolve"><arg type="t" direction="in"/><arg type="as" direction="in"/></method>
<method name="InstallPackages"><arg type="t" direction="in"/><arg type="as" direction="in"/>
</method>
<method name="Cancel"/></interface></node>)";

constexpr auto transactionInterface = "org.freedesktop.PackageKit.Transaction";
constexpr unsigned success = 1;
constexpr unsigned failed = 2;
constexpr unsigned notAuthorized = 48;

}  // namespace

FakePackageKit::FakePackageKit(Behaviour behaviour) : behaviour_(std::move(behaviour)) {
  thread_.begun().wait();
}

void FakePackageKit::serve() {
  auto* const node = g_dbus_node_info_new_for_xml(description, nullptr);
  const GDBusInterfaceVTable table{onCall, nullptr, nullptr, {}};
  const auto add = [&](const std::string& path, GDBusInterfaceInfo* interface) {
    g_dbus_connection_register_object(bus_.get(), path.c_str(), interface, &table, this, nullptr,
                                      nullptr);
  };
  add("/org/freedesktop/PackageKit", node->interfaces[0]);
  for (int number = 1; number <= 4; ++number) {
    add("/" + std::to_string(number), node->interfaces[1]);
  }
  g_dbus_node_info_unref(node);
  g_variant_unref(g_dbus_connection_call_sync(
      bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", "org.freedesktop.PackageKit", 0U), nullptr,
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
}

std::vector<std::string> FakePackageKit::calls() {
  const std::lock_guard lock(mutex_);
  return calls_;
}

void FakePackageKit::onCall(GDBusConnection* /*bus*/, const char* /*sender*/, const char* path,
                            const char* /*interface*/, const char* method, GVariant* arguments,
                            GDBusMethodInvocation* invocation, gpointer self) {
  static_cast<FakePackageKit*>(self)->handle(path, method, arguments, invocation);
}

void FakePackageKit::handle(const std::string& path, const std::string& method, GVariant* arguments,
                            GDBusMethodInvocation* invocation) {
  if (method == "CreateTransaction") {
    g_dbus_method_invocation_return_value(
        invocation, g_variant_new("(o)", ("/" + std::to_string(++transactions_)).c_str()));
    return;
  }
  g_dbus_method_invocation_return_value(invocation, nullptr);
  if (method == "SetHints") return;
  std::string package;
  if (method != "Cancel") {
    const char** names = nullptr;
    g_variant_get(arguments, "(t^a&s)", nullptr, &names);
    package = names[0];
    g_free(names);
  }
  {
    const std::lock_guard lock(mutex_);
    calls_.push_back(package.empty() ? method : method + " " + package);
  }
  if (method == "Resolve") {
    const auto& known = behaviour_.available;
    if (std::find(known.begin(), known.end(), package) != known.end()) {
      emit(path, "Package", g_variant_new("(uss)", 2U, (package + ";1.0;all;debian").c_str(), ""));
    }
    finish(path, success);
  } else if (method == "InstallPackages" && behaviour_.isRefused) {
    emit(path, "ErrorCode",
         g_variant_new("(us)", notAuthorized, "Failed to obtain authentication."));
    finish(path, failed);
  } else if (method == "InstallPackages" && !behaviour_.isSilent) {
    behaviour_.install();
    finish(path, success);
  }
}

void FakePackageKit::emit(const std::string& path, const char* signal, GVariant* arguments) {
  g_dbus_connection_emit_signal(bus_.get(), nullptr, path.c_str(), transactionInterface, signal,
                                arguments, nullptr);
}

void FakePackageKit::finish(const std::string& path, unsigned exit) {
  emit(path, "Finished", g_variant_new("(uu)", exit, 1U));
}

}  // namespace kivra
