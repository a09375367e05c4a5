#pragma once

#include <QStringList>

class BrevantoMatch;

// Titles and icon names of what the marker of a match offers: the actions for which the match carries data, parallel
// and in the order in which they are listed.
struct HotspotOptions {
    QStringList titles;
    QStringList icons;

    static HotspotOptions offeredBy(const BrevantoMatch &match);
};
