#include "Platform/Network/WebAddress.h"

namespace Platform
{

bool isWebAddress(const QUrl &url)
{
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty()
        && (scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https"));
}

} // namespace Platform
