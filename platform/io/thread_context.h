#pragma once

#include <glib.h>

#include <memory>

namespace kivra {

struct PopThreadContext {
  void operator()(GMainContext* context) const {
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
  }
};

/// The main context in which signals come that a thread asks for while this exists.
using ThreadContext = std::unique_ptr<GMainContext, PopThreadContext>;

inline ThreadContext newThreadContext() {
  ThreadContext context(g_main_context_new());
  g_main_context_push_thread_default(context.get());
  return context;
}

}  // namespace kivra
