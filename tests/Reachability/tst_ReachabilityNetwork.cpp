#include "support/Table.h"

#include "Platform/Network/ReachabilityTarget.h"

#include <QFile>
#include <QProcess>
#include <QtTest>

#include <sched.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

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
    writeFile(u"/proc/self/setgroups"_s, "deny");
    writeFile(u"/proc/self/uid_map"_s, "0 " + user + " 1");
    writeFile(u"/proc/self/gid_map"_s, "0 " + group + " 1");
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
    void initTestCase()
    {
        if (!ownNetwork)
            QSKIP("This system does not allow network namespaces");
    }

    // A device with the address 10.9.0.2, its router 10.9.0.1 at the other end of the cable.
    void init()
    {
        m_device.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_router.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_device.start(u"sh"_s, QStringList());
        m_router.start(u"unshare"_s, {u"--net"_s, u"sh"_s});
        if (!onDevice("true") || !onRouter("ip link set lo up"))
            QSKIP("This system does not allow a second network namespace");
        QVERIFY(onDevice("ip link set lo up"));
        const QByteArray router = QByteArray::number(m_router.processId());
        QVERIFY(onDevice("ip link add cable0 type veth peer name cable1 netns " + router));
        QVERIFY(onRouter("ip address add 10.9.0.1/24 dev cable1 && ip link set cable1 up"));
        QVERIFY(onDevice("ip address add 10.9.0.2/24 dev cable0 && ip link set cable0 up"));
    }

    // A test may have cut the cable already.
    void cleanup()
    {
        onDevice("ip link delete cable0 2>&-");
        for (QProcess *process : {&m_device, &m_router}) {
            process->closeWriteChannel();
            process->waitForFinished();
        }
    }

    void loopbackAloneIsNoInternet()
    {
        QVERIFY(onDevice("ip link delete cable0"));
        QCOMPARE(Platform::ReachabilityTarget::withAddress(m_internet)->flags(), std::optional(0u));
        QVERIFY(onDevice("ip route add default dev lo"));
        QCOMPARE(Platform::ReachabilityTarget::withAddress(m_internet)->flags(), std::optional(0u));
        QVERIFY(onDevice("ip route delete default dev lo"));
    }

    void changeIsNoticed_data()
    {
        addColumns<QByteArray, QByteArray, QByteArray, quint32>("before", "device", "router", "reported");
        const auto row = [](const char *name, const char *before, const char *device, const char *router = "true",
                            quint32 reported = 0) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(device) << QByteArray(router) << reported;
        };
        const char *route = "ip route add default via 10.9.0.1";
        row("route added", "true", route, "true", Flag::Reachable);
        row("IPv6 route added", "ip address add fd00:9::2/64 dev cable0 nodad", "ip route add default via fd00:9::1",
            "true", Flag::Reachable);
        row("route removed", route, "ip route delete default");
        row("address removed", route, "ip address delete 10.9.0.2/24 dev cable0");
        row("link down", route, "ip link set cable0 down");
        row("link deleted", route, "ip link delete cable0");
        row("carrier lost", route, "true", "ip link set cable1 down");
    }
    void changeIsNoticed()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, device);
        QFETCH(QByteArray, router);
        QFETCH(quint32, reported);
        QVERIFY(onDevice(before));

        Calls calls;
        const auto target = watch(m_internet, calls);
        QVERIFY(target);
        QTRY_COMPARE(target->flags(), std::optional(reported ? 0u : Flag::Reachable));
        QCoreApplication::processEvents();
        calls.flags.clear();

        QVERIFY(onDevice(device));
        QVERIFY(onRouter(router));
        QTRY_COMPARE(calls.flags, QList{reported});
        QCOMPARE(target->flags(), std::optional(reported));

        target->unschedule();
        onDevice("ip link set lo down");
        onDevice("ip link set lo up");
        QCoreApplication::processEvents();
        QCOMPARE(calls.flags.size(), 1);
    }

    void secondDefaultRouteTakesOver()
    {
        // An interface with a modem's name, up and with a carrier.
        QVERIFY(onDevice("ip link add wwan0 type veth peer name tower0 && ip link set tower0 up"));
        QVERIFY(onDevice("ip address add 10.8.0.2/24 dev wwan0 && ip link set wwan0 up"));
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

    void addressFlags()
    {
        QVERIFY(onDevice("ip route add 10.7.0.0/16 via 10.9.0.1"));
        QVERIFY(onDevice("ip route add prohibit 10.5.0.0/16 && ip route add blackhole 10.4.0.0/16"));
        constexpr quint32 own = Flag::Reachable | Flag::IsLocalAddress | Flag::IsDirect;
        for (const auto &[address, flags] : std::initializer_list<std::pair<const char *, quint32>>{
                 {"127.0.0.1", own},
                 {"10.9.0.2", own},
                 {"10.9.0.77", Flag::Reachable | Flag::IsDirect},
                 {"10.7.1.1", Flag::Reachable}, // through the router
                 {"192.0.2.1", 0}, // no route
                 {"::1", own},
                 {"2001:db8::1", 0},
                 {"10.5.0.1", 0}, // refused by a rule
                 {"10.4.0.1", 0}}) { // thrown away by a rule
            const auto target = Platform::ReachabilityTarget::withAddress(QHostAddress(QLatin1StringView(address)));
            QVERIFY2(QTest::qWaitFor([&] { return target->flags() == flags; }), address);
        }
        QVERIFY(onDevice("ip route delete 10.5.0.0/16 && ip route delete 10.4.0.0/16"));

        const auto host = Platform::ReachabilityTarget::withHostName(u"localhost"_s);
        QCOMPARE(host->flags(), std::optional(0u));
        QVERIFY(host->schedule());
        QTRY_COMPARE(host->flags(), std::optional(own));
    }

    void sameFlagsAreNotReported()
    {
        Calls internetCalls;
        Calls addressCalls;
        const auto internet = watch(m_internet, internetCalls);
        const auto address = watch(QHostAddress(u"10.6.0.1"_s), addressCalls);
        QVERIFY(onDevice("ip route add 10.6.0.0/16 via 10.9.0.1"));
        QTRY_VERIFY(!addressCalls.flags.isEmpty());
        QCOMPARE(internetCalls.flags, QList<quint32>{});
    }

private:
    bool shell(QProcess &where, const char *command)
    {
        where.write(QByteArray(command) + " && echo ok || echo failed\n");
        while (!where.canReadLine()) {
            if (!where.waitForReadyRead(10000))
                return false;
        }
        return where.readLine() == "ok\n";
    }

    bool onDevice(const char *command) { return shell(m_device, command); }
    bool onRouter(const char *command) { return shell(m_router, command); }

    std::unique_ptr<Platform::ReachabilityTarget> watch(const QHostAddress &address, Calls &calls)
    {
        auto target = Platform::ReachabilityTarget::withAddress(address);
        calls.info.setProperty("calls", QVariant::fromValue(&calls));
        if (!target->setCallback(recordCall, &calls.info) || !target->schedule())
            return nullptr;
        return target;
    }

    const QHostAddress m_internet{QHostAddress::AnyIPv4};
    QProcess m_device;
    QProcess m_router;
};

int main(int argc, char **argv)
{
    ownNetwork = enterOwnNetwork();
    QCoreApplication application(argc, argv);
    TestReachabilityNetwork test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ReachabilityNetwork.moc"
