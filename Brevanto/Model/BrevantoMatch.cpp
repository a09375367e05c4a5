#include "Brevanto/Model/BrevantoMatch.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatchMapping.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

struct BrevantoMatch::Archive {
    // In the order of writing. The links carry the names that the service's JSON has for them.
    static constexpr auto written = std::to_array<BrevantoArchiveEntry<BrevantoMatch>>({
        {"historyDate"_L1, &BrevantoMatch::m_historyDate},
        {"title"_L1, &BrevantoMatch::m_title},
        {"source"_L1, &BrevantoMatch::m_source},
        {"ID"_L1, &BrevantoMatch::m_ID},
        {"date"_L1, &BrevantoMatch::m_date},
        {"desc"_L1, &BrevantoMatch::m_desc},
        {"shouldDisplayBannerAd"_L1, &BrevantoMatch::m_shouldDisplayBannerAd},
        {"weblink"_L1, &BrevantoMatch::m_weblink},
        {"author"_L1, &BrevantoMatch::m_author},
        {"tagFolder"_L1, &BrevantoMatch::m_tagFolder},
        {"comments"_L1, &BrevantoMatch::m_comments},
        {"vids"_L1, &BrevantoMatch::m_vids},
        {"images"_L1, &BrevantoMatch::m_images},
        {"relatedArticles"_L1, &BrevantoMatch::m_relatedArticles},
        {"relatedPolls"_L1, &BrevantoMatch::m_relatedPolls},
        {"relatedQuiz"_L1, &BrevantoMatch::m_relatedQuiz},
        {"relatedAds"_L1, &BrevantoMatch::m_relatedAds},
        {"relatedAudios"_L1, &BrevantoMatch::m_relatedAudios},
        {"imageGallery"_L1, &BrevantoMatch::m_imageGallery},
        {"captionImages"_L1, &BrevantoMatch::m_captionImages},
        {"category"_L1, &BrevantoMatch::m_category},
        {"app_img"_L1, &BrevantoMatch::m_backgroundImageUrl},
        {"vid_urls"_L1, &BrevantoMatch::m_youTubeVideoUrl},
        {"aud_url"_L1, &BrevantoMatch::m_audioUrl},
        {"commerce_url"_L1, &BrevantoMatch::m_buyUrl},
        {"ad_reviews_url"_L1, &BrevantoMatch::m_reviewUrl},
        {"url"_L1, &BrevantoMatch::m_websiteUrl},
        {"thumbUrl"_L1, &BrevantoMatch::m_thumbnailUrl},
        {"relatedAdImages"_L1, &BrevantoMatch::m_relatedAdImages},
        {"adCatalogue"_L1, &BrevantoMatch::m_adCatalogue},
        {"phoneNumber"_L1, &BrevantoMatch::m_phoneNumber},
        {"adthemeColorString"_L1, &BrevantoMatch::m_adthemeColorString},
        {"display_source"_L1, &BrevantoMatch::m_display_source},
        {"section"_L1, &BrevantoMatch::m_section},
        {"language"_L1, &BrevantoMatch::m_language},
        {"isQuiz"_L1, &BrevantoMatch::m_isQuiz},
        {"endStatement"_L1, &BrevantoMatch::m_endStatement},
        {"altStatement"_L1, &BrevantoMatch::m_altStatement},
        {"questions"_L1, &BrevantoMatch::m_questions},
        {"downloadedTime"_L1, &BrevantoMatch::m_downloadedTime},
        {"nativeAdPosition"_L1, &BrevantoMatch::m_nativeAdPosition},
        {"shareURL"_L1, &BrevantoMatch::m_shareURL},
        {"relatedItemsCount"_L1, &BrevantoMatch::m_relatedItemsCount},
        {"isSpecialArticle"_L1, &BrevantoMatch::m_isSpecialArticle},
        {"title_color"_L1, &BrevantoMatch::m_titleColor},
        {"hasRelatedQuiz"_L1, &BrevantoMatch::m_hasRelatedQuiz},
        {"hasRelatedPoll"_L1, &BrevantoMatch::m_hasRelatedPoll},
        {"xPercent"_L1, &BrevantoMatch::m_xPercent},
        {"yPercent"_L1, &BrevantoMatch::m_yPercent},
    });

    // Reading differs in two places, which shows only in what is left out after an exception.
    static constexpr auto read = [] {
        auto fields = written;
        const auto position = [&fields](QVariant BrevantoMatch::*field) {
            return std::ranges::find(fields, field, &BrevantoArchiveEntry<BrevantoMatch>::field);
        };
        const auto audios = position(&BrevantoMatch::m_relatedAudios);
        std::rotate(audios, audios + 1, position(&BrevantoMatch::m_captionImages) + 1);
        std::iter_swap(position(&BrevantoMatch::m_shareURL), position(&BrevantoMatch::m_relatedItemsCount));
        return fields;
    }();
};

BrevantoMatch::~BrevantoMatch() = default;

std::optional<BrevantoMatchList> BrevantoMatch::populateMatchesUsingArray(const QJsonValue &array)
{
    if (!array.isArray())
        return {};
    const QJsonArray elements = array.toArray();
    BrevantoMatchList matches;
    matches.reserve(elements.size());
    for (const auto element : elements) {
        auto match = std::make_shared<BrevantoMatch>();
        populateMatch(*match, element.toObject());
        matches.append(std::move(match));
    }
    return matches;
}

const QVariantList &BrevantoMatch::galleryDataSource() const
{
    if (!m_galleryDataSource) {
        m_galleryDataSource.emplace();
        for (const QVariant *field : {&m_images, &m_captionImages, &m_imageGallery, &m_relatedAdImages, &m_adCatalogue})
            m_galleryDataSource->append(BrevantoFields::list(*field));
    }
    return *m_galleryDataSource;
}

const QVariant &BrevantoMatch::sourceTitle() const
{
    return BrevantoFields::text(m_display_source).isEmpty() ? m_source : m_display_source;
}

QString BrevantoMatch::className() const
{
    return u"BrevantoMatch"_s;
}

void BrevantoMatch::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::written, *this, coder);
}

void BrevantoMatch::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::read, *this, coder);
}
