#include "Platform/Network/ReachabilityTarget.h"

#include <QFile>
#include <QProcess>
#include <QtTest>

#include <sched.h>
#include <unistd.h>

// The targets that read the kernel's routes, in a network of two namespaces that the test makes for itself: "device" is
// the test's own end of the cable, "router" the other.

namespace Flag = Platform::ReachabilityFlag;

namespace
{

void writeFile(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(text);
}

// Moves this process, which has one thread still, into a network namespace of its own.
bool enterOwnNetwork()
{
    if (unshare(CLONE_NEWNET) == 0)
        return true;
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray group = QByteArray::number(getgid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return false;
    writeFile(QStringLiteral("/proc/self/setgroups"), "deny");
    writeFile(QStringLiteral("/proc/self/uid_map"), "0 " + user + " 1");
    writeFile(QStringLiteral("/proc/self/gid_map"), "0 " + group + " 1");
    return true;
}

bool ownNetwork = false;

struct Calls {
    QObject info;
    QList<quint32> flags;
};

void recordCall(Platform::ReachabilityTarget *, quint32 flags, QObject *info)
{
    auto *calls = qvariant_cast<Calls *>(info->property("calls"));
    calls->flags.append(flags);
}

} // namespace

Q_DECLARE_METATYPE(Calls *)

class TestReachabilityNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void loopbackAloneIsNoInternet();
    void changeIsNoticed_data();
    void changeIsNoticed();
    void modemIsWWAN();
    void secondDefaultRouteTakesOver();
    void addressFlags_data();
    void addressFlags();
    void hostName();
    void sameFlagsAreNotReported();

private:
    bool shell(QProcess &where, const char *command);
    bool onDevice(const char *command) { return shell(m_device, command); }
    bool onRouter(const char *command) { return shell(m_router, command); }
    bool addModem();
    std::unique_ptr<Platform::ReachabilityTarget> watch(const QHostAddress &address, Calls &calls);

    const QHostAddress m_internet{QHostAddress::AnyIPv4};
    QProcess m_device;
    QProcess m_router;
};

void TestReachabilityNetwork::initTestCase()
{
    if (!ownNetwork)
        QSKIP("This system does not allow network namespaces");
}

bool TestReachabilityNetwork::shell(QProcess &where, const char *command)
{
    where.write(QByteArray(command) + " && echo ok || echo failed\n");
    while (!where.canReadLine()) {
        if (!where.waitForReadyRead(10000))
            return false;
    }
    return where.readLine() == "ok\n";
}

// A device with the address 10.9.0.2, its router 10.9.0.1 at the other end of the cable.
void TestReachabilityNetwork::init()
{
    m_device.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_router.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_device.start(QStringLiteral("sh"), QStringList());
    m_router.start(QStringLiteral("unshare"), {QStringLiteral("--net"), QStringLiteral("sh")});
    if (!onDevice("true") || !onRouter("ip link set lo up"))
        QSKIP("This system does not allow a second network namespace");
    QVERIFY(onDevice("ip link set lo up"));
    const QByteArray router = QByteArray::number(m_router.processId());
    QVERIFY(onDevice("ip link add cable0 type veth peer name cable1 netns " + router));
    QVERIFY(onRouter("ip address add 10.9.0.1/24 dev cable1 && ip link set cable1 up"));
    QVERIFY(onDevice("ip address add 10.9.0.2/24 dev cable0 && ip link set cable0 up"));
}

// A test may have cut the cable already.
void TestReachabilityNetwork::cleanup()
{
    onDevice("ip link delete cable0 2>&-");
    for (QProcess *process : {&m_device, &m_router}) {
        process->closeWriteChannel();
        process->waitForFinished();
    }
}

// An interface with a modem's name, up and with a carrier.
bool TestReachabilityNetwork::addModem()
{
    return onDevice("ip link add wwan0 type veth peer name tower0 && ip link set tower0 up")
        && onDevice("ip address add 10.8.0.2/24 dev wwan0 && ip link set wwan0 up");
}

std::unique_ptr<Platform::ReachabilityTarget> TestReachabilityNetwork::watch(const QHostAddress &address, Calls &calls)
{
    auto target = Platform::ReachabilityTarget::withAddress(address);
    calls.info.setProperty("calls", QVariant::fromValue(&calls));
    if (!target->setCallback(recordCall, &calls.info) || !target->schedule())
        return nullptr;
    return target;
}

void TestReachabilityNetwork::loopbackAloneIsNoInternet()
{
    QVERIFY(onDevice("ip link delete cable0"));
    QCOMPARE(Platform::ReachabilityTarget::withAddress(m_internet)->flags(), std::optional(0u));
    QVERIFY(onDevice("ip route add default dev lo"));
    QCOMPARE(Platform::ReachabilityTarget::withAddress(m_internet)->flags(), std::optional(0u));
    QVERIFY(onDevice("ip route delete default dev lo"));
}

