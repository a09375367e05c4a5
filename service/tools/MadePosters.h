#pragma once

#include <opencv2/core.hpp>

namespace Tools
{

/// A made advertisement, 600 pixels wide: a picture, shapes, a headline, small print. The same number gives the same
/// one. Posters share words, type and shapes with each other, as printed ads do.
cv::Mat madePoster(int number);

/// A made ground to lie on: wood, cloth, stone or clutter. The same number gives the same one.
cv::Mat madeGround(int number, const cv::Size &size);

/// Covers part of `area` with things of other colours, about `share` of it.
void coverPartly(cv::Mat &picture, const cv::Rect &area, double share, cv::RNG &random);

} // namespace Tools
