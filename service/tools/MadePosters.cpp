#include "service/tools/MadePosters.h"

#include "service/tools/Photograph.h"

#include <opencv2/imgproc.hpp>

#include <array>
#include <string>

namespace Tools
{

namespace
{

constexpr std::array words = {"FRESH",  "new",    "Taste", "Nature", "SALE",   "Home",   "dream",  "Energy",
                              "Coffee", "summer", "STYLE", "Sound",  "Travel", "pure",   "Garden", "Light",
                              "speed",  "KIDS",   "Water", "gold",   "Today",  "Better", "simple", "CITY",
                              "Ocean",  "Winter", "sport", "Fair",   "MUSIC",  "ride"};

double brightness(const cv::Scalar &colour)
{
    return 0.114 * colour[0] + 0.587 * colour[1] + 0.299 * colour[2];
}

cv::Scalar anyColour(cv::RNG &random)
{
    return {random.uniform(0.0, 255.0), random.uniform(0.0, 255.0), random.uniform(0.0, 255.0)};
}

// A colour that is printed on another must be told from it by its brightness, as designers see to.
cv::Scalar colourAgainst(const cv::Scalar &ground, cv::RNG &random)
{
    cv::Scalar colour = anyColour(random);
    while (std::abs(brightness(colour) - brightness(ground)) < 60)
        colour = anyColour(random);
    return colour;
}

cv::Scalar colourOn(const cv::Mat &picture, const cv::Rect &place, cv::RNG &random)
{
    const cv::Rect seen = place & cv::Rect({}, picture.size());
    return seen.empty() ? anyColour(random) : colourAgainst(cv::mean(picture(seen)), random);
}

cv::Mat blend(const cv::Scalar &from, const cv::Scalar &to, const cv::Mat &weight)
{
    std::vector<cv::Mat> channels;
    channels.reserve(3);
    for (int i = 0; i < 3; ++i)
        channels.push_back(from[i] + (to[i] - from[i]) * weight);
    cv::Mat merged;
    cv::merge(channels, merged);
    merged.convertTo(merged, CV_8UC3);
    return merged;
}

cv::Mat gradient(const cv::Size &size, cv::RNG &random)
{
    cv::Mat weight(size, CV_32F);
    const double angle = random.uniform(0.0, 6.28);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const double along =
                (x / double(size.width) - 0.5) * std::cos(angle) + (y / double(size.height) - 0.5) * std::sin(angle);
            weight.at<float>(y, x) = float(0.5 + along);
        }
    }
    return blend(anyColour(random), anyColour(random), weight);
}

void addPicture(cv::Mat &poster, cv::RNG &random)
{
    const int width = int(poster.cols * random.uniform(0.5, 1.0));
    const int height = int(poster.rows * random.uniform(0.25, 0.6));
    const cv::Rect place(random.uniform(0, poster.cols - width + 1), random.uniform(0, poster.rows - height + 1), width,
                         height);
    cv::Mat weight = softNoise(place.size(), random.uniform(40.0, 160.0), 6, random);
    cv::normalize(weight, weight, 0, 1, cv::NORM_MINMAX);
    const cv::Scalar first = anyColour(random);
    blend(first, colourAgainst(first, random), weight).copyTo(poster(place));
}

void addShape(cv::Mat &poster, cv::RNG &random)
{
    const cv::Point middle(random.uniform(0, poster.cols), random.uniform(0, poster.rows));
    const int size = int(poster.cols * random.uniform(0.04, 0.28));
    const cv::Scalar colour = colourOn(poster, {middle.x - size, middle.y - size, 2 * size, 2 * size}, random);
    const int line = random.uniform(0, 3) == 0 ? random.uniform(3, 14) : cv::FILLED;
    switch (random.uniform(0, 5)) {
    case 0:
        cv::circle(poster, middle, size, colour, line, cv::LINE_AA);
        break;
    case 1:
        cv::rectangle(poster, middle, middle + cv::Point(size, int(size * random.uniform(0.3, 2.0))), colour, line,
                      cv::LINE_AA);
        break;
    case 2:
        cv::ellipse(poster, middle, {size, std::max(4, size / random.uniform(2, 5))}, random.uniform(0.0, 180.0), 0,
                    360, colour, line, cv::LINE_AA);
        break;
    case 3: {
        std::vector<cv::Point> corners;
        corners.reserve(8);
        for (int i = 0; i < random.uniform(3, 8); ++i)
            corners.push_back(middle + cv::Point(random.uniform(-size, size), random.uniform(-size, size)));
        if (corners.size() > 2)
            cv::fillPoly(poster, std::vector{corners}, colour, cv::LINE_AA);
        break;
    }
    default:
        for (int i = 0; i < random.uniform(3, 9); ++i) {
            const cv::Point start = middle + cv::Point(0, i * (size / 6 + 6));
            cv::line(poster, start, start + cv::Point(size, 0), colour, std::max(2, size / 20), cv::LINE_AA);
        }
    }
}

