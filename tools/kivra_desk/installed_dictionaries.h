#pragma once

#include "platform/spell_checker.h"

namespace kivra::desk {

/// The spell checker with the dictionaries of this machine. The first call loads them and returns
/// when they are there, so that what a script prints does not depend on the speed of the machine.
SpellChecker* installedDictionaries();

}  // namespace kivra::desk
