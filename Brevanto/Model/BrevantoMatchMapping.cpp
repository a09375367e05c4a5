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
#include <QStringBuilder>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace
{

// Whether half of a surrogate pair may be in the text. Hardly any text has, all its characters together, the bits of a
// surrogate, and bits are gathered many at a time.
bool mayHaveHalves(const QString &text)
{
    constexpr char16_t surrogateBits = QChar::highSurrogate(0x10000);
    const auto gather = [](char16_t bits, QChar character) { return char16_t(bits | character.unicode()); };
    return (std::accumulate(text.cbegin(), text.cend(), char16_t(), gather) & surrogateBits) == surrogateBits;
}

// JSON text can hold half of a surrogate pair, which an archive cannot. It is replaced here, so that a record equals
// what is read back of it.
void replaceHalves(QString &text)
{
    if (mayHaveHalves(text) && !text.isValidUtf16())
        text = QString::fromUtf8(text.toUtf8());
}

QString wellFormed(QString text)
{
    replaceHalves(text);
    return text;
}

QVariant textValue(QString &&text)
{
    replaceHalves(text);
    // A QVariant that is made of a text shares it, only for the text to let go of it then.
    QVariant value{QString()};
    static_cast<QString *>(value.data())->swap(text);
    return value;
}

// The value as a record field keeps it. References into the document are taken as they are: a QJsonValue is counted in
// and out of it.
QVariant fieldValue(QJsonValueConstRef value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return textValue(value.toString());
    case QJsonValue::Array: {
        QVariantList list;
        const QJsonArray array = value.toArray();
        list.reserve(array.size());
        for (const auto entry : array)
            list.append(fieldValue(entry));
        return list;
    }
    case QJsonValue::Object: {
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            map.insert(wellFormed(entry.key()), fieldValue(entry.value()));
        return map;
    }
    default:
        return value.toVariant();
    }
}

// As BrevantoBaseEntity::isValid() says, but a text, which is most of what comes, is taken out of the document only
// once.
QVariant validValue(QJsonValueConstRef value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
    case QJsonValue::Null:
        return {};
    case QJsonValue::String: {
        QString text = value.toString();
        return text.isEmpty() ? QVariant() : textValue(std::move(text));
    }
    default:
        return fieldValue(value);
    }
}

QVariant validValue(const QJsonObject &object, QLatin1StringView key)
{
    const auto entry = object.constFind(key);
    return entry == object.constEnd() ? QVariant() : validValue(entry.value());
}

// The setters of Record take what they are given; a value that is not valid leaves the field untouched.
template <class Record, class Base>
void take(Record &record, void (Base::*setter)(QVariant), QVariant &&value)
{
    if (value.isValid())
        (record.*setter)(std::move(value));
}

template <class Record, class Base>
void takeValid(Record &record, void (Base::*setter)(QVariant), const QJsonObject &object, QLatin1StringView key)
{
    take(record, setter, validValue(object, key));
}

template <class Base>
void takeValid(BrevantoMatch &match, void (Base::*setter)(QVariant), const BrevantoMatchObject &object,
               BrevantoMatchObject::Key key)
{
    if (object.contains(key))
        take(match, setter, validValue(object.value(key)));
}

void takeText(BrevantoMatch &match, void (BrevantoMatch::*setter)(QVariant), const BrevantoMatchObject &object,
              BrevantoMatchObject::Key key)
{
    if (const QJsonValueConstRef value = object.value(key); value.isString())
        take(match, setter, validValue(value));
}

void takeNumber(BrevantoMatch &match, void (BrevantoMatch::*setter)(QVariant), const BrevantoMatchObject &object,
                BrevantoMatchObject::Key key)
{
    if (const QJsonValueConstRef value = object.value(key); value.isDouble())
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
        if (entry.isObject() || BrevantoBaseEntity::isValid(entry))
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
    const QJsonValueConstRef author = object.value(key);
    if (author.isString())
        take(match, &BrevantoMatch::setAuthor, validValue(author));
    if (!author.isArray())
        return;
    if (const QJsonArray names = author.toArray(); !names.isEmpty() && !names.constBegin()->isNull())
        match.setAuthor(fieldValue(*names.constBegin()));
}

