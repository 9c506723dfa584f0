// Pop-ups stay open while a word is typed, looked at and mended.

#include <gtest/gtest.h>

#include "application_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// Types into the search pop-up of a GTK list, which closes when the list loses the focus, and
/// answers the line that was found.
std::string found(ApplicationSession& desktop, const std::string& typed, const std::string& log) {
  desktop.open({"zenity", "--list", "--column=line", "hello kitty", "привет всем", "hello there",
                "привет мир", "the last", "мир"},
               "enity", log);
  Typist typist(desktop.session);
  typist.selectGroup(0);
  typist.setPace(5ms, 25ms);
  typist.type(typed);
  typist.tap(keys::escape);
  typist.tap(keys::enter);
  waitFor([&] { return !desktop.session.readFile(log).empty(); }, 5s);
  return desktop.session.readFile(log);
}

TEST(Popups, SearchInAGtkListGoesOnAfterSpace) {
  ApplicationSession desktop;
  desktop.startKivra();
  EXPECT_EQ(found(desktop, "hello the", "passed"), "hello there\n");
  EXPECT_EQ(found(desktop, "ghbdtn vbh", "corrected"), "привет мир\n");
}

TEST(Popups, CompletionsOfAQtFieldTakeSpace) {
  ApplicationSession desktop;
  desktop.startKivra();
  desktop.open({KIVRA_QT_FORM}, "qt_form", "line");
  Typist typist(desktop.session);
  typist.setPace(5ms, 45ms);
  typist.tap(keys::tab);
  typist.type("hello t");
  typist.tap(keys::down);
  typist.tap(keys::enter);
  typist.tap(keys::enter);
  waitFor([&] { return !desktop.session.readFile("line").empty(); }, 5s);
  EXPECT_EQ(desktop.session.readFile("line"), "|hello there\n");
}

}  // namespace
}  // namespace kivra::e2e
