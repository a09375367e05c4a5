#include "Model/MatchFields.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace
{

template <class Base>
auto getter(const QVariant &(Base::*get)() const)
{
    return [get](const BrevantoMatch &match) { return (match.*get)(); };
}

template <class Base>
auto setter(void (Base::*set)(QVariant))
{
    return [set](BrevantoMatch &match, const QVariant &value) { (match.*set)(value); };
}

QJsonObject withoutNulls(QJsonObject object)
{
    for (const QString &key : object.keys()) {
        if (object.value(key).isNull())
            object.remove(key);
    }
    return object;
}

} // namespace

const std::vector<MatchField> &matchFields()
{
    static const std::vector<MatchField> fields{
        {"historyDate", "historyDate", getter(&BrevantoMatch::historyDate), setter(&BrevantoMatch::setHistoryDate)},
        {"title", "title", getter(&BrevantoMatch::title), setter(&BrevantoMatch::setTitle)},
        {"source", "source", getter(&BrevantoMatch::source), setter(&BrevantoMatch::setSource)},
        {"ID", "ID", getter(&BrevantoMatch::ID), setter(&BrevantoMatch::setID)},
        {"date", "date", getter(&BrevantoMatch::date), setter(&BrevantoMatch::setDate)},
        {"desc", "desc", getter(&BrevantoMatch::desc), setter(&BrevantoMatch::setDesc)},
        {"shouldDisplayBannerAd", "shouldDisplayBannerAd", getter(&BrevantoMatch::shouldDisplayBannerAd),
         setter(&BrevantoMatch::setShouldDisplayBannerAd)},
        {"weblink", "weblink", getter(&BrevantoMatch::weblink), setter(&BrevantoMatch::setWeblink)},
        {"author", "author", getter(&BrevantoMatch::author), setter(&BrevantoMatch::setAuthor)},
        {"tagFolder", "tagFolder", getter(&BrevantoMatch::tagFolder), setter(&BrevantoMatch::setTagFolder)},
        {"comments", "comments", getter(&BrevantoMatch::comments), setter(&BrevantoMatch::setComments)},
        {"vids", "vids", getter(&BrevantoMatch::vids), setter(&BrevantoMatch::setVids)},
        {"images", "images", getter(&BrevantoMatch::images), setter(&BrevantoMatch::setImages)},
        {"relatedArticles", "relatedArticles", getter(&BrevantoMatch::relatedArticles),
         setter(&BrevantoMatch::setRelatedArticles)},
        {"relatedPolls", "relatedPolls", getter(&BrevantoMatch::relatedPolls), setter(&BrevantoMatch::setRelatedPolls)},
        {"relatedQuiz", "relatedQuiz", getter(&BrevantoMatch::relatedQuiz), setter(&BrevantoMatch::setRelatedQuiz)},
        {"relatedAds", "relatedAds", getter(&BrevantoMatch::relatedAds), setter(&BrevantoMatch::setRelatedAds)},
        {"relatedAudios", "relatedAudios", getter(&BrevantoMatch::relatedAudios),
         setter(&BrevantoMatch::setRelatedAudios)},
        {"imageGallery", "imageGallery", getter(&BrevantoMatch::imageGallery), setter(&BrevantoMatch::setImageGallery)},
        {"captionImages", "captionImages", getter(&BrevantoMatch::captionImages),
         setter(&BrevantoMatch::setCaptionImages)},
        {"category", "category", getter(&BrevantoMatch::category), setter(&BrevantoMatch::setCategory)},
        {"app_img", "backgroundImageUrl", getter(&BrevantoMatch::backgroundImageUrl),
         setter(&BrevantoMatch::setBackgroundImageUrl)},
        {"vid_urls", "youTubeVideoUrl", getter(&BrevantoMatch::youTubeVideoUrl),
         setter(&BrevantoMatch::setYouTubeVideoUrl)},
        {"aud_url", "audioUrl", getter(&BrevantoMatch::audioUrl), setter(&BrevantoMatch::setAudioUrl)},
        {"commerce_url", "buyUrl", getter(&BrevantoMatch::buyUrl), setter(&BrevantoMatch::setBuyUrl)},
        {"ad_reviews_url", "reviewUrl", getter(&BrevantoMatch::reviewUrl), setter(&BrevantoMatch::setReviewUrl)},
        {"url", "websiteUrl", getter(&BrevantoMatch::websiteUrl), setter(&BrevantoMatch::setWebsiteUrl)},
        {"thumbUrl", "thumbnailUrl", getter(&BrevantoMatch::thumbnailUrl), setter(&BrevantoMatch::setThumbnailUrl)},
        {"relatedAdImages", "relatedAdImages", getter(&BrevantoMatch::relatedAdImages),
         setter(&BrevantoMatch::setRelatedAdImages)},
        {"adCatalogue", "adCatalogue", getter(&BrevantoMatch::adCatalogue), setter(&BrevantoMatch::setAdCatalogue)},
        {"phoneNumber", "phoneNumber", getter(&BrevantoMatch::phoneNumber), setter(&BrevantoMatch::setPhoneNumber)},
        {"adthemeColorString", "adthemeColorString", getter(&BrevantoMatch::adthemeColorString),
         setter(&BrevantoMatch::setAdthemeColorString)},
        {"display_source", "display_source", getter(&BrevantoMatch::display_source),
         setter(&BrevantoMatch::setDisplay_source)},
        {"section", "section", getter(&BrevantoMatch::section), setter(&BrevantoMatch::setSection)},
        {"language", "language", getter(&BrevantoMatch::language), setter(&BrevantoMatch::setLanguage)},
        {"isQuiz", "isQuiz", getter(&BrevantoMatch::isQuiz), setter(&BrevantoMatch::setIsQuiz)},
        {"endStatement", "endStatement", getter(&BrevantoMatch::endStatement), setter(&BrevantoMatch::setEndStatement)},
        {"altStatement", "altStatement", getter(&BrevantoMatch::altStatement), setter(&BrevantoMatch::setAltStatement)},
        {"questions", "questions", getter(&BrevantoMatch::questions), setter(&BrevantoMatch::setQuestions)},
        {"downloadedTime", "downloadedTime", getter(&BrevantoMatch::downloadedTime),
         setter(&BrevantoMatch::setDownloadedTime)},
        {"nativeAdPosition", "nativeAdPosition", getter(&BrevantoMatch::nativeAdPosition),
         setter(&BrevantoMatch::setNativeAdPosition)},
        {"shareURL", "shareURL", getter(&BrevantoMatch::shareURL), setter(&BrevantoMatch::setShareURL)},
        {"relatedItemsCount", "relatedItemsCount", getter(&BrevantoMatch::relatedItemsCount),
         setter(&BrevantoMatch::setRelatedItemsCount)},
        {"isSpecialArticle", "isSpecialArticle", getter(&BrevantoMatch::isSpecialArticle),
         setter(&BrevantoMatch::setIsSpecialArticle)},
        {"title_color", "titleColor", getter(&BrevantoMatch::titleColor), setter(&BrevantoMatch::setTitleColor)},
        {"hasRelatedQuiz", "hasRelatedQuiz", getter(&BrevantoMatch::hasRelatedQuiz),
         setter(&BrevantoMatch::setHasRelatedQuiz)},
        {"hasRelatedPoll", "hasRelatedPoll", getter(&BrevantoMatch::hasRelatedPoll),
         setter(&BrevantoMatch::setHasRelatedPoll)},
        {"xPercent", "xPercent", getter(&BrevantoMatch::xPercent), setter(&BrevantoMatch::setXPercent)},
        {"yPercent", "yPercent", getter(&BrevantoMatch::yPercent), setter(&BrevantoMatch::setYPercent)},
    };
    return fields;
}

