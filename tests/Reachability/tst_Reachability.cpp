#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Brevanto/Reachability/ReachabilityCallback.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "support/FakeReachability.h"
#include "support/Log.h"
#include "support/Raised.h"
#include "support/Table.h"

#include <QtTest>

#include <thread>

using namespace Qt::StringLiterals;

class TestReachability : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsGiveStatus_data()
    {
        addColumns<quint32, int, QString>("flags", "status", "marks");
        QTest::newRow("nothing") << 0u << 0 << "-- -------";
        QTest::newRow("reachable") << 0x2u << 1 << "-R -------";
        QTest::newRow("connection required") << 0x6u << 0 << "-R -c-----";
        QTest::newRow("on traffic") << 0xeu << 1 << "-R -cC----";
        QTest::newRow("on demand") << 0x26u << 1 << "-R -c--D--";
        QTest::newRow("on traffic, by hand") << 0x1eu << 0 << "-R -cCi---";
        QTest::newRow("on demand, by hand") << 0x36u << 0 << "-R -c-iD--";
        QTest::newRow("by hand, no connection needed") << 0x12u << 1 << "-R ---i---";
        QTest::newRow("cellular") << 0x40002u << 2 << "WR -------";
        QTest::newRow("cellular, connection required") << 0x40006u << 2 << "WR -c-----";
        QTest::newRow("cellular, not reachable") << 0x40000u << 0 << "W- -------";
        QTest::newRow("not reachable, on traffic") << 0x8u << 0 << "-- --C----";
        QTest::newRow("local and direct") << 0x30002u << 1 << "-R -----ld";
        QTest::newRow("transient") << 0x3u << 1 << "-R t------";
        QTest::newRow("all bits") << 0xffffffffu << 2 << "WR tcCiDld";
    }
    void flagsGiveStatus()
    {
        QFETCH(quint32, flags);
        QFETCH(QString, marks);
        FakeReachability network(flags);
        const auto monitor = BrevantoReachability::reachabilityForInternetConnection();
        QCOMPARE(network.lastAddress(), QHostAddress(QHostAddress::AnyIPv4));

        int status = -1;
        const QStringList log =
            logOf([&] { std::thread([&] { status = monitor->currentReachabilityStatus(); }).join(); });

        QTEST(status, "status");
        QCOMPARE(log, QStringList(u"Reachability Flag Status: %1 networkStatusForFlags"_s.arg(marks)));
        QCOMPARE(monitor->connectionRequired(), marks.contains(QLatin1Char('c')));

        network.setFlags(std::nullopt);
        QCOMPARE(monitor->currentReachabilityStatus(), BrevantoReachabilityStatusNone);
        QVERIFY(!monitor->connectionRequired());
    }

    void factoriesWithoutTarget()
    {
        QVERIFY(!BrevantoReachability::reachabilityWithHostName({}));
        QVERIFY(!BrevantoReachability::reachabilityWithAddress({}));

        FakeReachability network;
        network.setRefusing(true);
        QVERIFY(!BrevantoReachability::reachabilityWithHostName(u"ads.example"_s));
        QVERIFY(!BrevantoReachability::reachabilityForInternetConnection());
        QVERIFY(!BrevantoReachability().startNotifier());
    }

    void changeIsPosted()
    {
        FakeReachability network;
        auto monitor = BrevantoReachability::reachabilityForInternetConnection();
        QObject observer;
        QList<QObject *> senders;
        Platform::NotificationCenter::defaultCenter().addObserver(
            &observer, u"kBrevantoNetworkReachabilityChangedNotification"_s,
            [&](const Platform::Notification &notification) { senders.append(notification.object); });

        network.setOffline();
        QVERIFY2(senders.isEmpty(), "a monitor that was not started reports changes");

        QVERIFY(monitor->startNotifier());
        network.setOnline();
        QCOMPARE(senders, QList<QObject *>{monitor.get()});

        monitor->stopNotifier();
        network.setOffline();
        QCOMPARE(senders.size(), 1);

        QVERIFY(monitor->startNotifier());
        monitor.reset();
        QCOMPARE(network.scheduledCount(), 0);
        network.setOnline();
        QCOMPARE(senders.size(), 1);
    }

    void assertions()
    {
        QObject stranger;
        const BrevantoReachability monitor;
        const auto check = [](auto work, const char *place, const char *reason) {
            QString exception;
            const QStringList log = logOf([&] { exception = raised(work); });
            QVERIFY2(log.first().contains(QLatin1StringView(place)), qPrintable(log.first()));
            QCOMPARE(exception, u"InternalInconsistency: "_s + QLatin1StringView(reason));
        };
        check([] { ReachabilityCallback(nullptr, 0, nullptr); },
              " ReachabilityCallback, Reachability/BrevantoReachability:54", "info was NULL in ReachabilityCallback");
        check([&] { ReachabilityCallback(nullptr, 0, &stranger); },
              " ReachabilityCallback, Reachability/BrevantoReachability:55",
              "info was wrong class in ReachabilityCallback");
        check([&] { monitor.connectionRequired(); }, "Reachability/BrevantoReachability:215",
              "connectionRequired called with NULL reachabilityRef");
        check([&] { monitor.currentReachabilityStatus(); }, "Reachability/BrevantoReachability:229",
              "currentNetworkStatus called with NULL SCNetworkReachabilityRef");
    }
};

QTEST_GUILESS_MAIN(TestReachability)

#include "tst_Reachability.moc"
