#pragma once

#include <QJsonObject>

#include <algorithm>
#include <array>
#include <string_view>

// What the service's JSON object of a match holds under the keys that the SDK knows. An object is gone through once:
// asking it for each known key, most of which a match does not have, takes as long as parsing it.
class BrevantoMatchObject
{
public:
    // The known keys, sorted.
    static constexpr auto names = std::to_array<std::string_view>({
        "ad_rel_img",
        "ad_reviews_url",
        "app_img",
        "aud_url",
        "author",
        "authors",
        "bg_img",
        "category",
        "commerce_url",
        "date",
        "description",
        "display_source",
        "id",
        "imageGallery",
        "imageGalleryCaption",
        "image_catalouge",
        "images",
        "is_live",
        "language",
        "ph_number",
        "position",
        "relatedArticleLinks",
        "relatedAudios",
        "relatedContentIdentifiers",
        "relatedVideos",
        "relatedcontentcount",
        "section",
        "share_url",
        "show_ads",
        "source",
        "tag",
        "theme",
        "thumbUrl",
        "thumb_url",
        "title",
        "title_color",
        "url",
        "vid_urls",
        "weblink",
        "weblinkThumb",
        "xPercent",
        "yPercent",
    });

    // A known key; anything else does not compile.
    class Key
    {
    public:
        consteval Key(const char *name); // not explicit: `value("id")`

    private:
        friend class BrevantoMatchObject;
        std::size_t m_number;
    };

    explicit BrevantoMatchObject(QJsonObject object);

    // Undefined where there is none.
    QJsonValue value(Key key) const
    {
        const qsizetype position = m_positions[key.m_number];
        return position < 0 ? QJsonValue(QJsonValue::Undefined) : QJsonValue(*(m_object.constBegin() + position));
    }

private:
    QJsonObject m_object;
    std::array<qsizetype, names.size()> m_positions; // in the object; negative where it has no such key
};

consteval BrevantoMatchObject::Key::Key(const char *name)
    : m_number(std::size_t(std::ranges::find(names, std::string_view(name)) - names.begin()))
{
    if (m_number == names.size())
        throw "not a known key";
}
