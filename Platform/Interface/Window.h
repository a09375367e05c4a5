#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Interface/ViewController.h"

#include <QQuickWindow>

namespace Platform
{

// The platform's view of a Qt Quick window: its root view controller, its status bar and its back key. Any Qt Quick
// window of the host serves; nothing has to be prepared.
class Window : public QObject
{
    Q_OBJECT

public:
    // The window that has the focus, else the first visible one; null when the application shows no Qt Quick window.
    static Window *keyWindow();
    // The one Window of `window`, made on first use and owned by it.
    static Window *of(QQuickWindow *window);

    QQuickWindow *quickWindow() const { return m_quickWindow; }

    // The controller that stands for the host's own contents; SDK screens are presented over it.
    ViewController *rootViewController() const { return m_root.get(); }
    // The controller on top of all: the last presented, its navigation stack's top screen.
    ViewController *topmostViewController() const;

    QRectF bounds() const;
    // The area that screens fill, within the bounds: all of it on a phone and in a window of a phone's size, else an
    // upright phone's screen in the middle.
    QRectF screenFrame() const;

private:
    friend class FullScreenTransition;
    friend class PopupTransition;
    friend class Presentation;

    explicit Window(QQuickWindow *window);
    ~Window() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    // What the screens are put into: above all of the host's items, below its popups.
    View *layer() const { return m_root->view(); }

    void presentationBegan();
    void presentationEnded();
    // Keeps what is on its way out until it is gone.
    void keepUntilGone(std::unique_ptr<Presentation> presentation);
    std::unique_ptr<Presentation> takeGone(const Presentation *presentation);

    Presentation *topmostPresentation() const;
    bool isPresenting() const;
    bool isInTransition() const;
    void resize();
    void goBack();
    void keepFocusInside();

    QQuickWindow *m_quickWindow;
    std::unique_ptr<ViewController> m_root;
    std::vector<std::unique_ptr<Presentation>> m_leaving;
    QPointer<QQuickItem> m_hostFocus;
    QWindow::Visibility m_hostVisibility = QWindow::AutomaticVisibility;
    bool m_hostHidesStatusBar = false;
    QSizeF m_size;
    // The Tab key that moves the focus just now: Key_Tab, Key_Backtab or Key_unknown for none.
    Qt::Key m_tabKey = Qt::Key_unknown;
};

namespace Screen
{
// Size in points of the area that screens fill in the key window, at the origin; zero without a window.
QRectF mainBounds();
} // namespace Screen

namespace Application
{
enum class StatusBarStyle { Default = 0, LightContent = 1 };

void setStatusBarHidden(bool hidden);
bool isStatusBarHidden();
void setStatusBarStyle(StatusBarStyle style);
StatusBarStyle statusBarStyle();

// Whether the status bar is to say that something is on its way from the network. Today's phones show no such sign.
void setNetworkActivityIndicatorVisible(bool visible);
bool isNetworkActivityIndicatorVisible();

// Opens addresses outside the application (browser, telephone, settings).
class URLOpener
{
public:
    virtual ~URLOpener() = default;
    virtual bool canOpen(const QUrl &url) = 0;
    // Tells the completion whether the platform took the address; on the main thread.
    virtual void open(const QUrl &url, std::function<void(bool success)> completion) = 0;
};
URLOpener &urlOpener();
// Replaces the opener; null restores the platform's. The caller keeps ownership.
BREVANTO_EXPORT void setURLOpener(URLOpener *opener);

// Whether openURL() would hand the address to another application: a telephone number or a web page for which the
// platform has one. Nothing else that a server sends leaves the application.
bool canOpenURL(const QUrl &url);
// Opens the address outside the application; `completion` (may be null) is told whether the platform took it. An
// address that canOpenURL() refuses is not taken.
void openURL(const QUrl &url, const std::function<void(bool success)> &completion = {});

// Opens the application's page in the system settings, where the platform has one.
void openSettings();
} // namespace Application

} // namespace Platform
