#pragma once

#include "service/Features.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace MatchService
{

/// An ad found in a photo, with what spoke for it.
struct Recognition {
    std::size_t ad = 0;
    /// Features that agree with one view of the ad, each place counted once.
    int inliers = 0;
    /// How alike the straightened photo and the ad are, from -1 to 1.
    double correlation = 0;
    /// Share of the ad's area that the agreeing features span, from 0 to 1.
    double coverage = 0;
};

/// Says which of a fixed set of ads a photo shows. Built once; `recognize` may then be called from any number of
/// threads and uses only the calling one.
class Recognizer
{
public:
    explicit Recognizer(std::vector<AdFeatures> ads);
    ~Recognizer();

    Recognizer(const Recognizer &) = delete;
    Recognizer &operator=(const Recognizer &) = delete;

    /// The ad that an 8-bit grey photo shows, by its position in the list given at construction; nothing when no ad
    /// stands every test.
    std::optional<Recognition> recognize(const cv::Mat &grey) const;

private:
    class Index;

    std::vector<AdFeatures> m_ads;
    std::unique_ptr<Index> m_index;
};

} // namespace MatchService
