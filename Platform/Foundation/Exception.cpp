#include "Platform/Foundation/Exception.h"

#include "Platform/Foundation/Log.h"

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

void refuseArgument(const QString &reason)
{
    throw Exception(Exception::Name::InvalidArgument, reason);
}

void failAssertion(const QString &message, const char *function, const char *file, int line)
{
    log(QStringLiteral("*** Assertion failure in %1, %2:%3")
            .arg(QLatin1String(function ? function : "<Unknown Function>"),
                 QLatin1String(file ? file : "<Unknown File>"))
            .arg(line));
    throw Exception(Exception::Name::InternalInconsistency, message);
}

} // namespace Platform
