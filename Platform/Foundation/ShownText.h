#pragma once

#include <QString>

namespace Platform
{

// How much of a text is shown, in UTF-16 code units. More does not fit on any screen, and takes seconds to lay out.
inline constexpr qsizetype longestShownText = 1000;

// The beginning of a text from elsewhere, as much as is shown of it. Never ends in half a character.
QString shownText(const QString &text);

} // namespace Platform
