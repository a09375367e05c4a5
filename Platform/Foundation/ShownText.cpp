#include "Platform/Foundation/ShownText.h"

namespace Platform
{

QString shownText(const QString &text)
{
    if (text.size() <= longestShownText)
        return text;
    return text.first(longestShownText - (text.at(longestShownText - 1).isHighSurrogate() ? 1 : 0));
}

} // namespace Platform
