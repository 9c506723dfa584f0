#include "x11_matrix.h"

#include "application_session.h"
#include "test_window.h"
#include "typing_table.h"

namespace kivra::soak {

namespace {

using namespace std::chrono_literals;

class TypistHands : public Hands {
 public:
  explicit TypistHands(e2e::XSession& session) : typist_(session), locks_(typist_.locks()) {}

  void prepare() override {
    locks_ = typist_.locks();
    typist_.selectGroup(0);
  }
  void type(const std::string& text, std::chrono::milliseconds pace, bool isRolling) override {
    typist_.setHand(pace, isRolling);
    typist_.type(text);
  }
  bool areOffTheKeys() override {
    return e2e::waitFor([this] { return !typist_.isAnyKeyDown(); }, 1s) &&
           typist_.locks() == locks_;
  }

 private:
  e2e::Typist typist_;
  unsigned int locks_;
};

Program editor(const char* name, e2e::ApplicationSession& desktop) {
  const auto clear = [&] {
    desktop.press("ctrl+a");
    desktop.press("BackSpace");
  };
  const auto textOf = [&](const std::string& expected) {
    std::string text;
    e2e::waitFor([&] { return (text = desktop.copyAll()) == expected; }, editorPatience);
    return text;
  };
  return {.name = name, .clear = clear, .text = textOf};
}

}  // namespace

bool fillX11(e2e::XServer::Kind server, int words) {
  e2e::ApplicationSession desktop({.server = {.kind = server}});
  desktop.startKivra();
  TypistHands hands(desktop.session);
  const auto fill = [&](const Program& program) {
    return fillTable(server == e2e::XServer::Kind::xorg ? "Xorg" : "Xvnc", program, hands, words,
                     {0ms, 1ms, 2ms, 3ms, 5ms, 10ms, 30ms});
  };
  auto isGood = true;
  {
    e2e::TestWindow window(desktop.session.display());
    isGood = fill({.name = "test window",
                   .clear = [&] { window.clear(); },
                   .text = [&](const auto& expected) { return window.textAfter(expected); }});
  }
  desktop.openGtkEditor();
  isGood = fill(editor("GTK", desktop)) && isGood;
  desktop.openQt6Editor();
  return fill(editor("Qt 6", desktop)) && isGood;
}

}  // namespace kivra::soak
