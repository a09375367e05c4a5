#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <vector>

namespace MatchService
{

/// One printed ad: its picture and the records that a photo of it is answered with.
struct CatalogueAd {
    /// The name that its two files share.
    QString name;
    /// Relative to the catalogue's folder.
    QString image;
    QJsonArray matches;
};

/// The ads that the service knows, read once from a folder. Every file "ads/NAME.json" with a picture beside it
/// ("ads/NAME.jpg" or ".png") is an ad; the file holds an object with the list "matches". Addresses in the records may
/// be paths in the folder; they are made absolute when a record is given out.
class Catalogue
{
public:
    /// Throws std::runtime_error that names the file and what is wrong with it.
    explicit Catalogue(const QString &folder);

    const QString &folder() const { return m_folder; }
    const std::vector<CatalogueAd> &ads() const { return m_ads; }

    /// All records of an ad. They share the picture's address, so that they form one group on the ad screen. `base` is
    /// the service's own address and ends in a slash.
    QJsonArray matches(std::size_t ad, const QString &base) const;

    /// The record with this "id", or the first record of the ad with this name; nothing for an unknown one.
    std::optional<QJsonObject> match(const QString &id, const QString &base) const;

    /// Every file of the folder that a record or an ad names, as a path relative to the folder.
    QStringList files() const;

private:
    QString m_folder;
    std::vector<CatalogueAd> m_ads;
};

} // namespace MatchService
