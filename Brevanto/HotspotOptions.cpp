#include "Brevanto/HotspotOptions.h"

#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatch.h"

namespace
{

struct Option {
    QLatin1StringView title;
    QLatin1StringView icon;
    bool (*isOfferedBy)(const BrevantoMatch &match);
};

template <auto field>
bool hasData(const BrevantoMatch &match)
{
    return !BrevantoFields::text((match.*field)()).isEmpty();
}

bool hasGallery(const BrevantoMatch &match)
{
    return !match.galleryDataSource().isEmpty();
}

constexpr Option options[] = {
    {QLatin1StringView("More Information"), QLatin1StringView("ic_info"), hasData<&BrevantoMatch::reviewUrl>},
    {QLatin1StringView("Video"), QLatin1StringView("ic_video"), hasData<&BrevantoMatch::youTubeVideoUrl>},
    {QLatin1StringView("Audio"), QLatin1StringView("ic_audio"), hasData<&BrevantoMatch::audioUrl>},
    {QLatin1StringView("Make Call"), QLatin1StringView("ic_call"), hasData<&BrevantoMatch::phoneNumber>},
    {QLatin1StringView("Photo Gallery"), QLatin1StringView("ic_gallery"), hasGallery},
    {QLatin1StringView("Buy it now"), QLatin1StringView("ic_buy"), hasData<&BrevantoMatch::buyUrl>},
};

} // namespace

HotspotOptions HotspotOptions::offeredBy(const BrevantoMatch &match)
{
    HotspotOptions offered;
    for (const Option &option : options) {
        if (!option.isOfferedBy(match))
            continue;
        offered.titles.append(option.title);
        offered.icons.append(option.icon);
    }
    return offered;
}
