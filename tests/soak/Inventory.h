#pragma once

#include <QMap>
#include <QQuickWindow>
#include <QStringList>

// What this process holds, as its system, its allocator and Qt tell. Pictures that Qt keeps in no use are let go first.
struct Inventory {
    qint64 resident = 0; // bytes in RAM, after the allocator has given back what it can
    qint64 allocated = 0; // bytes that the allocator has handed out
    qint64 screens = 0; // view controllers, the host's own among them
    qint64 items = 0; // in the window
    qint64 objects = 0; // QObjects of all threads, but for QML's contexts
    QMap<QByteArray, int> classes = {}; // of those of the main thread
    qint64 threads = 0;
    qint64 sockets = 0;
    qint64 files = 0; // descriptors, those of sockets among them

    static Inventory of(QQuickWindow *window);

    // What there is more of than there was, with the numbers. Both kinds of memory may grow by a fiftieth.
    QStringList growth(const Inventory &first) const;
    // The same, without what caches add to: memory and objects.
    QStringList leftovers(const Inventory &first) const;

    QString text() const;
};
