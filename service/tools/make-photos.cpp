// Makes the demo photos: prints of the catalogue, and two other things, as a phone would have taken them. The list of
// what each one shows is written beside them.

#include "service/tools/Photograph.h"
#include "service/tools/drawing/Ads.h"
#include "service/tools/drawing/Brush.h"
#include "service/tools/drawing/Table.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <functional>

namespace
{

using namespace Drawing;
using Tools::PhotoConditions;

/// Paints what lies about; the print covers the rectangle given.
using Clutter = std::function<void(QPainter &, const QRectF &)>;

struct Shot {
    const char *file;
    /// Name of an ad, or of a strange picture; null for the bare ground.
    const char *subject;
    bool isInCatalogue;
    Ground ground;
    bool isFolded;
    PhotoConditions conditions;
    Clutter clutter;
};

PhotoConditions portrait(double share, double tilt, double tiltDirection, double roll)
{
    PhotoConditions conditions;
    conditions.share = share;
    conditions.tilt = tilt;
    conditions.tiltDirection = tiltDirection;
    conditions.roll = roll;
    conditions.blur = 0.8;
    conditions.noise = 5;
    conditions.darkestSide = 0.7;
    conditions.lightDirection = -60;
    conditions.warmth = 0.04;
    conditions.exposure = 1.2;
    return conditions;
}

PhotoConditions landscape(double share, double tilt, double tiltDirection, double roll)
{
    PhotoConditions conditions = portrait(share, tilt, tiltDirection, roll);
    conditions.size = {1600, 1200};
    return conditions;
}

template <typename Change>
PhotoConditions with(PhotoConditions conditions, Change change)
{
    change(conditions);
    return conditions;
}

std::vector<Shot> shots()
{
    const auto tapedUp = [](QPainter &painter, const QRectF &print) {
        paintTape(painter, print.topLeft() + QPointF(16, 16), 150, -45);
        paintTape(painter, print.topRight() + QPointF(-16, 16), 150, 45);
        paintTape(painter, print.bottomLeft() + QPointF(16, -16), 150, 45);
        paintTape(painter, print.bottomRight() + QPointF(-16, -16), 150, -45);
    };
    return {
        {"01-zumbaro-table", "zumbaro", true, Ground::Oak, false, portrait(0.72, 24, 8, 5),
         [](QPainter &painter, const QRectF &print) {
             paintMug(painter, print.topRight() + QPointF(165, 230), 130, colour("#e9e4d8"));
             paintPen(painter, print.bottomLeft() + QPointF(-110, -260), 420, 74, colour("#24476b"));
         }},
        {"02-velkesta-wall", "velkesta", true, Ground::Plaster, false, landscape(0.66, 28, 96, -3), tapedUp},
        {"03-humlo-magazine", "humlo", true, Ground::Walnut, true,
         with(portrait(0.78, 20, 200, -8), [](PhotoConditions &c) { c.darkestSide = 0.55; }),
         [](QPainter &painter, const QRectF &print) {
             paintKeys(painter, print.bottomRight() + QPointF(120, -200), 150, 30);
             paintNote(painter, print.topLeft() + QPointF(-150, 300), 210, -9, colour("#fff3a3"));
         }},
        {"04-tarnfell-hand", "tarnfell", true, Ground::Slate, false,
         with(portrait(0.7, 17, 310, 9), [](PhotoConditions &c) { c.blur = 1.6; }),
         [](QPainter &painter, const QRectF &print) {
             paintThumb(painter, print.bottomLeft() + QPointF(120, -190), 120, 14, colour("#c68863"));
         }},
        {"05-klozzo-mug", "klozzo", true, Ground::Linen, false, portrait(0.74, 26, 40, -12),
         [](QPainter &painter, const QRectF &print) {
             paintMug(painter, print.bottomRight() + QPointF(-40, -60), 150, colour("#3f6c51"));
             paintPen(painter, print.topLeft() + QPointF(150, -60), 400, 6, colour("#8d1f2d"));
         }},
        {"06-ostrelle-evening", "ostrelle", true, Ground::Walnut, false,
         with(portrait(0.8, 12, 150, 4),
              [](PhotoConditions &c) {
                  c.exposure = 0.7;
                  c.noise = 11;
                  c.warmth = 0.14;
              }),
         [](QPainter &painter, const QRectF &print) {
             paintKeys(painter, print.topLeft() + QPointF(-60, 130), 160, -60);
         }},
        {"07-nattlund-bricks", "nattlund", true, Ground::Brick, false,
         with(portrait(0.55, 30, 268, 2), [](PhotoConditions &c) { c.offsetX = -0.06; }), tapedUp},
        {"08-orvandel-shake", "orvandel", true, Ground::Oak, false,
         with(landscape(0.75, 15, 20, 6),
              [](PhotoConditions &c) {
                  c.shake = 9;
                  c.shakeDirection = 25;
              }),
         [](QPainter &painter, const QRectF &print) {
             paintNote(painter, print.topRight() + QPointF(30, 90), 240, 12, colour("#b9e3c6"));
         }},
        {"09-fernowick-shade", "fernowick", true, Ground::Linen, false,
         with(portrait(0.68, 22, 120, -15),
              [](PhotoConditions &c) {
                  c.darkestSide = 0.35;
                  c.lightDirection = 150;
                  c.noise = 8;
              }),
         [](QPainter &painter, const QRectF &print) {
             paintMug(painter, print.topLeft() + QPointF(-60, 60), 130, colour("#c8553d"));
             paintPen(painter, print.center() + QPointF(150, 420), 430, -35, colour("#1d3557"));
         }},
        {"10-mirukko-counter", "mirukko", true, Ground::Slate, false, landscape(0.7, 33, 330, -6),
         [](QPainter &painter, const QRectF &print) {
             paintMug(painter, print.bottomLeft() + QPointF(-30, 40), 140, colour("#f2ead9"));
         }},
        {"11-zumbaro-far", "zumbaro", true, Ground::Brick, false,
         with(portrait(0.44, 18, 75, -4), [](PhotoConditions &c) { c.offsetY = 0.06; }), tapedUp},
        {"12-klozzo-turned", "klozzo", true, Ground::Oak, true,
         with(landscape(0.62, 20, 220, 84), [](PhotoConditions &c) { c.noise = 9; }),
         [](QPainter &painter, const QRectF &print) {
             paintKeys(painter, print.topRight() + QPointF(70, 40), 140, 110);
         }},
        {"13-recipe", "recipe", false, Ground::Oak, false, portrait(0.76, 21, 25, 7),
         [](QPainter &painter, const QRectF &print) {
             paintMug(painter, print.bottomRight() + QPointF(110, -160), 130, colour("#d9a441"));
         }},
        {"14-map", "map", false, Ground::Walnut, true, portrait(0.82, 16, 190, -6),
         [](QPainter &painter, const QRectF &print) {
             paintPen(painter, print.center() + QPointF(0, 120), 440, 48, colour("#24476b"));
             paintKeys(painter, print.topLeft() + QPointF(30, 150), 150, 15);
         }},
    };
}

QImage pictureOf(const QString &subject)
{
    for (const auto *pictures : {&adPictures(), &strangePictures()}) {
        for (const Picture &picture : *pictures) {
            const QString path = QString::fromLatin1(picture.path);
            if (path == subject || path == QStringLiteral("ads/%1.jpg").arg(subject))
                return picture.draw();
        }
    }
    return {};
}

Tools::Scene sceneOf(const Shot &shot, quint32 seed)
{
    const QImage print = pictureOf(QString::fromLatin1(shot.subject));
    const int margin = int(1.1 * print.width());
    QImage plane = ground(shot.ground, print.size() + QSize(2 * margin, 2 * margin), seed);
    const QRect place(QPoint(margin, margin), print.size());
    QPainter painter(&plane);
    painter.setRenderHint(QPainter::Antialiasing);
    paintSheetShadow(painter, place);
    painter.drawImage(place.topLeft(), print);
    paintSheetGloss(painter, place, shot.isFolded);
    shot.clutter(painter, place);
    painter.end();

    const cv::Mat view(plane.height(), plane.width(), CV_8UC4, plane.bits(), std::size_t(plane.bytesPerLine()));
    Tools::Scene scene;
    cv::cvtColor(view, scene.picture, cv::COLOR_BGRA2BGR);
    scene.print = cv::Rect(place.x(), place.y(), place.width(), place.height());
    return scene;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    // Nothing is shown, so no display is needed.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    cv::RNG random(2026);
    quint32 seed = 1;
    QJsonArray list;
    for (const Shot &shot : shots()) {
        const std::string name = std::string(shot.file) + ".jpg";
        const cv::Mat photo = Tools::photograph(sceneOf(shot, seed++), shot.conditions, random);
        if (!cv::imwrite(std::string(argv[1]) + "/" + name, photo, {cv::IMWRITE_JPEG_QUALITY, 78})) {
            std::fprintf(stderr, "cannot write %s\n", name.c_str());
            return 1;
        }
        const QJsonValue shown = shot.isInCatalogue ? QJsonValue(QString::fromLatin1(shot.subject)) : QJsonValue();
        list.append(
            QJsonObject{{QStringLiteral("photo"), QString::fromStdString(name)}, {QStringLiteral("shows"), shown}});
    }
    QFile file(QString::fromLocal8Bit(argv[1]) + QStringLiteral("/photos.json"));
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(list).toJson()) < 0) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(file.fileName()));
        return 1;
    }
    return 0;
}
