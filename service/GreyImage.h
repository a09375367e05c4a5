#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <opencv2/core.hpp>

namespace MatchService
{

/// An 8-bit grey picture, upright, or why there is none.
struct GreyImage {
    cv::Mat pixels;
    /// Null when there are pixels.
    QString fault;
};

/// Decodes a JPEG or PNG of one's own. One with more pixels than phones take is refused by its header, before memory is
/// spent on it.
GreyImage readGreyImage(const QByteArray &bytes);
/// Decodes a JPEG from anywhere. Refuses, beyond that, what would take memory or time out of proportion to its size.
GreyImage readPhoto(const QByteArray &bytes);

} // namespace MatchService
