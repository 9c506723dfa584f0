#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/selection/selection_contents.h"

struct zwlr_data_control_source_v1;

namespace kivra::wayland {

/// Hands the contents of an owned selection over to whoever asks, through pipes that take what they
/// can when they can.
class SourceOffer {
 public:
  struct DestroySource {
    void operator()(zwlr_data_control_source_v1* source) const;
  };
  using Source = std::unique_ptr<zwlr_data_control_source_v1, DestroySource>;

  /// `waitFd` is an epoll descriptor, which becomes ready when more can be written.
  explicit SourceOffer(int waitFd) : waitFd_(waitFd) {}
  ~SourceOffer();
  SourceOffer(const SourceOffer&) = delete;
  SourceOffer& operator=(const SourceOffer&) = delete;

  /// Offers these contents with a new source, which may be null; answers the former one. What was
  /// asked for before is still handed over.
  Source set(Source source, SelectionContents contents);

  bool isOwner() const { return source_ != nullptr; }
  const SelectionContents& contents() const { return contents_; }

  /// Writes on, as far as the pipes take it.
  void writeOn();

 private:
  using Moment = std::chrono::steady_clock::time_point;

  struct Transfer {
    int fd;
    std::shared_ptr<const std::string> data;
    std::size_t sent = 0;
    Moment lastStep{};
    bool isWaiting = false;
  };

  void handOver(const std::string& type, int fd);
  bool write(Transfer& transfer) const;
  void end(const Transfer& transfer) const;

  int waitFd_;
  Source source_;
  SelectionContents contents_;
  std::vector<Transfer> transfers_;
};

}  // namespace kivra::wayland
