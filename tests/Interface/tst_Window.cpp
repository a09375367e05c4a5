#include "TestWindow.h"

#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/TapRecognizer.h"

#include <QTest>

using Platform::NavigationController;
using Platform::View;
using Platform::ViewController;
using Platform::Window;

namespace
{

class Opener final : public Platform::Application::URLOpener
{
public:
    bool canOpen(const QUrl &url) override { return url.scheme() != QLatin1String("none"); }
    void open(const QUrl &url, std::function<void(bool)> completion) override
    {
        opened.append(url);
        if (completion)
            completion(true);
    }

    QList<QUrl> opened;
};

class Screen : public ViewController
{
    Q_OBJECT

public:
    void viewDidLoad() override { Platform::Application::setStatusBarHidden(hidesStatusBar); }
    bool prefersStatusBarHidden() const override { return hidesStatusBar; }

    bool hidesStatusBar = false;
};

// An item that Tab reaches.
QQuickItem *addStop(QQuickItem *parent)
{
    auto *stop = new QQuickItem(parent);
    stop->setSize({10, 10});
    stop->setActiveFocusOnTab(true);
    return stop;
}

} // namespace

class tst_Window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void knowsTheKeyWindow();
    void screensHaveAPhonesSize_data();
    void screensHaveAPhonesSize();
    void knowsTheTopmostScreen();
    void backKeyLeads_data();
    void backKeyLeads();
    void backKeyStaysTheHostsWithoutScreens();
    void keepsTheHostOut();
    void keepsTheFocusInside();
    void givesTheHostWhatItHad();
    void tapsReachViewsBuiltInCode();
    void opensAddresses();

private:
    Screen *present(ViewController *presenter = nullptr);

    std::unique_ptr<TestWindow> m_window;
};

void tst_Window::init()
{
    m_window = std::make_unique<TestWindow>();
}

void tst_Window::cleanup()
{
    Platform::Application::setURLOpener(nullptr);
    m_window.reset();
}

Screen *tst_Window::present(ViewController *presenter)
{
    auto *screen = new Screen;
    (presenter ? presenter : m_window->root())->present(std::unique_ptr<ViewController>(screen), false);
    return screen;
}

void tst_Window::knowsTheKeyWindow()
{
    QCOMPARE(Window::keyWindow(), m_window->platform());
    QCOMPARE(Window::of(m_window->window()), m_window->platform());
    QCOMPARE(Platform::Screen::mainBounds(), QRectF(0, 0, 375, 667));
    m_window->window()->resize(400, 500);
    QTRY_COMPARE(Platform::Screen::mainBounds(), QRectF(0, 0, 400, 500));
    m_window->close();
    QCOMPARE(Window::keyWindow(), nullptr);
    QCOMPARE(Platform::Screen::mainBounds(), QRectF());
}

void tst_Window::screensHaveAPhonesSize_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QRect>("screen");
    QTest::newRow("a phone") << QSize(430, 932) << QRect(0, 0, 430, 932);
    QTest::newRow("a turned phone") << QSize(844, 390) << QRect(0, 0, 844, 390);
    QTest::newRow("low and wide") << QSize(1000, 600) << QRect(305, 0, 390, 600);
    QTest::newRow("a desktop's") << QSize(1000, 900) << QRect(305, 28, 390, 844);
}

void tst_Window::screensHaveAPhonesSize()
{
    QFETCH(QSize, window);
    QFETCH(QRect, screen);
    m_window = std::make_unique<TestWindow>(window);
    const QColor host = m_window->grab().pixelColor(2, window.height() / 2);
    Screen *lower = present();
    lower->view()->setBackgroundColor(Qt::red);
    Screen *upper = present(lower);
    QCOMPARE(Platform::Screen::mainBounds(), QRectF(QPointF(), screen.size()));
    const auto check = [&](View *view) {
        view->setBackgroundColor(Qt::red);
        const QImage shot = m_window->grab();
        const bool isWhole = screen.size() == window;
        QCOMPARE(view->mapRectToScene(view->bounds()), QRectF(screen));
        QCOMPARE(shot.pixelColor(screen.center()), QColor(Qt::red));
        // What is left of the host is dimmed, once.
        const int beside = shot.pixelColor(2, window.height() / 2).blue();
        QVERIFY(isWhole ? shot.pixelColor(2, 2) == QColor(Qt::red) : qAbs(beside - host.blue() / 2) < 3);
    };
    check(upper->view());
    upper->dismiss(false);
    check(lower->view());
    m_window->tap(QPointF(2, 2));
    QCOMPARE(m_window->hostEvents(), 0);
}

void tst_Window::knowsTheTopmostScreen()
{
    QCOMPARE(m_window->platform()->topmostViewController(), m_window->root());
    auto *inner = new Screen;
    auto *stack = new NavigationController(std::unique_ptr<ViewController>(inner));
    m_window->root()->present(std::unique_ptr<ViewController>(stack), false);
    QCOMPARE(m_window->platform()->topmostViewController(), inner);
    auto *alert = new Platform::AlertController(QStringLiteral("Title"), QString());
    inner->present(std::unique_ptr<ViewController>(alert), false);
    QCOMPARE(m_window->platform()->topmostViewController(), alert);
}

void tst_Window::backKeyLeads_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("escape") << static_cast<int>(Qt::Key_Escape);
    QTest::newRow("back") << static_cast<int>(Qt::Key_Back);
}

