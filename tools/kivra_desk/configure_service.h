#pragma once

#include "operation.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra::desk {

/// Carries out an operation that says how a service of the desktop is to answer: keychain, http,
/// model, translator, languages, button. Throws ScriptError when it is not valid.
void configureService(embedded::EmbeddedDesktop& desktop, const Operation& operation);

}  // namespace kivra::desk
