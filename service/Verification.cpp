#include "service/Verification.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/core/hal/intrin.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <set>

namespace MatchService
{

namespace
{

constexpr float ratio = 0.85F;
// Two features of an ad within this distance are the same detail seen at the two indexed sizes.
constexpr float sameDetailDistance = 8;
constexpr double inlierDistance = 4;
constexpr int fewestInliers = 6;
constexpr double lowestCorrelation = 0.25;
constexpr double lowestCoverage = 0.07;
// Few inliers must look alike, and unlike ones be many: either alone happens by chance.
constexpr double lowestWeight = 4.5;
// No other ad comes near these.
constexpr int inliersBeyondDoubt = 25;
constexpr double correlationBeyondDoubt = 0.5;
constexpr double fewestSeenPixels = 0.2;

struct Pairs {
    std::vector<cv::Point2f> inAd;
    std::vector<cv::Point2f> inPhoto;
};

cv::Point2f place(const FeaturePoint &point)
{
    return {point.x, point.y};
}

float squaredLength(const cv::Point2f &vector)
{
    return vector.dot(vector);
}

// A whole matrix of these is what a query spends most of its time on.
int squaredDistance(const unsigned char *one, const unsigned char *two)
{
    cv::v_uint32x4 sum = cv::v_setzero_u32();
    for (int i = 0; i < descriptorLength; i += cv::v_uint8x16::nlanes) {
        const cv::v_uint8x16 difference = cv::v_absdiff(cv::v_load(one + i), cv::v_load(two + i));
        sum += cv::v_dotprod_expand_fast(difference, difference);
    }
    return int(cv::v_reduce_sum(sum));
}

Pairs distinctivePairs(const AdFeatures &ad, const Features &photo)
{
    Pairs pairs;
    const int count = ad.features.descriptors.rows;
    std::vector<int> distances(static_cast<std::size_t>(count));
    for (int row = 0; row < photo.descriptors.rows; ++row) {
        for (int i = 0; i < count; ++i)
            distances[std::size_t(i)] = squaredDistance(photo.descriptors.ptr(row), ad.features.descriptors.ptr(i));
        const auto nearest = std::min_element(distances.begin(), distances.end());
        const cv::Point2f nearestPlace = place(ad.features.points[std::size_t(nearest - distances.begin())]);
        const float allowed = float(*nearest) / (ratio * ratio);
        const auto isRival = [&](std::size_t i) {
            return float(distances[i]) < allowed
                && squaredLength(place(ad.features.points[i]) - nearestPlace) > sameDetailDistance * sameDetailDistance;
        };
        bool isDistinctive = true;
        for (std::size_t i = 0; i < distances.size() && isDistinctive; ++i)
            isDistinctive = !isRival(i);
        if (!isDistinctive)
            continue;
        pairs.inAd.push_back(nearestPlace);
        pairs.inPhoto.push_back(place(photo.points[std::size_t(row)]));
    }
    return pairs;
}

// A view that turns the ad inside out or squeezes it to a line is none that a camera can have.
bool isPlausible(const cv::Mat &homography, const cv::Size &frame, const cv::Size &photo)
{
    const auto width = float(frame.width);
    const auto height = float(frame.height);
    const std::vector<cv::Point2f> corners = {{0, 0}, {width, 0}, {width, height}, {0, height}};
    std::vector<cv::Point2f> seen;
    cv::perspectiveTransform(corners, seen, homography);
    if (!cv::isContourConvex(seen))
        return false;
    const double area = cv::contourArea(seen, true);
    const double photoArea = double(photo.width) * photo.height;
    return area > 0.02 * photoArea && area < 9 * photoArea;
}

double correlationOf(const AdFeatures &ad, const cv::Mat &preparedPhoto, const cv::Matx33d &homography)
{
    const cv::Matx33d shrink(double(ad.frame.width) / ad.thumbnail.cols, 0, 0, 0,
                             double(ad.frame.height) / ad.thumbnail.rows, 0, 0, 0, 1);
    const cv::Matx33d toPhoto = homography * shrink;
    cv::Mat straightened;
    cv::warpPerspective(preparedPhoto, straightened, toPhoto, ad.thumbnail.size(),
                        cv::INTER_AREA | cv::WARP_INVERSE_MAP);
    cv::Mat seen;
    cv::warpPerspective(cv::Mat(preparedPhoto.size(), CV_8U, cv::Scalar(255)), seen, toPhoto, ad.thumbnail.size(),
                        cv::INTER_NEAREST | cv::WARP_INVERSE_MAP);
    if (cv::countNonZero(seen) < fewestSeenPixels * double(seen.total()))
        return 0;

    cv::Scalar meanOne, deviationOne, meanTwo, deviationTwo;
    cv::meanStdDev(straightened, meanOne, deviationOne, seen);
    cv::meanStdDev(ad.thumbnail, meanTwo, deviationTwo, seen);
    const double deviations = deviationOne[0] * deviationTwo[0];
    if (deviations <= 0)
        return 0;
    cv::Mat one, two;
    straightened.convertTo(one, CV_32F, 1, -meanOne[0]);
    ad.thumbnail.convertTo(two, CV_32F, 1, -meanTwo[0]);
    cv::multiply(one, two, one);
    return cv::mean(one, seen)[0] / deviations;
}

} // namespace

bool Evidence::isBeyondDoubt() const
{
    return isEnough() && inliers >= inliersBeyondDoubt && correlation >= correlationBeyondDoubt;
}

bool Evidence::isEnough() const
{
    return inliers >= fewestInliers && correlation >= lowestCorrelation && coverage >= lowestCoverage
        && inliers * correlation >= lowestWeight;
}

std::optional<Evidence> evidenceFor(const AdFeatures &ad, const cv::Mat &preparedPhoto, const Features &photo)
{
    if (ad.features.points.empty() || photo.points.empty())
        return std::nullopt;
    const Pairs pairs = distinctivePairs(ad, photo);
    if (int(pairs.inAd.size()) < fewestInliers)
        return std::nullopt;
    cv::Mat agrees;
    const cv::Mat homography =
        cv::findHomography(pairs.inAd, pairs.inPhoto, cv::USAC_MAGSAC, inlierDistance, agrees, 2000, 0.999);
    if (homography.empty() || !isPlausible(homography, ad.frame, preparedPhoto.size()))
        return std::nullopt;

    // One detail of the photo can answer to many features; places count, not features.
    std::set<std::pair<int, int>> places;
    std::set<std::pair<int, int>> photoPlaces;
    std::vector<cv::Point2f> agreeing;
    for (int i = 0; i < int(pairs.inAd.size()); ++i) {
        if (!agrees.at<unsigned char>(i))
            continue;
        const cv::Point2f inAd = pairs.inAd[std::size_t(i)];
        const cv::Point2f inPhoto = pairs.inPhoto[std::size_t(i)];
        const bool isNewPlace = places.insert({cvRound(inAd.x / 3), cvRound(inAd.y / 3)}).second;
        const bool isNewPhotoPlace = photoPlaces.insert({cvRound(inPhoto.x / 2), cvRound(inPhoto.y / 2)}).second;
        if (isNewPlace && isNewPhotoPlace)
            agreeing.push_back(inAd);
    }
    Evidence evidence;
    evidence.inliers = int(agreeing.size());
    if (evidence.inliers < fewestInliers)
        return evidence;
    std::vector<cv::Point2f> hull;
    cv::convexHull(agreeing, hull);
    evidence.coverage = cv::contourArea(hull) / (double(ad.frame.width) * ad.frame.height);
    evidence.correlation = correlationOf(ad, preparedPhoto, cv::Matx33d(homography));
    return evidence;
}

} // namespace MatchService
