#pragma once

namespace kivra {

class Application;
class Clock;
class DefaultsDatabase;
class EventPosting;
class EventTaps;
class InputSources;
class Log;
class Privacy;
class RunLoop;
class SpellChecker;
class Workspace;

/// All services of one desktop. A backend makes them, the program borrows them for its whole life.
struct Platform {
  Application& application;
  Clock& clock;
  DefaultsDatabase& defaults;
  EventPosting& eventPosting;
  EventTaps& eventTaps;
  InputSources& inputSources;
  Log& log;
  Privacy& privacy;
  RunLoop& runLoop;
  SpellChecker& spellChecker;
  Workspace& workspace;
};

}  // namespace kivra
