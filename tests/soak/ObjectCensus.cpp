#include "ObjectCensus.h"

#include <QMutex>
#include <QSet>
#include <QThread>

// Qt's table for debugging tools; its third and fourth entries are called with each object that is made or destroyed.
extern Q_CORE_EXPORT quintptr qtHookData[];

namespace
{

constexpr int addEntry = 3;
constexpr int removeEntry = 4;

struct Objects {
    QMutex mutex;
    QSet<const QObject *> living;
};

// Threads make and destroy objects to the last moment of the process.
Objects &objects()
{
    static auto *all = new Objects;
    return *all;
}

void added(const QObject *object)
{
    const QMutexLocker lock(&objects().mutex);
    objects().living.insert(object);
}

void destroyed(const QObject *object)
{
    const QMutexLocker lock(&objects().mutex);
    objects().living.remove(object);
}

} // namespace

void ObjectCensus::begin()
{
    qtHookData[addEntry] = reinterpret_cast<quintptr>(&added);
    qtHookData[removeEntry] = reinterpret_cast<quintptr>(&destroyed);
}

int ObjectCensus::count()
{
    const QMutexLocker lock(&objects().mutex);
    return static_cast<int>(objects().living.size());
}

int ObjectCensus::count(const std::function<bool(const QObject *)> &predicate)
{
    const QMutexLocker lock(&objects().mutex);
    return static_cast<int>(std::count_if(objects().living.begin(), objects().living.end(), [&](const QObject *object) {
        return object->thread() == QThread::currentThread() && predicate(object);
    }));
}

QMap<QByteArray, int> ObjectCensus::classes()
{
    QMap<QByteArray, int> classes;
    count([&classes](const QObject *object) {
        ++classes[object->metaObject()->className()];
        return true;
    });
    return classes;
}
