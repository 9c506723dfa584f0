#pragma once

namespace kivra {

/// Whether a tray that takes status notifier items is on the session bus. Waits at most 0.5 s.
bool hasNotifierHost();

}  // namespace kivra
