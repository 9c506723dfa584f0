#pragma once

#include <ostream>

namespace kivra::desk {

/// Plays a short sample that shows each thing Kivra does with the keyboard: what was typed, and
/// what stood in the text field afterwards.
void playSample(std::ostream& output);

}  // namespace kivra::desk
