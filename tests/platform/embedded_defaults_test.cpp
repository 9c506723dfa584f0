#include "platform/defaults_contract.h"
#include "platform/embedded/embedded_defaults_database.h"

namespace kivra {
namespace {

class EmbeddedBackend {
 public:
  DefaultsDatabase& database() { return database_; }

 private:
  embedded::EmbeddedDefaultsDatabase database_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, DefaultsContract, EmbeddedBackend);

}  // namespace
}  // namespace kivra
