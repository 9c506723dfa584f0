#include "platform/qt/qt_keychain.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "event_loop.h"
#include "platform/keychain_contract.h"
#include "private_bus.h"
#include "x_session.h"

namespace kivra::qt {
namespace {

using namespace std::chrono_literals;

constexpr const char* secret = "0123abcd-secret:fx";
const KeychainItem item{"org.example.kivra.test", "deepl-api-key"};

/// The bus is the process's for good: libsecret connects once. Services on it come and go.
const e2e::PrivateBus& bus() {
  static const e2e::PrivateBus made;
  static const bool entered = (made.enter(), true);
  static_cast<void>(entered);
  return made;
}

bool isUnderHome(const std::string& text) {
  for (const auto& file : std::filesystem::recursive_directory_iterator(bus().home())) {
    if (!file.is_regular_file()) continue;
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    if (content.find(text) != std::string::npos) return true;
  }
  return false;
}

/// gnome-keyring, its keyring unlocked with an empty password.
class SecretService {
 public:
  SecretService() : daemon_({"sh", "-c", unlocked}, {.environment = bus().environment()}) {
    if (!e2e::waitFor([] { return bus().hasOwner("org.freedesktop.secrets"); })) {
      throw std::runtime_error("gnome-keyring-daemon does not start");
    }
  }
  ~SecretService() {
    daemon_.signal(9);
    daemon_.wait(5s);
    e2e::waitFor([] { return !bus().hasOwner("org.freedesktop.secrets"); });
  }
  SecretService(const SecretService&) = delete;
  SecretService& operator=(const SecretService&) = delete;

  const e2e::ChildProcess& daemon() const { return daemon_; }

 private:
  static constexpr const char* unlocked =
      "exec gnome-keyring-daemon --foreground --components=secrets --unlock <<END\n\nEND\n";

  e2e::ChildProcess daemon_;
};

/// Started once: libsecret keeps its session with the first service that it finds.
const SecretService& service() {
  static const SecretService started;
  return started;
}

class QtKeychainTest : public testing::Test {
 protected:
  QtKeychainTest() { bus(); }

  QtKeychain keychain_;
};

// The first test, before the service is started.
TEST_F(QtKeychainTest, WithoutAServiceThereIsNothingAndNothingIsWritten) {
  ASSERT_FALSE(bus().hasOwner("org.freedesktop.secrets"));
  EXPECT_EQ(keychain_.itemAdd(item, secret), KeychainStatus::notAvailable);
  EXPECT_EQ(keychain_.itemUpdate(item, secret), KeychainStatus::notAvailable);
  EXPECT_EQ(keychain_.itemCopyMatching(item), std::nullopt);
  EXPECT_EQ(keychain_.itemDelete(item), KeychainStatus::notAvailable);
  EXPECT_FALSE(isUnderHome(secret));
}

TEST_F(QtKeychainTest, GivesUpAServiceThatDoesNotAnswer) {
  service();
  ASSERT_EQ(keychain_.itemAdd(item, secret), KeychainStatus::success);
  service().daemon().signal(SIGSTOP);
  std::string reported;
  QtKeychain impatient({.wait = 200ms, .report = [&](std::string_view line) { reported = line; }});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(impatient.itemCopyMatching(item), std::nullopt);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
  EXPECT_NE(reported.find("хранилище паролей"), std::string::npos) << reported;
  std::optional<std::string> unlocked;
  keychain_.itemCopyMatchingLater(item, [&](auto answer) { unlocked = std::move(answer); });
  EXPECT_EQ(unlocked, std::nullopt) << "nobody waits for it";
  service().daemon().signal(SIGCONT);
  EXPECT_TRUE(turnUntil([&] { return unlocked.has_value(); }));
  EXPECT_EQ(unlocked, secret);
  EXPECT_EQ(keychain_.itemCopyMatching(item), secret) << "the late answer does no harm";
}

class SecretsOfTheSession {
 public:
  SecretsOfTheSession() { service(); }
  Keychain& keychain() { return keychain_; }
  static void turnUntil(const std::function<bool()>& condition) { qt::turnUntil(condition); }

 private:
  QtKeychain keychain_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, KeychainContract, SecretsOfTheSession);

}  // namespace
}  // namespace kivra::qt
