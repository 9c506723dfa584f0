#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace kivra::wayland {

/// Another program that owns the clipboard and answers as the test says, for as long as it lives.
class OfferingClient {
 public:
  enum class Way { whole, silent, withoutEnd, diesHalfWay };

  struct Answer {
    std::string bytes;
    Way way = Way::whole;
    std::chrono::milliseconds delay{0};
  };
  using Answers = std::map<std::string, Answer>;

  /// Returns when it owns the clipboard of the compositor of the environment.
  explicit OfferingClient(Answers answers);
  ~OfferingClient();
  OfferingClient(const OfferingClient&) = delete;
  OfferingClient& operator=(const OfferingClient&) = delete;

  bool isOwner() const { return !isLost_; }

 private:
  struct Client;

  void serve();
  void send(const char* type, std::int32_t fd);
  void cancelled() { isLost_ = true; }
  static bool write(int fd, const std::string& bytes);

  Answers answers_;
  std::optional<int> dyingPipe_;
  std::atomic<bool> isLost_ = false;
  std::atomic<bool> isEnding_ = false;
  std::unique_ptr<Client> client_;
  std::thread thread_;
};

}  // namespace kivra::wayland
