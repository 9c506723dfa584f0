#pragma once

#include <memory>

#include "app/app_delegate.h"
#include "app/services.h"

namespace kivra {

/// One run of the program on one desktop.
class KivraApp {
 public:
  explicit KivraApp(const Platform& platform)
      : services(platform), delegate(std::make_shared<AppDelegate>(services)) {}

  Services services;
  const std::shared_ptr<AppDelegate> delegate;
};

}  // namespace kivra
