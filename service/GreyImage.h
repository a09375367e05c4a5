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

/// Decodes a JPEG or PNG. One with more pixels than phones take is refused by its header, before memory is spent on it.
GreyImage readGreyImage(const QByteArray &bytes);

} // namespace MatchService