void tst_Window::backKeyLeads()
{
    QFETCH(int, key);
    View::setAnimationsEnabled(false);
    const QPointer<Screen> first = new Screen;
    auto *stack = new NavigationController(std::unique_ptr<ViewController>(first.data()));
    m_window->root()->present(std::unique_ptr<ViewController>(stack), false);
    const QPointer<Screen> second = new Screen;
    stack->pushViewController(std::unique_ptr<ViewController>(second.data()), false);

    QTest::keyClick(m_window->window(), static_cast<Qt::Key>(key));
    QTRY_VERIFY(!second);
    QTest::keyClick(m_window->window(), static_cast<Qt::Key>(key));
    QTRY_VERIFY(!first);
    QCOMPARE(m_window->hostEvents(), 0);
    View::setAnimationsEnabled(true);
}

void tst_Window::backKeyStaysTheHostsWithoutScreens()
{
    m_window->platform();
    QTest::keyClick(m_window->window(), Qt::Key_Escape);
    QCOMPARE(m_window->hostEvents(), 1);
}

void tst_Window::keepsTheHostOut()
{
    Screen *screen = present();
    m_window->tap(QPointF(100, 100));
    QTest::mouseClick(m_window->window(), Qt::LeftButton, {}, QPoint(200, 200));
    QTest::keyClick(m_window->window(), Qt::Key_A);
    QCOMPARE(m_window->hostEvents(), 0);
    screen->dismiss(false);
    m_window->tap(QPointF(100, 100));
    QVERIFY(m_window->hostEvents() > 0);
}

void tst_Window::keepsTheFocusInside()
{
    addStop(m_window->hostItem());
    Screen *screen = present();
    const QQuickItem *first = addStop(screen->view());
    const QQuickItem *second = addStop(screen->view());
    const auto press = [&](Qt::Key key) { QTest::keyClick(m_window->window(), key); };
    press(Qt::Key_Tab);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), first);
    press(Qt::Key_Tab);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), second);
    press(Qt::Key_Tab);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), first);
    press(Qt::Key_Backtab);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), second);
    m_window->hostItem()->forceActiveFocus();
    QTRY_VERIFY(screen->view()->isAncestorOf(m_window->window()->activeFocusItem()));
}

void tst_Window::givesTheHostWhatItHad()
{
    auto *lower = new Screen;
    lower->hidesStatusBar = true;
    m_window->root()->present(std::unique_ptr<ViewController>(lower), false);
    QVERIFY(Platform::Application::isStatusBarHidden());
    QQuickItem *lowerStop = addStop(lower->view());
    lowerStop->forceActiveFocus();
    Screen *upper = present(lower);
    QVERIFY(!Platform::Application::isStatusBarHidden());
    QTRY_VERIFY(!lowerStop->hasActiveFocus());
    upper->dismiss(false);
    QVERIFY(Platform::Application::isStatusBarHidden());
    QTRY_COMPARE(m_window->window()->activeFocusItem(), lowerStop);
    lower->dismiss(false);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), m_window->hostItem());
    QVERIFY(!Platform::Application::isStatusBarHidden());
}

void tst_Window::tapsReachViewsBuiltInCode()
{
    Screen *screen = present();
    QStringList tapped;
    const auto addDisc = [&](const QString &name, const QPointF &center) {
        auto *disc = new View(QRectF(center - QPointF(15, 15), QSizeF(30, 30)));
        disc->setCornerRadius(15);
        screen->view()->addSubview(disc);
        new Platform::TapRecognizer(disc, name, [&tapped, name](View *) { tapped.append(name); });
    };
    addDisc(QStringLiteral("lower"), {100, 100});
    addDisc(QStringLiteral("upper"), {134, 100});
    const QList<std::pair<QPointF, QString>> taps = {
        {{100, 100}, QStringLiteral("lower")},
        {{80, 100}, QStringLiteral("lower")}, // beside it, within a finger's reach
        {{114, 100}, QStringLiteral("lower")}, // on it, within a finger's reach of the other
        {{116, 100}, QStringLiteral("lower")}, // between them
        {{118, 100}, QStringLiteral("upper")},
        {{155, 120}, QStringLiteral("upper")},
    };
    for (const auto &[place, name] : taps) {
        m_window->tap(place);
        QTest::mouseClick(m_window->window(), Qt::LeftButton, {}, place.toPoint());
        QCOMPARE(std::exchange(tapped, {}), QStringList({name, name}));
    }
    m_window->tap(QPointF(160, 100));
    QCOMPARE(tapped, QStringList());
    QTest::keyClick(m_window->window(), Qt::Key_Tab);
    QTest::keyClick(m_window->window(), Qt::Key_Space);
    QCOMPARE(tapped.size(), 1);
    screen->view()->setUserInteractionEnabled(false);
    m_window->tap(QPointF(100, 100));
    QCOMPARE(tapped.size(), 1);
}

void tst_Window::opensAddresses()
{
    Opener opener;
    Platform::Application::setURLOpener(&opener);
    Platform::Application::openSettings();
    QCOMPARE(opener.opened, QList<QUrl>{QUrl(QStringLiteral("app-settings:"))});
    Platform::Application::setURLOpener(nullptr);
    QVERIFY(Platform::Application::urlOpener().canOpen(QUrl(QStringLiteral("tel:123"))));
    QVERIFY(!Platform::Application::urlOpener().canOpen(QUrl(QStringLiteral("no address"))));
}

QTEST_MAIN(tst_Window)
#include "tst_Window.moc"
