#pragma once

namespace kivra::session_names {

/// The program on the session bus.
inline constexpr const char* service = "app.kivra.Kivra";
inline constexpr const char* path = "/app/kivra/Kivra";
inline constexpr const char* application = "org.freedesktop.Application";

/// Carries out a command of kivractl: Run(as words, ay input) answers (i status, s output, s
/// message).
inline constexpr const char* control = "app.kivra.Kivra.Control";

}  // namespace kivra::session_names
