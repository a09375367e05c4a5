#pragma once

#include <QObject>

#include <memory>

namespace Platform
{

// What `object` owns, as an object of that class. Null when it is of another; `object` keeps it then.
template <typename T, typename Object>
std::unique_ptr<T> takeAs(std::unique_ptr<Object> &object)
{
    std::unique_ptr<T> taken(qobject_cast<T *>(object.get()));
    if (taken)
        static_cast<void>(object.release());
    return taken;
}

} // namespace Platform
