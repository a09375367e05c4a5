#include "Platform/Interface/WebView.h"

#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Interface/SceneEngine.h"
#include "Platform/Network/WebAddress.h"

#if !defined(Q_OS_ANDROID) && !defined(Q_OS_IOS)
#include <QOpenGLContext>
#endif

namespace Platform
{

namespace
{

// The desktops' web engine ends the process when it starts without the contexts that its initialization shares.
bool isEngineInitialized()
{
#if defined(Q_OS_ANDROID) || defined(Q_OS_IOS)
    return true;
#else
    return QOpenGLContext::globalShareContext() != nullptr;
#endif
}

} // namespace

WebView::WebView(const QRectF &frame)
    : View(frame)
{
    setClip(true);
    if (!isEngineInitialized()) {
        showUnavailable(
            QStringLiteral("QtWebView::initialize() was not called before the application object was made"));
        return;
    }
    try {
        m_page = SceneEngine::makeItem(QStringLiteral("WebPage"), this,
                                       {{QStringLiteral("webView"), QVariant::fromValue(this)}});
    } catch (const Exception &exception) {
        showUnavailable(exception.reason());
    }
}

void WebView::showUnavailable(const QString &reason)
{
    log(QStringLiteral("Web pages cannot be shown: %1").arg(reason));
    SceneEngine::makeItem(QStringLiteral("WebPageUnavailable"), this);
}

bool WebView::isLoadable(const QUrl &url)
{
    return isWebAddress(url);
}

void WebView::loadRequest(const QUrl &url)
{
    if (!isLoadable(url)) {
        fail(QStringLiteral("Only http and https addresses are loaded"));
        return;
    }
    m_url = url;
    if (m_page)
        QMetaObject::invokeMethod(m_page, "load", Q_ARG(QUrl, url));
    else
        fail(QStringLiteral("Web pages cannot be shown"));
}

void WebView::loadHtml(const QString &html)
{
    m_url.clear();
    // Engines say nothing about the loading of an empty text.
    const QString page = html.isEmpty() ? QStringLiteral("<html></html>") : html;
    if (m_page)
        QMetaObject::invokeMethod(m_page, "loadHtml", Q_ARG(QString, page));
    else
        fail(QStringLiteral("Web pages cannot be shown"));
}

void WebView::reload()
{
    if (m_page)
        QMetaObject::invokeMethod(m_page, "reload");
}

void WebView::goBack()
{
    if (m_page)
        QMetaObject::invokeMethod(m_page, "goBack");
}

void WebView::goForward()
{
    if (m_page)
        QMetaObject::invokeMethod(m_page, "goForward");
}

bool WebView::canGoBack() const
{
    return m_page && m_page->property("canGoBack").toBool();
}

bool WebView::canGoForward() const
{
    return m_page && m_page->property("canGoForward").toBool();
}

bool WebView::isLoading() const
{
    return m_page && m_page->property("loading").toBool();
}

void WebView::pageDidChangeUrl(const QUrl &url)
{
    // An address that was stopped shows for a moment, too.
    if (isLoadable(url))
        m_url = url;
    else if (url.scheme() == QLatin1StringView("data") || url.scheme() == QLatin1StringView("about"))
        m_url.clear();
}

void WebView::fail(const QString &reason)
{
    DispatchQueue::mainAsync(this, [this, reason] { Q_EMIT didFailLoad(reason); });
}

} // namespace Platform
