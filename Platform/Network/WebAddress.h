#pragma once

#include <QUrl>

namespace Platform
{

// Whether the address names a host and is to be had by http or https: the only ones that are fetched, shown or played.
bool isWebAddress(const QUrl &url);

} // namespace Platform
