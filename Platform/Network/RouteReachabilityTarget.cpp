#include "Platform/Network/SystemReachabilityTarget.h"

#include "Platform/Network/RouteTable.h"

#include <QHostInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QSocketNotifier>

namespace Platform
{

namespace
{

quint32 flagsFor(const Route &route)
{
    quint32 flags = ReachabilityFlag::Reachable;
    if (route.isLocal)
        flags |= ReachabilityFlag::IsLocalAddress;
    if (route.isDirect)
        flags |= ReachabilityFlag::IsDirect;
    if (route.isWWAN)
        flags |= ReachabilityFlag::IsWWAN;
    return flags;
}

// Some phone networks have IPv6 alone.
QList<QHostAddress> addressesBehind(const QHostAddress &address)
{
    if (address == QHostAddress::AnyIPv4)
        return {address, QHostAddress(QHostAddress::AnyIPv6)};
    return {address};
}

class RouteReachabilityTarget final : public ReachabilityTarget
{
public:
    RouteReachabilityTarget(const QString &hostName, const QHostAddress &address)
        : m_hostName(hostName)
        , m_addresses(addressesBehind(hostName.isEmpty() ? address : QHostAddress(QHostAddress::AnyIPv4)))
    {
    }

    ~RouteReachabilityTarget() override { RouteReachabilityTarget::unschedule(); }

    std::optional<quint32> flags() const override
    {
        try {
            for (const QHostAddress &address : addresses()) {
                if (const auto route = usableRoute(address))
                    return flagsFor(*route);
            }
            return 0;
        } catch (const RouteTableError &) {
            return std::nullopt;
        }
    }

    bool setCallback(Callback callback, QObject *info) override
    {
        m_callback = callback;
        m_info = info;
        return true;
    }

    bool schedule() override
    {
        unschedule();
        if (!m_changes.open())
            return false;
        m_notifier = std::make_unique<QSocketNotifier>(m_changes.descriptor(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { routesChanged(); });
        m_lastFlags = flags();
        lookUpHost();
        return true;
    }

    void unschedule() override
    {
        m_notifier.reset();
        m_changes.close();
    }

private:
    QList<QHostAddress> addresses() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_addresses;
    }

    void routesChanged()
    {
        m_changes.drain();
        // The answer to a name may differ from one network to the next.
        if (flags() != m_lastFlags)
            lookUpHost();
        reportChange();
    }

    void reportChange()
    {
        const auto now = flags();
        if (now == m_lastFlags)
            return;
        m_lastFlags = now;
        if (m_callback)
            m_callback(this, now.value_or(0), m_info);
    }

    // Without an answer the addresses stay as they were.
    void lookUpHost()
    {
        if (m_hostName.isEmpty())
            return;
        QHostInfo::lookupHost(m_hostName, m_notifier.get(), [this](const QHostInfo &info) {
            if (info.error() != QHostInfo::NoError || info.addresses().isEmpty())
                return;
            {
                const QMutexLocker lock(&m_mutex);
                m_addresses = info.addresses();
            }
            reportChange();
        });
    }

    const QString m_hostName;
    mutable QMutex m_mutex;
    QList<QHostAddress> m_addresses;
    Callback m_callback = nullptr;
    QObject *m_info = nullptr;
    std::optional<quint32> m_lastFlags;
    RouteChanges m_changes;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace

std::unique_ptr<ReachabilityTarget> makeRouteReachabilityTarget(const QString &hostName, const QHostAddress &address)
{
    if (!RouteChanges().open())
        return nullptr;
    return std::make_unique<RouteReachabilityTarget>(hostName, address);
}

} // namespace Platform
