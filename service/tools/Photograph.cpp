#include "service/tools/Photograph.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace Tools
{

namespace
{

double radians(double degrees)
{
    return degrees * CV_PI / 180;
}

// The print is one unit wide, centred on the origin, and the camera looks at it from a distance along z.
cv::Matx33d rotation(const PhotoConditions &conditions)
{
    const double direction = radians(conditions.tiltDirection);
    const cv::Vec3d axis = cv::Vec3d(std::cos(direction), std::sin(direction), 0) * radians(conditions.tilt);
    const double angle = cv::norm(axis);
    cv::Matx33d lean = cv::Matx33d::eye();
    if (angle > 0) {
        const cv::Vec3d k = axis / angle;
        const cv::Matx33d cross(0, -k[2], k[1], k[2], 0, -k[0], -k[1], k[0], 0);
        lean = cv::Matx33d::eye() + std::sin(angle) * cross + (1 - std::cos(angle)) * cross * cross;
    }
    const double roll = radians(conditions.roll);
    const cv::Matx33d turn(std::cos(roll), -std::sin(roll), 0, std::sin(roll), std::cos(roll), 0, 0, 0, 1);
    return turn * lean;
}

cv::Rect2d bounds(const cv::Matx33d &view, double height)
{
    const std::vector<cv::Point2d> corners = {
        {-0.5, -height / 2}, {0.5, -height / 2}, {0.5, height / 2}, {-0.5, height / 2}};
    std::vector<cv::Point2d> seen;
    cv::perspectiveTransform(corners, seen, view);
    double left = seen[0].x, right = left, top = seen[0].y, bottom = top;
    for (const cv::Point2d &point : seen) {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        top = std::min(top, point.y);
        bottom = std::max(bottom, point.y);
    }
    return {left, top, right - left, bottom - top};
}

cv::Matx33d viewOf(const cv::Size &print, const PhotoConditions &conditions)
{
    const double height = double(print.height) / print.width;
    const double focal = 1.15 * std::max(conditions.size.width, conditions.size.height);
    const cv::Matx33d turned = rotation(conditions);
    double distance = focal / (conditions.share * conditions.size.width);
    cv::Matx33d view;
    // The nearer side grows as the camera comes closer, so the distance that gives the wanted share is approached.
    for (int step = 0; step < 8; ++step) {
        const cv::Matx33d place(turned(0, 0), turned(0, 1), 0, turned(1, 0), turned(1, 1), 0, turned(2, 0),
                                turned(2, 1), distance);
        view = cv::Matx33d(focal, 0, 0, 0, focal, 0, 0, 0, 1) * place;
        distance *= bounds(view, height).width / (conditions.share * conditions.size.width);
    }
    const cv::Rect2d box = bounds(view, height);
    const double x = conditions.size.width * (0.5 + conditions.offsetX) - (box.x + box.width / 2);
    const double y = conditions.size.height * (0.5 + conditions.offsetY) - (box.y + box.height / 2);
    return cv::Matx33d(1, 0, x, 0, 1, y, 0, 0, 1) * view;
}

cv::Mat shakeKernel(double length, double direction)
{
    const int side = 2 * int(std::ceil(length / 2)) + 1;
    cv::Mat kernel = cv::Mat::zeros(side, side, CV_32F);
    const cv::Point2d middle(side / 2.0 - 0.5, side / 2.0 - 0.5);
    const cv::Point2d reach(std::cos(radians(direction)) * length / 2, std::sin(radians(direction)) * length / 2);
    cv::line(kernel, middle - reach, middle + reach, cv::Scalar(1), 1, cv::LINE_8);
    return kernel / cv::sum(kernel)[0];
}

void light(cv::Mat &picture, const PhotoConditions &conditions)
{
    const cv::Point2d across(std::cos(radians(conditions.lightDirection)),
                             std::sin(radians(conditions.lightDirection)));
    const double reach = std::hypot(picture.cols, picture.rows) / 2;
    for (int y = 0; y < picture.rows; ++y) {
        auto *line = picture.ptr<cv::Vec3f>(y);
        for (int x = 0; x < picture.cols; ++x) {
            const cv::Point2d place((x - picture.cols / 2.0) / reach, (y - picture.rows / 2.0) / reach);
            const double along = 0.5 + 0.5 * place.dot(across);
            const double vignette = 1 - 0.22 * place.dot(place);
            const double brightness =
                conditions.exposure * vignette * (conditions.darkestSide + (1 - conditions.darkestSide) * along);
            line[x][0] *= float(brightness * (1 - conditions.warmth));
            line[x][1] *= float(brightness);
            line[x][2] *= float(brightness * (1 + conditions.warmth));
        }
    }
}

} // namespace

Scene sceneWith(const cv::Mat &print, const cv::Mat &texture, double margin)
{
    const int border = int(margin * print.cols);
    Scene scene;
    scene.print = cv::Rect(border, border, print.cols, print.rows);
    const cv::Size size(print.cols + 2 * border, print.rows + 2 * border);
    cv::copyMakeBorder(texture, scene.picture, 0, std::max(0, size.height - texture.rows), 0,
                       std::max(0, size.width - texture.cols), cv::BORDER_REFLECT);
    scene.picture = scene.picture(cv::Rect({}, size)).clone();
    print.copyTo(scene.picture(scene.print));
    return scene;
}

cv::Mat photograph(const Scene &scene, const PhotoConditions &conditions, cv::RNG &random)
{
    const double unit = scene.print.width;
    const cv::Matx33d toUnits(1 / unit, 0, -(scene.print.x + unit / 2) / unit, 0, 1 / unit,
                              -(scene.print.y + scene.print.height / 2.0) / unit, 0, 0, 1);
    const cv::Matx33d view = viewOf(scene.print.size(), conditions) * toUnits;
    cv::Mat source = scene.picture;
    const double shrink = unit / (conditions.share * conditions.size.width);
    if (shrink > 1.2)
        cv::GaussianBlur(source, source, {}, 0.45 * shrink);
    cv::Mat photo;
    cv::warpPerspective(source, photo, view, conditions.size, cv::INTER_LINEAR, cv::BORDER_REFLECT);
    if (conditions.shake >= 1)
        cv::filter2D(photo, photo, -1, shakeKernel(conditions.shake, conditions.shakeDirection));
    if (conditions.blur > 0)
        cv::GaussianBlur(photo, photo, {}, conditions.blur);
    photo.convertTo(photo, CV_32FC3);
    light(photo, conditions);
    if (conditions.noise > 0) {
        cv::Mat noise(photo.size(), CV_32FC3);
        random.fill(noise, cv::RNG::NORMAL, 0, conditions.noise);
        photo += noise;
    }
    photo.convertTo(photo, CV_8UC3);
    return photo;
}

std::vector<unsigned char> uploadOf(const cv::Mat &photo)
{
    const int width = photo.cols > photo.rows ? 640 : 480;
    cv::Mat small, grey;
    cv::resize(photo, small, cv::Size(width, photo.rows * width / photo.cols), 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, grey, cv::COLOR_BGR2GRAY);
    std::vector<unsigned char> jpeg;
    cv::imencode(".jpg", grey, jpeg, {cv::IMWRITE_JPEG_QUALITY, 0});
    return jpeg;
}

cv::Mat softNoise(const cv::Size &size, double cell, int octaves, cv::RNG &random)
{
    cv::Mat sum = cv::Mat::zeros(size, CV_32F);
    double weight = 1;
    double total = 0;
    for (int octave = 0; octave < octaves; ++octave, cell /= 2, weight /= 2) {
        const cv::Size cells(std::max(2, int(size.width / cell) + 2), std::max(2, int(size.height / cell) + 2));
        cv::Mat coarse(cells, CV_32F);
        random.fill(coarse, cv::RNG::UNIFORM, 0, 1);
        cv::Mat fine;
        cv::resize(coarse, fine, size, 0, 0, cv::INTER_CUBIC);
        sum += weight * fine;
        total += weight;
    }
    return sum / total;
}

} // namespace Tools