QJsonValue described(const QVariant &value)
{
    if (value.typeId() == QMetaType::QVariantList) {
        QJsonArray entries;
        for (const QVariant &entry : value.toList())
            entries.append(described(entry));
        return entries;
    }
    if (const auto image = BrevantoFields::record<BrevantoCaptionedImage>(value))
        return withoutNulls({{u"class"_s, image->className()},
                             {u"imageURL"_s, described(image->imageURL())},
                             {u"captionText"_s, described(image->captionText())}});
    if (const auto image = BrevantoFields::record<BrevantoCatalogueImage>(value))
        return withoutNulls({{u"class"_s, image->className()},
                             {u"imageURL"_s, described(image->imageURL())},
                             {u"captionText"_s, described(image->captionText())},
                             {u"buyURL"_s, described(image->buyURL())}});
    if (const auto content = BrevantoFields::record<BrevantoRelatedContent>(value))
        return withoutNulls({{u"class"_s, content->className()},
                             {u"title"_s, described(content->title())},
                             {u"source"_s, described(content->source())},
                             {u"date"_s, described(content->date())},
                             {u"thumbnailUrl"_s, described(content->thumbnailUrl())},
                             {u"contentUrl"_s, described(content->contentUrl())},
                             {u"body"_s, described(content->body())},
                             {u"imageType"_s, content->imageType()},
                             {u"language"_s, described(content->language())},
                             {u"section"_s, described(content->section())}});
    return QJsonValue::fromVariant(value);
}

QJsonObject filledFields(const BrevantoMatch &match)
{
    QJsonObject filled;
    for (const MatchField &field : matchFields()) {
        if (const QVariant value = field.value(match); value.isValid())
            filled.insert(QLatin1StringView(field.name), described(value));
    }
    return filled;
}
