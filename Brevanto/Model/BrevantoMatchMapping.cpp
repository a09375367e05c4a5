#include "Brevanto/Model/BrevantoMatchMapping.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatch.h"
#include "Brevanto/Model/BrevantoMatchObject.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace
{

// JSON text can hold half of a surrogate pair, which an archive cannot. It is replaced here, so that a record equals
// what is read back of it.
QString wellFormed(QString text)
{
    const auto isHalf = [](bool found, QChar character) { return found | character.isSurrogate(); };
    const bool hasHalves = std::accumulate(text.cbegin(), text.cend(), false, isHalf);
    return !hasHalves || text.isValidUtf16() ? std::move(text) : QString::fromUtf8(text.toUtf8());
}

// The value as a record field keeps it.
QVariant fieldValue(const QJsonValue &value)
{
    if (value.isString())
        return wellFormed(value.toString());
    if (value.isArray()) {
        QVariantList list;
        const QJsonArray array = value.toArray();
        list.reserve(array.size());
        for (const auto entry : array)
            list.append(fieldValue(entry));
        return list;
    }
    if (value.isObject()) {
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            map.insert(wellFormed(entry.key()), fieldValue(entry.value()));
        return map;
    }
    return value.toVariant();
}

// As BrevantoBaseEntity::isValid() says, but a text, which is most of what comes, is taken out of the document only
// once.
QVariant validValue(const QJsonValue &value)
{
    if (value.isString()) {
        QString text = value.toString();
        return text.isEmpty() ? QVariant() : QVariant(wellFormed(std::move(text)));
    }
    return BrevantoBaseEntity::isValid(value) ? fieldValue(value) : QVariant();
}

// The setters of Record take what they are given; a value that is not valid leaves the field untouched.
template <class Record, class Base>
void take(Record &record, void (Base::*setter)(QVariant), QVariant value)
{
    if (value.isValid())
        (record.*setter)(std::move(value));
}

template <class Record, class Base>
void takeValid(Record &record, void (Base::*setter)(QVariant), const QJsonObject &object, QLatin1StringView key)
{
    take(record, setter, validValue(object.value(key)));
}

template <class Base>
void takeValid(BrevantoMatch &match, void (Base::*setter)(QVariant), const BrevantoMatchObject &object,
               BrevantoMatchObject::Key key)
{
    take(match, setter, validValue(object.value(key)));
}

void takeText(BrevantoMatch &match, void (BrevantoMatch::*setter)(QVariant), const BrevantoMatchObject &object,
              BrevantoMatchObject::Key key)
{
    if (const QJsonValue value = object.value(key); value.isString())
        take(match, setter, validValue(value));
}

void takeNumber(BrevantoMatch &match, void (BrevantoMatch::*setter)(QVariant), const BrevantoMatchObject &object,
                BrevantoMatchObject::Key key)
{
    if (const QJsonValue value = object.value(key); value.isDouble())
        take(match, setter, value.toVariant());
}

QVariantList validEntries(const QJsonArray &array)
{
    QVariantList entries;
    entries.reserve(array.size());
    for (const auto entry : array) {
        if (QVariant value = validValue(entry); value.isValid())
            entries.append(std::move(value));
    }
    return entries;
}

// What `make` gives for each valid entry; it gets an empty object when the entry is none.
template <class Make>
QVariantList recordsFrom(const QJsonArray &array, Make make)
{
    QVariantList records;
    records.reserve(array.size());
    for (const auto entry : array) {
        if (BrevantoBaseEntity::isValid(entry))
            records.append(BrevantoFields::entry(make(entry.toObject())));
    }
    return records;
}

bool isEmpty(const QVariant &field)
{
    return !field.isValid() || (field.typeId() == QMetaType::QString && field.toString().isEmpty());
}

QVariant firstEntry(const QVariant &field)
{
    return BrevantoFields::list(field).value(0);
}

void mapAuthor(BrevantoMatch &match, const BrevantoMatchObject &object, BrevantoMatchObject::Key key)
{
    const QJsonValue author = object.value(key);
    if (author.isString())
        take(match, &BrevantoMatch::setAuthor, validValue(author));
    else if (const QJsonArray names = author.toArray(); !names.isEmpty() && !names.first().isNull())
        match.setAuthor(fieldValue(names.first()));
}

// Text is taken even when it is empty.
void mapID(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonValue id = object.value("id");
    if (id.isString() || id.isDouble())
        match.setID(BrevantoFields::text(fieldValue(id)));
}

// The first entry tells what the service sent: objects with addresses, or the addresses themselves.
void mapImages(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonValue images = object.value("images");
    if (images.isString())
        match.setImages(QVariantList{fieldValue(images)});
    if (!images.isArray())
        return;

    const QJsonArray array = images.toArray();
    QVariantList addresses;
    if (array.first().isString()) {
        addresses = validEntries(array);
    } else if (array.first().isObject()) {
        for (const auto entry : array) {
            if (QVariant address = validValue(entry.toObject().value("url"_L1)); address.isValid())
                addresses.append(std::move(address));
        }
    }
    match.setImages(addresses);
}

void mapImageGalleries(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    if (const QJsonValue gallery = object.value("imageGallery"); gallery.isArray())
        match.setImageGallery(validEntries(gallery.toArray()));

    const QJsonValue captioned = object.value("imageGalleryCaption");
    if (!captioned.isArray())
        return;
    match.setCaptionImages(recordsFrom(captioned.toArray(), [](const QJsonObject &entry) {
        auto image = std::make_shared<BrevantoCaptionedImage>();
        takeValid(*image, &BrevantoCaptionedImage::setImageURL, entry, "url"_L1);
        takeValid(*image, &BrevantoCaptionedImage::setCaptionText, entry, "caption"_L1);
        return image;
    }));
}

void mapThumbnail(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    for (const BrevantoMatchObject::Key key :
         std::initializer_list<BrevantoMatchObject::Key>{"weblinkThumb", "thumb_url", "thumbUrl"}) {
        if (isEmpty(match.thumbnailUrl()))
            takeValid(match, &BrevantoMatch::setThumbnailUrl, object, key);
    }
    if (!isEmpty(match.thumbnailUrl()))
        return;

    if (const QVariant address = firstEntry(match.imageGallery()); address.isValid())
        match.setThumbnailUrl(address);
    else if (const QVariant image = firstEntry(match.images()); image.isValid())
        match.setThumbnailUrl(image);
    else if (const auto captioned = BrevantoFields::record<BrevantoCaptionedImage>(firstEntry(match.captionImages())))
        match.setThumbnailUrl(captioned->imageURL());
}

// The address of the clip that a player's address names: what stands between the last "VideoID=" and the last ".flv",
// as an MP4 file. Gives what replacing ".*VideoID=(.*).flv.*" by "$1.mp4" gives, any character for the point included,
// in a time that does not explode with hostile text.
QString clipAddress(QString address)
{
    constexpr auto identifierMark = "VideoID="_L1;
    address.remove(u'\n');
    qsizetype dot = address.lastIndexOf("flv"_L1, -1, Qt::CaseInsensitive) - 1;
    if (dot > 0 && address[dot].isLowSurrogate())
        --dot;
    if (dot < identifierMark.size())
        return address;
    const qsizetype mark = address.lastIndexOf(identifierMark, dot - identifierMark.size(), Qt::CaseInsensitive);
    if (mark < 0)
        return address;
    const qsizetype begin = mark + identifierMark.size();
    return address.sliced(begin, dot - begin) + ".mp4"_L1;
}

void mapRelatedVideos(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonValue videos = object.value("relatedVideos");
    if (!videos.isArray())
        return;
    match.setVids(recordsFrom(videos.toArray(), [&match](const QJsonObject &entry) {
        auto video = std::make_shared<BrevantoRelatedContent>();
        QVariant address = validValue(entry.value("url"_L1));
        if (address.typeId() == QMetaType::QString)
            address = clipAddress(address.toString());
        take(*video, &BrevantoRelatedContent::setContentUrl, std::move(address));
        takeValid(*video, &BrevantoRelatedContent::setThumbnailUrl, entry, "thumbUrl"_L1);
        takeValid(*video, &BrevantoRelatedContent::setTitle, entry, "title"_L1);
        video->setDate(match.date());
        return video;
    }));
}

std::shared_ptr<BrevantoRelatedContent> relatedLink(const BrevantoMatch &match, const QJsonObject &entry,
                                                    QVariant address)
{
    auto link = std::make_shared<BrevantoRelatedContent>();
    link->setContentUrl(std::move(address));
    takeValid(*link, &BrevantoRelatedContent::setThumbnailUrl, entry, "thumbUrl"_L1);
    takeValid(*link, &BrevantoRelatedContent::setTitle, entry, "title"_L1);
    takeValid(*link, &BrevantoRelatedContent::setBody, entry, "description"_L1);
    link->setDate(match.date());
    return link;
}

// Links are sorted by a marker anywhere in their address; those without one are articles. A link without an address,
// JSON null included, is left out.
void mapRelatedLinks(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonValue links = object.value("relatedArticleLinks");
    if (!links.isArray())
        return;

    QVariantList articles, polls, ads, quiz;
    const std::pair<QLatin1StringView, QVariantList *> markers[] = {
        {"polls:"_L1, &polls}, {"ads:"_L1, &ads}, {"news:"_L1, &articles}, {"quiz:"_L1, &quiz}};
    const QJsonArray array = links.toArray();
    for (const auto value : array) {
        const QJsonObject entry = value.toObject();
        const QVariant address = validValue(entry.value("url"_L1));
        if (!address.isValid())
            continue;
        const QString text = BrevantoFields::text(address);
        const auto marker = std::ranges::find_if(
            markers, [&text](const auto &candidate) { return text.contains(candidate.first, Qt::CaseInsensitive); });
        QVariantList &list = marker == std::end(markers) ? articles : *marker->second;
        list.append(BrevantoFields::entry(relatedLink(match, entry, address)));
    }
    match.setRelatedArticles(articles);
    match.setRelatedPolls(polls);
    match.setRelatedAds(ads);
    match.setRelatedQuiz(quiz);
}

void mapAdImage(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    takeValid(match, &BrevantoMatch::setBackgroundImageUrl, object, "app_img");
    if (!match.backgroundImageUrl().isValid())
        takeValid(match, &BrevantoMatch::setBackgroundImageUrl, object, "bg_img");
}

void mapTheme(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    if (const QString theme = object.value("theme").toString(); !theme.isEmpty())
        match.setAdthemeColorString(QString("0x"_L1 + wellFormed(theme)));
}

void mapRelatedAdImages(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QString addresses = object.value("ad_rel_img").toString();
    if (addresses.isEmpty())
        return;
    const QStringList pieces = wellFormed(addresses).split(u',');
    match.setRelatedAdImages(QVariantList(pieces.begin(), pieces.end()));
}

void mapCatalogue(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonArray catalogue = object.value("image_catalouge").toArray();
    if (catalogue.isEmpty())
        return;
    match.setAdCatalogue(recordsFrom(catalogue, [](const QJsonObject &entry) {
        auto image = std::make_shared<BrevantoCatalogueImage>();
        takeValid(*image, &BrevantoCatalogueImage::setImageURL, entry, "img"_L1);
        takeValid(*image, &BrevantoCatalogueImage::setCaptionText, entry, "caption"_L1);
        takeValid(*image, &BrevantoCatalogueImage::setBuyURL, entry, "url"_L1);
        return image;
    }));
}

void mapDisplaySource(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    takeValid(match, &BrevantoMatch::setDisplay_source, object, "display_source");
    if (!BrevantoFields::text(match.display_source()).isEmpty())
        match.setSource(match.display_source());
}

// The count itself is not kept; that one came is what marks the match as downloaded.
void mapDownloadedTime(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    if (object.value("relatedcontentcount").isDouble())
        match.setDownloadedTime(QDateTime::currentDateTimeUtc());
}

void mapRelatedContentIdentifiers(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonArray identifiers = object.value("relatedContentIdentifiers").toArray();
    for (const auto entry : identifiers) {
        const QString identifier = entry.toString();
        if (identifier.contains("quiz"_L1))
            match.setHasRelatedQuiz(true);
        else if (identifier.contains("polls"_L1))
            match.setHasRelatedPoll(true);
    }
}

} // namespace

