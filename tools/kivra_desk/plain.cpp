#include "plain.h"

#include "session.h"
#include "support/text.h"

namespace kivra::desk {

namespace {

embedded::Effects::Sink traceTo(std::ostream& log) {
  return [&log](const embedded::Json& effect) {
    if (effect.contains("post")) log << effect.dump() << '\n';
  };
}

}  // namespace

void typePlain(std::istream& input, std::ostream& output, std::ostream& log,
               const PlainOptions& options) {
  Session session(options.trace ? traceTo(log) : nullptr, nullptr);
  session.desktop().inputSources.select(options.source);
  session.app();
  std::string line;
  while (std::getline(input, line)) {
    // Without a line break at its end the last word is not finished, and must not look so.
    if (!input.eof()) line += '\n';
    session.typist().type(text::validUtf8(line));
    output << session.desktop().application.front().field.takeTextBeforeCursor() << std::flush;
  }
}

}  // namespace kivra::desk
