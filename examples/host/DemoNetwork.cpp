#include "DemoNetwork.h"

#include "Platform/Network/ReachabilityTarget.h"

#include <QObject>
#include <QPointer>

#include <atomic>

using Platform::ReachabilityTarget;

struct DemoNetwork::State {
    std::atomic_bool reachable = true;
    Target *scheduled = nullptr;
};

class DemoNetwork::Target final : public ReachabilityTarget
{
public:
    explicit Target(std::shared_ptr<State> state)
        : m_state(std::move(state))
    {
    }
    ~Target() override { Target::unschedule(); }

    std::optional<quint32> flags() const override
    {
        return m_state->reachable ? Platform::ReachabilityFlag::Reachable : 0;
    }
    bool setCallback(Callback callback, QObject *info) override
    {
        m_callback = callback;
        m_info = info;
        return true;
    }
    bool schedule() override
    {
        m_state->scheduled = this;
        return true;
    }
    void unschedule() override
    {
        if (m_state->scheduled == this)
            m_state->scheduled = nullptr;
    }

    void tell()
    {
        if (m_callback)
            m_callback(this, flags().value_or(0), m_info);
    }

private:
    const std::shared_ptr<State> m_state;
    Callback m_callback = nullptr;
    QPointer<QObject> m_info;
};

DemoNetwork::DemoNetwork()
    : m_state(std::make_shared<State>())
{
    ReachabilityTarget::setFactory(
        [state = m_state](const QString &, const QHostAddress &) { return std::make_unique<Target>(state); });
}

void DemoNetwork::setReachable(bool reachable)
{
    m_state->reachable = reachable;
    if (m_state->scheduled)
        m_state->scheduled->tell();
}
