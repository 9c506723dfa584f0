#include "platform/engines/local_language_model.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "event_loop.h"
#include "platform/language_model_contract.h"
#include "platform/qt/qt_http_client.h"
#include "platform/qt/qt_run_loop.h"
#include "scripted_server.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::json;
using qt::httpAnswer;

constexpr const char* models =
    R"({"object":"list","data":[{"id":"nomic-embed-text"},{"id":"qwen"}]})";

/// A chat server that takes what it says from the test.
struct ChatServer {
  std::optional<std::string> onModels = httpAnswer(200, models);
  std::optional<std::string> onHealth = httpAnswer(404, "");
  std::optional<std::string> onChat;
  qt::ScriptedServer server{[this](const qt::ScriptedServer::Request& request) {
    if (request.line == "GET /v1/models") return onModels;
    return request.line == "GET /health" ? onHealth : onChat;
  }};

  void say(const std::string& content, const std::string& reason = "stop") {
    const Json answer = {{"choices",
                          {{{"message", {{"role", "assistant"}, {"content", content}}},
                            {"finish_reason", reason}}}}};
    onChat = httpAnswer(200, answer.dump());
  }
};

class ServedModel {
 public:
  LanguageModel& model() { return model_; }
  void offer(bool isThere) {
    chat_.onModels = isThere ? httpAnswer(200, models) : httpAnswer(500, "");
  }
  void say(const LanguageModelRequest& request, const std::string& text) {
    chat_.say(request.schema ? Json{{request.schema->property, text}}.dump() : text);
  }
  void fail() { chat_.onChat = httpAnswer(500, ""); }
  static void turnUntil(const std::function<bool()>& condition) { qt::turnUntil(condition); }

 private:
  qt::QtHttpClient http_;
  qt::QtRunLoop runLoop_;
  ChatServer chat_;
  LocalLanguageModel model_{
      http_, runLoop_, {.ports = {chat_.server.port()}, .probeWait = 10s, .probeLife = 0ms}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Local, LanguageModelContract, ServedModel);

class LocalLanguageModelTest : public testing::Test {
 protected:
  LocalLanguageModel model(std::vector<std::uint16_t> ports) {
    return {http_, runLoop_, {.ports = std::move(ports), .probeLife = 0ms, .answerWait = 2000ms}};
  }

  static std::string ask(LocalLanguageModel& model, const LanguageModelRequest& request) {
    return inWords(qt::answerOf<std::string>(
        [&](auto completion) { model.respond(request, std::move(completion)); }));
  }

