// Draws the pictures of the catalogue into the folder given.

#include "service/tools/drawing/Ads.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QGuiApplication>

#include <cstdio>
#include <cstdlib>

namespace
{

bool save(const std::vector<Drawing::Picture> &pictures, const QString &folder, int quality)
{
    for (const Drawing::Picture &picture : pictures) {
        const QString path = folder + QLatin1Char('/') + QString::fromLatin1(picture.path);
        if (QDir().mkpath(QFileInfo(path).path()) && picture.draw().save(path, "JPEG", quality))
            continue;
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CATALOGUE\n", argv[0]);
        return 2;
    }
    // Nothing is shown, so no display is needed.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    return save(Drawing::adPictures(), folder, 82) && save(Drawing::galleryPictures(), folder, 80) ? 0 : 1;
}
