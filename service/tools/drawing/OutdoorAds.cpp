#include "service/tools/drawing/Ads.h"
#include "service/tools/drawing/Brush.h"
#include "service/tools/drawing/Products.h"

namespace Drawing
{

namespace
{

void paintPine(QPainter &painter, const QPointF &foot, double height, const QColor &green)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(green);
    for (int tier = 0; tier < 5; ++tier) {
        const double y = foot.y() - height * (0.08 + tier * 0.17);
        const double half = height * (0.26 - tier * 0.045);
        painter.drawPolygon(QPolygonF(
            {QPointF(foot.x() - half, y), QPointF(foot.x() + half, y), QPointF(foot.x(), y - height * 0.27)}));
    }
    painter.drawRect(QRectF(foot.x() - height * 0.02, foot.y() - height * 0.1, height * 0.04, height * 0.1));
}

} // namespace

QImage velkestaAd()
{
    QImage picture(1200, 900, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), downwards(picture.rect(), colour("#2b2d6e"), colour("#ff9e7a")));
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow({860, 400}, 150, colour("#fff3c4"), colour("#ffcf70")));
    painter.drawEllipse(QPointF(860, 400), 130, 130);
    for (int i = 0; i < 6; ++i)
        painter.fillRect(QRectF(700, 420 + i * 20, 330, 3 + i * 1.6), colour("#e97f73"));
    painter.fillPath(ridge({0, 380, 1200, 520}, 200, 0.5, 14), colour("#7d4e8a"));
    painter.fillPath(ridge({0, 470, 1200, 430}, 180, 0.45, 22), colour("#55396f"));
    painter.fillPath(ridge({0, 560, 1200, 340}, 130, 0.4, 31), colour("#33264f"));
    QRandomGenerator random(2);
    for (int i = 0; i < 34; ++i)
        paintPine(painter, {random.bounded(1200.0), 700 + random.bounded(40.0)}, 50 + random.bounded(90.0),
                  colour("#1c1836"));
    painter.fillRect(QRectF(0, 725, 1200, 175), downwards({0, 725, 1, 175}, colour("#f2c6a0"), colour("#b98067")));
    for (int i = 0; i < 260; ++i)
        painter.fillRect(QRectF(random.bounded(1200.0), 730 + random.bounded(165.0), 6 + random.bounded(26.0), 1.5),
                         colour("#7c4f44", 0.5));
    addGroundShadow(painter, {540, 795}, 760, 46, 0.55);
    paintBicycle(painter, {205, 350, 700, 434}, colour("#18c29c"), colour("#14122b"));
    writeWide(painter, {60, 60, 620, 112}, "VELKESTA", sans(150, QFont::Black), colour("#ffe9d6"));
    write(painter, {64, 190, 560, 120}, "Take the long way home.",
          {sans(44, QFont::Light), Qt::white, Qt::AlignLeft, 0});
    write(painter, {905, 60, 240, 140}, "Meridian 9\n9.4 kg  ·  11 gears\ncarbon belt drive",
          {sans(26, QFont::DemiBold), colour("#ffe9d6"), Qt::AlignRight, 0});
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#18c29c"));
    painter.drawRoundedRect(QRectF(890, 792, 260, 70), 12, 12);
    write(painter, {890, 792, 260, 70}, "Test ride free",
          {sans(30, QFont::Bold), colour("#14122b"), Qt::AlignCenter, 0});
    write(painter, {60, 840, 700, 40}, "Built to order in four weeks. Price without lights: 1,940.",
          {sans(19), colour("#3b1f1b"), Qt::AlignLeft, 0});
    painter.end();
    addGrain(picture, 6, 4);
    return picture;
}

