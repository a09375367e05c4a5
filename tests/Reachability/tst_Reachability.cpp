#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "support/FakeReachability.h"

#include <QtTest>

#include <thread>

namespace
{

QStringList *messages = nullptr;

void collectMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    messages->append(text);
}

// What `work` writes to the log.
template <typename Work>
QStringList logOf(Work work)
{
    QStringList lines;
    messages = &lines;
    const QtMessageHandler previous = qInstallMessageHandler(collectMessage);
    work();
    qInstallMessageHandler(previous);
    return lines;
}

// The lines that a failing assertion leaves: the log, then the exception's reason.
template <typename Work>
QStringList assertionOf(Work work)
{
    QString reason;
    QStringList lines = logOf([&] {
        try {
            work();
        } catch (const Platform::Exception &exception) {
            if (exception.name() == Platform::Exception::Name::InternalInconsistency)
                reason = exception.reason();
        }
    });
    return lines << reason;
}

} // namespace

class TestReachability : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsGiveStatus_data();
    void flagsGiveStatus();
    void factoriesWithoutTarget();
    void changeIsPosted();
    void assertions();
};

void TestReachability::flagsGiveStatus_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("marks");
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

void TestReachability::flagsGiveStatus()
{
    QFETCH(quint32, flags);
    QFETCH(QString, marks);
    FakeReachability network(flags);
    const auto monitor = BrevantoReachability::reachabilityForInternetConnection();
    QCOMPARE(network.lastAddress(), QHostAddress(QHostAddress::AnyIPv4));

    int status = -1;
    const QStringList log = logOf([&] { std::thread([&] { status = monitor->currentReachabilityStatus(); }).join(); });

    QTEST(status, "status");
    QCOMPARE(log, QStringList(QStringLiteral("Reachability Flag Status: %1 networkStatusForFlags").arg(marks)));
    QCOMPARE(monitor->connectionRequired(), marks.contains(QLatin1Char('c')));

    network.setFlags(std::nullopt);
    QCOMPARE(monitor->currentReachabilityStatus(), BrevantoReachabilityStatusNone);
    QVERIFY(!monitor->connectionRequired());
}

void TestReachability::factoriesWithoutTarget()
{
    QVERIFY(!BrevantoReachability::reachabilityWithHostName({}));
    QVERIFY(!BrevantoReachability::reachabilityWithAddress({}));

    FakeReachability network;
    network.setRefusing(true);
    QVERIFY(!BrevantoReachability::reachabilityWithHostName(QStringLiteral("ads.example")));
    QVERIFY(!BrevantoReachability::reachabilityForInternetConnection());
    QVERIFY(!BrevantoReachability().startNotifier());
}

void TestReachability::changeIsPosted()
{
    FakeReachability network;
    auto monitor = BrevantoReachability::reachabilityForInternetConnection();
    QObject observer;
    QList<QObject *> senders;
    Platform::NotificationCenter::defaultCenter().addObserver(
        &observer, QStringLiteral("kBrevantoNetworkReachabilityChangedNotification"),
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

void TestReachability::assertions()
{
    QObject stranger;
    const BrevantoReachability monitor;
    const auto check = [](auto work, const char *place, const char *reason) {
        const QStringList lines = assertionOf(work);
        QVERIFY2(lines.first().contains(QLatin1StringView(place)), qPrintable(lines.first()));
        QCOMPARE(lines.last(), QLatin1StringView(reason));
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

QTEST_GUILESS_MAIN(TestReachability)

#include "tst_Reachability.moc"
