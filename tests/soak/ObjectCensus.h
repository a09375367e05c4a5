#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>

#include <functional>

// Every QObject that has been made since the census began and has not been destroyed, those of other threads included.
// Begin it before the application object. Rests on the hooks that Qt has for debugging tools, beside its public
// interface.
class ObjectCensus
{
public:
    static void begin();

    static int count();
    // How many there are of each class, among those of the calling thread.
    static QMap<QByteArray, int> classes();
    // How many of the calling thread's objects are such ones.
    static int count(const std::function<bool(const QObject *)> &predicate);
};
