// What is typed into a password field stays as it is, and the next field is mended again.

#include "shared_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

class Passwords : public SharedSession {
 protected:
  static constexpr const char* typed = "ghbdtn vbh";
  static constexpr const char* mended = "привет мир";

  /// What the program prints, or will have printed soon.
  static std::string printed(const std::string& log) {
    waitFor([&] { return desktop->session.readFile(log).ends_with('\n'); }, 5s);
    return desktop->session.readFile(log);
  }
};

TEST_F(Passwords, GtkDialogs) {
  desktop->open({"zenity", "--password"}, "enity", "password");
  typist.type(typed);
  typist.tap(keys::enter);
  EXPECT_EQ(printed("password"), std::string(typed) + "\n");
  desktop->open({"zenity", "--entry"}, "enity", "entry");
  typist.type(typed);
  typist.tap(keys::enter);
  EXPECT_EQ(printed("entry"), std::string(mended) + "\n");
}

TEST_F(Passwords, QtForm) {
  desktop->open({KIVRA_QT_FORM}, "qt_form", "form");
  typist.type(typed);
  typist.tap(keys::tab);
  typist.type(typed);
  typist.tap(keys::enter);
  EXPECT_EQ(printed("form"), std::string(typed) + "|" + mended + "\n");
}

/// Chromium tells of the fields of its pages once it has been asked about its windows.
TEST_F(Passwords, Chromium) {
  desktop->openChromium(
      "<input type=password id=p autofocus><input id=n>"
      "<script>document.title='ready';"
      "oninput=()=>document.title=p.value+'|'+n.value</script>");
  typist.type(typed);
  typist.tap(keys::tab);
  typist.type(std::string(typed) + " ");
  const auto expected = std::string(typed) + "|" + mended;
  waitFor([] { return desktop->windowName().ends_with(std::string(mended) + "\n"); }, 5s);
  EXPECT_EQ(desktop->windowName(), expected + "\n");
}

}  // namespace
}  // namespace kivra::e2e
