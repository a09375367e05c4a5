
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/TapRecognizer.h"
#include "support/FakeOpener.h"
#include "support/Table.h"
#include "support/TestWindow.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Platform::NavigationController;
using Platform::View;
using Platform::ViewController;
using Platform::Window;

namespace
{

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
    void init() { m_window = std::make_unique<TestWindow>(); }

    void cleanup() { m_window.reset(); }

    void knowsTheKeyWindowAndItsTopmostScreen()
    {
        QCOMPARE(Window::keyWindow(), m_window->platform());
        QCOMPARE(m_window->platform()->topmostViewController(), m_window->root());
        auto *inner = new Screen;
        auto *stack = new NavigationController(std::unique_ptr<ViewController>(inner));
        m_window->root()->present(std::unique_ptr<ViewController>(stack), false);
        QCOMPARE(m_window->platform()->topmostViewController(), inner);
        auto *alert = new Platform::AlertController(u"Title"_s, QString());
        inner->present(std::unique_ptr<ViewController>(alert), false);
        QCOMPARE(m_window->platform()->topmostViewController(), alert);
        m_window->window()->resize(400, 500);
        QTRY_COMPARE(Platform::Screen::mainBounds(), QRectF(0, 0, 400, 500));
        m_window->close();
        QCOMPARE(Window::keyWindow(), nullptr);
        QCOMPARE(Platform::Screen::mainBounds(), QRectF());
    }

    void screensHaveAPhonesSize_data()
    {
        addColumns<QSize, QRect>("window", "screen");
        QTest::newRow("a phone") << QSize(430, 932) << QRect(0, 0, 430, 932);
        QTest::newRow("a turned phone") << QSize(844, 390) << QRect(0, 0, 844, 390);
        QTest::newRow("low and wide") << QSize(1000, 600) << QRect(305, 0, 390, 600);
        QTest::newRow("a desktop's") << QSize(1000, 900) << QRect(305, 28, 390, 844);
    }
    void screensHaveAPhonesSize()
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

    void backKeyLeads()
    {
        m_window->platform();
        QTest::keyClick(m_window->window(), Qt::Key_Escape);
        QCOMPARE(m_window->hostEvents(), 1); // the host's own while there is no screen

        View::setAnimationsEnabled(false);
        const QPointer<Screen> first = new Screen;
        auto *stack = new NavigationController(std::unique_ptr<ViewController>(first.data()));
        m_window->root()->present(std::unique_ptr<ViewController>(stack), false);
        const QPointer<Screen> second = new Screen;
        stack->pushViewController(std::unique_ptr<ViewController>(second.data()), false);
        QTest::keyClick(m_window->window(), Qt::Key_Escape);
        QTRY_VERIFY(!second);
        QVERIFY(first);
        QTest::keyClick(m_window->window(), Qt::Key_Back);
        QTRY_VERIFY(!first);
        QCOMPARE(m_window->hostEvents(), 1);
        View::setAnimationsEnabled(true);
    }

    void keepsTheFocusInside()
    {
        addStop(m_window->hostItem());
        Screen *screen = present();
        const QQuickItem *first = addStop(screen->view());
        const QQuickItem *second = addStop(screen->view());
        const std::pair<Qt::Key, const QQuickItem *> presses[] = {
            {Qt::Key_Tab, first}, {Qt::Key_Tab, second}, {Qt::Key_Tab, first}, {Qt::Key_Backtab, second}};
        for (const auto &[key, reached] : presses) {
            QTest::keyClick(m_window->window(), key);
            QTRY_COMPARE(m_window->window()->activeFocusItem(), reached);
        }
        m_window->hostItem()->forceActiveFocus();
        QTRY_VERIFY(screen->view()->isAncestorOf(m_window->window()->activeFocusItem()));
    }

    void keepsTheHostOutAndGivesBackWhatItHad()
    {
        auto *lower = new Screen;
        lower->hidesStatusBar = true;
        m_window->root()->present(std::unique_ptr<ViewController>(lower), false);
        QVERIFY(Platform::Application::isStatusBarHidden());
        m_window->tap(QPointF(100, 100));
        QTest::mouseClick(m_window->window(), Qt::LeftButton, {}, QPoint(200, 200));
        QTest::keyClick(m_window->window(), Qt::Key_A);
        QCOMPARE(m_window->hostEvents(), 0);
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
        m_window->tap(QPointF(100, 100));
        QVERIFY(m_window->hostEvents() > 0);
    }

    void tapsReachViewsBuiltInCode()
    {
        Screen *screen = present();
        QStringList tapped;
        const auto addDisc = [&](const QString &name, const QPointF &center) {
            auto *disc = new View(QRectF(center - QPointF(15, 15), QSizeF(30, 30)));
            disc->setCornerRadius(15);
            screen->view()->addSubview(disc);
            new Platform::TapRecognizer(disc, name, [&tapped, name](View *) { tapped.append(name); });
        };
        addDisc(u"lower"_s, {100, 100});
        addDisc(u"upper"_s, {134, 100});
        const QList<std::pair<QPointF, QString>> taps = {
            {{100, 100}, u"lower"_s}, {{80, 100}, u"lower"_s}, // beside it, within a finger's reach
            {{114, 100}, u"lower"_s}, // on it, within a finger's reach of the other
            {{116, 100}, u"lower"_s}, // between them
            {{118, 100}, u"upper"_s}, {{155, 120}, u"upper"_s},
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

    void opensAddresses()
    {
        {
            const FakeOpener opener;
            Platform::Application::openSettings();
            QCOMPARE(opener.opened, QStringList{u"app-settings:"_s});
        }
        QVERIFY(Platform::Application::urlOpener().canOpen(QUrl(u"tel:123"_s)));
        QVERIFY(!Platform::Application::urlOpener().canOpen(QUrl(u"no address"_s)));
    }

private:
    Screen *present(ViewController *presenter = nullptr)
    {
        auto *screen = new Screen;
        (presenter ? presenter : m_window->root())->present(std::unique_ptr<ViewController>(screen), false);
        return screen;
    }

    std::unique_ptr<TestWindow> m_window;
};

QTEST_MAIN(tst_Window)
#include "tst_Window.moc"
