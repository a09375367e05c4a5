#include "Platform/Foundation/Faults.h"

#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/Log.h"

namespace Platform
{

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
