#pragma once

#include <QString>
#include <string>

namespace kivra::qt {

/// A text of the user as a line shows it: its line breaks are blanks, other control characters have
/// a visible sign, and what fits no window is left out.
QString shownLine(const std::string& text);

/// The text for a tool tip, which shows markup in it as it stands.
QString toolTipText(const std::string& text);

/// A text that goes into a field of one line: line breaks at its ends are left out, the others are
/// blanks.
QString withoutLineBreaks(const QString& text);

}  // namespace kivra::qt
