#include "service/Features.h"

#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cmath>

namespace MatchService
{

namespace
{

constexpr int photoFeatureLimit = 800;
constexpr int adFeatureLimit = 700;
constexpr double contrastThreshold = 0.03;
constexpr double edgeThreshold = 12;
// The lowest JPEG quality leaves blocks of eight pixels; this much blur takes most of their edges away.
constexpr double blurSigma = 2.0;
constexpr double photoArea = 640.0 * 854.0;
constexpr double adFrameSide = 300;
constexpr std::array adIndexSides = {150.0, 220.0};
constexpr double thumbnailSide = 64;

double side(const cv::Size &size)
{
    return std::sqrt(double(size.width) * size.height);
}

cv::Size scaledSize(const cv::Size &size, double factor)
{
    return {std::max(1, int(std::lround(size.width * factor))), std::max(1, int(std::lround(size.height * factor)))};
}

cv::Mat resized(const cv::Mat &image, const cv::Size &size)
{
    cv::Mat result;
    const bool shrinks = size.area() < image.size().area();
    cv::resize(image, result, size, 0, 0, shrinks ? cv::INTER_AREA : cv::INTER_CUBIC);
    return result;
}

cv::Mat blurredAndHalved(const cv::Mat &grey)
{
    cv::Mat blurred;
    cv::GaussianBlur(grey, blurred, {}, blurSigma);
    return resized(blurred, scaledSize(grey.size(), 0.5));
}

// Square roots of the shares of the sum: distances then compare histograms rather than single strong bins.
void storeAsRootSift(const float *from, unsigned char *to)
{
    float sum = 0;
    for (int i = 0; i < descriptorLength; ++i)
        sum += from[i];
    if (sum <= 0)
        return;
    for (int i = 0; i < descriptorLength; ++i)
        to[i] = cv::saturate_cast<unsigned char>(512.0F * std::sqrt(from[i] / sum));
}

Features detected(const cv::Mat &image, int limit)
{
    const auto sift = cv::SIFT::create(limit, 3, contrastThreshold, edgeThreshold);
    std::vector<cv::KeyPoint> keyPoints;
    cv::Mat sums;
    sift->detectAndCompute(image, cv::noArray(), keyPoints, sums);

    Features features;
    features.descriptors = cv::Mat(int(keyPoints.size()), descriptorLength, CV_8U, cv::Scalar(0));
    features.points.reserve(keyPoints.size());
    for (int row = 0; row < int(keyPoints.size()); ++row) {
        const cv::KeyPoint &point = keyPoints[std::size_t(row)];
        features.points.push_back({point.pt.x, point.pt.y, point.size, point.angle});
        storeAsRootSift(sums.ptr<float>(row), features.descriptors.ptr(row));
    }
    return features;
}

} // namespace

cv::Mat preparedPhoto(const cv::Mat &grey)
{
    const double area = double(grey.cols) * grey.rows;
    if (area <= photoArea)
        return blurredAndHalved(grey);
    return blurredAndHalved(resized(grey, scaledSize(grey.size(), std::sqrt(photoArea / area))));
}

Features featuresOfPhoto(const cv::Mat &preparedPhoto)
{
    return detected(preparedPhoto, photoFeatureLimit);
}

AdFeatures featuresOfAd(const cv::Mat &grey)
{
    AdFeatures ad;
    ad.frame = scaledSize(grey.size(), adFrameSide / side(grey.size()));
    for (const double indexSide : adIndexSides) {
        const cv::Mat view =
            blurredAndHalved(resized(grey, scaledSize(grey.size(), 2 * indexSide / side(grey.size()))));
        const Features found = detected(view, adFeatureLimit);
        const float factorX = float(ad.frame.width) / float(view.cols);
        const float factorY = float(ad.frame.height) / float(view.rows);
        for (const FeaturePoint &point : found.points)
            ad.features.points.push_back({point.x * factorX, point.y * factorY, point.size * factorX, point.angle});
        ad.features.descriptors.push_back(found.descriptors);
    }
    const cv::Mat view = blurredAndHalved(resized(grey, scaledSize(ad.frame, 2)));
    ad.thumbnail = resized(view, scaledSize(ad.frame, thumbnailSide / adFrameSide));
    return ad;
}

int featuresVersion()
{
    return 1;
}

} // namespace MatchService