QImage tarnfellAd()
{
    QImage picture(900, 1200, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), downwards(picture.rect(), colour("#9bd1e5"), colour("#f5f1e3")));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#fff8e1"));
    painter.drawEllipse(QPointF(690, 250), 92, 92);
    QPolygonF peak({QPointF(60, 800), QPointF(330, 330), QPointF(400, 410), QPointF(470, 300), QPointF(640, 560),
                    QPointF(700, 500), QPointF(930, 800)});
    painter.setBrush(colour("#5b7c99"));
    painter.drawPolygon(peak);
    painter.setBrush(colour("#45637d"));
    painter.drawPolygon(QPolygonF({QPointF(470, 300), QPointF(640, 560), QPointF(560, 800), QPointF(430, 620)}));
    painter.drawPolygon(QPolygonF({QPointF(330, 330), QPointF(400, 410), QPointF(330, 800), QPointF(260, 620)}));
    painter.setBrush(Qt::white);
    painter.drawPolygon(QPolygonF({QPointF(470, 300), QPointF(520, 378), QPointF(488, 420), QPointF(462, 380),
                                   QPointF(432, 430), QPointF(418, 380)}));
    painter.drawPolygon(QPolygonF({QPointF(330, 330), QPointF(370, 376), QPointF(344, 430), QPointF(320, 400),
                                   QPointF(290, 450), QPointF(278, 420)}));
    painter.fillPath(ridge({0, 610, 900, 590}, 170, 0.5, 41), colour("#2c6e63"));
    painter.fillPath(ridge({0, 720, 900, 480}, 140, 0.45, 52), colour("#1d4d47"));
    QRandomGenerator random(17);
    for (int i = 0; i < 60; ++i)
        paintPine(painter, {random.bounded(900.0), 810 + random.bounded(80.0)}, 60 + random.bounded(80.0),
                  i % 2 ? colour("#12332f") : colour("#27695a"));
    painter.fillPath(ridge({0, 900, 900, 300}, 70, 0.5, 63), colour("#d9b382"));
    for (int i = 0; i < 150; ++i) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour(i % 2 ? "#8c6a45" : "#b38b5d"));
        const double size = 3 + random.bounded(12.0);
        painter.drawEllipse(QPointF(random.bounded(900.0), 985 + random.bounded(215.0)), size, size * 0.55);
    }
    addGroundShadow(painter, {470, 1105}, 700, 60, 0.6);
    paintBoot(painter, {170, 640, 590, 480}, colour("#a65628"), colour("#26211f"));
    writeWide(painter, {70, 50, 560, 112}, "TARNFELL", sans(120, QFont::ExtraBold), colour("#12332f"));
    write(painter, {74, 175, 520, 100}, "Boots that remember the mountain.",
          {serif(32, true), colour("#1d4d47"), Qt::AlignLeft, 0});
    painter.save();
    painter.translate(800, 470);
    painter.rotate(14);
    painter.setPen(QPen(Qt::white, 4));
    painter.setBrush(colour("#d62828"));
    painter.drawRect(QRectF(-92, -58, 184, 116));
    write(painter, {-90, -56, 180, 112}, "−30 %\nuntil snow falls",
          {sans(27, QFont::Bold), Qt::white, Qt::AlignCenter, 0});
    painter.restore();
    painter.fillRect(QRectF(0, 1132, 900, 68), colour("#2a1f17", 0.85));
    write(painter, {40, 1152, 820, 40}, "GRADE B3 SOLE  ·  WAXED HIDE  ·  RESOLED FREE FOR TEN YEARS",
          {sans(20, QFont::DemiBold), colour("#f5e6cf"), Qt::AlignHCenter, 6});
    painter.end();
    addGrain(picture, 6, 5);
    return picture;
}

QImage klozzoAd()
{
    QImage picture(1000, 1000, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), colour("#3a86ff"));
    painter.setPen(Qt::NoPen);
    for (int row = 0; row < 14; ++row) {
        for (int column = 0; column < 14; ++column) {
            painter.setBrush(colour("#2f75e6"));
            painter.drawEllipse(QPointF(column * 74 + 20, row * 74 + 20), 24, 24);
            painter.setBrush(colour("#4f95ff"));
            painter.drawEllipse(QPointF(column * 74 + 17, row * 74 + 16), 20, 20);
        }
    }
    const char *colours[] = {"#ffbe0b", "#fb5607", "#ff006e", "#8338ec", "#06d6a0", "#fefae0"};
    const int heights[5][5] = {{1, 3, 4, 3, 1}, {3, 2, 1, 2, 3}, {4, 1, 0, 1, 2}, {3, 1, 1, 1, 1}, {1, 2, 1, 1, 1}};
    addGroundShadow(painter, {500, 803}, 860, 220, 0.5);
    const double side = 84;
    for (int depth = 0; depth < 5; ++depth) {
        for (int column = 0; column < 5; ++column) {
            for (int level = 0; level < heights[depth][column]; ++level) {
                const QPointF top(500 + (column - depth) * side * 0.866,
                                  448 + (column + depth) * side * 0.5 - level * side);
                paintBlock(painter, top, side, colour(colours[(depth * 7 + column * 3 + level * 2) % 6]));
            }
        }
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#ffbe0b"));
    painter.drawRoundedRect(QRectF(50, 46, 900, 190), 26, 26);
    writeWide(painter, {90, 70, 600, 130}, "KLOZZO", sans(160, QFont::Black), colour("#ff006e"));
    write(painter, {715, 70, 220, 150}, "Build it.\nBreak it.\nBuild it again.",
          {sans(31, QFont::Bold), colour("#1d3557"), Qt::AlignLeft | Qt::AlignVCenter, 0});
    painter.setBrush(colour("#fefae0"));
    painter.drawEllipse(QPointF(872, 864), 92, 92);
    write(painter, {792, 812, 160, 104}, "412\npieces\nage 4+",
          {sans(29, QFont::ExtraBold), colour("#8338ec"), Qt::AlignCenter, 0});
    write(painter, {40, 950, 720, 36}, "Made of beet sugar. Kind to bare feet.  klozzo.example",
          {sans(23, QFont::DemiBold), Qt::white, Qt::AlignLeft, 0});
    painter.end();
    addGrain(picture, 4, 6);
    return picture;
}

} // namespace Drawing
