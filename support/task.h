#pragma once

#include <chrono>
#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include "platform/completion.h"
#include "platform/run_loop.h"

namespace kivra {

template <class T>
class Task;

/// A started task with everything that it awaits. Whoever is to resume it owns it: when the last
/// pending completion is destroyed uncalled, the frames of its coroutines are destroyed too.
class TaskRun : public std::enable_shared_from_this<TaskRun> {
 public:
  TaskRun(RunLoop& runLoop, std::weak_ptr<const void> owner, Task<void> root);
  ~TaskRun();
  TaskRun(const TaskRun&) = delete;
  TaskRun& operator=(const TaskRun&) = delete;

  /// Queues the resumption of one of its coroutines; nothing happens once the owner is gone.
  void resumeLater(std::coroutine_handle<> coroutine) {
    resumeAfter(std::chrono::microseconds(0), coroutine);
  }

  void start();

 private:
  void resumeAfter(std::chrono::microseconds delay, std::coroutine_handle<> coroutine) {
    runLoop_.asyncAfter(delay, [run = shared_from_this(), coroutine] { run->resume(coroutine); });
  }
  void resume(std::coroutine_handle<> coroutine) {
    constexpr auto patience = std::chrono::milliseconds(5);
    if (runLoop_.isHeldUp()) {
      resumeAfter(patience, coroutine);
    } else if (const auto owner = owner_.lock()) {
      coroutine.resume();
    }
  }

  RunLoop& runLoop_;
  std::weak_ptr<const void> owner_;
  std::unique_ptr<Task<void>> root_;
};

/// What the promises of all tasks have in common.
class TaskPromiseBase {
 public:
  struct FinalAwaiter {
    bool await_ready() const noexcept { return false; }
    template <class Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) const noexcept {
      return finished.promise().continuation;
    }
    void await_resume() const noexcept {}
  };

  std::suspend_always initial_suspend() const noexcept { return {}; }
  FinalAwaiter final_suspend() const noexcept { return {}; }
  void unhandled_exception() noexcept { failure = std::current_exception(); }

  std::coroutine_handle<> continuation = std::noop_coroutine();
  std::weak_ptr<TaskRun> run;
  std::exception_ptr failure;
};

template <class T>
class TaskPromise : public TaskPromiseBase {
 public:
  Task<T> get_return_object();
  void return_value(T value) { result_ = std::move(value); }
  T takeResult() {
    if (failure) std::rethrow_exception(failure);
    return std::move(*result_);
  }

 private:
  std::optional<T> result_;
};

template <>
class TaskPromise<void> : public TaskPromiseBase {
 public:
  Task<void> get_return_object();
  void return_void() const noexcept {}
  void takeResult() const {
    if (failure) std::rethrow_exception(failure);
  }
};

/// An asynchronous operation of the main thread, as a coroutine. It begins when it is awaited or
/// started; awaiting it gives its result or throws its failure. Destroying it abandons it.
template <class T>
class [[nodiscard]] Task {
 public:
  using promise_type = TaskPromise<T>;
  using Handle = std::coroutine_handle<promise_type>;

  explicit Task(Handle handle) : handle_(handle) {}
  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Task& operator=(Task&&) = delete;
  ~Task() {
    if (handle_) handle_.destroy();
  }

  bool await_ready() const noexcept { return false; }
  template <class Promise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> awaiting) noexcept {
    handle_.promise().continuation = awaiting;
    handle_.promise().run = awaiting.promise().run;
    return handle_;
  }
  T await_resume() { return handle_.promise().takeResult(); }

  const Handle& handle() const { return handle_; }

 private:
  Handle handle_;
};

template <class T>
Task<T> TaskPromise<T>::get_return_object() {
  return Task<T>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

inline Task<void> TaskPromise<void>::get_return_object() {
  return Task<void>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

inline TaskRun::TaskRun(RunLoop& runLoop, std::weak_ptr<const void> owner, Task<void> root)
    : runLoop_(runLoop),
      owner_(std::move(owner)),
      root_(std::make_unique<Task<void>>(std::move(root))) {}

inline TaskRun::~TaskRun() = default;

inline void TaskRun::start() {
  root_->handle().promise().run = weak_from_this();
  resumeLater(root_->handle());
}

/// Starts a task, which begins when the caller has returned to the run loop and goes on for as long
/// as `owner` lives. A failure that it does not handle itself is dropped.
inline void startTask(RunLoop& runLoop, std::weak_ptr<const void> owner, Task<void> task) {
  std::make_shared<TaskRun>(runLoop, std::move(owner), std::move(task))->start();
}

/// Awaits an operation of the platform: `Begin` takes the completion.
template <class Result, class Begin>
class CompletionAwaiter {
 public:
  explicit CompletionAwaiter(Begin begin) : begin_(std::move(begin)) {}

  bool await_ready() const noexcept { return false; }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> awaiting) {
    // The run travels with the completion; a second call finds it gone.
    auto pending = std::make_shared<std::shared_ptr<TaskRun>>(awaiting.promise().run.lock());
    begin_([this, awaiting, pending](std::variant<Result, PlatformError> answer) {
      const auto run = std::exchange(*pending, nullptr);
      if (!run) return;
      answer_ = std::move(answer);
      run->resumeLater(awaiting);
    });
  }
  Result await_resume() {
    if (const auto* failure = std::get_if<PlatformError>(&*answer_)) throw PlatformError(*failure);
    return std::move(std::get<Result>(*answer_));
  }

 private:
  Begin begin_;
  std::optional<std::variant<Result, PlatformError>> answer_;
};

/// Suspends the task until the completion handed to `begin` is called; gives the result or throws
/// the PlatformError.
template <class Result, class Begin>
CompletionAwaiter<Result, Begin> completionOf(Begin begin) {
  return CompletionAwaiter<Result, Begin>(std::move(begin));
}

}  // namespace kivra