// Text is taken even when it is empty.
void mapID(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonValueConstRef id = object.value("id");
    if (id.isString() || id.isDouble())
        match.setID(BrevantoFields::text(fieldValue(id)));
}

// The first entry tells what the service sent: objects with addresses, or the addresses themselves.
void mapImages(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    const QJsonValueConstRef images = object.value("images");
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
            if (QVariant address = validValue(entry.toObject(), "url"_L1); address.isValid())
                addresses.append(std::move(address));
        }
    }
    match.setImages(addresses);
}

void mapImageGalleries(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    if (const QJsonValueConstRef gallery = object.value("imageGallery"); gallery.isArray())
        match.setImageGallery(validEntries(gallery.toArray()));

    const QJsonValueConstRef captioned = object.value("imageGalleryCaption");
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
    const QJsonValueConstRef videos = object.value("relatedVideos");
    if (!videos.isArray())
        return;
    match.setVids(recordsFrom(videos.toArray(), [&match](const QJsonObject &entry) {
        auto video = std::make_shared<BrevantoRelatedContent>();
        QVariant address = validValue(entry, "url"_L1);
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
    const QJsonValueConstRef links = object.value("relatedArticleLinks");
    if (!links.isArray())
        return;

    QVariantList articles, polls, ads, quiz;
    const std::pair<QLatin1StringView, QVariantList *> markers[] = {
        {"polls:"_L1, &polls}, {"ads:"_L1, &ads}, {"news:"_L1, &articles}, {"quiz:"_L1, &quiz}};
    const QJsonArray array = links.toArray();
    for (const auto value : array) {
        const QJsonObject entry = value.toObject();
        const QVariant address = validValue(entry, "url"_L1);
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
        match.setAdthemeColorString(textValue("0x"_L1 % theme));
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
    if (!object.contains("image_catalouge"))
        return;
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
    if (!object.contains("relatedContentIdentifiers"))
        return;
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
// source at its display name. For the rest they follow the numbers of the fields, each of which has its place behind
// those before it then.
void populateMatch(BrevantoMatch &match, const BrevantoMatchObject &object)
{
    takeValid(match, &BrevantoMatch::setSource, object, "source");
    takeValid(match, &BrevantoMatch::setLanguage, object, "language");
    takeValid(match, &BrevantoMatch::setSection, object, "section");
    takeValid(match, &BrevantoMatch::setTitle, object, "title");
    mapID(match, object);
    takeValid(match, &BrevantoMatch::setDate, object, "date");
    takeValid(match, &BrevantoMatch::setDesc, object, "description");
    takeValid(match, &BrevantoMatch::setWeblink, object, "weblink");
    mapAuthor(match, object, "author");
    if (!match.author().isValid())
        mapAuthor(match, object, "authors");
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
    takeValid(match, &BrevantoMatch::setTagFolder, object, "tag");
    mapRelatedVideos(match, object);
    mapImages(match, object);
    mapImageGalleries(match, object);
    mapThumbnail(match, object);
    mapRelatedLinks(match, object);
    if (const QJsonValueConstRef audios = object.value("relatedAudios"); audios.isArray())
        match.setRelatedAudios(validEntries(audios.toArray()));
    mapDisplaySource(match, object);
    mapDownloadedTime(match, object);
    takeNumber(match, &BrevantoMatch::setNativeAdPosition, object, "position");
    takeText(match, &BrevantoMatch::setShareURL, object, "share_url");
    takeValid(match, &BrevantoMatch::setShouldDisplayBannerAd, object, "show_ads");
    takeText(match, &BrevantoMatch::setIsSpecialArticle, object, "is_live");
    takeText(match, &BrevantoMatch::setTitleColor, object, "title_color");
    mapRelatedContentIdentifiers(match, object);
    takeNumber(match, &BrevantoMatch::setXPercent, object, "xPercent");
    takeNumber(match, &BrevantoMatch::setYPercent, object, "yPercent");
}
