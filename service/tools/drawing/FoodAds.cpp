#include "service/tools/drawing/Ads.h"
#include "service/tools/drawing/Brush.h"
#include "service/tools/drawing/Products.h"

#include <QtCore/QtMath>

#include <cmath>

namespace Drawing
{

QImage zumbaroAd()
{
    QImage picture(900, 1200, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), glow({450, 640}, 900, colour("#ffd166"), colour("#f4711f")));
    addRays(painter, {450, 660}, 1100, 24, colour("#fff0b8", 0.45));
    painter.fillPath(ridge({0, 880, 900, 320}, 120, 0.35, 3), colour("#2f7d4f"));
    painter.fillPath(ridge({0, 960, 900, 240}, 110, 0.4, 9), colour("#1f5c3a"));
    QRandomGenerator random(5);
    for (int i = 0; i < 26; ++i)
        paintLeaf(painter, {random.bounded(900.0), 960 + random.bounded(240.0)}, 60 + random.bounded(90.0),
                  random.bounded(160.0) - 80, i % 3 ? colour("#3f9b5f") : colour("#8cc152"));
    paintCitrusSlice(painter, {168, 660}, 128, colour("#ff9f1c"));
    paintCitrusSlice(painter, {762, 540}, 96, colour("#ff7b00"));
    paintCitrusSlice(painter, {740, 900}, 140, colour("#ffb627"));
    addGroundShadow(painter, {450, 1105}, 420, 70);
    paintBottle(painter, {318, 405, 270, 702}, colour("#ff8a1e"), colour("#fff4dc"));
    paintCitrusSlice(painter, {238, 1010}, 92, colour("#ff8c1a"));
    for (int i = 0; i < 60; ++i) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour("#fff7dd", 0.75));
        const double angle = random.bounded(2 * M_PI);
        const double reach = 190 + random.bounded(220.0);
        const double size = 2 + random.bounded(8.0);
        painter.drawEllipse(QPointF(450 + reach * std::cos(angle), 640 + reach * 0.9 * std::sin(angle)), size,
                            size * 1.4);
    }
    writeWide(painter, {60, 60, 780, 190}, "ZUMBARO", sans(200, QFont::Black), colour("#7a1f05"));
    write(painter, {64, 262, 780, 60}, "The whole orchard. Nothing else.",
          {sans(42, QFont::DemiBold), colour("#fffaf0"), Qt::AlignHCenter, 0});
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#c81d25"));
    painter.drawEllipse(QPointF(132, 430), 88, 88);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3, Qt::DashLine));
    painter.drawEllipse(QPointF(132, 430), 77, 77);
    write(painter, {52, 386, 160, 90}, "0 g\nSUGAR\nADDED", {sans(27, QFont::Bold), Qt::white, Qt::AlignCenter, 0});
    painter.fillRect(QRectF(0, 1136, 900, 64), colour("#123d26", 0.85));
    write(painter, {40, 1155, 820, 40},
          "Eleven oranges in every bottle  ·  pressed, chilled and capped within the hour  ·  zumbaro.example",
          {sans(18, QFont::Medium), colour("#eaf6d8"), Qt::AlignHCenter, 0});
    painter.end();
    addGrain(picture, 5, 1);
    return picture;
}

