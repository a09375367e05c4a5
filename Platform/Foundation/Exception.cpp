#include "Platform/Foundation/Exception.h"

namespace Platform
{

Exception::Exception(Name name, const QString &reason)
    : m_name(name)
    , m_reason(reason)
    , m_what(reason.toUtf8())
{
}

// Out of line, so that the class has one home, and a host can catch what the library throws.
const char *Exception::what() const noexcept
{
    return m_what.constData();
}

} // namespace Platform
