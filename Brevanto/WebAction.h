#pragma once

#include <QString>

namespace Platform
{
class ViewController;
}

// Opens an address in the web viewer, over the navigation stack that `presenter` stands on. Without an address
// (null or empty) an alert over `presenter` says that there is none.
void openArticleOnWeb(Platform::ViewController *presenter, const QString &urlString);

// The alert for a choice that leads nowhere.
void presentOptionNotAvailable(Platform::ViewController *presenter);