QImage mirukkoAd()
{
    QImage picture(1200, 900, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), colour("#a4161a"));
    painter.setBrush(Qt::NoBrush);
    for (int row = 0; row < 12; ++row) { // waves of scales, a printed cloth
        for (int column = 0; column < 15; ++column) {
            const QPointF middle(column * 90 + (row % 2) * 45, row * 82);
            for (int ring = 1; ring < 4; ++ring) {
                painter.setPen(QPen(colour("#c9302c"), 3));
                painter.drawEllipse(middle, ring * 15, ring * 15);
            }
        }
    }
    paintBowl(painter, {800, 470}, 360, colour("#17324d"));
    painter.save();
    painter.translate(1010, 120);
    painter.rotate(31);
    for (int i = 0; i < 2; ++i) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(across({0, 0, 16, 1}, colour("#2b1a10"), colour("#7a4a26")));
        painter.drawPolygon(QPolygonF(
            {QPointF(i * 34, -220), QPointF(i * 34 + 17, -220), QPointF(i * 34 + 11, 420), QPointF(i * 34 + 5, 420)}));
        painter.fillRect(QRectF(i * 34, -100, 16, 9), colour("#e8b04b"));
    }
    painter.restore();
    painter.fillRect(QRectF(60, 60, 120, 780), colour("#fff4e0"));
    painter.save();
    painter.translate(150, 820);
    painter.rotate(-90);
    writeWide(painter, {0, -62, 740, 90}, "NOODLE HOUSE", sans(80, QFont::ExtraBold), colour("#a4161a"));
    painter.restore();
    writeWide(painter, {215, 90, 300, 80}, "mirukko", serif(120), colour("#ffe8c2"));
    write(painter, {220, 200, 260, 240}, "Slow broth.\nFast lunch.",
          {sans(44, QFont::Bold), Qt::white, Qt::AlignLeft, 0});
    write(painter, {220, 620, 260, 200},
          "Eighteen hours in the pot, eleven minutes to your table. Open from noon until the last bowl is gone.",
          {sans(22), colour("#ffe8c2"), Qt::AlignLeft, 0});
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#e8b04b"));
    painter.drawRoundedRect(QRectF(220, 770, 210, 62), 31, 31);
    write(painter, {220, 770, 210, 62}, "Order ahead", {sans(26, QFont::Bold), colour("#5a0b0e"), Qt::AlignCenter, 0});
    painter.end();
    addGrain(picture, 6, 2);
    return picture;
}

QImage fernowickAd()
{
    QImage picture(900, 1200, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), downwards(picture.rect(), colour("#eaf1e4"), colour("#cfe0c8")));
    QRandomGenerator random(21);
    const char *greens[] = {"#1b4332", "#2d6a4f", "#40916c", "#52b788", "#74a57f", "#31572c"};
    for (int i = 0; i < 46; ++i) {
        const bool isLeft = i % 2;
        const double y = random.bounded(1250.0);
        paintLeaf(painter, {isLeft ? -30 + random.bounded(90.0) : 840 + random.bounded(90.0), y},
                  150 + random.bounded(190.0), (isLeft ? 60 : -60) + random.bounded(80.0) - 40,
                  colour(greens[random.bounded(6)]));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#f7f4ea", 0.96));
    painter.drawRect(QRectF(150, 90, 600, 1020));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour("#1b4332"), 4));
    painter.drawRect(QRectF(168, 108, 564, 984));
    for (int i = 0; i < 15; ++i)
        paintLeaf(painter, {450 + (i - 7) * 7.0, 790}, 190 + (i % 3) * 62, (i - 7) * 11.5, colour(greens[(i * 5) % 6]));
    const QPolygonF pot({QPointF(330, 770), QPointF(570, 770), QPointF(542, 960), QPointF(358, 960)});
    addGroundShadow(painter, {450, 962}, 330, 44, 0.35);
    painter.setPen(Qt::NoPen);
    painter.setBrush(across({330, 0, 240, 1}, colour("#e07a5f"), colour("#9c4a34")));
    painter.drawPolygon(pot);
    painter.drawRect(QRectF(318, 748, 264, 42));
    painter.setPen(QPen(colour("#f7d9c4"), 5));
    for (int i = 0; i < 9; ++i)
        painter.drawLine(QPointF(352 + i * 22, 850), QPointF(363 + i * 22, 875 - (i % 2) * 50));
    write(painter, {190, 140, 520, 40}, "BOTANICAL POST",
          {sans(25, QFont::DemiBold), colour("#40916c"), Qt::AlignHCenter, 35});
    writeWide(painter, {215, 195, 470, 105}, "Fernowick", serif(120, true), colour("#1b4332"));
    write(painter, {200, 330, 500, 90}, "A new leaf, every month,\nthrough your letterbox.",
          {serif(29), colour("#31572c"), Qt::AlignHCenter, 0});
    write(painter, {200, 985, 500, 100},
          "First plant free with the code NEWLEAF.\nCare line open every day from eight to six.",
          {sans(21, QFont::Medium), colour("#1b4332"), Qt::AlignHCenter, 0});
    write(painter, {200, 1048, 500, 40}, "fernowick.example",
          {sans(23, QFont::Bold), colour("#9c4a34"), Qt::AlignHCenter, 4});
    painter.end();
    addGrain(picture, 5, 3);
    return picture;
}

} // namespace Drawing
