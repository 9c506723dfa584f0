#include "why.h"

#include "session.h"

namespace kivra::control {

namespace {

using embedded::EmbeddedInputSources;

void enableLayouts(desk::Session& session, const LayoutNames& layouts) {
  std::vector<EmbeddedInputSources::Source> sources;
  for (const auto& [id, language] : layouts) {
    if (auto source = EmbeddedInputSources::keyboardSource(id, {language}, id)) {
      sources.push_back(std::move(source));
    }
  }
  if (!sources.empty()) session.desktop().inputSources.setSources(std::move(sources));
  session.typist().learnKeys();
}

std::string textOf(desk::Session& session) {
  return session.desktop().application.front().field.text();
}

/// What the keys give where nobody mends anything.
std::string unmended(const std::string& text, const std::string& layout,
                     const LayoutNames& layouts) {
  desk::Session session(nullptr, nullptr);
  enableLayouts(session, layouts);
  session.desktop().inputSources.select(layout);
  session.typist().type(text);
  return textOf(session);
}

Explanation explainIn(const std::string& layout, const std::string& text, DefaultsDatabase& stored,
                      const LayoutNames& layouts) {
  Explanation explanation{.layout = layout, .typed = unmended(text, layout, layouts)};
  desk::Session session(nullptr, nullptr);
  enableLayouts(session, layouts);
  for (const auto& [key, value] : stored.dictionaryRepresentation()) {
    session.desktop().defaults.setObject(value, key);
  }
  session.desktop().defaults.setObject(true, "kivra.isEnabled");
  session.desktop().inputSources.select(layout);
  auto& services = session.app().services;
  services.layoutSwitcher().setObserver([&](const Answer& answer) {
    explanation.asked.push_back(
        {answer.question, answer.isYes, std::string(answer.about), answer.distance});
  });
  session.typist().type(text + " ");
  if (const auto& last = services.undoStack.last()) explanation.change = last->kind;
  explanation.result = textOf(session);
  return explanation;
}

}  // namespace

std::vector<Explanation> explain(const std::string& text, DefaultsDatabase& stored,
                                 const LayoutNames& layouts) {
  std::vector<Explanation> explanations;
  for (const auto& [layout, language] : layouts) {
    if (language == "ru" || language == "en") {
      explanations.push_back(explainIn(layout, text, stored, layouts));
    }
  }
  return explanations;
}

}  // namespace kivra::control
