#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "support/FakeReachability.h"
#include "support/ManualClock.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QtTest>

using namespace std::chrono_literals;

// A screen whose view stands in a window.
struct TestScreen {
    TestScreen()
    {
        controller.view()->setFrame(QRectF(0, 0, 320, 480));
        controller.view()->setParentItem(window.contentItem());
        window.resize(320, 480);
        window.show();
    }
    bool hasBanner() const
    {
        const auto *manager = BrevantoReachabilityManager::instance();
        return manager->noNetworkView()->superview() == const_cast<Platform::ViewController &>(controller).view();
    }

    QQuickWindow window;
    Platform::ViewController controller;
};

// Each test has an application of its own, and with it a manager of its own.
class TestReachabilityManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void bannerHasNoWidthBeforeTheScreenIsKnown();
    void bannerLook();
    void offlineScreenShowsBannerAtOnce();
    void bannerIsAddedOnceAndOnTop();
    void registeringTwiceUpdatesOnce();
    void nothingHappensAfterRemoval();
    void bannerMovesToTheNextScreen();
    void screenThatIsGone();
    void pulse();
    void overlappingPulses();

private:
    static BrevantoReachabilityManager *manager() { return BrevantoReachabilityManager::instance(); }
    void pass(std::chrono::milliseconds duration);

    int m_argumentCount = 1;
    char m_name[5] = "test";
    char *m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<QGuiApplication> m_application;
};

void TestReachabilityManager::init()
{
    kScreenWidth = 320;
    m_network = std::make_unique<FakeReachability>();
    m_clock = std::make_unique<ManualClock>();
    m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
}

void TestReachabilityManager::cleanup()
{
    m_application.reset();
    QCOMPARE(m_network->scheduledCount(), 0);
    m_clock.reset();
    m_network.reset();
}

void TestReachabilityManager::pass(std::chrono::milliseconds duration)
{
    m_clock->advance(duration);
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

void TestReachabilityManager::bannerHasNoWidthBeforeTheScreenIsKnown()
{
    kScreenWidth = 0;
    QCOMPARE(manager()->noNetworkView()->frame(), QRectF(0, 0, 0, 30));
    kScreenWidth = 320;
    QCOMPARE(manager()->noNetworkView()->frame(), QRectF(0, 0, 0, 30));
}

void TestReachabilityManager::bannerLook()
{
    QCOMPARE(manager()->noNetworkView()->frame(), QRectF(0, 0, 320, 30));
    QCOMPARE(manager()->noNetworkView()->backgroundColor(), QColor(170, 170, 170));
    const Platform::Label *label = manager()->noNetworkLabel();
    QCOMPARE(label->frame(), QRectF(0, 0, 320, 30));
    QCOMPARE(label->superview(), manager()->noNetworkView());
    QCOMPARE(label->text(), QStringLiteral("No internet connection"));
}

void TestReachabilityManager::offlineScreenShowsBannerAtOnce()
{
    TestScreen screen;
    m_network->setOffline();
    manager()->addObserverForReachability(&screen.controller);
    QVERIFY(screen.hasBanner());
    m_network->setOnline();
    QVERIFY(!screen.hasBanner());
    m_network->setFlags(std::nullopt);
    QVERIFY(screen.hasBanner());
}

void TestReachabilityManager::bannerIsAddedOnceAndOnTop()
{
    TestScreen screen;
    screen.controller.view()->addSubview(new Platform::View(QRectF(0, 0, 100, 100)));
    m_network->setOffline();
    manager()->addObserverForReachability(&screen.controller);
    const auto subviews = screen.controller.view()->childItems();
    QCOMPARE(subviews.last(), manager()->noNetworkView());
    m_network->setOffline();
    QCOMPARE(screen.controller.view()->childItems(), subviews);
}

void TestReachabilityManager::registeringTwiceUpdatesOnce()
{
    TestScreen screen;
    manager()->addObserverForReachability(&screen.controller);
    manager()->addObserverForReachability(&screen.controller);
    static int lines;
    lines = 0;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
            lines += text.startsWith(QLatin1StringView("Reachability Flag Status"));
        });
    m_network->setOffline();
    qInstallMessageHandler(previous);
    QCOMPARE(lines, 1);
}

void TestReachabilityManager::nothingHappensAfterRemoval()
{
    TestScreen screen;
    m_network->setOffline();
    manager()->addObserverForReachability(&screen.controller);
    manager()->removeObserverForReachability();
    QVERIFY(!screen.hasBanner());
    QCOMPARE(manager()->visibleViewController(), &screen.controller);
    m_network->setOnline();
    m_network->setOffline();
    QVERIFY(!screen.hasBanner());
}

void TestReachabilityManager::bannerMovesToTheNextScreen()
{
    TestScreen first;
    TestScreen second;
    m_network->setOffline();
    manager()->addObserverForReachability(&first.controller);
    // The next screen registers before the first one unregisters.
    manager()->addObserverForReachability(&second.controller);
    QVERIFY(second.hasBanner());
    QVERIFY(!first.hasBanner());
}

void TestReachabilityManager::screenThatIsGone()
{
    auto screen = std::make_unique<TestScreen>();
    m_network->setOffline();
    manager()->addObserverForReachability(&screen->controller);
    screen.reset();
    QCOMPARE(manager()->visibleViewController(), nullptr);
    m_network->setOnline();
    m_network->setOffline();
    manager()->removeObserverForReachability();
    TestScreen next;
    manager()->addObserverForReachability(&next.controller);
    QVERIFY(next.hasBanner());
}

void TestReachabilityManager::pulse()
{
    TestScreen screen;
    m_network->setOffline();
    manager()->addObserverForReachability(&screen.controller);
    const Platform::Label *label = manager()->noNetworkLabel();
    manager()->animateNoInternetConnectionLabel();
    QCOMPARE(label->transformScale(), 1.5);
    pass(499ms);
    QCOMPARE(label->transformScale(), 1.5);
    pass(1ms);
    QCOMPARE(label->transformScale(), 1.0);
    QVERIFY2(label->scale() > 1.4, "the text shrinks over half a second");
    pass(500ms);
    QCOMPARE(label->scale(), 1.0);
    QCOMPARE(m_clock->pendingCount(), 0);
}

void TestReachabilityManager::overlappingPulses()
{
    TestScreen screen;
    m_network->setOffline();
    manager()->addObserverForReachability(&screen.controller);
    for (const auto pause : {100ms, 300ms, 200ms, 0ms}) {
        manager()->animateNoInternetConnectionLabel();
        pass(pause);
    }
    pass(2000ms);
    pass(2000ms);
    QCOMPARE(manager()->noNetworkLabel()->scale(), 1.0);
    QCOMPARE(m_clock->pendingCount(), 0);
}

QTEST_APPLESS_MAIN(TestReachabilityManager)

#include "tst_ReachabilityManager.moc"
