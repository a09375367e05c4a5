#include "Brevanto/ServerManager/ServiceAddress.h"

#include <QMutex>

namespace ServiceAddress
{

namespace
{

constinit QBasicMutex mutex;

QString &overridingServer()
{
    static QString server;
    return server;
}

QString serverOr(const QString &server)
{
    const QMutexLocker lock(&mutex);
    return overridingServer().isEmpty() ? server : overridingServer();
}

} // namespace

QString baseURL()
{
    return serverOr(QStringLiteral(BREVANTO_SERVICE_BASE_URL));
}

QString shortenURL()
{
    return serverOr(QStringLiteral(BREVANTO_SHORTENER_ENDPOINT)) + QLatin1String("/v3/shorten");
}

QString shortenerToken()
{
    return QStringLiteral(BREVANTO_SHORTENER_TOKEN);
}

Override::Override(const QString &server)
{
    const QMutexLocker lock(&mutex);
    overridingServer() = server;
}

Override::~Override()
{
    const QMutexLocker lock(&mutex);
    overridingServer().clear();
}

} // namespace ServiceAddress
