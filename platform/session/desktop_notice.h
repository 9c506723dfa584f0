#pragma once

#include <string>

namespace kivra {

/// Shows a notification on the desktop (org.freedesktop.Notifications) and waits for nothing.
/// Nothing is shown where nobody shows them.
void showDesktopNotice(const std::string& summary, const std::string& body);

}  // namespace kivra