  qt::QtHttpClient http_;
  qt::QtRunLoop runLoop_;
  ChatServer chat_;
  const LanguageModelRequest plain_{"Translate to EN-US.", "Привет,\n\"мир\"", std::nullopt};
  const LanguageModelRequest structured_{"Fix typos.", "превед",
                                         GenerationSchema{"text", "Text with fixed typos."}};
};

TEST_F(LocalLanguageModelTest, IsAvailableWhileAServerAnswers) {
  std::uint16_t port = 0;
  {
    ChatServer other;
    port = other.server.port();
    auto asked = model({1, port});
    EXPECT_TRUE(asked.isAvailable());
    other.onModels = httpAnswer(500, "");
    EXPECT_FALSE(asked.isAvailable());
    for (const char* odd : {"", "hello", "{}", R"({"data":[]})", R"({"data":[{"id":7}]})"}) {
      other.onModels = httpAnswer(200, odd);
      EXPECT_FALSE(asked.isAvailable()) << odd;
    }
    other.onModels = httpAnswer(200, models);
    other.onHealth = httpAnswer(503, R"({"error":{"message":"Loading model"}})");
    EXPECT_FALSE(asked.isAvailable());
    other.onHealth = httpAnswer(200, R"({"status":"ok"})");
    EXPECT_TRUE(asked.isAvailable());
  }
  EXPECT_FALSE(model({1, port}).isAvailable());
}

TEST_F(LocalLanguageModelTest, FindsOutWithinItsTimeAndServesTheRunLoopMeanwhile) {
  chat_.onModels = std::nullopt;
  auto asked = model({chat_.server.port()});
  int ticks = 0;
  bool nested = true;
  const auto timer = runLoop_.scheduleRepeatingTimer(5ms, [&] {
    ++ticks;
    nested = asked.isAvailable();
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(asked.isAvailable());
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took, 190ms);
  EXPECT_LT(took, 1s);
  EXPECT_GE(ticks, 10);
  EXPECT_FALSE(nested);
}

TEST_F(LocalLanguageModelTest, TakesTheSecondPortWhileTheFirstIsSilent) {
  ChatServer silent;
  silent.onModels = std::nullopt;
  chat_.say("ok");
  auto asked = model({silent.server.port(), chat_.server.port()});
  EXPECT_TRUE(asked.isAvailable());
  EXPECT_EQ(ask(asked, plain_), "ok");
}

TEST_F(LocalLanguageModelTest, RemembersForAMoment) {
  LocalLanguageModel asked(http_, runLoop_, {.ports = {chat_.server.port()}, .probeLife = 60000ms});
  EXPECT_TRUE(asked.isAvailable());
  const auto requests = chat_.server.requests.size();
  EXPECT_TRUE(asked.isAvailable());
  EXPECT_EQ(chat_.server.requests.size(), requests);
  chat_.onChat = "";
  EXPECT_TRUE(ask(asked, plain_).starts_with("failed: "));
  chat_.onModels = httpAnswer(500, "");
  EXPECT_FALSE(asked.isAvailable()) << "a failure makes it look again";
}

TEST_F(LocalLanguageModelTest, AsksForPlainText) {
  chat_.say(" Hello,\n\"world\" ");
  auto asked = model({chat_.server.port()});
  ASSERT_TRUE(asked.isAvailable());
  EXPECT_EQ(ask(asked, plain_), " Hello,\n\"world\" ");
  const auto& request = chat_.server.requests.back();
  EXPECT_EQ(request.line, "POST /v1/chat/completions");
  EXPECT_EQ(Json::parse(request.body), Json::parse(R"({"model":"qwen","stream":false,"messages":[
                {"role":"system","content":"Translate to EN-US."},
                {"role":"user","content":"Привет,\n\"мир\""}]})"));
}

TEST_F(LocalLanguageModelTest, AsksForTheOnePropertyOfTheSchema) {
  chat_.say(R"({"text":"привет"})");
  auto asked = model({chat_.server.port()});
  ASSERT_TRUE(asked.isAvailable());
  EXPECT_EQ(ask(asked, structured_), "привет");
  const auto body = Json::parse(chat_.server.requests.back().body);
  const auto schema = Json::parse(R"({"type":"object","additionalProperties":false,
      "required":["text"],
      "properties":{"text":{"type":"string","description":"Text with fixed typos."}}})");
  EXPECT_EQ(body["response_format"]["type"], "json_schema");
  EXPECT_EQ(body["response_format"]["json_schema"]["schema"], schema);
  EXPECT_EQ(body["response_format"]["json_schema"]["strict"], true);
  const auto instructions = body["messages"][0]["content"].get<std::string>();
  EXPECT_TRUE(instructions.starts_with("Fix typos."));
  EXPECT_NE(instructions.find(schema.dump()), std::string::npos);
  EXPECT_EQ(body["messages"][1]["content"], "превед");
}

TEST_F(LocalLanguageModelTest, FailsOnAnswersThatAreNone) {
  auto asked = model({chat_.server.port()});
  EXPECT_TRUE(ask(asked, plain_).starts_with("failed: ")) << "asked before it was found";
  ASSERT_TRUE(asked.isAvailable());
  for (const char* odd : {"", "{}", "null", R"({"choices":[]})", R"({"choices":[{"message":{}}]})",
                          R"({"choices":[{"message":{"content":null}}]})", "<html>"}) {
    chat_.onChat = httpAnswer(200, odd);
    EXPECT_TRUE(ask(asked, plain_).starts_with("failed: ")) << odd;
  }
  for (const char* odd : {"", "привет", "{}", R"({"text":7})", R"(["text"])"}) {
    chat_.say(odd);
    EXPECT_TRUE(ask(asked, structured_).starts_with("failed: ")) << odd;
  }
  chat_.say("half a translat", "length");
  EXPECT_TRUE(ask(asked, plain_).starts_with("failed: "));
  chat_.onChat = httpAnswer(500, R"({"error":"your text was: Привет"})");
  EXPECT_EQ(ask(asked, plain_), "failed: Локальная модель: HTTP 500");
  ASSERT_TRUE(asked.isAvailable());
  chat_.onChat = std::nullopt;
  EXPECT_TRUE(ask(asked, plain_).starts_with("failed: ")) << "an engine that never answers";
}

}  // namespace
}  // namespace kivra
