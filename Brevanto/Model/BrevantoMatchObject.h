#pragma once

#include <QCborValue>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>

#include <algorithm>
#include <array>
#include <string_view>

// What the service's JSON object of a match holds under the keys that the SDK knows. An object is gone through once:
// asking it for each known key, most of which a match does not have, takes as long as parsing it. Reading a key takes
// an allocation, comparing it takes none; and the matches of one answer mostly have the same keys.
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

    BrevantoMatchObject() { m_positions.fill(-1); }

    // Goes on to the next match's object.
    void setObject(QJsonObject object);

    qsizetype knownKeyCount() const
    {
        return std::ranges::count_if(m_positions, [](qsizetype position) { return position >= 0; });
    }

    bool contains(Key key) const { return m_positions[key.m_number] >= 0; }
    // Null where there is none, which means the same. Holds until the next object is set.
    QJsonValueConstRef value(Key key) const
    {
        const qsizetype position = m_positions[key.m_number];
        return position < 0 ? *m_nothing.constBegin() : *(m_object.constBegin() + position);
    }

private:
    void findKeys();

    QJsonObject m_object;
    QList<QCborValue> m_keys; // all of the object's, in its order
    std::array<qsizetype, names.size()> m_positions; // in the object; negative where it has no such key
    const QJsonArray m_nothing{QJsonValue::Null};
};

consteval BrevantoMatchObject::Key::Key(const char *name)
    : m_number(std::size_t(std::ranges::find(names, std::string_view(name)) - names.begin()))
{
    if (m_number == names.size())
        throw "not a known key";
}
