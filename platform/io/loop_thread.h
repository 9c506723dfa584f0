#pragma once

#include <glib.h>

#include <functional>
#include <future>
#include <memory>
#include <thread>

namespace kivra {

/// A thread for what glib calls back, with a main context and a loop of its own. The last member of
/// whoever has one: what it calls may use all the others.
class LoopThread {
 public:
  /// `begin` is called on the thread before its loop runs, `end` behind it.
  explicit LoopThread(
      const std::function<void()>& begin = [] {}, const std::function<void()>& end = [] {});
  /// Ends the loop, behind the blocks that have been handed to it, and waits for the thread.
  ~LoopThread();
  LoopThread(const LoopThread&) = delete;
  LoopThread& operator=(const LoopThread&) = delete;

  /// Ready as soon as `begin` has returned.
  const std::future<void>& begun() const { return begun_; }

  /// Calls the block on the thread, in turn; may be called on any.
  void call(std::function<void()> block) const;

  /// What the loop serves.
  GMainContext* context() const { return context_.get(); }

 private:
  struct Unref {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
  };

  std::unique_ptr<GMainContext, Unref> context_;
  std::unique_ptr<GMainLoop, Unref> loop_;
  std::future<void> begun_;
  std::thread thread_;
};

}  // namespace kivra
