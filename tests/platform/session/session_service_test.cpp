// The program on the session bus, and its claim to be the only one there.

#include "platform/session/session_service.h"

#include <gtest/gtest.h>

#include <fstream>
#include <future>

#include "event_loop.h"
#include "platform/qt/main_thread.h"
#include "platform/session/instance_claim.h"
#include "platform/session/session_client.h"
#include "platform/session/session_names.h"
#include "private_bus.h"
#include "x_session.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

/// Does what blocks on another thread, while this one serves.
template <class Result>
Result whileServing(std::function<Result()> job) {
  auto result = std::async(std::launch::async, std::move(job));
  EXPECT_TRUE(qt::turnUntil([&] { return result.wait_for(0s) == std::future_status::ready; }));
  return result.get();
}

TEST(SessionService, CarriesOutWhatOthersAskFor) {
  const e2e::PrivateBus bus;
  bus.enter();
  EXPECT_EQ(session_client::run({"on"}, ""), std::nullopt) << "none runs";
  Words done;
  const SessionService service(
      qt::callOnMainThread,
      {.activate = [&] { done.emplace_back("come forward"); },
       .run =
           [&](const Words& words, const std::string& input) {
             done.insert(done.end(), words.begin(), words.end());
             return CommandReply{words.front() == "fly" ? 2 : 0, input, "said"};
           }});
  ASSERT_EQ(InstanceClaim(session_names::service).holder(), ::getpid());

  const auto reply = whileServing<std::optional<CommandReply>>([] {
    return session_client::run({"слово", ""}, std::string("a\xFF", 2));
  });
  EXPECT_EQ(reply, (CommandReply{0, "a\uFFFD", "said"})) << "the bus takes nothing but text";
  const auto sent = whileServing<std::optional<CommandReply>>([] {
    return session_client::run({"слово", ""}, "текст");
  });
  EXPECT_EQ(sent, (CommandReply{0, "текст", "said"}));
  EXPECT_EQ(done, (Words{"слово", "", "слово", ""}));

  done.clear();
  const auto call = [&](const std::string& method, const std::string& arguments) {
    return whileServing<std::string>([&] {
      return e2e::outputOf({"sh", "-c",
                            "gdbus call --session -d app.kivra.Kivra -o /app/kivra/Kivra -m "
                            "org.freedesktop.Application." +
                                method + " " + arguments + " 2>&1"},
                           bus.environment());
    });
  };
  EXPECT_EQ(call("Activate", "{}"), "()\n");
  EXPECT_EQ(call("ActivateAction", "settings [] {}"), "()\n");
  EXPECT_NE(call("ActivateAction", "fly [] {}").find("said"), std::string::npos);
  whileServing<bool>([] { return session_client::activate(), true; });
  EXPECT_EQ(done, (Words{"come forward", "settings", "fly", "come forward"}));
}

/// An instance in a process of its own, and the process that it takes for the only one.
class Instance {
 public:
  Instance(const e2e::PrivateBus& bus, const std::string& name)
      : file_(bus.home() / name),
        process_({KIVRA_INSTANCE}, {.environment = bus.environment(), .outputFile = file_}) {}

  pid_t pid() const { return process_.pid(); }
  pid_t holder() const {
    pid_t holder = -1;
    e2e::waitFor([&] { return bool(std::ifstream(file_) >> holder); });
    return holder;
  }

 private:
  std::string file_;
  e2e::ChildProcess process_;
};

TEST(InstanceClaim, KeepsOthersOutWhenTheBusFails) {
  e2e::PrivateBus bus;
  const Instance first(bus, "first");
  ASSERT_EQ(first.holder(), first.pid());
  EXPECT_EQ(Instance(bus, "second").holder(), first.pid());
  bus.kill();
  EXPECT_EQ(Instance(bus, "third").holder(), first.pid());
}

TEST(InstanceClaim, PassesOnWhenTheHolderEnds) {
  const e2e::PrivateBus bus;
  {
    const Instance first(bus, "first");
    ASSERT_EQ(first.holder(), first.pid());
  }
  const Instance second(bus, "second");
  EXPECT_EQ(second.holder(), second.pid());
}

}  // namespace
}  // namespace kivra
