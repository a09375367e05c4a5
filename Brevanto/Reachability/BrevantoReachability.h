#pragma once

#include "Brevanto/BrevantoExport.h"

#include <QLatin1StringView>
#include <QObject>

#include <memory>

class QHostAddress;

namespace Platform
{
class ReachabilityTarget;
}

// Name of the notification that the network has changed; its object is the BrevantoReachability that noticed.
extern BREVANTO_EXPORT const QLatin1StringView kBrevantoReachabilityChangedNotification;

// How a target can be reached.
enum BrevantoReachabilityStatus : int {
    BrevantoReachabilityStatusNone = 0, // not reachable
    BrevantoReachabilityStatusWiFi = 1, // over a local network or Wi-Fi
    BrevantoReachabilityStatusWWAN = 2, // over the cellular network
};

// Tells whether one target can be reached now and by which kind of link, and posts
// kBrevantoReachabilityChangedNotification when that changes. Queries may be made from any thread and raise an internal
// inconsistency on a monitor without a target, as the constructor makes it; the factories are for the main thread and
// answer null when the system gives no target.
class BREVANTO_EXPORT BrevantoReachability : public QObject
{
    Q_OBJECT

public:
    // A monitor without a target: its queries raise an internal inconsistency.
    explicit BrevantoReachability(QObject *parent = nullptr);
    ~BrevantoReachability() override;

    // Watches the host of that name; null for an empty name.
    static std::unique_ptr<BrevantoReachability> reachabilityWithHostName(const QString &hostName);
    // Watches the host at that address; null for a null address.
    static std::unique_ptr<BrevantoReachability> reachabilityWithAddress(const QHostAddress &hostAddress);
    // Watches the IPv4 zero address: whether the internet can be reached.
    static std::unique_ptr<BrevantoReachability> reachabilityForInternetConnection();

    // Begins to post notifications. To be called, stopped and deleted on the main thread, where they arrive. False when
    // the system refuses.
    bool startNotifier();
    // Posts no more of them; the monitor's end does the same.
    void stopNotifier();

    // How the target can be reached now; not reachable when that cannot be read.
    BrevantoReachabilityStatus currentReachabilityStatus() const;
    // Whether a connection has to be made first; false when that cannot be read.
    bool connectionRequired() const;
    // Status for a flag word of the system.
    BrevantoReachabilityStatus networkStatusForFlags(quint32 flags) const;

private:
    static std::unique_ptr<BrevantoReachability> withTarget(std::unique_ptr<Platform::ReachabilityTarget> target);

    std::unique_ptr<Platform::ReachabilityTarget> m_reachabilityRef;
};
