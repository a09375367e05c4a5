#pragma once

#include "Brevanto/Model/BrevantoBaseEntity.h"
#include "Platform/Foundation/Codable.h"

#include <QList>

#include <memory>
#include <optional>

class BrevantoMatch;
using BrevantoMatchList = QList<std::shared_ptr<BrevantoMatch>>;

// One product or ad that the service recognised in a photo. Shared, not copied. What null means and how fields keep
// what was sent: see BrevantoBaseEntity; the kinds below are those of a well-behaved service.
class BREVANTO_EXPORT BrevantoMatch : public BrevantoBaseEntity, public Platform::Codable
{
public:
    BrevantoMatch() = default;
    ~BrevantoMatch() override;

    // One match for each entry of a decoded JSON list, in its order; no entry is rejected, and one that is no object
    // gives a match whose fields are all null. Values that are missing, empty or of a kind that cannot be used leave
    // their field null. Nothing when the input is null or no list.
    static std::optional<BrevantoMatchList> populateMatchesUsingArray(const QJsonValue &array);

#define BREVANTO_FIELD(name, setter)                                                                                   \
private:                                                                                                               \
    QVariant m_##name;                                                                                                 \
                                                                                                                       \
public:                                                                                                                \
    const QVariant &name() const                                                                                       \
    {                                                                                                                  \
        return m_##name;                                                                                               \
    }                                                                                                                  \
    void setter(QVariant value)                                                                                        \
    {                                                                                                                  \
        m_##name = std::move(value);                                                                                   \
    }

    BREVANTO_FIELD(title, setTitle) // headline
    BREVANTO_FIELD(ID, setID) // identifier, text
    BREVANTO_FIELD(date, setDate) // date text
    BREVANTO_FIELD(desc, setDesc) // description
    BREVANTO_FIELD(weblink, setWeblink) // address of the article or page
    BREVANTO_FIELD(author, setAuthor)
    BREVANTO_FIELD(category, setCategory)
    BREVANTO_FIELD(backgroundImageUrl, setBackgroundImageUrl) // address of the ad image
    BREVANTO_FIELD(youTubeVideoUrl, setYouTubeVideoUrl)
    BREVANTO_FIELD(audioUrl, setAudioUrl)
    BREVANTO_FIELD(buyUrl, setBuyUrl)
    BREVANTO_FIELD(reviewUrl, setReviewUrl)
    BREVANTO_FIELD(websiteUrl, setWebsiteUrl)
    BREVANTO_FIELD(phoneNumber, setPhoneNumber)
    BREVANTO_FIELD(adthemeColorString, setAdthemeColorString) // hexadecimal text behind "0x"
    BREVANTO_FIELD(relatedAdImages, setRelatedAdImages) // list of image addresses
    BREVANTO_FIELD(adCatalogue, setAdCatalogue) // list of BrevantoCatalogueImage
    BREVANTO_FIELD(thumbnailUrl, setThumbnailUrl)
    BREVANTO_FIELD(tagFolder, setTagFolder)
    BREVANTO_FIELD(comments, setComments) // list; archived, never filled from JSON
    BREVANTO_FIELD(vids, setVids) // list of BrevantoRelatedContent
    BREVANTO_FIELD(images, setImages) // list of image addresses
    BREVANTO_FIELD(imageGallery, setImageGallery) // list of image addresses
    BREVANTO_FIELD(captionImages, setCaptionImages) // list of BrevantoCaptionedImage
    BREVANTO_FIELD(relatedArticles, setRelatedArticles) // list of BrevantoRelatedContent
    BREVANTO_FIELD(relatedAudios, setRelatedAudios) // list, as sent
    BREVANTO_FIELD(questions, setQuestions) // list; archived, never filled from JSON
    BREVANTO_FIELD(historyDate, setHistoryDate) // date-time; archived, never filled from JSON
    BREVANTO_FIELD(display_source, setDisplay_source) // name of the source to show
    BREVANTO_FIELD(endStatement, setEndStatement) // archived, never filled from JSON
    BREVANTO_FIELD(altStatement, setAltStatement) // archived, never filled from JSON
    BREVANTO_FIELD(isQuiz, setIsQuiz) // number; archived, never filled from JSON
    BREVANTO_FIELD(relatedAds, setRelatedAds) // list of BrevantoRelatedContent
    BREVANTO_FIELD(relatedPolls, setRelatedPolls) // list of BrevantoRelatedContent
    BREVANTO_FIELD(relatedQuiz, setRelatedQuiz) // list of BrevantoRelatedContent
    BREVANTO_FIELD(downloadedTime, setDownloadedTime) // date-time of parsing, set when a count of related content came
    BREVANTO_FIELD(nativeAdPosition, setNativeAdPosition) // number
    BREVANTO_FIELD(relatedItemsCount, setRelatedItemsCount) // number; archived, never filled from JSON
    BREVANTO_FIELD(shareURL, setShareURL)
    BREVANTO_FIELD(shouldDisplayBannerAd, setShouldDisplayBannerAd)
    BREVANTO_FIELD(isSpecialArticle, setIsSpecialArticle) // text
    BREVANTO_FIELD(titleColor, setTitleColor)
    BREVANTO_FIELD(hasRelatedQuiz, setHasRelatedQuiz) // true or null
    BREVANTO_FIELD(hasRelatedPoll, setHasRelatedPoll) // true or null
    BREVANTO_FIELD(xPercent, setXPercent) // number, hotspot position in percent of the ad image's width
    BREVANTO_FIELD(yPercent, setYPercent) // number, hotspot position in percent of the ad image's height
#undef BREVANTO_FIELD

    // The pictures of the photo gallery: the entries of images, captionImages, imageGallery, relatedAdImages and
    // adCatalogue, in this order; addresses are text, the others records. Put together on first use and then kept, even
    // if those fields change; not archived.
    const QVariantList &galleryDataSource() const;
    void setGalleryDataSource(QVariantList galleryDataSource)
    {
        m_galleryDataSource = std::move(galleryDataSource);
    }

    // `display_source` unless it is null or empty, else `source`, which may be null.
    const QVariant &sourceTitle() const;

    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    struct Archive;

    mutable std::optional<QVariantList> m_galleryDataSource;
};
