// Whatever a program sends its keyboard guard: never a crash, and no key that stays down.

#include <sys/socket.h>

#include <algorithm>
#include <cstdint>
#include <span>

#include "platform/guard/guard_bench.h"

namespace {

using namespace kivra::guard;

/// Takes a packet from the front of the input: as a frame, or as it is.
void sendPacket(GuardBench& bench, std::span<const std::uint8_t>& input, bool isFrame) {
  const auto length = std::min<std::size_t>(input[0], input.size() - 1);
  const auto packet = std::as_bytes(input.subspan(1, length));
  input = input.subspan(1 + length);
  if (!isFrame) {
    ::send(bench.programFd, packet.data(), packet.size(), MSG_DONTWAIT);
  } else if (length > 0) {
    sendFrame(bench.programFd, FrameKind{static_cast<std::uint32_t>(packet[0])}, packet.subspan(1),
              {});
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GuardBench bench;
  bench.enable(spaces());
  std::span<const std::uint8_t> input(data, size);
  while (input.size() > 1) {
    const auto move = input[0] % 8;
    const std::uint16_t key = input[0] % 16 < 8 ? KEY_SPACE : KEY_LEFTSHIFT;
    input = input.subspan(1);
    if (move < 5) sendPacket(bench, input, move > 0);
    if (move == 5) bench.tap(KEY_A);
    if (move == 6) bench.tap(key);
    if (move == 7) bench.pass(std::chrono::milliseconds(100));
    bench.serve();
    bench.reports();
  }
  bench.hangUp();
  bench.serve();
  bench.guard.letGo();
  if (bench.screen.down().any()) __builtin_trap();
  return 0;
}
