#include "Platform/Network/ReachabilityTarget.h"

#include "Platform/Network/SystemReachabilityTarget.h"

namespace Platform
{

namespace
{

ReachabilityTarget::Factory &replacementFactory()
{
    static ReachabilityTarget::Factory factory;
    return factory;
}

std::unique_ptr<ReachabilityTarget> makeTarget(const QString &hostName, const QHostAddress &address)
{
    if (replacementFactory())
        return replacementFactory()(hostName, address);
#if defined(Q_OS_LINUX) && !defined(Q_OS_ANDROID)
    if (auto target = makeRouteReachabilityTarget(hostName, address))
        return target;
#endif
    return makeDeviceReachabilityTarget();
}

} // namespace

std::unique_ptr<ReachabilityTarget> ReachabilityTarget::withHostName(const QString &hostName)
{
    return hostName.isEmpty() ? nullptr : makeTarget(hostName, {});
}

std::unique_ptr<ReachabilityTarget> ReachabilityTarget::withAddress(const QHostAddress &address)
{
    return address.isNull() ? nullptr : makeTarget({}, address);
}

void ReachabilityTarget::setFactory(Factory factory)
{
    replacementFactory() = std::move(factory);
}

} // namespace Platform
