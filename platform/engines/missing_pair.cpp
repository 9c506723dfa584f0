#include "platform/engines/missing_pair.h"

#include "platform/engines/language_code.h"

namespace kivra {

MissingPair missingPair(const TranslationLanguages& languages) {
  const auto source = baseLanguage(languages.source.value_or(""));
  const auto target = baseLanguage(languages.target);
  return {.summary = "Нет офлайн-перевода " + source + " → " + target,
          .remedy =
              "В Debian такой пары нет. Без облака её даёт LibreTranslate:\n"
              "sudo apt install pipx\n"
              "pipx install libretranslate\n"
              "~/.local/bin/libretranslate --load-only " +
              source + "," + target + "\nИли выберите в настройках локальную модель."};
}

}  // namespace kivra
