#pragma once

#include "Platform/Network/ReachabilityTarget.h"

namespace Platform
{

// Linux only, not Android: reads the kernel's routes and listens to its route messages. Null in a sandbox without
// netlink sockets.
std::unique_ptr<ReachabilityTarget> makeRouteReachabilityTarget(const QString &hostName, const QHostAddress &address);

// Asks QNetworkInformation, which knows the device's connection as a whole: the same answer for every host.
std::unique_ptr<ReachabilityTarget> makeDeviceReachabilityTarget();

} // namespace Platform
