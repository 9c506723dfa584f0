#pragma once

#include <memory>

#include "settings/settings_store.h"
#include "support/view_builders.h"
#include "support/weakly.h"

namespace kivra {

/// Binds a control to a property of the settings.
template <class T>
Binding<T> bindingTo(const std::shared_ptr<SettingsStore>& settings,
                     Setting<T> SettingsStore::*property) {
  return {((*settings).*property)(),
          weakly(settings, [property](SettingsStore& store, const T& value) {
            (store.*property).set(value);
          })};
}

/// Binds a control to a member of a view that is handed its new value.
template <class Owner, class T>
Binding<T> bindingTo(const std::weak_ptr<Owner>& owner, T value, void (Owner::*assign)(const T&)) {
  return {std::move(value),
          weakly(owner, [assign](Owner& self, const T& changed) { (self.*assign)(changed); })};
}

}  // namespace kivra
