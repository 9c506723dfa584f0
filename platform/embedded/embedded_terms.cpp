#include "platform/embedded/embedded_terms.h"

namespace kivra::embedded {

std::string EmbeddedTerms::term(Term term) const {
  switch (term) {
    case Term::control:
      return "⌃";
    case Term::option:
      return "⌥";
    case Term::shift:
      return "⇧";
    case Term::command:
      return "⌘";
    case Term::fn:
      return "fn";
    case Term::betweenKeys:
      return "";
    case Term::escapeKey:
      return "⎋";
    case Term::shortcutExample:
      return "⌘⇧S";
    case Term::correctionExample:
      return "⌃⌥C";
    case Term::spellingDictionary:
      return "словарь macOS";
    case Term::systemSettings:
      return "System Settings…";
    case Term::openSystemSettings:
      return "Открыть System Settings…";
    case Term::inKeychain:
      return "в Keychain";
    case Term::offlineTranslator:
      return "Apple Translate (офлайн)";
    case Term::localModel:
      return "Apple Intelligence (macOS 26+)";
    case Term::localModelMissing:
      return "Apple Intelligence недоступен на этой версии macOS";
    case Term::withoutLocalModel:
      return "на этой версии macOS";
  }
  return "";
}

}  // namespace kivra::embedded
