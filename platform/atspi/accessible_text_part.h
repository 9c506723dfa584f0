#pragma once

namespace kivra {

/// Which text of an object is meant.
enum class AccessibleTextPart { selection, whole };

}  // namespace kivra