void addText(cv::Mat &poster, double height, int wordCount, cv::RNG &random)
{
    std::string text;
    for (int i = 0; i < wordCount; ++i)
        text += std::string(i ? " " : "") + words[std::size_t(random.uniform(0, int(words.size())))];
    constexpr std::array faces = {cv::FONT_HERSHEY_DUPLEX, cv::FONT_HERSHEY_TRIPLEX, cv::FONT_HERSHEY_COMPLEX,
                                  cv::FONT_HERSHEY_SCRIPT_COMPLEX};
    const int face = faces[std::size_t(random.uniform(0, int(faces.size())))];
    const double scale = height / 22;
    const int thickness = std::max(1, int(height / 9));
    const cv::Point place(int(poster.cols * random.uniform(0.03, 0.3)), int(poster.rows * random.uniform(0.06, 0.98)));
    const cv::Size extent = cv::getTextSize(text, face, scale, thickness, nullptr);
    const cv::Scalar colour = colourOn(poster, {place.x, place.y - extent.height, extent.width, extent.height}, random);
    cv::putText(poster, text, place, face, scale, colour, thickness, cv::LINE_AA);
}

} // namespace

cv::Mat madePoster(int number)
{
    cv::RNG random(0x9E3779B9U + std::uint64_t(number) * 7919U);
    const cv::Size size(600, number % 4 == 3 ? 450 : random.uniform(700, 860));
    cv::Mat poster = gradient(size, random);
    if (random.uniform(0, 4) != 0)
        addPicture(poster, random);
    if (random.uniform(0, 3) == 0)
        addPicture(poster, random);
    const int shapes = random.uniform(4, 16);
    for (int i = 0; i < shapes; ++i)
        addShape(poster, random);
    addText(poster, random.uniform(50.0, 90.0), 1, random);
    addText(poster, random.uniform(30.0, 50.0), 2, random);
    const int lines = random.uniform(2, 8);
    for (int i = 0; i < lines; ++i)
        addText(poster, random.uniform(11.0, 18.0), random.uniform(2, 6), random);
    return poster;
}

cv::Mat madeGround(int number, const cv::Size &size)
{
    cv::RNG random(0x51ED27U + std::uint64_t(number) * 104729U);
    cv::Mat weight;
    switch (number % 4) {
    case 0: // wood: noise drawn out along the grain
        weight = softNoise({std::max(2, size.width / 16), size.height}, 30, 5, random);
        cv::resize(weight, weight, size, 0, 0, cv::INTER_CUBIC);
        break;
    case 1: { // cloth: two crossing weaves
        weight = softNoise(size, 200, 3, random);
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x)
                weight.at<float>(y, x) += 0.06F * float(std::sin(x * 0.9) * std::sin(y * 0.9));
        }
        break;
    }
    default:
        weight = softNoise(size, 120, 6, random);
    }
    cv::normalize(weight, weight, 0, 1, cv::NORM_MINMAX);
    cv::Mat ground = blend(anyColour(random), anyColour(random), weight);
    if (number % 4 == 3) { // clutter: other things lying about
        for (int i = 0; i < 40; ++i)
            addShape(ground, random);
        for (int i = 0; i < 12; ++i)
            addText(ground, random.uniform(14.0, 50.0), 3, random);
    }
    return ground;
}

void coverPartly(cv::Mat &picture, const cv::Rect &area, double share, cv::RNG &random)
{
    double left = share * area.area();
    while (left > 0.005 * area.area()) {
        const int width = int(area.width * random.uniform(0.1, 0.45));
        const int height = std::max(4, std::min(int(left / width), area.height / 2));
        const cv::Point middle(area.x + random.uniform(0, area.width), area.y + random.uniform(0, area.height));
        cv::ellipse(picture,
                    cv::RotatedRect(cv::Point2f(middle), cv::Size2f(float(width), float(height)),
                                    float(random.uniform(0.0, 180.0))),
                    anyColour(random), cv::FILLED, cv::LINE_AA);
        left -= width * height * 0.7;
    }
}

} // namespace Tools
