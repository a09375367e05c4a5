#include "service/Catalogue.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QUrl>

#include <functional>
#include <stdexcept>

namespace MatchService
{

namespace
{

using AddressChange = std::function<QString(const QString &)>;

const QSet<QString> &addressKeys()
{
    static const QSet<QString> keys = {
        QStringLiteral("app_img"),      QStringLiteral("bg_img"),       QStringLiteral("vid_urls"),
        QStringLiteral("aud_url"),      QStringLiteral("commerce_url"), QStringLiteral("ad_reviews_url"),
        QStringLiteral("url"),          QStringLiteral("weblink"),      QStringLiteral("weblinkThumb"),
        QStringLiteral("thumb_url"),    QStringLiteral("thumbUrl"),     QStringLiteral("share_url"),
        QStringLiteral("img"),          QStringLiteral("images"),       QStringLiteral("imageGallery"),
        QStringLiteral("relatedAudios")};
    return keys;
}

bool isRelative(const QString &address)
{
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    return !address.isEmpty() && !address.startsWith(QStringLiteral("//")) && !scheme.match(address).hasMatch();
}

QString withChangedAddress(const QString &address, const AddressChange &change)
{
    return isRelative(address) ? change(address) : address;
}

QJsonValue withChangedAddresses(const QJsonValue &value, const QString &key, const AddressChange &change)
{
    if (value.isObject()) {
        QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            entry.value() = withChangedAddresses(entry.value(), entry.key(), change);
        return object;
    }
    if (value.isArray()) {
        QJsonArray list;
        for (const QJsonValue entry : value.toArray())
            list.append(withChangedAddresses(entry, key, change));
        return list;
    }
    if (!value.isString())
        return value;
    if (addressKeys().contains(key))
        return withChangedAddress(value.toString(), change);
    // The one field that packs several addresses into a text.
    if (key == QStringLiteral("ad_rel_img")) {
        QStringList addresses = value.toString().split(QLatin1Char(','));
        for (QString &address : addresses)
            address = withChangedAddress(address, change);
        return addresses.join(QLatin1Char(','));
    }
    return value;
}

QJsonObject withAbsoluteAddresses(const QJsonObject &record, const CatalogueAd &ad, const QString &base)
{
    const auto absolute = [&base](const QString &path) { return base + path; };
    QJsonObject given = withChangedAddresses(record, {}, absolute).toObject();
    // A record may name its picture under the other key.
    if (!given.contains(QStringLiteral("bg_img")))
        given.insert(QStringLiteral("app_img"), absolute(ad.image));
    return given;
}

QString idOf(const QJsonObject &record)
{
    return record.value(QStringLiteral("id")).toVariant().toString();
}

std::runtime_error fault(const QString &file, const QString &what)
{
    return std::runtime_error((file + QStringLiteral(": ") + what).toStdString());
}

QString imageOf(const QDir &folder, const QString &name)
{
    for (const char *suffix : {"jpg", "jpeg", "png"}) {
        QString path = QStringLiteral("ads/%1.%2").arg(name, QString::fromLatin1(suffix));
        if (folder.exists(path))
            return path;
    }
    return {};
}

CatalogueAd readAd(const QDir &folder, const QString &name)
{
    const QString path = folder.filePath(QStringLiteral("ads/%1.json").arg(name));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw fault(path, file.errorString());
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull())
        throw fault(path, QStringLiteral("%1 at byte %2").arg(error.errorString()).arg(error.offset));
    CatalogueAd ad{name, imageOf(folder, name), document.object().value(QStringLiteral("matches")).toArray()};
    if (ad.image.isEmpty())
        throw fault(path, QStringLiteral("there is no picture %1.jpg or %1.png beside it").arg(name));
    if (ad.matches.isEmpty())
        throw fault(path, QStringLiteral("it holds no list \"matches\" with records"));
    for (const QJsonValue record : std::as_const(ad.matches)) {
        if (!record.isObject())
            throw fault(path, QStringLiteral("an entry of \"matches\" is not an object"));
    }
    return ad;
}

} // namespace

Catalogue::Catalogue(const QString &folder)
    : m_folder(QDir(folder).canonicalPath())
{
    if (m_folder.isEmpty() || !QDir(m_folder).exists(QStringLiteral("ads")))
        throw fault(folder, QStringLiteral("there is no catalogue (a folder with a folder \"ads\")"));
    const QDir root(m_folder);
    QSet<QString> ids;
    const QDir ads(root.filePath(QStringLiteral("ads")));
    for (const QFileInfo &file : ads.entryInfoList({QStringLiteral("*.json")}, QDir::Files, QDir::Name)) {
        CatalogueAd ad = readAd(root, file.completeBaseName());
        for (const QJsonValue record : std::as_const(ad.matches)) {
            const QString id = idOf(record.toObject());
            if (!id.isEmpty() && ids.contains(id))
                throw fault(file.filePath(), QStringLiteral("another record has the id %1").arg(id));
            ids.insert(id);
        }
        m_ads.push_back(std::move(ad));
    }
}

QJsonArray Catalogue::matches(std::size_t ad, const QString &base) const
{
    QJsonArray given;
    for (const QJsonValue record : m_ads[ad].matches)
        given.append(withAbsoluteAddresses(record.toObject(), m_ads[ad], base));
    return given;
}

std::optional<QJsonObject> Catalogue::match(const QString &id, const QString &base) const
{
    if (id.isEmpty())
        return std::nullopt;
    for (const CatalogueAd &ad : m_ads) {
        for (const QJsonValue record : ad.matches) {
            if (idOf(record.toObject()) == id)
                return withAbsoluteAddresses(record.toObject(), ad, base);
        }
    }
    for (const CatalogueAd &ad : m_ads) {
        if (ad.name == id)
            return withAbsoluteAddresses(ad.matches.first().toObject(), ad, base);
    }
    return std::nullopt;
}

QStringList Catalogue::files() const
{
    QSet<QString> files;
    const auto remember = [&files](const QString &address) {
        files.insert(QUrl(address).path());
        return address;
    };
    for (const CatalogueAd &ad : m_ads) {
        files.insert(ad.image);
        withChangedAddresses(ad.matches, {}, remember);
    }
    return {files.begin(), files.end()};
}

} // namespace MatchService
