#pragma once

#include <QObject>
#include <QPointer>

#include <concepts>

namespace Platform
{

// Who is told of an object's events, through the operations of `Interface`: not owned, and forgotten once destroyed.
template <typename Interface>
class Delegate
{
public:
    Delegate() = default;
    template <typename T>
    requires std::derived_from<T, QObject> && std::derived_from<T, Interface> Delegate(T *object)
        : m_object(object)
        , m_interface(object)
    {
    }

    // Null when nobody is told.
    Interface *get() const { return m_object ? m_interface : nullptr; }

private:
    QPointer<QObject> m_object;
    Interface *m_interface = nullptr;
};

} // namespace Platform
