#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "support/FakeReachability.h"
#include "support/Log.h"
#include "support/ManualClock.h"
#include "support/Table.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QtTest>

using namespace Qt::StringLiterals;
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
    void init()
    {
        kScreenWidth = 320;
        m_network = std::make_unique<FakeReachability>();
        m_clock = std::make_unique<ManualClock>();
        m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
    }

    void cleanup()
    {
        m_application.reset();
        QCOMPARE(m_network->scheduledCount(), 0);
        m_clock.reset();
        m_network.reset();
    }

    void bannerTakesItsWidthOnce_data() { addBothRows("isEarly", "screen known", "before any screen"); }
    void bannerTakesItsWidthOnce()
    {
        QFETCH(bool, isEarly);
        const qreal screenWidth = isEarly ? 0 : 320;
        kScreenWidth = screenWidth;
        QCOMPARE(manager()->noNetworkView()->frame(), QRectF(0, 0, screenWidth, 30));
        kScreenWidth = 480;
        QCOMPARE(manager()->noNetworkView()->frame(), QRectF(0, 0, screenWidth, 30));
        const Platform::Label *label = manager()->noNetworkLabel();
        QCOMPARE(label->frame(), QRectF(0, 0, screenWidth, 30));
        QCOMPARE(label->superview(), manager()->noNetworkView());
        QCOMPARE(label->text(), u"No internet connection"_s);
    }

    void screenShowsTheBanner()
    {
        TestScreen screen;
        screen.controller.view()->addSubview(new Platform::View(QRectF(0, 0, 100, 100)));
        m_network->setOffline();
        manager()->addObserverForReachability(&screen.controller);
        QVERIFY(screen.hasBanner());
        const auto subviews = screen.controller.view()->childItems();
        QCOMPARE(subviews.last(), manager()->noNetworkView());
        m_network->setOffline();
        QCOMPARE(screen.controller.view()->childItems(), subviews);
        m_network->setOnline();
        QVERIFY(!screen.hasBanner());
        m_network->setFlags(std::nullopt);
        QVERIFY(screen.hasBanner());

        manager()->removeObserverForReachability();
        QVERIFY(!screen.hasBanner());
        QCOMPARE(manager()->visibleViewController(), &screen.controller);
        m_network->setOnline();
        m_network->setOffline();
        QVERIFY(!screen.hasBanner());
    }

    void withoutMonitorThereIsNoNetwork()
    {
        m_network->setRefusing(true);
        TestScreen screen;
        QVERIFY(!manager()->reachabilty());
        QCOMPARE(manager()->currentReachabilityStatus(), BrevantoReachabilityStatusNone);
        manager()->addObserverForReachability(&screen.controller);
        QVERIFY(screen.hasBanner());
    }

    void registeringTwiceUpdatesOnce()
    {
        TestScreen screen;
        manager()->addObserverForReachability(&screen.controller);
        manager()->addObserverForReachability(&screen.controller);
        const QStringList log = logOf([this] { m_network->setOffline(); });
        QCOMPARE(log.filter(u"Reachability Flag Status"_s).size(), 1);
    }

    void bannerMovesToTheNextScreen()
    {
        auto first = std::make_unique<TestScreen>();
        TestScreen second;
        m_network->setOffline();
        manager()->addObserverForReachability(&first->controller);
        // The next screen registers before the first one unregisters.
        manager()->addObserverForReachability(&second.controller);
        QVERIFY(second.hasBanner());
        QVERIFY(!first->hasBanner());

        manager()->addObserverForReachability(&first->controller);
        first.reset();
        QCOMPARE(manager()->visibleViewController(), nullptr);
        m_network->setOnline();
        m_network->setOffline();
        manager()->removeObserverForReachability();
        manager()->addObserverForReachability(&second.controller);
        QVERIFY(second.hasBanner());
    }

    void pulse_data()
    {
        QTest::addColumn<QList<int>>("starts"); // in milliseconds; the last of the pulses goes its whole way
        QTest::newRow("one") << QList{0};
        QTest::newRow("again while growing") << QList{0, 300};
        QTest::newRow("again at the largest") << QList{0, 500};
        QTest::newRow("again while shrinking") << QList{0, 700};
        QTest::newRow("again and again") << QList{0, 100, 400, 600, 600};
    }
    void pulse()
    {
        QFETCH(QList<int>, starts);
        TestScreen screen;
        m_network->setOffline();
        manager()->addObserverForReachability(&screen.controller);
        const Platform::Label *label = manager()->noNetworkLabel();
        int now = 0;
        for (const int start : std::as_const(starts)) {
            m_clock->pass(std::chrono::milliseconds(start - now));
            now = start;
            const qreal before = label->scale();
            manager()->animateNoInternetConnectionLabel();
            QCOMPARE(label->transformScale(), 1.5);
            QCOMPARE(label->scale(), before);
        }
        if (label->scale() < 1.5) {
            m_clock->pass(499ms);
            QCOMPARE(label->transformScale(), 1.5);
            m_clock->pass(1ms);
        } else {
            m_clock->pass(0ms);
        }
        QCOMPARE(label->transformScale(), 1.0);
        QVERIFY2(label->scale() > 1.4, "the text shrinks over half a second");
        m_clock->pass(500ms);
        QCOMPARE(label->scale(), 1.0);
        QCOMPARE(m_clock->pendingCount(), 0);
    }

private:
    static BrevantoReachabilityManager *manager() { return BrevantoReachabilityManager::instance(); }
    int m_argumentCount = 1;
    char m_name[5] = "test";
    char *m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<QGuiApplication> m_application;
};

QTEST_APPLESS_MAIN(TestReachabilityManager)

#include "tst_ReachabilityManager.moc"
