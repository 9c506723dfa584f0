#include "tray_host.h"

#include <algorithm>
#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

namespace {

constexpr auto watcherInterface = R"(<node><interface name="org.kde.StatusNotifierWatcher">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/></interface></node>)";
constexpr auto menuInterface = "com.canonical.dbusmenu";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";

TrayHost::MenuEntry entryOf(GVariant* node) {
  TrayHost::MenuEntry entry;
  GVariant* properties = nullptr;
  GVariant* children = nullptr;
  g_variant_get(node, "(i@a{sv}@av)", &entry.id, &properties, &children);
  const Variant ownedProperties(properties);
  const Variant ownedChildren(children);
  const char* label = "";
  gboolean enabled = TRUE;
  g_variant_lookup(properties, "label", "&s", &label);
  g_variant_lookup(properties, "enabled", "b", &enabled);
  entry.label = label;
  entry.isEnabled = enabled != FALSE;
  return entry;
}

}  // namespace

TrayHost::TrayHost(const std::string& address)
    : client_(address),
      service_(client_, {"org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"},
               watcherInterface, {onCall, onGet, nullptr, {}}, this) {}

void TrayHost::onCall(GDBusConnection* /*bus*/, const char* sender, const char* /*path*/,
                      const char* /*interface*/, const char* /*method*/, GVariant* /*arguments*/,
                      GDBusMethodInvocation* invocation, gpointer self) {
  static_cast<TrayHost*>(self)->owner_ = g_intern_string(sender);
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

GVariant* TrayHost::onGet(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                          const char* /*interface*/, const char* /*property*/, GError** /*error*/,
                          gpointer /*self*/) {
  return g_variant_new_boolean(TRUE);
}

void TrayHost::waitForItem() const {
  if (!waitFor([this] { return owner_ != nullptr && !title().empty(); })) {
    throw std::runtime_error("no status item comes");
  }
}

BusObject TrayHost::item(const char* path) const { return {owner_.load(), path}; }

std::string TrayHost::title() const {
  const auto value = client_.property(item("/StatusNotifierItem"), itemInterface, "Title");
  return value ? g_variant_get_string(value.get(), nullptr) : "";
}

std::vector<TrayHost::MenuEntry> TrayHost::menu() const {
  const auto bar = item("/MenuBar");
  client_.call(bar, menuInterface, "AboutToShow", g_variant_new("(i)", 0));
  const auto reply =
      client_.call(bar, menuInterface, "GetLayout", g_variant_new("(iias)", 0, -1, nullptr));
  std::vector<MenuEntry> entries;
  if (!reply) return entries;
  const Variant root(g_variant_get_child_value(reply.get(), 1));
  const Variant children(g_variant_get_child_value(root.get(), 2));
  for (gsize i = 0; i < g_variant_n_children(children.get()); ++i) {
    const Variant boxed(g_variant_get_child_value(children.get(), i));
    entries.push_back(entryOf(Variant(g_variant_get_variant(boxed.get())).get()));
  }
  return entries;
}

void TrayHost::choose(const std::string& label) const {
  const auto entries = menu();
  const auto chosen = std::ranges::find(entries, label, &MenuEntry::label);
  if (chosen == entries.end()) throw std::runtime_error("no menu entry " + label);
  client_.call(item("/MenuBar"), menuInterface, "Event",
               g_variant_new("(isvu)", chosen->id, "clicked", g_variant_new_int32(0), 0U));
}

}  // namespace kivra::e2e
