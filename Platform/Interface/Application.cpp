#include "Platform/Interface/Window.h"

#include "Platform/Network/WebAddress.h"

#include <QDesktopServices>
#include <QUrl>

#include <algorithm>

#ifdef Q_OS_ANDROID
#include <QCoreApplication>
#include <QJniObject>
#endif

namespace Platform
{

QRectF Screen::mainBounds()
{
    const Window *window = Window::keyWindow();
    return window ? QRectF(QPointF(), window->screenFrame().size()) : QRectF();
}

namespace Application
{

namespace
{

bool statusBarIsHidden = false;
bool networkActivityIsShown = false;
StatusBarStyle currentStatusBarStyle = StatusBarStyle::Default;
URLOpener *replacement = nullptr;

// Dialled with '*' and '#', a number would be an order to the network: to forward all calls, for one. A '%' that is
// left once the number is decoded may stand for one of them.
bool isTelephoneNumber(const QUrl &url)
{
    if (!url.host().isEmpty() || url.hasQuery() || url.hasFragment())
        return false;
    const QString number = url.path(QUrl::FullyDecoded);
    return std::ranges::any_of(number, [](QChar character) { return character.isDigit(); })
        && std::ranges::none_of(number, [](QChar character) { return QStringView(u"*#%").contains(character); });
}

class SystemOpener final : public URLOpener
{
public:
    bool canOpen(const QUrl &url) override { return url.isValid() && !url.scheme().isEmpty(); }
    void open(const QUrl &url, std::function<void(bool)> completion) override
    {
        const bool isTaken = QDesktopServices::openUrl(url);
        if (completion)
            completion(isTaken);
    }
};

} // namespace

void setStatusBarHidden(bool hidden)
{
    statusBarIsHidden = hidden;
#if defined(Q_OS_ANDROID) || defined(Q_OS_IOS)
    if (const Window *window = Window::keyWindow())
        window->quickWindow()->setVisibility(hidden ? QWindow::FullScreen : QWindow::Maximized);
#endif
}

bool isStatusBarHidden()
{
    return statusBarIsHidden;
}

void setStatusBarStyle(StatusBarStyle style)
{
    currentStatusBarStyle = style;
}

StatusBarStyle statusBarStyle()
{
    return currentStatusBarStyle;
}

void setNetworkActivityIndicatorVisible(bool visible)
{
    networkActivityIsShown = visible;
}

bool isNetworkActivityIndicatorVisible()
{
    return networkActivityIsShown;
}

URLOpener &urlOpener()
{
    static SystemOpener systemOpener;
    return replacement ? *replacement : systemOpener;
}

void setURLOpener(URLOpener *opener)
{
    replacement = opener;
}

bool canOpenURL(const QUrl &url)
{
    const QString scheme = url.scheme();
    const bool isAddressed = scheme == QStringLiteral("tel") ? isTelephoneNumber(url) : isWebAddress(url);
    return url.isValid() && isAddressed && urlOpener().canOpen(url);
}

void openURL(const QUrl &url, const std::function<void(bool)> &completion)
{
    if (canOpenURL(url))
        urlOpener().open(url, completion);
    else if (completion)
        completion(false);
}

void openSettings()
{
#ifdef Q_OS_ANDROID
    const QJniObject activity = QNativeInterface::QAndroidApplication::context();
    const QJniObject package = activity.callObjectMethod("getPackageName", "()Ljava/lang/String;");
    const QJniObject address = QJniObject::callStaticObjectMethod(
        "android/net/Uri", "fromParts", "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)Landroid/net/Uri;",
        QJniObject::fromString(QStringLiteral("package")).object(), package.object(), nullptr);
    const QJniObject action = QJniObject::fromString(QStringLiteral("android.settings.APPLICATION_DETAILS_SETTINGS"));
    QJniObject intent("android/content/Intent", "(Ljava/lang/String;Landroid/net/Uri;)V", action.object(),
                      address.object());
    activity.callMethod<void>("startActivity", "(Landroid/content/Intent;)V", intent.object());
#else
    const QUrl settings(QStringLiteral("app-settings:"));
    if (urlOpener().canOpen(settings))
        urlOpener().open(settings, {});
#endif
}

} // namespace Application
} // namespace Platform
