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
    void unreadableFlags();
    void connectionRequired();
    void internetConnectionWatchesTheZeroAddress();
    void factoriesWithoutTarget();
    void changeIsPosted();
    void assertions();
    void queryFromAnotherThread();
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
    const FakeReachability network(flags);
    const auto monitor = BrevantoReachability::reachabilityForInternetConnection();

    int status = -1;
    const QStringList log = logOf([&] { status = monitor->currentReachabilityStatus(); });

    QTEST(status, "status");
    QCOMPARE(log, QStringList(QStringLiteral("Reachability Flag Status: %1 networkStatusForFlags").arg(marks)));
}

void TestReachability::unreadableFlags()
{
    const FakeReachability network(std::nullopt);
    const auto monitor = BrevantoReachability::reachabilityForInternetConnection();
    QCOMPARE(monitor->currentReachabilityStatus(), BrevantoReachabilityStatusNone);
    QCOMPARE(monitor->connectionRequired(), false);
}

void TestReachability::connectionRequired()
{
    FakeReachability network(0x2);
    const auto monitor = BrevantoReachability::reachabilityForInternetConnection();
    QCOMPARE(monitor->connectionRequired(), false);
    network.setFlags(0x4);
    QCOMPARE(monitor->connectionRequired(), true);
}

void TestReachability::internetConnectionWatchesTheZeroAddress()
{
    const FakeReachability network;
    const auto monitor = BrevantoReachability::reachabilityForInternetConnection();
    QCOMPARE(network.lastAddress(), QHostAddress(QHostAddress::AnyIPv4));
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
    const QString file = QStringLiteral("Reachability/BrevantoReachability:%1");

    const QStringList null = assertionOf([] { ReachabilityCallback(nullptr, 0, nullptr); });
    QCOMPARE(null.size(), 2);
    QVERIFY(null.first().contains(QStringLiteral(" ReachabilityCallback, ") + file.arg(54)));
    QCOMPARE(null.last(), QStringLiteral("info was NULL in ReachabilityCallback"));

    const QStringList wrong = assertionOf([&] { ReachabilityCallback(nullptr, 0, &stranger); });
    QVERIFY(wrong.first().contains(QStringLiteral(" ReachabilityCallback, ") + file.arg(55)));
    QCOMPARE(wrong.last(), QStringLiteral("info was wrong class in ReachabilityCallback"));

    const BrevantoReachability monitor;
    const QStringList required = assertionOf([&] { monitor.connectionRequired(); });
    QVERIFY(required.first().contains(file.arg(215)));
    QCOMPARE(required.last(), QStringLiteral("connectionRequired called with NULL reachabilityRef"));

    const QStringList status = assertionOf([&] { monitor.currentReachabilityStatus(); });
    QVERIFY(status.first().contains(file.arg(229)));
    QCOMPARE(status.last(), QStringLiteral("currentNetworkStatus called with NULL SCNetworkReachabilityRef"));
}

void TestReachability::queryFromAnotherThread()
{
    const auto monitor = BrevantoReachability::reachabilityWithAddress(QHostAddress(QHostAddress::LocalHost));
    QVERIFY(monitor);
    QVERIFY(monitor->startNotifier());
    int status = -1;
    std::thread([&] { status = monitor->currentReachabilityStatus(); }).join();
    QCOMPARE(status, static_cast<int>(monitor->currentReachabilityStatus()));
}

QTEST_GUILESS_MAIN(TestReachability)

#include "tst_Reachability.moc"
