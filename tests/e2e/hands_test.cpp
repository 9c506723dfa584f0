// A paragraph by hand, with every kind of mend, in programs that people use. Needs more of the
// distribution than the other tests: tools/try-applications installs it and runs this.

#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "application_session.h"
#include "kivra_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// Both layouts in the wrong one, two capitals, slips, an entry of the dictionary.
constexpr const char* paragraph =
    "Ghbdtn vbh Hello world cnhfyf HEllo ctdjlyz gjujlf keyboard ibs [jhjifz the language "
    "vfibyf ";

struct Program {
  std::string name;
  std::vector<std::string> command;
  std::string windowClass;
  /// Keys that take everything to the clipboard; none: Return writes the line to TYPED.
  std::vector<std::string> copy = {"ctrl+a", "ctrl+c"};
  /// Keys that bring the cursor to where the text goes.
  std::vector<std::string> begin{};
  std::chrono::milliseconds start = 3s;
};

std::ostream& operator<<(std::ostream& out, const Program& program) { return out << program.name; }

void replace(std::string& text, std::string_view word, const std::string& by) {
  if (const auto place = text.find(word); place != std::string::npos) {
    text.replace(place, word.size(), by);
  }
}

class Hands : public testing::TestWithParam<Program> {
 protected:
  std::string readText() {
    if (GetParam().copy.empty()) {
      desktop.press("Return");
      waitFor([this] { return desktop.session.readFile("typed").ends_with('\n'); }, 3s);
      auto text = desktop.session.readFile("typed");
      if (text.ends_with('\n')) text.pop_back();
      return text;
    }
    for (const auto& chord : GetParam().copy) {
      desktop.press(chord);
      std::this_thread::sleep_for(200ms);
    }
    std::this_thread::sleep_for(300ms);
    auto text = desktop.session.run({"timeout", "3", "xclip", "-selection", "clipboard", "-o"});
    while (text.ends_with('\n')) text.pop_back();
    return text;
  }

  void doubleShift(Typist& typist) {
    for (int i = 0; i < 2; ++i) {
      typist.tap(keys::shift);
      std::this_thread::sleep_for(40ms);
    }
    std::this_thread::sleep_for(300ms);
  }

  ApplicationSession desktop;
};

TEST_P(Hands, WriteAParagraph) {
  const auto& program = GetParam();
  std::ofstream(desktop.session.path("page.html"))
      << "<!doctype html><meta charset=utf-8><title>page</title>"
         "<textarea autofocus rows=9 cols=60></textarea>";
  desktop.startKivra();
  auto command = program.command;
  for (auto& word : command) {
    replace(word, "PAGE", "file://" + desktop.session.path("page.html").string());
    replace(word, "PROFILE", desktop.session.path("profile"));
    replace(word, "TYPED", desktop.session.path("typed"));
  }
  std::filesystem::create_directories(desktop.session.path("profile"));
  desktop.open(command, program.windowClass);
  std::this_thread::sleep_for(program.start);
  for (const auto& chord : program.begin) {
    desktop.press(chord);
    std::this_thread::sleep_for(500ms);
  }
  Typist typist(desktop.session);
  typist.selectGroup(0);
  typist.setHand(100ms, true);
  typist.type(paragraph);
  std::this_thread::sleep_for(300ms);
  typist.selectGroup(0);
  typist.type("cnhfyf ");
  std::this_thread::sleep_for(300ms);
  doubleShift(typist);
  typist.type("rfr");
  std::this_thread::sleep_for(300ms);
  typist.chord("ctrl+alt+p");
  std::this_thread::sleep_for(300ms);
  typist.type(" vbh ");
  std::this_thread::sleep_for(1s);
  const auto expected = embeddedResult(paragraph) + "cnhfyf как мир";
  auto text = readText();
  while (text.ends_with(' ')) text.pop_back();
  EXPECT_EQ(text, expected) << desktop.session.kivraLog();
  EXPECT_FALSE(typist.isAnyKeyDown());
}

const std::vector<std::string> firefox = {"firefox-esr", "--profile", "PROFILE", "--no-remote",
                                          "PAGE"};

INSTANTIATE_TEST_SUITE_P(
    Programs, Hands,
    testing::Values(
        Program{"featherpad", {"featherpad", "--standalone"}, "eather"},
        Program{"kate", {"kate", "--startanon"}, "kate", {"ctrl+a", "ctrl+c"}, {"ctrl+n"}},
        Program{"mousepad", {"mousepad", "--disable-server"}, "ousepad"},
        Program{"text_editor", {"gnome-text-editor", "--standalone"}, "ext"},
        Program{"writer",
                {"soffice", "--norestore", "--nologo", "--writer"},
                "ibreoffice",
                {"ctrl+a", "ctrl+c"},
                {},
                12s},
        Program{"calc",
                {"soffice", "--norestore", "--nologo", "--calc"},
                "ibreoffice",
                {"Return", "ctrl+Home", "ctrl+c"},
                {},
                12s},
        Program{"firefox", firefox, "irefox", {"ctrl+a", "ctrl+c"}, {}, 12s},
        Program{"firefox_address", firefox, "irefox", {"ctrl+a", "ctrl+c"}, {"ctrl+l"}, 12s},
        Program{"chromium",
                {"chromium", "--no-sandbox", "--no-first-run", "--disable-gpu",
                 "--password-store=basic", "--user-data-dir=PROFILE", "--app=PAGE"},
                "hromium"},
        Program{"xterm", {"xterm", "-u8", "-e", "cat >TYPED"}, "XTerm", {}},
        Program{"konsole", {"konsole", "-e", "sh", "-c", "cat >TYPED"}, "onsole", {}},
        Program{"emacs",
                {"emacs", "-Q", "--eval",
                 "(progn (setq select-enable-clipboard t) "
                 "(switch-to-buffer \"typed\") (text-mode) (global-set-key "
                 "(kbd \"<f9>\") (lambda () (interactive) (kill-new "
                 "(buffer-string)))))"},
                "macs",
                {"F9"}}),
    [](const auto& program) { return program.param.name; });

}  // namespace
}  // namespace kivra::e2e
