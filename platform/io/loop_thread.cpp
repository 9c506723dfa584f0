#include "platform/io/loop_thread.h"

#include <utility>

namespace kivra {

LoopThread::LoopThread(const std::function<void()>& begin, const std::function<void()>& end)
    : context_(g_main_context_new()), loop_(g_main_loop_new(context_.get(), FALSE)) {
  std::promise<void> hasBegun;
  begun_ = hasBegun.get_future();
  thread_ = std::thread([this, begin, end, hasBegun = std::move(hasBegun)]() mutable {
    g_main_context_push_thread_default(context_.get());
    begin();
    hasBegun.set_value();
    g_main_loop_run(loop_.get());
    end();
    g_main_context_pop_thread_default(context_.get());
  });
}

// The loop may not have begun to run: the request to end it waits for it.
LoopThread::~LoopThread() {
  call([this] { g_main_loop_quit(loop_.get()); });
  thread_.join();
}

void LoopThread::call(std::function<void()> block) const {
  using Block = std::function<void()>;
  g_main_context_invoke_full(
      context_.get(), G_PRIORITY_DEFAULT,
      [](gpointer called) -> gboolean {
        (*static_cast<Block*>(called))();
        return G_SOURCE_REMOVE;
      },
      new Block(std::move(block)), [](gpointer dropped) { delete static_cast<Block*>(dropped); });
}

}  // namespace kivra
