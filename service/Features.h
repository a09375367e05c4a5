#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace MatchService
{

/// Where a feature was found: the place in pixels of the image it was taken from, its size in the same pixels and its
/// direction in degrees.
struct FeaturePoint {
    float x = 0;
    float y = 0;
    float size = 0;
    float angle = 0;
};

constexpr int descriptorLength = 128;

/// Local features of one image: one point and one row of `descriptorLength` bytes each.
struct Features {
    std::vector<FeaturePoint> points;
    cv::Mat descriptors;
};

/// What recognition keeps of one ad. Points are in pixels of `thumbnail`'s frame, an image of the ad whose area is
/// `adFrameArea`.
struct AdFeatures {
    cv::Size frame;
    Features features;
    cv::Mat thumbnail;
};

/// The grey photo as recognition sees it: blurred, at half size, and never larger than the photos that phones upload.
/// Points found in it are in its own pixels.
cv::Mat preparedPhoto(const cv::Mat &grey);

Features featuresOfPhoto(const cv::Mat &preparedPhoto);

/// Features of an ad from its clean grey picture. A picture without any structure has none.
AdFeatures featuresOfAd(const cv::Mat &grey);

/// Changes whenever the same picture would give other features; part of every cached record's name.
int featuresVersion();

} // namespace MatchService
