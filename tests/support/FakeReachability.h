#pragma once

#include "Platform/Network/ReachabilityTarget.h"

#include <memory>
#include <vector>

// Makes every reachability target report the flags that the test sets. In place from construction to destruction.
class FakeReachability
{
public:
    explicit FakeReachability(std::optional<quint32> flags = Platform::ReachabilityFlag::Reachable)
        : m_state(std::make_shared<State>())
    {
        m_state->flags = flags;
        Platform::ReachabilityTarget::setFactory([state = m_state](const QString &, const QHostAddress &address) {
            state->lastAddress = address;
            return state->refuse ? nullptr : std::make_unique<Target>(state);
        });
    }
    ~FakeReachability() { Platform::ReachabilityTarget::setFactory({}); }

    void setOnline() { setFlags(Platform::ReachabilityFlag::Reachable); }
    void setOffline() { setFlags(0); }
    // Sets the flag word, nothing for one that cannot be read, and calls whoever listens.
    void setFlags(std::optional<quint32> flags)
    {
        m_state->flags = flags;
        const std::vector<Target *> targets = m_state->scheduled;
        for (Target *target : targets)
            target->call();
    }

    void setRefusing(bool refuse) { m_state->refuse = refuse; }
    QHostAddress lastAddress() const { return m_state->lastAddress; }
    int scheduledCount() const { return static_cast<int>(m_state->scheduled.size()); }

private:
    class Target;
    struct State {
        std::optional<quint32> flags;
        bool refuse = false;
        QHostAddress lastAddress;
        std::vector<Target *> scheduled;
    };

    class Target final : public Platform::ReachabilityTarget
    {
    public:
        explicit Target(std::shared_ptr<State> state)
            : m_state(std::move(state))
        {
        }
        ~Target() override { Target::unschedule(); }

        std::optional<quint32> flags() const override { return m_state->flags; }
        bool setCallback(Callback callback, QObject *info) override
        {
            m_callback = callback;
            m_info = info;
            return true;
        }
        bool schedule() override
        {
            unschedule();
            m_state->scheduled.push_back(this);
            return true;
        }
        void unschedule() override { std::erase(m_state->scheduled, this); }
        void call()
        {
            if (m_callback)
                m_callback(this, m_state->flags.value_or(0), m_info);
        }

    private:
        std::shared_ptr<State> m_state;
        Callback m_callback = nullptr;
        QObject *m_info = nullptr;
    };

    std::shared_ptr<State> m_state;
};