// Later steps look at what earlier ones have set: related content at the date, the thumbnail at the galleries, the
// source at its display name.
void populateMatch(BrevantoMatch &match, const QJsonObject &json)
{
    const BrevantoMatchObject object(json);
    mapAuthor(match, object, "author");
    takeValid(match, &BrevantoMatch::setTagFolder, object, "tag");
    if (!match.author().isValid())
        mapAuthor(match, object, "authors");
    takeValid(match, &BrevantoMatch::setDesc, object, "description");
    takeValid(match, &BrevantoMatch::setDate, object, "date");
    takeValid(match, &BrevantoMatch::setShouldDisplayBannerAd, object, "show_ads");
    mapID(match, object);
    mapImages(match, object);
    mapImageGalleries(match, object);
    mapThumbnail(match, object);
    takeValid(match, &BrevantoMatch::setSource, object, "source");
    takeValid(match, &BrevantoMatch::setTitle, object, "title");
    mapRelatedVideos(match, object);
    mapRelatedLinks(match, object);
    if (const QJsonValue audios = object.value("relatedAudios"); audios.isArray())
        match.setRelatedAudios(validEntries(audios.toArray()));
    takeValid(match, &BrevantoMatch::setWeblink, object, "weblink");
    takeValid(match, &BrevantoMatch::setCategory, object, "category");
    mapAdImage(match, object);
    takeValid(match, &BrevantoMatch::setYouTubeVideoUrl, object, "vid_urls");
    takeValid(match, &BrevantoMatch::setAudioUrl, object, "aud_url");
    takeValid(match, &BrevantoMatch::setBuyUrl, object, "commerce_url");
    takeValid(match, &BrevantoMatch::setReviewUrl, object, "ad_reviews_url");
    takeValid(match, &BrevantoMatch::setWebsiteUrl, object, "url");
    takeValid(match, &BrevantoMatch::setPhoneNumber, object, "ph_number");
    mapTheme(match, object);
    mapRelatedAdImages(match, object);
    mapCatalogue(match, object);
    mapDisplaySource(match, object);
    takeValid(match, &BrevantoMatch::setSection, object, "section");
    takeValid(match, &BrevantoMatch::setLanguage, object, "language");
    takeNumber(match, &BrevantoMatch::setNativeAdPosition, object, "position");
    mapDownloadedTime(match, object);
    takeText(match, &BrevantoMatch::setIsSpecialArticle, object, "is_live");
    takeText(match, &BrevantoMatch::setTitleColor, object, "title_color");
    takeText(match, &BrevantoMatch::setShareURL, object, "share_url");
    mapRelatedContentIdentifiers(match, object);
    takeNumber(match, &BrevantoMatch::setXPercent, object, "xPercent");
    takeNumber(match, &BrevantoMatch::setYPercent, object, "yPercent");
}
