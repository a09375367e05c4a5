#include "Platform/Foundation/NotificationCenter.h"

namespace Platform
{

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

void NotificationCenter::addObserver(QObject *observer, const QString &name, Handler handler, QObject *sender)
{
    m_observations[name].push_back({observer, std::move(handler), sender});
}

void NotificationCenter::removeObserver(QObject *observer, const QString &name)
{
    std::erase_if(m_observations[name],
                  [observer](const Observation &o) { return !o.observer || o.observer == observer; });
}

void NotificationCenter::post(const QString &name, QObject *object)
{
    // A handler may add and remove observers.
    const std::vector<Observation> observations = m_observations.value(name);
    for (const Observation &o : observations) {
        if (o.observer && (!o.sender || o.sender == object))
            o.handler({name, object});
    }
}

} // namespace Platform
