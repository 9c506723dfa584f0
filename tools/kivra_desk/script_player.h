#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "operation.h"
#include "session.h"
#include "user.h"

namespace kivra::desk {

/// Carries out the operations of a script one by one.
class ScriptPlayer {
 public:
  explicit ScriptPlayer(embedded::Effects::Sink output);

  /// Throws ScriptError for an operation that is not valid.
  void play(const Operation& operation);

  /// After the program has ended nothing more is played.
  bool isOver() const { return session_.isTerminated(); }

 private:
  struct Entry;
  static const Entry& entryFor(const std::string& name);

  void type(const Operation& operation);
  void key(const Operation& operation);
  void modifiers(const Operation& operation);
  void mouse(const Operation& operation);
  void wait(const Operation& operation);
  void source(const Operation& operation);
  void sources(const Operation& operation);
  void focus(const Operation& operation);
  void select(const Operation& operation);
  void putDefault(const Operation& operation);
  void set(const Operation& operation);
  void add(const Operation& operation);
  void remove(const Operation& operation);
  void dictionary(const Operation& operation);
  void permission(const Operation& operation);
  void pasteboard(const Operation& operation);
  void instance(const Operation& operation);
  void tap(const Operation& operation);
  void restart(const Operation& operation);
  void printReport(const Operation& operation);
  void configure(const Operation& operation);
  void menu(const Operation& operation);
  void choose(const Operation& operation);
  void window(const Operation& operation);
  void press(const Operation& operation);
  void edit(const Operation& operation);
  void pick(const Operation& operation);
  void close(const Operation& operation);

  User user() { return User(session_.desktop()); }

  embedded::Effects::Sink output_;
  Session session_;
};

}  // namespace kivra::desk
