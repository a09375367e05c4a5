#pragma once

#include "service/Features.h"

#include <optional>

namespace MatchService
{

/// How well a photo bears out that it shows one given ad.
struct Evidence {
    int inliers = 0;
    double correlation = 0;
    double coverage = 0;

    bool isEnough() const;
    /// So much that looking for a better ad is idle.
    bool isBeyondDoubt() const;
};

/// Looks for one plane view of the ad in the photo. Nothing when the features allow none.
std::optional<Evidence> evidenceFor(const AdFeatures &ad, const cv::Mat &preparedPhoto, const Features &photo);

} // namespace MatchService