void TestReachabilityNetwork::changeIsNoticed_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QByteArray>("router");
    QTest::addColumn<QList<quint32>>("reported");

    const QByteArray route = "ip route add default via 10.9.0.1";
    const QList<quint32> lost{0};
    QTest::newRow("route added") << QByteArray("true") << route << QByteArray("true")
                                 << QList<quint32>{Flag::Reachable};
    QTest::newRow("IPv6 route added") << QByteArray("ip address add fd00:9::2/64 dev cable0 nodad")
                                      << QByteArray("ip route add default via fd00:9::1") << QByteArray("true")
                                      << QList<quint32>{Flag::Reachable};
    QTest::newRow("route removed") << route << QByteArray("ip route delete default") << QByteArray("true") << lost;
    QTest::newRow("address removed") << route << QByteArray("ip address delete 10.9.0.2/24 dev cable0")
                                     << QByteArray("true") << lost;
    QTest::newRow("link down") << route << QByteArray("ip link set cable0 down") << QByteArray("true") << lost;
    QTest::newRow("link deleted") << route << QByteArray("ip link delete cable0") << QByteArray("true") << lost;
    QTest::newRow("carrier lost") << route << QByteArray("true") << QByteArray("ip link set cable1 down") << lost;
}

void TestReachabilityNetwork::changeIsNoticed()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, device);
    QFETCH(QByteArray, router);
    QFETCH(QList<quint32>, reported);
    QVERIFY(onDevice(before));

    Calls calls;
    const auto target = watch(m_internet, calls);
    QVERIFY(target);
    QTRY_COMPARE(target->flags(), std::optional(reported.first() ? 0u : Flag::Reachable));
    QCoreApplication::processEvents();
    calls.flags.clear();

    QVERIFY(onDevice(device));
    QVERIFY(onRouter(router));
    QTRY_COMPARE(calls.flags, reported);
    QCOMPARE(target->flags(), std::optional(reported.first()));

    target->unschedule();
    onDevice("ip link set lo down");
    onDevice("ip link set lo up");
    QCoreApplication::processEvents();
    QCOMPARE(calls.flags, reported);
}

void TestReachabilityNetwork::modemIsWWAN()
{
    QVERIFY(addModem());
    QVERIFY(onDevice("ip route add default via 10.8.0.1"));
    QTRY_COMPARE(Platform::ReachabilityTarget::withAddress(m_internet)->flags(),
                 std::optional(Flag::Reachable | Flag::IsWWAN));
    QVERIFY(onDevice("ip link delete wwan0"));
}

void TestReachabilityNetwork::secondDefaultRouteTakesOver()
{
    QVERIFY(addModem());
    QVERIFY(onDevice("ip route add default via 10.8.0.1 metric 700"));
    QVERIFY(onDevice("ip route add default via 10.9.0.1 metric 100"));
    Calls calls;
    const auto target = watch(m_internet, calls);
    QTRY_COMPARE(target->flags(), std::optional(Flag::Reachable));
    calls.flags.clear();
    QVERIFY(onRouter("ip link set cable1 down"));
    QTRY_COMPARE(calls.flags, QList<quint32>{Flag::Reachable | Flag::IsWWAN});
    QVERIFY(onDevice("ip link delete wwan0"));
    QTRY_COMPARE(calls.flags.last(), 0u);
}

void TestReachabilityNetwork::addressFlags_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<quint32>("flags");
    QTest::newRow("loopback") << "127.0.0.1" << (Flag::Reachable | Flag::IsLocalAddress | Flag::IsDirect);
    QTest::newRow("own address") << "10.9.0.2" << (Flag::Reachable | Flag::IsLocalAddress | Flag::IsDirect);
    QTest::newRow("same network") << "10.9.0.77" << (Flag::Reachable | Flag::IsDirect);
    QTest::newRow("through the router") << "10.7.1.1" << Flag::Reachable;
    QTest::newRow("no route") << "192.0.2.1" << 0u;
    QTest::newRow("loopback, IPv6") << "::1" << (Flag::Reachable | Flag::IsLocalAddress | Flag::IsDirect);
    QTest::newRow("no route, IPv6") << "2001:db8::1" << 0u;
    QTest::newRow("refused by a rule") << "10.5.0.1" << 0u;
    QTest::newRow("thrown away by a rule") << "10.4.0.1" << 0u;
}

void TestReachabilityNetwork::addressFlags()
{
    QFETCH(QString, address);
    QFETCH(quint32, flags);
    QVERIFY(onDevice("ip route add 10.7.0.0/16 via 10.9.0.1"));
    QVERIFY(onDevice("ip route add prohibit 10.5.0.0/16 && ip route add blackhole 10.4.0.0/16"));
    const auto target = Platform::ReachabilityTarget::withAddress(QHostAddress(address));
    QTRY_COMPARE(target->flags(), std::optional(flags));
    QVERIFY(onDevice("ip route delete 10.5.0.0/16 && ip route delete 10.4.0.0/16"));
}

void TestReachabilityNetwork::hostName()
{
    const auto target = Platform::ReachabilityTarget::withHostName(QStringLiteral("localhost"));
    QCOMPARE(target->flags(), std::optional(0u));
    QVERIFY(target->schedule());
    QTRY_COMPARE(target->flags(), std::optional(Flag::Reachable | Flag::IsLocalAddress | Flag::IsDirect));
}

void TestReachabilityNetwork::sameFlagsAreNotReported()
{
    Calls internetCalls;
    Calls addressCalls;
    const auto internet = watch(m_internet, internetCalls);
    const auto address = watch(QHostAddress(QStringLiteral("10.6.0.1")), addressCalls);
    QVERIFY(onDevice("ip route add 10.6.0.0/16 via 10.9.0.1"));
    QTRY_VERIFY(!addressCalls.flags.isEmpty());
    QCOMPARE(internetCalls.flags, QList<quint32>{});
}

int main(int argc, char **argv)
{
    ownNetwork = enterOwnNetwork();
    QCoreApplication application(argc, argv);
    TestReachabilityNetwork test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ReachabilityNetwork.moc"
