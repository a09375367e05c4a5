#pragma once

#include "Platform/Foundation/Export.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace Platform
{

// What an observer is told.
struct Notification {
    QString name; // what has happened
    QObject *object = nullptr; // the sender; may be null
};

// Hands named notifications to whoever observes them, on the thread that posts them. For the main thread only.
class BREVANTO_EXPORT NotificationCenter
{
public:
    // Called with each notification that is observed.
    using Handler = std::function<void(const Notification &)>;

    // The center of the process, which the library posts to.
    static NotificationCenter &defaultCenter();

    // Calls `handler` for each notification of that name, from `sender` alone or, when null, from any sender, until
    // `observer` is removed, or it or `sender` is destroyed. Neither is owned; nothing is observed for a null observer.
    void addObserver(QObject *observer, const QString &name, Handler handler, QObject *sender = nullptr);

    // Removes all that `observer` observes under that name.
    void removeObserver(QObject *observer, const QString &name);

    // Tells all who observe that name; `object` (may be null) is the sender.
    void post(const QString &name, QObject *object);

private:
    struct Observation {
        QPointer<QObject> observer; // null from the removal on
        Handler handler;
        QPointer<QObject> sender;
        bool isForAnySender;
    };
    using Observations = std::vector<std::shared_ptr<Observation>>;
    QHash<QString, Observations> m_observations;
};

} // namespace Platform
