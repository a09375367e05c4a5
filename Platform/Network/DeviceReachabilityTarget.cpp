#include "Platform/Network/SystemReachabilityTarget.h"

#include <QNetworkInformation>

#include <atomic>

namespace Platform
{

namespace
{

using Medium = QNetworkInformation::TransportMedium;
using Reachability = QNetworkInformation::Reachability;

quint32 flagsFor(Reachability reachability, Medium medium)
{
    if (reachability != Reachability::Online && reachability != Reachability::Site)
        return 0;
    return ReachabilityFlag::Reachable | (medium == Medium::Cellular ? ReachabilityFlag::IsWWAN : 0);
}

class DeviceReachabilityTarget final : public ReachabilityTarget
{
public:
    DeviceReachabilityTarget()
    {
        readFlags();
        const auto *information = QNetworkInformation::instance();
        if (!information)
            return;
        const auto changed = [this] { informationChanged(); };
        QObject::connect(information, &QNetworkInformation::reachabilityChanged, &m_context, changed);
        QObject::connect(information, &QNetworkInformation::transportMediumChanged, &m_context, changed);
    }

    // The information object belongs to the main thread, so all threads are given what it said last.
    std::optional<quint32> flags() const override
    {
        const qint64 word = m_flags;
        return word == unreadable ? std::nullopt : std::optional(static_cast<quint32>(word));
    }

    bool setCallback(Callback callback, QObject *info) override
    {
        m_callback = callback;
        m_info = info;
        return true;
    }

    bool schedule() override
    {
        m_scheduled = QNetworkInformation::instance() != nullptr;
        return m_scheduled;
    }

    void unschedule() override { m_scheduled = false; }

private:
    static constexpr qint64 unreadable = -1;

    void readFlags()
    {
        const auto *information = QNetworkInformation::instance();
        if (!information || information->reachability() == Reachability::Unknown)
            m_flags = unreadable;
        else
            m_flags = flagsFor(information->reachability(), information->transportMedium());
    }

    void informationChanged()
    {
        const qint64 before = m_flags;
        readFlags();
        if (m_scheduled && m_callback && m_flags != before)
            m_callback(this, flags().value_or(0), m_info);
    }

    std::atomic<qint64> m_flags = unreadable;
    bool m_scheduled = false;
    Callback m_callback = nullptr;
    QObject *m_info = nullptr;
    QObject m_context;
};

} // namespace

std::unique_ptr<ReachabilityTarget> makeDeviceReachabilityTarget()
{
    using Feature = QNetworkInformation::Feature;
    if (!QNetworkInformation::loadBackendByFeatures(Feature::Reachability | Feature::TransportMedium))
        QNetworkInformation::loadBackendByFeatures(Feature::Reachability);
    return std::make_unique<DeviceReachabilityTarget>();
}

} // namespace Platform
