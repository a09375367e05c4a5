#pragma once

#include "Brevanto/Model/BrevantoBaseEntity.h"
#include "Platform/Foundation/Codable.h"

#include <QList>

#include <memory>
#include <optional>

class BrevantoMatch;
// Matches in the order of the answer or the archive; holds no null pointers.
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

// The numbers are those of the fields in BrevantoFieldValues; the base entity has the first three.
#define BREVANTO_FIELD(number, name, setter)                                                                           \
private:                                                                                                               \
    static constexpr int name##Field = number;                                                                         \
                                                                                                                       \
public:                                                                                                                \
    const QVariant &name() const                                                                                       \
    {                                                                                                                  \
        return m_fields.value(number);                                                                                 \
    }                                                                                                                  \
    void setter(QVariant value)                                                                                        \
    {                                                                                                                  \
        m_fields.setValue(number, std::move(value));                                                                   \
    }

    BREVANTO_FIELD(3, title, setTitle) // headline
    BREVANTO_FIELD(4, ID, setID) // identifier, text
    BREVANTO_FIELD(5, date, setDate) // date text
    BREVANTO_FIELD(6, desc, setDesc) // description
    BREVANTO_FIELD(7, weblink, setWeblink) // address of the article or page
    BREVANTO_FIELD(8, author, setAuthor) // who wrote it
    BREVANTO_FIELD(9, category, setCategory) // kind of the ad
    BREVANTO_FIELD(10, backgroundImageUrl, setBackgroundImageUrl) // address of the ad image
    BREVANTO_FIELD(11, youTubeVideoUrl, setYouTubeVideoUrl) // address of a clip or a video page
    BREVANTO_FIELD(12, audioUrl, setAudioUrl) // address of a sound clip
    BREVANTO_FIELD(13, buyUrl, setBuyUrl) // address where it is sold
    BREVANTO_FIELD(14, reviewUrl, setReviewUrl) // address of the page with more information
    BREVANTO_FIELD(15, websiteUrl, setWebsiteUrl) // address of the web site
    BREVANTO_FIELD(16, phoneNumber, setPhoneNumber) // number to call, as it is dialled
    BREVANTO_FIELD(17, adthemeColorString, setAdthemeColorString) // hexadecimal text behind "0x"
    BREVANTO_FIELD(18, relatedAdImages, setRelatedAdImages) // list of image addresses
    BREVANTO_FIELD(19, adCatalogue, setAdCatalogue) // list of BrevantoCatalogueImage
    BREVANTO_FIELD(20, thumbnailUrl, setThumbnailUrl) // address of a small picture
    BREVANTO_FIELD(21, tagFolder, setTagFolder) // tag of the ad
    BREVANTO_FIELD(22, comments, setComments) // list; archived, never filled from JSON
    BREVANTO_FIELD(23, vids, setVids) // list of BrevantoRelatedContent
    BREVANTO_FIELD(24, images, setImages) // list of image addresses
    BREVANTO_FIELD(25, imageGallery, setImageGallery) // list of image addresses
    BREVANTO_FIELD(26, captionImages, setCaptionImages) // list of BrevantoCaptionedImage
    BREVANTO_FIELD(27, relatedArticles, setRelatedArticles) // list of BrevantoRelatedContent
    BREVANTO_FIELD(28, relatedAudios, setRelatedAudios) // list, as sent
    BREVANTO_FIELD(29, questions, setQuestions) // list; archived, never filled from JSON
    BREVANTO_FIELD(30, historyDate, setHistoryDate) // date-time; archived, never filled from JSON
    BREVANTO_FIELD(31, display_source, setDisplay_source) // name of the source to show
    BREVANTO_FIELD(32, endStatement, setEndStatement) // archived, never filled from JSON
    BREVANTO_FIELD(33, altStatement, setAltStatement) // archived, never filled from JSON
    BREVANTO_FIELD(34, isQuiz, setIsQuiz) // number; archived, never filled from JSON
    BREVANTO_FIELD(35, relatedAds, setRelatedAds) // list of BrevantoRelatedContent
    BREVANTO_FIELD(36, relatedPolls, setRelatedPolls) // list of BrevantoRelatedContent
    BREVANTO_FIELD(37, relatedQuiz, setRelatedQuiz) // list of BrevantoRelatedContent
    BREVANTO_FIELD(38, downloadedTime,
                   setDownloadedTime) // date-time of parsing, set when a count of related content came
    BREVANTO_FIELD(39, nativeAdPosition, setNativeAdPosition) // number
    BREVANTO_FIELD(40, relatedItemsCount, setRelatedItemsCount) // number; archived, never filled from JSON
    BREVANTO_FIELD(41, shareURL, setShareURL) // address to share
    BREVANTO_FIELD(42, shouldDisplayBannerAd, setShouldDisplayBannerAd) // banner flag, as sent
    BREVANTO_FIELD(43, isSpecialArticle, setIsSpecialArticle) // text
    BREVANTO_FIELD(44, titleColor, setTitleColor) // hexadecimal text
    BREVANTO_FIELD(45, hasRelatedQuiz, setHasRelatedQuiz) // true or null
    BREVANTO_FIELD(46, hasRelatedPoll, setHasRelatedPoll) // true or null
    BREVANTO_FIELD(47, xPercent, setXPercent) // number, hotspot position in percent of the ad image's width
    BREVANTO_FIELD(48, yPercent, setYPercent) // number, hotspot position in percent of the ad image's height
#undef BREVANTO_FIELD

    // The pictures of the photo gallery: the entries of images, captionImages, imageGallery, relatedAdImages and
    // adCatalogue, in this order; addresses are text, the others records. Put together on first use and then kept, even
    // if those fields change; not archived.
    const QVariantList &galleryDataSource() const;
    void setGalleryDataSource(QVariantList galleryDataSource)
    {
        m_galleryDataSource = std::make_unique<QVariantList>(std::move(galleryDataSource));
    }

    // `display_source` unless it is null or empty, else `source`, which may be null.
    const QVariant &sourceTitle() const;

    // As Platform::Codable says.
    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    struct Archive;

    mutable std::unique_ptr<QVariantList> m_galleryDataSource;
};
