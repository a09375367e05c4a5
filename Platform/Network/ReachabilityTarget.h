#pragma once

#include "Platform/Foundation/Export.h"
#include <QHostAddress>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QObject;

namespace Platform
{

// The bits of a target's flag word.
namespace ReachabilityFlag
{
inline constexpr quint32 TransientConnection = 0x1; // over a connection that may end at any time
inline constexpr quint32 Reachable = 0x2; // packets can leave
inline constexpr quint32 ConnectionRequired = 0x4; // a connection has to be made first
inline constexpr quint32 ConnectionOnTraffic = 0x8; // which the first packet does
inline constexpr quint32 InterventionRequired = 0x10; // and the user has to help
inline constexpr quint32 ConnectionOnDemand = 0x20; // which happens by itself when it is needed
inline constexpr quint32 IsLocalAddress = 0x10000; // an address of this device
inline constexpr quint32 IsDirect = 0x20000; // on a network of this device, without a gateway
inline constexpr quint32 IsWWAN = 0x40000; // over the cellular network
} // namespace ReachabilityFlag

// Something on the network, and whether packets for it could leave this device now. Nothing is sent to it to find that
// out. To be made on the main thread.
class BREVANTO_EXPORT ReachabilityTarget
{
public:
    // Told of the new flag word; `info` is what came with the callback.
    using Callback = void (*)(ReachabilityTarget *target, quint32 flags, QObject *info);

    // The host of that name. Before the name has been looked up, which scheduling the target does, it counts as
    // reachable where the internet is. Null for an empty name.
    static std::unique_ptr<ReachabilityTarget> withHostName(const QString &hostName);
    // The host at that address; the IPv4 zero address (QHostAddress::AnyIPv4) stands for the internet: whatever is
    // behind a default route, of IPv4 or, where a network has no other, of IPv6. Null for a null address.
    static std::unique_ptr<ReachabilityTarget> withAddress(const QHostAddress &address);

    // Makes a target in place of the system's, for one of a host name and an address; the other is empty or null. It
    // may answer null: then there is no target.
    using Factory = std::function<std::unique_ptr<ReachabilityTarget>(const QString &hostName, const QHostAddress &)>;
    // Puts a factory to use; an empty one restores the system's targets. Living targets stay as they are. Main thread.
    static void setFactory(Factory factory);

    ReachabilityTarget() = default;
    virtual ~ReachabilityTarget() = default;

    // The flag word now; nothing when it cannot be read. From any thread.
    virtual std::optional<quint32> flags() const = 0;

    // What to call, with `info`, when the flag word has changed while the target is scheduled; null for nothing. `info`
    // is not owned and outlives the scheduling. False when the system refuses.
    virtual bool setCallback(Callback callback, QObject *info) = 0;
    // Delivers changes on the calling thread, whose event loop must run. False when the system refuses: no change is
    // delivered then.
    virtual bool schedule() = 0;
    // Ends that; on the thread of schedule(). Without effect while nothing is scheduled.
    virtual void unschedule() = 0;

private:
    Q_DISABLE_COPY_MOVE(ReachabilityTarget)
};

} // namespace Platform
