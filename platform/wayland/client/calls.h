#pragma once

namespace kivra::wayland {

/// Stands in the listener of a proxy for a method of the object that the listener is added with:
/// the method gets the arguments of the event, without the proxy.
template <auto Method>
class Calls {
 public:
  template <class... Arguments>
  using Callback = void (*)(Arguments...);

  template <class Proxy, class... Arguments>
  constexpr operator Callback<void*, Proxy*, Arguments...>() const {  // NOLINT(*-explicit-*)
    return [](void* data, Proxy* /*proxy*/, Arguments... arguments) {
      call(Method, data, arguments...);
    };
  }

 private:
  template <class Object, class... Parameters, class... Arguments>
  static void call(void (Object::*method)(Parameters...), void* data, Arguments... arguments) {
    (static_cast<Object*>(data)->*method)(arguments...);
  }
};

/// Stands there for an event that nobody wants to know of.
class Ignores {
 public:
  template <class... Arguments>
  constexpr operator Calls<nullptr>::Callback<Arguments...>() const {  // NOLINT(*-explicit-*)
    return [](Arguments...) {};
  }
};

}  // namespace kivra::wayland
