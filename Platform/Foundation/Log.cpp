#include "Platform/Foundation/Log.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(brevantoLog, "brevanto", QtInfoMsg)

namespace Platform
{

void log(const QString &message)
{
    qCInfo(brevantoLog).noquote() << message;
}

} // namespace Platform
