#pragma once

#include <glib.h>

#include <memory>

namespace kivra {

struct UnrefVariant {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};

/// Owns a value of D-Bus.
using VariantPointer = std::unique_ptr<GVariant, UnrefVariant>;

}  // namespace kivra
