#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

// Every key of a match that is looked at, and what may come under it: every kind of value, mostly a wrong one.
namespace MatchKinds
{

inline QStringList keys()
{
    return QStringLiteral(
               "title id date description weblink author authors category app_img bg_img vid_urls aud_url commerce_url "
               "ad_reviews_url url ph_number theme ad_rel_img image_catalouge weblinkThumb thumb_url thumbUrl tag "
               "images imageGallery imageGalleryCaption relatedVideos relatedArticleLinks relatedAudios source "
               "display_source position relatedcontentcount share_url show_ads is_live title_color "
               "relatedContentIdentifiers xPercent yPercent section language")
        .split(QLatin1Char(' '));
}

inline QJsonArray values()
{
    return QJsonDocument::fromJson(R"([null, "", "text", ",", -1, 1e308, 9223372036854775807, true, [],
        {}, [null], [""], ["a", 1, null, {}, []], [[[]]], [{}], [{"url": {}}], [{"url": "a"}, 1], {"url": ["a"]},
        [{"img": 1, "caption": [], "url": null}]])")
        .array();
}

} // namespace MatchKinds
