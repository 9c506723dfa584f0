#include "application_session.h"

#include <fstream>
#include <stdexcept>
#include <thread>

#include "test_window.h"

namespace kivra::e2e {

using namespace std::chrono_literals;

void ApplicationSession::startKivra(const std::vector<std::string>& command) {
  set("kivra.skipBundleIDs", {"-array"});
  session.startKivra(command);
  waitUntilCorrecting();
}

void ApplicationSession::set(const std::string& key, const std::vector<std::string>& value) {
  std::vector<std::string> command = {KIVRA_DEFAULTS, "write", key};
  command.insert(command.end(), value.begin(), value.end());
  session.run(command);
}

void ApplicationSession::waitUntilCorrecting() {
  TestWindow window(session.display());
  Typist typist(session);
  const auto isCorrected = [&] {
    window.clear();
    typist.type("ghbdtn ");
    return window.textAfter("привет ") == "привет ";
  };
  if (!waitFor(isCorrected, 60s)) throw std::runtime_error("Kivra corrects nothing");
  typist.selectGroup(0);
}

void ApplicationSession::openGtkEditor() {
  openEditor({"mousepad", "--disable-server"}, "ousepad");
}

void ApplicationSession::openPlainGtkEditor() { openEditor({"l3afpad"}, "3afpad"); }

void ApplicationSession::openQtEditor() { openEditor({"featherpad", "--standalone"}, "eather"); }

void ApplicationSession::openQt6Editor() { openEditor({KIVRA_QT_EDITOR}, "qt_editor"); }

void ApplicationSession::openChromium(const std::string& body,
                                      const std::vector<std::string>& options) {
  constexpr const char* field =
      "<textarea autofocus rows=9 cols=60 onfocus=\"document.title='ready'\"></textarea>";
  std::ofstream(session.path("page.html"))
      << "<!doctype html><meta charset=utf-8>" << (body.empty() ? field : body);
  std::vector<std::string> command = {"chromium",
                                      "--no-sandbox",
                                      "--no-first-run",
                                      "--disable-gpu",
                                      "--password-store=basic",
                                      "--user-data-dir=" + session.path("chromium").string(),
                                      "--app=file://" + session.path("page.html").string()};
  command.insert(command.end(), options.begin(), options.end());
  open(command, "hromium");
  waitFor([this] { return windowName().starts_with("ready"); }, 20s);
}

void ApplicationSession::openTerminal(const std::string& shellCommand) {
  open({"xterm", "-u8", "-e", "sh", "-c", shellCommand}, "XTerm");
}

void ApplicationSession::open(const std::vector<std::string>& command,
                              const std::string& windowClass, const std::string& log) {
  application_.reset();
  application_ = session.start(command, log);
  if (!waitFor([&] { return hasFocus(windowClass); }, 30s)) {
    throw std::runtime_error(windowClass + " does not get the focus");
  }
  std::this_thread::sleep_for(500ms);  // toolkits map the window before they read keys
}

// On a busy machine editors lose the keys that come before their text has the focus.
void ApplicationSession::openEditor(const std::vector<std::string>& command,
                                    const std::string& windowClass) {
  open(command, windowClass);
  const auto proof = std::to_string(++editors_ % 10);
  const auto takesKeys = [&] {
    press(proof);
    return copyAll().ends_with(proof);
  };
  if (!waitFor(takesKeys, 20s)) throw std::runtime_error(windowClass + " takes no keys");
  press("ctrl+a");
  press("BackSpace");
}

bool ApplicationSession::hasFocus(const std::string& windowClass) {
  auto active = session.run({"xdotool", "getactivewindow"});
  if (active.empty()) return false;
  active.pop_back();
  return session.run({"xprop", "-id", active, "WM_CLASS"}).find(windowClass) != std::string::npos;
}

std::string ApplicationSession::copyAll() {
  press("ctrl+a");
  press("ctrl+c");
  std::this_thread::sleep_for(100ms);
  return session.run({"timeout", "2", "xclip", "-selection", "clipboard", "-o"});
}

}  // namespace kivra::e2e
