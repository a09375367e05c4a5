#include "Brevanto/Model/BrevantoMatch.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatchMapping.h"
#include "Brevanto/Model/BrevantoMatchObject.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

static_assert(sizeof(BrevantoMatch) <= 64, "an answer may hold half a million empty matches");

struct BrevantoMatch::Archive {
    // In the order of writing. The links carry the names that the service's JSON has for them.
    static constexpr auto written = std::to_array<BrevantoArchiveEntry>({
        {"historyDate"_L1, historyDateField},
        {"title"_L1, titleField},
        {"source"_L1, sourceField},
        {"ID"_L1, IDField},
        {"date"_L1, dateField},
        {"desc"_L1, descField},
        {"shouldDisplayBannerAd"_L1, shouldDisplayBannerAdField},
        {"weblink"_L1, weblinkField},
        {"author"_L1, authorField},
        {"tagFolder"_L1, tagFolderField},
        {"comments"_L1, commentsField},
        {"vids"_L1, vidsField},
        {"images"_L1, imagesField},
        {"relatedArticles"_L1, relatedArticlesField},
        {"relatedPolls"_L1, relatedPollsField},
        {"relatedQuiz"_L1, relatedQuizField},
        {"relatedAds"_L1, relatedAdsField},
        {"relatedAudios"_L1, relatedAudiosField},
        {"imageGallery"_L1, imageGalleryField},
        {"captionImages"_L1, captionImagesField},
        {"category"_L1, categoryField},
        {"app_img"_L1, backgroundImageUrlField},
        {"vid_urls"_L1, youTubeVideoUrlField},
        {"aud_url"_L1, audioUrlField},
        {"commerce_url"_L1, buyUrlField},
        {"ad_reviews_url"_L1, reviewUrlField},
        {"url"_L1, websiteUrlField},
        {"thumbUrl"_L1, thumbnailUrlField},
        {"relatedAdImages"_L1, relatedAdImagesField},
        {"adCatalogue"_L1, adCatalogueField},
        {"phoneNumber"_L1, phoneNumberField},
        {"adthemeColorString"_L1, adthemeColorStringField},
        {"display_source"_L1, display_sourceField},
        {"section"_L1, sectionField},
        {"language"_L1, languageField},
        {"isQuiz"_L1, isQuizField},
        {"endStatement"_L1, endStatementField},
        {"altStatement"_L1, altStatementField},
        {"questions"_L1, questionsField},
        {"downloadedTime"_L1, downloadedTimeField},
        {"nativeAdPosition"_L1, nativeAdPositionField},
        {"shareURL"_L1, shareURLField},
        {"relatedItemsCount"_L1, relatedItemsCountField},
        {"isSpecialArticle"_L1, isSpecialArticleField},
        {"title_color"_L1, titleColorField},
        {"hasRelatedQuiz"_L1, hasRelatedQuizField},
        {"hasRelatedPoll"_L1, hasRelatedPollField},
        {"xPercent"_L1, xPercentField},
        {"yPercent"_L1, yPercentField},
    });

    static_assert(
        [] {
            quint64 numbers = 0;
            for (const BrevantoArchiveEntry &entry : written)
                numbers |= quint64(1) << entry.field;
            return numbers == (quint64(1) << written.size()) - 1;
        }(),
        "each field has a number of its own");

    // Reading differs in two places, which shows only in what is left out after an exception.
    static constexpr auto read = [] {
        auto fields = written;
        const auto position = [&fields](int field) {
            return std::ranges::find(fields, field, &BrevantoArchiveEntry::field);
        };
        const auto audios = position(relatedAudiosField);
        std::rotate(audios, audios + 1, position(captionImagesField) + 1);
        std::iter_swap(position(shareURLField), position(relatedItemsCountField));
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
    BrevantoMatchObject object;
    for (const auto element : elements) {
        auto match = std::make_shared<BrevantoMatch>();
        object.setObject(element.toObject());
        match->m_fields.reserve(object.knownKeyCount());
        populateMatch(*match, object);
        matches.append(std::move(match));
    }
    return matches;
}

const QVariantList &BrevantoMatch::galleryDataSource() const
{
    if (!m_galleryDataSource) {
        m_galleryDataSource = std::make_unique<QVariantList>();
        for (const QVariant &field : {images(), captionImages(), imageGallery(), relatedAdImages(), adCatalogue()})
            m_galleryDataSource->append(BrevantoFields::list(field));
    }
    return *m_galleryDataSource;
}

const QVariant &BrevantoMatch::sourceTitle() const
{
    return BrevantoFields::text(display_source()).isEmpty() ? source() : display_source();
}

QString BrevantoMatch::className() const
{
    return u"BrevantoMatch"_s;
}

void BrevantoMatch::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::written, m_fields, coder);
}

void BrevantoMatch::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::read, m_fields, coder);
}
