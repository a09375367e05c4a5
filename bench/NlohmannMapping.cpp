#include "NlohmannMapping.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoFields.h"

#include <nlohmann/json.hpp>

using nlohmann::json;
using Setter = void (BrevantoMatch::*)(QVariant);

namespace
{

QString textOf(const json &value)
{
    const auto &text = value.get_ref<const std::string &>();
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

QVariant fieldValue(const json &value)
{
    switch (value.type()) {
    case json::value_t::string:
        return value.get_ref<const std::string &>().empty() ? QVariant() : textOf(value);
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
        return QVariant(value.get<qint64>());
    case json::value_t::number_float:
        return value.get<double>();
    case json::value_t::boolean:
        return value.get<bool>();
    case json::value_t::array: {
        QVariantList list;
        for (const json &entry : value)
            list.append(fieldValue(entry));
        return list;
    }
    case json::value_t::object: {
        QVariantMap map;
        for (const auto &[key, entry] : value.items())
            map.insert(QString::fromStdString(key), fieldValue(entry));
        return map;
    }
    default:
        return {};
    }
}

QVariant valueAt(const json &object, const char *key)
{
    const auto value = object.find(key);
    return value == object.end() ? QVariant() : fieldValue(*value);
}

struct Step {
    const char *key;
    Setter setter;
};

// What becomes of these keys does not hang on other keys.
constexpr Step asSent[] = {
    {"tag", &BrevantoMatch::setTagFolder},
    {"description", &BrevantoMatch::setDesc},
    {"date", &BrevantoMatch::setDate},
    {"show_ads", &BrevantoMatch::setShouldDisplayBannerAd},
    {"id", &BrevantoMatch::setID},
    {"weblinkThumb", &BrevantoMatch::setThumbnailUrl},
    {"thumb_url", &BrevantoMatch::setThumbnailUrl},
    {"thumbUrl", &BrevantoMatch::setThumbnailUrl},
    {"title", &BrevantoMatch::setTitle},
    {"weblink", &BrevantoMatch::setWeblink},
    {"category", &BrevantoMatch::setCategory},
    {"app_img", &BrevantoMatch::setBackgroundImageUrl},
    {"vid_urls", &BrevantoMatch::setYouTubeVideoUrl},
    {"aud_url", &BrevantoMatch::setAudioUrl},
    {"commerce_url", &BrevantoMatch::setBuyUrl},
    {"ad_reviews_url", &BrevantoMatch::setReviewUrl},
    {"url", &BrevantoMatch::setWebsiteUrl},
    {"ph_number", &BrevantoMatch::setPhoneNumber},
    {"display_source", &BrevantoMatch::setDisplay_source},
    {"position", &BrevantoMatch::setNativeAdPosition},
    {"is_live", &BrevantoMatch::setIsSpecialArticle},
    {"title_color", &BrevantoMatch::setTitleColor},
    {"share_url", &BrevantoMatch::setShareURL},
    {"xPercent", &BrevantoMatch::setXPercent},
    {"yPercent", &BrevantoMatch::setYPercent},
    {"images", &BrevantoMatch::setImages},
    {"imageGallery", &BrevantoMatch::setImageGallery},
    {"relatedVideos", &BrevantoMatch::setVids},
    {"relatedArticleLinks", &BrevantoMatch::setRelatedArticles},
    {"relatedAudios", &BrevantoMatch::setRelatedAudios},
    {"ad_rel_img", &BrevantoMatch::setRelatedAdImages},
    {"image_catalouge", &BrevantoMatch::setAdCatalogue},
    {"relatedcontentcount", &BrevantoMatch::setDownloadedTime},
    {"relatedContentIdentifiers", &BrevantoMatch::setHasRelatedQuiz},
};

void mapCaptionedImages(BrevantoMatch &match, const json &object)
{
    const auto images = object.find("imageGalleryCaption");
    if (images == object.end())
        return;
    QVariantList records;
    for (const json &entry : *images) {
        auto image = std::make_shared<BrevantoCaptionedImage>();
        image->setImageURL(valueAt(entry, "url"));
        image->setCaptionText(valueAt(entry, "caption"));
        records.append(BrevantoFields::entry(image));
    }
    match.setCaptionImages(records);
}

std::shared_ptr<BrevantoMatch> matchOf(const json &object)
{
    auto match = std::make_shared<BrevantoMatch>();
    const auto author = object.find("author");
    if (author != object.end())
        match->setAuthor(fieldValue(author->is_array() ? author->front() : *author));
    for (const Step &step : asSent) {
        if (QVariant value = valueAt(object, step.key); value.isValid())
            ((*match).*(step.setter))(std::move(value));
    }
    mapCaptionedImages(*match, object);
    if (const auto theme = object.find("theme"); theme != object.end())
        match->setAdthemeColorString(QStringLiteral("0x") + textOf(*theme));
    match->setSource(valueAt(object, "source"));
    match->setSection(valueAt(object, "section"));
    match->setLanguage(valueAt(object, "language"));
    return match;
}

} // namespace

void nlohmannGroups(const QByteArray &reply, const std::function<void(const BrevantoMatchGroupList &)> &completed)
{
    const json document = json::parse(reply.cbegin(), reply.cend());
    if (document.at("status").at("code") != 0)
        return;
    BrevantoMatchList matches;
    for (const json &object : document.at("matches"))
        matches.append(matchOf(object));
    completed(BrevantoMatchGroup::groupMatchesByAdImageUrl(matches));
}
