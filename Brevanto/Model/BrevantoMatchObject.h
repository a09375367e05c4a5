#pragma once

#include <QJsonObject>
#include <QVariant>

#include <algorithm>
#include <array>
#include <string_view>

// The keys of a match in the service's JSON, in alphabetical order.
inline constexpr auto brevantoMatchKeys = std::to_array<std::string_view>({
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
static_assert(std::ranges::is_sorted(brevantoMatchKeys));

// One of these keys, found while compiling; a key that is not among them does not compile.
struct BrevantoMatchKey {
    consteval BrevantoMatchKey(const char *name)
        : index(std::size_t(std::ranges::find(brevantoMatchKeys, std::string_view(name)) - brevantoMatchKeys.begin()))
    {
        if (index == brevantoMatchKeys.size())
            throw "no key of a match";
    }

    std::size_t index;
};

// The value as a record field keeps it; null unless it is valid (BrevantoBaseEntity::isValid).
template <class JsonValue>
QVariant brevantoValidValue(const JsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
    case QJsonValue::Null:
        return {};
    case QJsonValue::String: {
        const QString text = value.toString();
        return text.isEmpty() ? QVariant() : QVariant(text);
    }
    default:
        return value.toVariant();
    }
}

// A match as the service sent it. All its values are found in one walk, side by side with the list of keys, which takes
// half the time of looking each of them up. Refers to the JSON object, which must outlive it.
class BrevantoMatchObject
{
public:
    explicit BrevantoMatchObject(const QJsonObject &object)
        : m_object(object)
    {
        m_positions.fill(-1);
        // A JSON object keeps its keys in alphabetical order, too.
        auto key = brevantoMatchKeys.begin();
        int position = 0;
        for (auto entry = object.begin(); entry != object.end(); ++entry, ++position) {
            const QString name = entry.key();
            int order = 1;
            while (key != brevantoMatchKeys.end() && (order = name.compare(latin(*key))) > 0)
                ++key;
            if (order == 0)
                m_positions[std::size_t(key - brevantoMatchKeys.begin())] = position;
        }
    }

    // Undefined when it is missing.
    QJsonValue value(BrevantoMatchKey key) const
    {
        const int position = m_positions[key.index];
        return position < 0 ? QJsonValue(QJsonValue::Undefined) : QJsonValue(*(m_object.begin() + position));
    }

    QVariant validValue(BrevantoMatchKey key) const
    {
        const int position = m_positions[key.index];
        return position < 0 ? QVariant() : brevantoValidValue(*(m_object.begin() + position));
    }

private:
    static QLatin1StringView latin(std::string_view key) { return {key.data(), qsizetype(key.size())}; }

    const QJsonObject &m_object;
    std::array<int, brevantoMatchKeys.size()> m_positions;
};
