#include "configure_service.h"

#include <chrono>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "support/json.h"

namespace kivra::desk {

namespace {

using embedded::EmbeddedDesktop;

std::optional<std::string> optionalString(const Operation& operation, const char* member) {
  if (!operation.has(member)) return std::nullopt;
  return operation.string(member);
}

std::chrono::microseconds delayOf(const Operation& operation) {
  const auto seconds = operation.has("seconds") ? operation.nonNegative("seconds") : 0.0;
  return std::chrono::microseconds(std::llround(seconds * 1'000'000));
}

embedded::Answer answerOf(const Operation& operation) {
  return {.reply = optionalString(operation, "reply"),
          .failure = optionalString(operation, "failure"),
          .delay = delayOf(operation)};
}

std::string bytes(const Operation& operation) {
  std::string data;
  for (const auto& value : operation.array("data")) {
    const auto byte = json::integer<std::uint8_t>(value);
    if (!byte) throw ScriptError("\"data\" must hold byte values");
    data += static_cast<char>(*byte);
  }
  return data;
}

void keychain(EmbeddedDesktop& desktop, const Operation& operation) {
  const auto account = operation.string("account");
  const auto data = operation.has("data") ? bytes(operation) : operation.string("value");
  desktop.keychain.itemAdd({desktop.session.bundleIdentifier().value_or(""), account}, data);
}

void http(EmbeddedDesktop& desktop, const Operation& operation) {
  embedded::EmbeddedHttpClient::Reply reply{
      .response = {}, .failure = optionalString(operation, "failure"), .delay = delayOf(operation)};
  if (!reply.failure) {
    constexpr std::uint64_t mostStatus = 999;
    reply.response.statusCode = static_cast<int>(operation.integer("status", mostStatus));
    const auto& body = operation.any("body");
    reply.response.body = body.is_string() ? body.get<std::string>() : json::encode(body);
  }
  desktop.httpClient.queueReply(std::move(reply));
}

void model(EmbeddedDesktop& desktop, const Operation& operation) {
  desktop.languageModel.set(operation.boolean("available"), answerOf(operation));
}

TranslationStatus statusNamed(const std::string& name) {
  static const std::map<std::string, TranslationStatus> statuses = {
      {"installed", TranslationStatus::installed},
      {"supported", TranslationStatus::supported},
      {"unsupported", TranslationStatus::unsupported}};
  const auto found = statuses.find(name);
  if (found == statuses.end()) throw ScriptError("unknown status: " + name);
  return found->second;
}

void translator(EmbeddedDesktop& desktop, const Operation& operation) {
  desktop.translation.setPair(
      {.source = optionalString(operation, "source"), .target = operation.string("target")},
      {.status = statusNamed(operation.string("status")),
       .answer = answerOf(operation),
       .prepareFailure = optionalString(operation, "prepareFailure")});
}

void languages(EmbeddedDesktop& desktop, const Operation& operation) {
  desktop.locale.setPreferredLanguages(operation.strings("preferred"));
}

void button(EmbeddedDesktop& desktop, const Operation& operation) {
  desktop.alerts.queueButton(operation.string("title"));
}

}  // namespace

void configureService(EmbeddedDesktop& desktop, const Operation& operation) {
  using Configure = void (*)(EmbeddedDesktop&, const Operation&);
  static const std::map<std::string, Configure> all = {
      {"keychain", keychain},     {"http", http},           {"model", model},
      {"translator", translator}, {"languages", languages}, {"button", button}};
  all.at(operation.name())(desktop, operation);
}

}  // namespace kivra::desk
