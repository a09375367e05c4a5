#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include "Brevanto/ServerManager/ServiceAddress.h"
#include "Platform/Foundation/Exception.h"

#include <QUrl>

namespace
{

constexpr std::chrono::seconds requestTimeout{10};
// An answer of the service is a few kilobytes, and screens hold the bytes of many pictures at a time.
constexpr qint64 largestAnswer = qint64{16} * 1024 * 1024;

constexpr auto boundary = "14737809831466499882746641449";

QByteArray separator()
{
    return QByteArray("\r\n--") + boundary + "\r\n";
}

QString textOf(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return QStringLiteral("<null>");
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    return value.toString();
}

QString withoutLastCharacter(const QString &string)
{
    if (string.isEmpty())
        throw Platform::Exception(Platform::Exception::Name::Range,
                                  QStringLiteral("The last character of an empty string cannot be removed."));
    return string.chopped(1);
}

void appendFields(QByteArray &body, const std::optional<QVariantMap> &params)
{
    body += separator();
    if (!params)
        return;
    for (auto entry = params->cbegin(); entry != params->cend(); ++entry) {
        if (entry->typeId() != QMetaType::QString)
            continue;
        body += "Content-Disposition: form-data; name=\"" + entry.key().toUtf8() + "\"\r\n\r\n"
            + entry->toString().toUtf8();
        body += separator();
    }
}

// The service's own form of a file part: "Content-Type" follows the file name on the same line.
void appendFile(QByteArray &body, QByteArrayView fieldName, const QString &fileName,
                const std::optional<QByteArray> &data)
{
    body += "Content-Disposition: form-data; name=\"";
    body += fieldName;
    body += "\"; filename=\"" + fileName.toUtf8() + "\"Content-Type: application/octet-stream\r\n\r\n";
    if (data)
        body += *data;
    body += separator();
}

// The name of a field without one is sent as "(null)", which is what the service knows.
QByteArrayView imageFieldName(const QuillfernServerParamsObject &params)
{
    return params.apiRequestCode() == BrevantoAPIRequestCodeImageSearch ? "uploadedfile" : "(null)";
}

// Made in one piece of memory, because a photo is large.
QByteArray multipartBody(const QuillfernServerParamsObject &params)
{
    QByteArray body;
    appendFields(body, params.paramsDict());
    constexpr qsizetype roomForHeaders = 512;
    const std::optional<QByteArray> &file = params.imageData() ? params.imageData() : params.fileData();
    body.reserve(body.size() + file->size() + roomForHeaders);
    if (params.imageData())
        appendFile(body, imageFieldName(params), QStringLiteral("image.jpg"), file);
    else
        appendFile(body, "log", QStringLiteral("log.txt"), file);
    return body;
}

QString withPathComponent(QString base, QString component)
{
    const QLatin1Char slash('/');
    while (base.endsWith(slash))
        base.chop(1);
    while (component.startsWith(slash))
        component.remove(0, 1);
    return base + slash + component;
}

QString urlString(const QuillfernServerParamsObject &params)
{
    if (!params.partialURL().isNull())
        return withPathComponent(ServiceAddress::baseURL(), params.partialURL());
    return params.separateURL();
}

QUrl parsed(const QString &urlString)
{
    // Addresses come from the service's data, where blanks and letters outside ASCII happen. Such a picture is expected
    // to load, so they are escaped instead of refused.
    return QUrl(urlString, QUrl::TolerantMode);
}

Platform::URLRequest boundedRequest()
{
    Platform::URLRequest request;
    request.timeout = requestTimeout;
    request.maximumBodySize = largestAnswer;
    return request;
}

} // namespace

QString BrevantoServerManager::getCacheKeyFromArray(const QVariantList &array)
{
    QString key;
    for (const QVariant &element : array)
        key += textOf(element) + QLatin1Char('-');
    return withoutLastCharacter(key);
}

QString BrevantoServerManager::getSelectorFirstName(const QString &selectorName)
{
    return selectorName.section(QLatin1Char(':'), 0, 0);
}

QString BrevantoServerManager::getPercentEscapedString(const QString &string)
{
    // Beyond the reserved characters that are always escaped, "#", "%", "[" and "]" are no legal URL characters by
    // RFC 2396 and are escaped as well.
    QByteArray escaped = QUrl::toPercentEncoding(string, QByteArrayLiteral(" "));
    escaped.replace(' ', '+');
    return QString::fromLatin1(escaped);
}

QString BrevantoServerManager::getStringFromParamsDict(const std::optional<QVariantMap> &params)
{
    if (!params)
        return QStringLiteral("");
    QString form;
    for (auto entry = params->cbegin(); entry != params->cend(); ++entry)
        form += entry.key() + QLatin1Char('=') + textOf(entry.value()) + QLatin1Char('&');
    return withoutLastCharacter(form);
}

QByteArray BrevantoServerManager::getDataToSendFromParamsDict(const std::optional<QVariantMap> &params)
{
    QByteArray data;
    appendFields(data, params);
    return data;
}

QByteArray BrevantoServerManager::getDataToSendForImageData(const std::optional<QByteArray> &imageData,
                                                            const QString &fileName,
                                                            const QuillfernServerParamsObject &params)
{
    QByteArray data;
    appendFile(data, imageFieldName(params), fileName, imageData);
    return data;
}

QByteArray BrevantoServerManager::getDataToSendForFileData(const std::optional<QByteArray> &fileData,
                                                           const QString &fileName)
{
    QByteArray data;
    appendFile(data, "log", fileName, fileData);
    return data;
}

Platform::URLRequest BrevantoServerManager::postRequest(const QuillfernServerParamsObject &params)
{
    Platform::URLRequest request = boundedRequest();
    request.url = parsed(urlString(params));
    request.method = Platform::URLRequest::Method::Post;
    const bool isMultipart = params.imageData() || params.fileData();
    request.headers.insert("Content-Type",
                           isMultipart ? QByteArray("multipart/form-data; boundary=") + boundary
                                       : QByteArray("application/x-www-form-urlencoded"));
    request.body = isMultipart ? multipartBody(params) : getStringFromParamsDict(params.paramsDict()).toUtf8();
    return request;
}

Platform::URLRequest BrevantoServerManager::getRequest(const QuillfernServerParamsObject &params)
{
    Platform::URLRequest request = boundedRequest();
    QString address = urlString(params);
    // An empty dictionary makes no query here, although it has no form string.
    const auto &query = params.paramsDict();
    if (!address.isNull() && query && !query->isEmpty())
        address += QLatin1Char('?') + getStringFromParamsDict(query);
    request.url = parsed(address);
    return request;
}
