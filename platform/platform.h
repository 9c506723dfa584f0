#pragma once

namespace kivra {

class Accessibility;
class Alerts;
class Application;
class Clock;
class DefaultsDatabase;
class EventPosting;
class EventTaps;
class HttpClient;
class InputSources;
class Keychain;
class LanguageModel;
class LanguageRecognizer;
class LocalKeyMonitors;
class Locale;
class Log;
class Notifications;
class Pasteboard;
class Privacy;
class RunLoop;
class SpellChecker;
class StatusBar;
class Terms;
class Translation;
class Windows;
class Workspace;

/// All services of one desktop. A backend makes them, the program borrows them for its whole life.
struct Platform {
  Accessibility& accessibility;
  Alerts& alerts;
  Application& application;
  Clock& clock;
  DefaultsDatabase& defaults;
  EventPosting& eventPosting;
  EventTaps& eventTaps;
  HttpClient& httpClient;
  InputSources& inputSources;
  Keychain& keychain;
  LanguageModel& languageModel;
  LanguageRecognizer& languageRecognizer;
  LocalKeyMonitors& localKeyMonitors;
  Locale& locale;
  Log& log;
  Notifications& notifications;
  Pasteboard& pasteboard;
  Privacy& privacy;
  RunLoop& runLoop;
  SpellChecker& spellChecker;
  StatusBar& statusBar;
  Terms& terms;
  Translation& translation;
  Windows& windows;
  Workspace& workspace;
};

}  // namespace kivra
