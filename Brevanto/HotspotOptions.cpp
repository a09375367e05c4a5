#include "Brevanto/HotspotOptions.h"

#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatch.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

struct Option {
    HotspotAction action;
    QLatin1StringView title;
    QLatin1StringView explanation;
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
    {HotspotAction::MoreInformation, "More Information"_L1, "Get more information on the product"_L1, "ic_info"_L1,
     hasData<&BrevantoMatch::reviewUrl>},
    {HotspotAction::Video, "Video"_L1, "Watch a video of the product"_L1, "ic_video"_L1,
     hasData<&BrevantoMatch::youTubeVideoUrl>},
    {HotspotAction::Audio, "Audio"_L1, "Listen to a promo audio clip"_L1, "ic_audio"_L1,
     hasData<&BrevantoMatch::audioUrl>},
    {HotspotAction::MakeCall, "Make Call"_L1, "Call the brand"_L1, "ic_call"_L1, hasData<&BrevantoMatch::phoneNumber>},
    {HotspotAction::PhotoGallery, "Photo Gallery"_L1, "View more images of the product"_L1, "ic_gallery"_L1,
     hasGallery},
    {HotspotAction::BuyItNow, "Buy it now"_L1, "Buy the product right now"_L1, "ic_buy"_L1,
     hasData<&BrevantoMatch::buyUrl>},
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

HotspotOptions HotspotOptions::explained()
{
    HotspotOptions all;
    for (const Option &option : options) {
        all.titles.append(option.explanation);
        all.icons.append(option.icon);
    }
    return all;
}

HotspotAction HotspotOptions::action(const QString &title)
{
    const Option *found = std::find_if(std::begin(options), std::end(options),
                                       [&title](const Option &option) { return option.title == title; });
    return found == std::end(options) ? HotspotAction::BuyItNow : found->action;
}
