#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include "Platform/Foundation/Exception.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

namespace
{

QString textOf(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return QStringLiteral("<null>");
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    if (value.canConvert<QString>())
        return value.toString();
    const QJsonDocument document = QJsonDocument::fromVariant(value);
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

QString withoutLastCharacter(const QString &string)
{
    if (string.isEmpty())
        throw Platform::Exception(Platform::Exception::Name::Range,
                                  QStringLiteral("The last character of an empty string cannot be removed."));
    return string.chopped(1);
}

QByteArray separator(const char *boundary)
{
    return QByteArray("\r\n--") + boundary + "\r\n";
}

// The service's own form of a file part: "Content-Type" follows the file name on the same line. The name of a field
// without one is sent as "(null)", which is what the service knows.
QByteArray filePart(const QString &fieldName, const QString &fileName, const std::optional<QByteArray> &data,
                    const char *boundary)
{
    const QString header = QStringLiteral("Content-Disposition: form-data; name=\"%1\"; filename=\"%2\""
                                          "Content-Type: application/octet-stream\r\n\r\n")
                               .arg(fieldName.isNull() ? QStringLiteral("(null)") : fieldName, fileName);
    return header.toUtf8() + data.value_or(QByteArray()) + separator(boundary);
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
    QByteArray data = separator(multipartBoundary);
    if (!params)
        return data;
    for (auto entry = params->cbegin(); entry != params->cend(); ++entry) {
        if (entry->typeId() != QMetaType::QString)
            continue;
        data += "Content-Disposition: form-data; name=\"" + entry.key().toUtf8() + "\"\r\n\r\n"
            + entry->toString().toUtf8() + separator(multipartBoundary);
    }
    return data;
}

QByteArray BrevantoServerManager::getDataToSendForImageData(const std::optional<QByteArray> &imageData,
                                                            const QString &fileName,
                                                            const QuillfernServerParamsObject &params)
{
    const bool isImageSearch = params.apiRequestCode() == BrevantoAPIRequestCodeImageSearch;
    return filePart(isImageSearch ? QStringLiteral("uploadedfile") : QString(), fileName, imageData, multipartBoundary);
}

QByteArray BrevantoServerManager::getDataToSendForFileData(const std::optional<QByteArray> &fileData,
                                                           const QString &fileName)
{
    return filePart(QStringLiteral("log"), fileName, fileData, multipartBoundary);
}
