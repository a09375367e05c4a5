#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"

#include <QByteArray>
#include <QSize>

#include <functional>

// What the benchmarks work on. The same arguments give the same.
namespace Made
{

// The JPEG bytes of a photo of that stored size, with a sensor's noise, that is turned as EXIF counts (1 to 8).
QByteArray photo(const QSize &stored, int exifOrientation = 1);

// A service's answer with that many matches of ordinary size, so many of them for each ad image.
QByteArray reply(int matches, int matchesPerImage = 4);

// What becomes of an answer's bytes when they have come: `completed` gets the groups.
void handleReply(const QByteArray &reply, const std::function<void(const BrevantoMatchGroupList &)> &completed);
// The groups in an answer.
BrevantoMatchGroupList groups(const QByteArray &reply);

} // namespace Made
