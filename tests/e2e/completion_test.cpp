// Where an application completes what is typed, and selects what it has added.

#include "shared_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

class Completions : public SharedSession {
 protected:
  void undo() {
    typist.tap(keys::shift);
    typist.tap(keys::shift);
  }
};

TEST_F(Completions, OfAQtField) {
  desktop->open({KIVRA_QT_FORM, "inline"}, "qt_form", "form");
  typist.tap(keys::tab);
  typist.type("x");
  typist.chord({keys::control, keys::a});
  typist.type("ghbdtn vbh ");
  typist.tap(keys::enter);
  const auto printed = [] { return desktop->session.readFile("form"); };
  EXPECT_TRUE(waitFor([&] { return printed() == "|привет мир \n"; }, 5s)) << printed();
}

/// Chromium tells of the fields of its pages once it has been asked about its windows.
TEST_F(Completions, OfAPage) {
  desktop->openChromium(
      "<input id=n autofocus><script>document.title='ready';"
      "oninput=event=>{const typed=n.value;"
      "const whole=['ghbdtn.example','ghbdtn vbhjd','hello'].find(w=>w.startsWith(typed));"
      "if(event.inputType==='insertText'&&whole){"
      "n.value=whole;n.setSelectionRange(typed.length,whole.length)}"
      "document.title='['+n.value+']'}</script>");
  const auto becomes = [](const std::string& title) {
    return waitFor([&] { return desktop->windowName() == title + "\n"; }, 5s)
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << desktop->windowName();
  };
  typist.type("ghbdtn");
  ASSERT_TRUE(becomes("[ghbdtn.example]"));
  typist.type(" ");
  EXPECT_TRUE(becomes("[привет ]"));
  undo();
  EXPECT_TRUE(becomes("[ghbdtn vbhjd]"));
  typist.type("q");
  EXPECT_TRUE(becomes("[ghbdtn q]"));
}

}  // namespace
}  // namespace kivra::e2e
