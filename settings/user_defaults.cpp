#include "settings/user_defaults.h"

namespace kivra {

void UserDefaults::registerDefault(std::string key, DefaultsValue value) {
  registered_.insert_or_assign(std::move(key), std::move(value));
}

}  // namespace kivra
