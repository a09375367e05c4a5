#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

namespace Platform
{

struct Notification {
    QString name;
    QObject *object = nullptr; // the sender; may be null
};

// Hands named notifications to whoever observes them, on the thread that posts them. For the main thread only.
class NotificationCenter
{
public:
    using Handler = std::function<void(const Notification &)>;

    static NotificationCenter &defaultCenter();

    // Calls `handler` for each notification of that name, from `sender` alone or, when null, from any sender, until
    // `observer` is removed or destroyed.
    void addObserver(QObject *observer, const QString &name, Handler handler, QObject *sender = nullptr);

    // Removes all that `observer` observes under that name.
    void removeObserver(QObject *observer, const QString &name);

    void post(const QString &name, QObject *object);

private:
    struct Observation {
        QPointer<QObject> observer;
        Handler handler;
        QObject *sender;
    };
    QHash<QString, std::vector<Observation>> m_observations;
};

} // namespace Platform
