#include "platform/session/diagnosis.h"

#include <gio/gio.h>

#include <algorithm>
#include <string_view>

#include "platform/io/variant_pointer.h"

namespace kivra {

namespace {

/// "Subject: state — remedy"
std::string line(const char* subject, const std::string& state, const std::string& remedy = {}) {
  return std::string(subject) + ": " + state + (remedy.empty() ? "" : " — " + remedy);
}

std::string serverLine(const SessionFacts& facts) {
  return line("Сервер окон", facts.server.empty() ? "не отвечает" : facts.server, facts.problem);
}

std::string guardLine(const SessionFacts& facts) {
  if (facts.isGuardRunning) return line("Клавиатура", "под присмотром Kivra");
  const auto* const remedy = !facts.problem.empty() ? "сначала то, что выше"
                             : !facts.isAccessibilityOn ? "сначала специальные возможности"
                                                        : "запустите Kivra: kivra";
  return line("Клавиатура", "без присмотра", remedy);
}

std::string layoutsLine(const SessionFacts& facts) {
  std::string names;
  for (const auto& layout : facts.layouts) names += (names.empty() ? "" : ", ") + layout;
  const auto lacks = [&](const char* language) {
    return std::ranges::find(facts.languages, language) == facts.languages.end();
  };
  const auto* const missing = lacks("ru") && lacks("en") ? "русской и английской"
                              : lacks("ru")              ? "русской"
                              : lacks("en")              ? "английской"
                                                         : nullptr;
  return line("Раскладки", names.empty() ? "неизвестны" : names,
              missing == nullptr ? ""
                                 : std::string("нет ") + missing +
                                       ": добавьте в настройках клавиатуры и перезапустите Kivra");
}

std::string inputMethodLine(SessionFacts::InputMethod inputMethod) {
  constexpr const char* subject = "Метод ввода";
  switch (inputMethod) {
    case SessionFacts::InputMethod::notNeeded:
      return line(subject, "не нужен");
    case SessionFacts::InputMethod::ours:
      return line(subject, "Kivra");
    case SessionFacts::InputMethod::free:
      return line(subject, "свободен");
    case SessionFacts::InputMethod::taken:
      return line(subject, "занят другой программой",
                  "завершите её (fcitx5, IBus, экранная клавиатура) и перезапустите Kivra");
  }
  return {};
}

}  // namespace

std::vector<std::string> diagnosis(const SessionFacts& facts) {
  return {line("Сеанс", facts.display),
          serverLine(facts),
          guardLine(facts),
          layoutsLine(facts),
          inputMethodLine(facts.inputMethod),
          facts.isAccessibilityOn
              ? line("Специальные возможности (AT-SPI)", "включены")
              : line("Специальные возможности (AT-SPI)", "выключены",
                     std::string("кнопка «Запросить» или команда: ") + accessibilityCommand),
          facts.hasSecrets ? line("Секреты", "есть связка ключей")
                           : line("Секреты", "связки ключей нет, ключ DeepL негде хранить",
                                  "установите gnome-keyring или kwalletmanager"),
          facts.hasTray ? line("Трей", "есть")
                        : line("Трей", "нет, значка не видно",
                               "настройки открывает команда: kivractl settings")};
}

bool hasSecretsService() {
  constexpr int answerWait = 500;  // ms
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return false;
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  for (const auto* list : {"ListNames", "ListActivatableNames"}) {
    const VariantPointer reply(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", list, nullptr,
        G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, answerWait, nullptr, nullptr));
    if (!reply) continue;
    GVariantIter* names = nullptr;
    g_variant_get(reply.get(), "(as)", &names);
    const char* name = nullptr;
    auto isThere = false;
    while (g_variant_iter_next(names, "&s", &name) != 0) {
      const std::string_view found(name);
      isThere |= found == "org.freedesktop.secrets" || found == "org.kde.kwalletd5" ||
                 found == "org.kde.kwalletd6";
    }
    g_variant_iter_free(names);
    if (isThere) return true;
  }
  return false;
}

}  // namespace kivra
