#pragma once

#include "ScreenWindow.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"

#include "Brevanto/BrevantoBundle.h"

// What the tests of screens stand on: a network, a server and an empty store for each of them, and a window.
class ScreenTest : public QObject
{
    Q_OBJECT

protected:
    template <typename Screen>
    static std::unique_ptr<Screen> makeScreen()
    {
        return brevantoStoryboard().instantiate<Screen>(QString::fromLatin1(Screen::staticMetaObject.className()));
    }
    // Opens a window, whose size the SDK knows as the screen's.
    void openWindow(const QSize &size = {390, 844});

    std::unique_ptr<FakeReachability> m_network; // one for all tests, since the SDK watches it from its first screen on
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ScreenWindow> m_window;
    QPointer<Platform::NavigationController> m_stack; // what the window shows

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
