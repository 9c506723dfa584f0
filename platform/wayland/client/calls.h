#pragma once

namespace kivra::wayland {

template <class... Arguments>
using Callback = void (*)(Arguments...);

template <class Object, class... Parameters>
Object objectOf(void (Object::*method)(Parameters...));

/// Stands in the listener of a proxy for a method of the object that the listener is added with:
/// the method gets the arguments of the event, without the proxy. The object's class is to be named
/// where the method is one of its bases'.
template <auto Method, class Object = decltype(objectOf(Method))>
class Calls {
 public:
  template <class Proxy, class... Arguments>
  constexpr operator Callback<void*, Proxy*, Arguments...>() const {  // NOLINT(*-explicit-*)
    return [](void* data, Proxy* /*proxy*/, Arguments... arguments) {
      (static_cast<Object*>(data)->*Method)(arguments...);
    };
  }
};

/// Stands there for an event that nobody wants to know of.
class Ignores {
 public:
  template <class... Arguments>
  constexpr operator Callback<Arguments...>() const {  // NOLINT(*-explicit-*)
    return [](Arguments...) {};
  }
};

}  // namespace kivra::wayland
