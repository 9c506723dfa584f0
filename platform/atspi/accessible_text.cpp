#include "platform/atspi/accessible_text.h"

namespace kivra {

namespace {

constexpr auto textInterface = "org.a11y.atspi.Text";

// Numbers of AtspiRole and AtspiStateType.
constexpr std::uint32_t textRole = 61;
constexpr std::uint32_t entryRole = 79;
constexpr std::uint64_t editable = 1ULL << 7U;
constexpr std::uint64_t focused = 1ULL << 12U;

// Stands in a text for an object with a text of its own, such as a paragraph.
constexpr const char* embeddedObject = "\xEF\xBF\xBC";

}  // namespace

std::optional<std::string> AccessibleText::read(AccessibleTextPart part) {
  const auto itsRole = role();
  if (!itsRole || *itsRole == passwordRole) return std::nullopt;
  const auto itsStates = states();
  if (!itsStates || (*itsStates & focused) == 0) return std::nullopt;
  std::optional<std::string> text;
  if (part == AccessibleTextPart::selection) {
    text = selection();
  } else if ((*itsRole == textRole || *itsRole == entryRole) && (*itsStates & editable) != 0) {
    text = textBetween(0, -1);
  }
  if (text && text->find(embeddedObject) != std::string::npos) return std::nullopt;
  return text;
}

VariantPointer AccessibleText::call(const char* interface, const char* method, GVariant* arguments,
                                    const char* replyType) {
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
  if (left.count() <= 0) {
    if (arguments != nullptr) g_variant_unref(g_variant_ref_sink(arguments));
    return nullptr;
  }
  return VariantPointer(g_dbus_connection_call_sync(
      bus_, object_.busName.c_str(), object_.path.c_str(), interface, method, arguments,
      G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<int>(left.count()),
      nullptr, nullptr));
}

std::optional<std::uint32_t> AccessibleText::role() {
  const auto reply = call(accessibleInterface, "GetRole", nullptr, "(u)");
  if (!reply) return std::nullopt;
  std::uint32_t number = 0;
  g_variant_get(reply.get(), "(u)", &number);
  return number;
}

std::optional<std::uint64_t> AccessibleText::states() {
  const auto reply = call(accessibleInterface, "GetState", nullptr, "(au)");
  if (!reply) return std::nullopt;
  const VariantPointer words(g_variant_get_child_value(reply.get(), 0));
  std::uint64_t bits = 0;
  for (gsize at = 0; at < g_variant_n_children(words.get()) && at < 2; ++at) {
    std::uint32_t word = 0;
    g_variant_get_child(words.get(), at, "u", &word);
    bits |= static_cast<std::uint64_t>(word) << (32U * at);
  }
  return bits;
}

std::optional<std::int32_t> AccessibleText::selectionStart() {
  const auto itsStates = states();
  if (!itsStates || (*itsStates & focused) == 0) return std::nullopt;
  const auto range = selectedRange();
  return range && range->start < range->end ? std::optional(range->start) : std::nullopt;
}

std::optional<AccessibleText::Range> AccessibleText::selectedRange() {
  const auto count = call(textInterface, "GetNSelections", nullptr, "(i)");
  if (!count) return std::nullopt;
  std::int32_t number = 0;
  g_variant_get(count.get(), "(i)", &number);
  if (number <= 0) return Range{};
  const auto reply = call(textInterface, "GetSelection", g_variant_new("(i)", 0), "(ii)");
  if (!reply) return std::nullopt;
  Range range;
  g_variant_get(reply.get(), "(ii)", &range.start, &range.end);
  return range;
}

std::optional<std::string> AccessibleText::selection() {
  const auto range = selectedRange();
  if (!range) return std::nullopt;
  return range->start == range->end ? "" : textBetween(range->start, range->end);
}

std::optional<std::string> AccessibleText::textBetween(std::int32_t start, std::int32_t end) {
  const auto reply = call(textInterface, "GetText", g_variant_new("(ii)", start, end), "(s)");
  if (!reply) return std::nullopt;
  const char* text = nullptr;
  g_variant_get(reply.get(), "(&s)", &text);
  return text;
}

}  // namespace kivra
