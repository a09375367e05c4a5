#include "Brevanto/Reachability/BrevantoReachability.h"

#include "Brevanto/Reachability/ReachabilityCallback.h"
#include "Platform/Foundation/Faults.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Network/ReachabilityTarget.h"

namespace Flag = Platform::ReachabilityFlag;

constinit const QLatin1StringView
    kBrevantoReachabilityChangedNotification("kBrevantoNetworkReachabilityChangedNotification");

namespace
{

constexpr const char *sourceFile = "Reachability/BrevantoReachability";

void logFlags(quint32 flags, const char *comment)
{
    const auto mark = [flags](quint32 bit, char character) { return QLatin1Char(flags & bit ? character : '-'); };
    QString line = QStringLiteral("Reachability Flag Status: ");
    line += mark(Flag::IsWWAN, 'W');
    line += mark(Flag::Reachable, 'R');
    line += QLatin1Char(' ');
    line += mark(Flag::TransientConnection, 't');
    line += mark(Flag::ConnectionRequired, 'c');
    line += mark(Flag::ConnectionOnTraffic, 'C');
    line += mark(Flag::InterventionRequired, 'i');
    line += mark(Flag::ConnectionOnDemand, 'D');
    line += mark(Flag::IsLocalAddress, 'l');
    line += mark(Flag::IsDirect, 'd');
    line += QLatin1Char(' ') + QLatin1StringView(comment);
    Platform::log(line);
}

} // namespace

BrevantoReachability::BrevantoReachability(QObject *parent)
    : QObject(parent)
{
}

BrevantoReachability::~BrevantoReachability()
{
    stopNotifier();
}

std::unique_ptr<BrevantoReachability>
BrevantoReachability::withTarget(std::unique_ptr<Platform::ReachabilityTarget> target)
{
    if (!target)
        return nullptr;
    auto monitor = std::make_unique<BrevantoReachability>();
    monitor->m_reachabilityRef = std::move(target);
    return monitor;
}

std::unique_ptr<BrevantoReachability> BrevantoReachability::reachabilityWithHostName(const QString &hostName)
{
    return withTarget(Platform::ReachabilityTarget::withHostName(hostName));
}

std::unique_ptr<BrevantoReachability> BrevantoReachability::reachabilityWithAddress(const QHostAddress &hostAddress)
{
    return withTarget(Platform::ReachabilityTarget::withAddress(hostAddress));
}

std::unique_ptr<BrevantoReachability> BrevantoReachability::reachabilityForInternetConnection()
{
    return reachabilityWithAddress(QHostAddress(QHostAddress::AnyIPv4));
}

bool BrevantoReachability::startNotifier()
{
    return m_reachabilityRef && m_reachabilityRef->setCallback(ReachabilityCallback, this)
        && m_reachabilityRef->schedule();
}

void BrevantoReachability::stopNotifier()
{
    if (m_reachabilityRef)
        m_reachabilityRef->unschedule();
}

bool BrevantoReachability::connectionRequired() const
{
    if (!m_reachabilityRef)
        Platform::failAssertion(QStringLiteral("connectionRequired called with NULL reachabilityRef"), Q_FUNC_INFO,
                                sourceFile, 215);
    return m_reachabilityRef->flags().value_or(0) & Flag::ConnectionRequired;
}

BrevantoReachabilityStatus BrevantoReachability::currentReachabilityStatus() const
{
    if (!m_reachabilityRef)
        Platform::failAssertion(QStringLiteral("currentNetworkStatus called with NULL SCNetworkReachabilityRef"),
                                Q_FUNC_INFO, sourceFile, 229);
    const auto flags = m_reachabilityRef->flags();
    return flags ? networkStatusForFlags(*flags) : BrevantoReachabilityStatusNone;
}

BrevantoReachabilityStatus BrevantoReachability::networkStatusForFlags(quint32 flags) const
{
    logFlags(flags, "networkStatusForFlags");
    if (!(flags & Flag::Reachable))
        return BrevantoReachabilityStatusNone;
    if (flags & Flag::IsWWAN)
        return BrevantoReachabilityStatusWWAN;

    const bool connectsByItself =
        (flags & (Flag::ConnectionOnDemand | Flag::ConnectionOnTraffic)) && !(flags & Flag::InterventionRequired);
    if (!(flags & Flag::ConnectionRequired) || connectsByItself)
        return BrevantoReachabilityStatusWiFi;
    return BrevantoReachabilityStatusNone;
}

void ReachabilityCallback(Platform::ReachabilityTarget *, quint32, QObject *info)
{
    if (!info)
        Platform::failAssertion(QStringLiteral("info was NULL in ReachabilityCallback"), "ReachabilityCallback",
                                sourceFile, 54);
    if (!qobject_cast<BrevantoReachability *>(info))
        Platform::failAssertion(QStringLiteral("info was wrong class in ReachabilityCallback"), "ReachabilityCallback",
                                sourceFile, 55);
    Platform::NotificationCenter::defaultCenter().post(kBrevantoReachabilityChangedNotification, info);
}
