#pragma once

#include <opencv2/core.hpp>

namespace Tools
{

/// How a made photo is taken of a flat print lying on (or hanging before) a flat ground.
struct PhotoConditions {
    cv::Size size{1200, 1600};
    /// Degrees between the line of sight and the print's upright, leaning towards `tiltDirection` (degrees).
    double tilt = 0;
    double tiltDirection = 0;
    /// Turn within the picture, degrees.
    double roll = 0;
    /// Width of the print as a share of the photo's width.
    double share = 0.7;
    /// Offset of the print's middle from the photo's middle, as shares of the photo's width and height.
    double offsetX = 0;
    double offsetY = 0;
    /// Standard deviation of the defocus blur and length of the shake in the photo's pixels.
    double blur = 0;
    double shake = 0;
    double shakeDirection = 0;
    /// Standard deviation of the sensor's noise, 0 to 255.
    double noise = 0;
    /// Brightness of the darkest side of the scene; 1 for even light.
    double darkestSide = 1;
    double lightDirection = 0;
    double exposure = 1;
    /// Blue against red of the light, 0 for white.
    double warmth = 0;
};

/// A print on its ground, seen from straight above. `print` is the print's rectangle in it.
struct Scene {
    cv::Mat picture;
    cv::Rect print;
};

/// A ground of `margin` print widths around the print, made from a texture that is repeated as needed.
Scene sceneWith(const cv::Mat &print, const cv::Mat &texture, double margin);

/// The 8-bit colour photo. The same generator state gives the same photo.
cv::Mat photograph(const Scene &scene, const PhotoConditions &conditions, cv::RNG &random);

/// What the SDK uploads of a photo: 480 pixels wide (640 when landscape), grey, JPEG of the lowest quality.
std::vector<unsigned char> uploadOf(const cv::Mat &photo);

/// Soft random pattern between 0 and 1 (CV_32F) whose largest features are `cell` pixels wide.
cv::Mat softNoise(const cv::Size &size, double cell, int octaves, cv::RNG &random);

} // namespace Tools
