#pragma once

#include <functional>
#include <string>
#include <utility>

#include "settings/user_defaults.h"

namespace kivra {

/// How a type stands in the defaults database: `read` answers nothing for what does not fit,
/// `write` stores.
template <class T>
struct StoredForm;

/// One user setting: loaded once, written through under its key at every assignment. Main thread.
template <class T>
class Setting {
 public:
  /// `willChange` is called before the value changes.
  Setting(UserDefaults& defaults, std::string key, T fallback, std::function<void()> willChange)
      : defaults_(defaults),
        key_(std::move(key)),
        value_(StoredForm<T>::read(defaults, key_).value_or(std::move(fallback))),
        willChange_(std::move(willChange)) {}

  const T& operator()() const { return value_; }

  void set(T value) {
    willChange_();
    value_ = std::move(value);
    StoredForm<T>::write(defaults_, key_, value_);
  }

 private:
  UserDefaults& defaults_;
  std::string key_;
  T value_;
  std::function<void()> willChange_;
};

}  // namespace kivra
