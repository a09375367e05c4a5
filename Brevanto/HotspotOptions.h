#pragma once

#include <QStringList>

class BrevantoMatch;

enum class HotspotAction { MoreInformation, Video, Audio, MakeCall, PhotoGallery, BuyItNow };

// Titles and icon names of what the marker of a match offers: the actions for which the match carries data, parallel
// and in the order in which they are listed.
struct HotspotOptions {
    QStringList titles;
    QStringList icons;

    static HotspotOptions offeredBy(const BrevantoMatch &match);
    // What all the actions are, in a sentence each, for those who meet a marker for the first time.
    static HotspotOptions explained();
    // The action of that title; of an unknown one, the last.
    static HotspotAction action(const QString &title);
};
