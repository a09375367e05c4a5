#pragma once

#include "Platform/Foundation/Exception.h"

// What `work` raises, as "InvalidArgument: reason"; empty when it raises nothing.
template <typename Work>
QString raised(Work work)
{
    try {
        work();
    } catch (const Platform::Exception &exception) {
        const QString name = QStringList{QStringLiteral("InternalInconsistency"), QStringLiteral("InvalidArgument"),
                                         QStringLiteral("Range")}
                                 .value(static_cast<int>(exception.name()));
        return name + QStringLiteral(": ") + exception.reason();
    }
    return {};
}
