#pragma once

#include <QtGui/QImage>

#include <vector>

namespace Drawing
{

/// A picture of the catalogue and its path in it.
struct Picture {
    const char *path;
    QImage (*draw)();
};

/// The printed ads.
const std::vector<Picture> &adPictures();
/// The pictures of galleries and related items.
const std::vector<Picture> &galleryPictures();
/// Prints that no ad of the catalogue shows, for photos that must not be recognised.
const std::vector<Picture> &strangePictures();

// Defined across several files, one group each.
QImage zumbaroAd();
QImage mirukkoAd();
QImage fernowickAd();
QImage velkestaAd();
QImage tarnfellAd();
QImage klozzoAd();
QImage humloAd();
QImage ostrelleAd();
QImage nattlundAd();
QImage orvandelAd();

} // namespace Drawing
