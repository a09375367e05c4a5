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
    Observations &observations = m_observations[name];
    std::erase_if(observations, [](const auto &o) { return !o->observer || (!o->sender && !o->isForAnySender); });
    observations.push_back(
        std::make_shared<Observation>(Observation{observer, std::move(handler), sender, sender == nullptr}));
}

void NotificationCenter::removeObserver(QObject *observer, const QString &name)
{
    std::erase_if(m_observations[name], [observer](const auto &o) {
        const bool isOver = !o->observer || o->observer == observer;
        if (isOver)
            o->observer.clear(); // a notification may be on its way to it
        return isOver;
    });
}

void NotificationCenter::post(const QString &name, QObject *object)
{
    // A handler may add and remove observers.
    const Observations observations = m_observations.value(name);
    for (const auto &o : observations) {
        if (o->observer && (o->isForAnySender || (o->sender && o->sender == object)))
            o->handler({name, object});
    }
}

} // namespace Platform
