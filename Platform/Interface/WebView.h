#pragma once

#include "Platform/Interface/View.h"

#include <QUrl>

namespace Platform
{

// Shows web pages. Only http and https addresses are loaded, whoever asks for others: the application, a page's links
// or its scripts. (The phones' own engines tell of an address only once it loads: there it is stopped then, and what a
// page's frames load is not seen.) Where pages cannot be shown (the Qt WebView module is not installed, or on desktops
// the host has not called QtWebView::initialize() before it made its application object) the view says so and each load
// fails. For the main thread only.
class WebView : public Platform::View
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    explicit WebView(const QRectF &frame);

    bool isAvailable() const { return m_page != nullptr; }

    void loadRequest(const QUrl &url);
    // Shows text as a page that has no address.
    void loadHtml(const QString &html);
    void reload();
    void goBack();
    void goForward();

    bool canGoBack() const;
    bool canGoForward() const;
    bool isLoading() const;
    // Address of the page shown or on its way; empty when that has none.
    QUrl url() const { return m_url; }

    // For the scene.
    Q_INVOKABLE static bool isLoadable(const QUrl &url);
    Q_INVOKABLE void pageDidChangeUrl(const QUrl &url);

Q_SIGNALS:
    void didStartLoad();
    // A page came, be it the server's page about an error.
    void didFinishLoad();
    // No page came, or the address is none that is loaded. Never from within loadRequest().
    void didFailLoad(const QString &reason);
    // canGoBack() or canGoForward() may have changed.
    void historyChanged();

private:
    void fail(const QString &reason);
    void showUnavailable(const QString &reason);

    QQuickItem *m_page = nullptr; // null when pages cannot be shown
    QUrl m_url;
};

} // namespace Platform
