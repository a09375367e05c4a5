#include "service/tools/drawing/Ads.h"
#include "service/tools/drawing/Brush.h"
#include "service/tools/drawing/Products.h"

#include <QtCore/QtMath>

#include <cmath>

namespace Drawing
{

QImage humloAd()
{
    QImage picture(900, 1200, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), glow({450, 620}, 850, colour("#136f8a"), colour("#07151f")));
    painter.setBrush(Qt::NoBrush);
    for (int ring = 0; ring < 34; ++ring) {
        QPainterPath wave;
        for (int degree = 0; degree <= 360; ++degree) {
            const double angle = qDegreesToRadians(double(degree));
            const double reach = 170 + ring * 21 + std::sin(angle * 9 + ring * 0.7) * (3 + ring * 0.9)
                + std::sin(angle * 23) * ring * 0.25;
            const QPointF place(450 + reach * std::cos(angle), 650 + reach * std::sin(angle));
            degree ? wave.lineTo(place) : wave.moveTo(place);
        }
        painter.setPen(QPen(QColor::fromHsv((160 + ring * 5) % 360, 170, 240, 200 - ring * 5), 3 - ring * 0.05));
        painter.drawPath(wave);
    }
    addGroundShadow(painter, {450, 660}, 700, 720, 0.8);
    paintHeadphones(painter, {165, 350, 570, 627}, colour("#e76f51"), colour("#2a2d34"));
    writeWide(painter, {60, 70, 420, 118}, "humlo", sans(150, QFont::ExtraBold), colour("#f4f1de"));
    write(painter, {64, 205, 700, 120}, "Hear the room\nleave the room.",
          {sans(46, QFont::Light), colour("#9be7d8"), Qt::AlignLeft, 0});
    const char *facts[] = {"40 h", "214 g", "−38 dB"};
    const char *names[] = {"on one charge", "on your head", "of everyone else"};
    for (int i = 0; i < 3; ++i) {
        write(painter, {60 + i * 265.0, 1030, 250, 62}, facts[i],
              {sans(52, QFont::Bold), colour("#e76f51"), Qt::AlignHCenter, 0});
        write(painter, {60 + i * 265.0, 1094, 250, 40}, names[i], {sans(23), colour("#f4f1de"), Qt::AlignHCenter, 0});
    }
    painter.setPen(QPen(colour("#f4f1de", 0.6), 2));
    painter.drawLine(60, 1010, 840, 1010);
    write(painter, {60, 1150, 780, 30}, "Humlo Three. In clay, moss and midnight.",
          {sans(20), colour("#9be7d8"), Qt::AlignHCenter, 3});
    painter.end();
    addGrain(picture, 5, 7);
    return picture;
}

QImage ostrelleAd()
{
    QImage picture(1000, 1000, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), downwards(picture.rect(), colour("#fbe9e7"), colour("#e8b4b8")));
    QRandomGenerator random(8);
    for (int vein = 0; vein < 26; ++vein) { // marble
        QPointF place(random.bounded(1000.0), -20);
        QPainterPath path(place);
        while (place.y() < 1020) {
            place += QPointF(random.bounded(80.0) - 34, 14 + random.bounded(34.0));
            path.lineTo(place);
        }
        painter.strokePath(path, QPen(colour(vein % 3 ? "#ffffff" : "#c58b91", 0.55), 0.8 + random.bounded(5.0)));
    }
    const auto blossom = [&painter](const QPointF &middle, double radius, const QColor &petal) {
        painter.setPen(QPen(petal.darker(130), 1.2));
        for (int ring = 0; ring < 3; ++ring) {
            for (int i = 0; i < 7; ++i) {
                painter.save();
                painter.translate(middle);
                painter.rotate(i * 360 / 7.0 + ring * 24);
                painter.setBrush(
                    downwards({0, -radius, 1, radius}, petal.lighter(125 - ring * 5), petal.darker(105 + ring * 12)));
                painter.drawEllipse(QPointF(0, -radius * (0.62 - ring * 0.18)), radius * (0.36 - ring * 0.07),
                                    radius * (0.42 - ring * 0.09));
                painter.restore();
            }
        }
        painter.setBrush(colour("#f2c14e"));
        painter.drawEllipse(middle, radius * 0.14, radius * 0.14);
    };
    for (int i = 0; i < 16; ++i)
        paintLeaf(painter, {i % 2 ? 820.0 : 170.0, 760}, 150 + random.bounded(110.0), random.bounded(340.0) - 170,
                  colour("#557a46"));
    blossom({150, 800}, 150, colour("#d1495b"));
    blossom({290, 905}, 105, colour("#edae49"));
    blossom({858, 770}, 165, colour("#c9184a"));
    blossom({735, 905}, 110, colour("#f7a1b0"));
    blossom({935, 930}, 90, colour("#edae49"));
    addGroundShadow(painter, {500, 925}, 470, 66, 0.45);
    paintFlacon(painter, {318, 440, 364, 486}, colour("#e8985e"));
    writeWide(painter, {150, 80, 700, 108}, "OSTRELLE", serif(110), colour("#5c1a2b"));
    write(painter, {150, 212, 700, 60}, "the hour after sunset",
          {serif(38, true), colour("#8c3a4a"), Qt::AlignHCenter, 0});
    painter.setPen(QPen(colour("#8a6a2f"), 3));
    painter.drawLine(380, 286, 620, 286);
    write(painter, {170, 310, 660, 80},
          "Fig leaf, warm stone, a trace of smoke.\n50 ml and 100 ml, refillable for life.",
          {sans(25), colour("#5c1a2b"), Qt::AlignHCenter, 3});
    painter.setPen(QPen(colour("#8a6a2f"), 5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(28, 28, 944, 944));
    painter.end();
    addGrain(picture, 4, 8);
    return picture;
}

QImage nattlundAd()
{
    QImage picture(900, 1200, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), colour("#f3e9d2"));
    painter.setPen(Qt::NoPen);
    const char *colours[] = {"#114b5f", "#c0392b", "#e9a820", "#1b1b1e", "#88a096"};
    QRandomGenerator random(33);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 6; ++column) {
            const QRectF tile(column * 150, 300 + row * 130, 150, 130);
            const QColor ground = colour(colours[(row * 2 + column) % 5]);
            const QColor figure = colour(colours[(row * 2 + column + 2 + (row + column) % 2) % 5]);
            painter.fillRect(tile, ground);
            painter.setPen(Qt::NoPen);
            painter.setBrush(figure);
            switch (random.bounded(5)) {
            case 0:
                painter.drawPie(QRectF(tile.x(), tile.y(), 300, 260), 90 * 16, 90 * 16);
                break;
            case 1:
                painter.drawEllipse(tile.center(), 52, 52);
                painter.setBrush(ground);
                painter.drawEllipse(tile.center(), 24, 24);
                break;
            case 2:
                for (int i = 0; i < 5; ++i)
                    painter.drawRect(QRectF(tile.x() + i * 30, tile.y(), 15, 130));
                break;
            case 3:
                painter.drawPolygon(QPolygonF({tile.topLeft(), tile.bottomLeft(), tile.bottomRight()}));
                break;
            default:
                for (int i = 0; i < 9; ++i) {
                    const int line = i / 3;
                    painter.drawEllipse(QPointF(tile.x() + 30 + (i % 3) * 45, tile.y() + 24 + line * 41), 13, 13);
                }
            }
        }
    }
    for (int key = 0; key < 15; ++key) { // a keyboard along the foot
        painter.fillRect(QRectF(key * 60, 950, 57, 130), colour("#fffdf6"));
        if (key % 7 != 2 && key % 7 != 6)
            painter.fillRect(QRectF(key * 60 + 40, 950, 36, 80), colour("#1b1b1e"));
    }
    painter.fillRect(QRectF(110, 430, 680, 330), colour("#f3e9d2", 0.93));
    paintTrumpet(painter, {140, 460, 620, 270}, colour("#e0a72e"));
    writeWide(painter, {50, 45, 800, 130}, "NATTLUND", sans(150, QFont::Black), colour("#1b1b1e"));
    write(painter, {52, 190, 560, 100}, "Jazz in the shipyard\n14 – 17 August",
          {sans(42, QFont::Bold), colour("#c0392b"), Qt::AlignLeft, 0});
    write(painter, {620, 196, 230, 90}, "four nights\ntwenty-two bands\none crane",
          {sans(24, QFont::Medium), colour("#114b5f"), Qt::AlignRight, 0});
    write(painter, {50, 1096, 800, 90},
          "Ibo Marrow Quartet  ·  Lotte Vash  ·  The Tin Meridian  ·  Sollan & Drey  ·  Brass Kiosk\nDoors at six. "
          "Children under ten come in free.",
          {sans(20, QFont::DemiBold), colour("#1b1b1e"), Qt::AlignHCenter, 0});
    painter.end();
    addGrain(picture, 6, 9);
    return picture;
}

QImage orvandelAd()
{
    QImage picture(1200, 900, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), across(picture.rect(), colour("#0b0f14"), colour("#2a3b47")));
    painter.setBrush(Qt::NoBrush);
    QRandomGenerator random(4);
    for (int i = 0; i < 90; ++i) { // engine-turned metal
        painter.setPen(QPen(QColor(200, 220, 230, 16 + random.bounded(30)), 1.5));
        const double angle = i * 4.0;
        painter.drawEllipse(
            QPointF(820 + 150 * std::cos(qDegreesToRadians(angle)), 450 + 150 * std::sin(qDegreesToRadians(angle))),
            330, 330);
    }
    for (int i = 0; i < 240; ++i) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 30 + random.bounded(160)));
        const double size = random.bounded(2.2);
        painter.drawEllipse(QPointF(random.bounded(620.0), random.bounded(900.0)), size, size);
    }
    addGroundShadow(painter, {830, 470}, 700, 900, 0.85);
    paintWatch(painter, {550, 5, 556, 890}, colour("#1d4e68"), colour("#aab4bb"));
    writeWide(painter, {60, 90, 460, 74}, "ORVANDEL", sans(110, QFont::Light), colour("#f7efd8"));
    write(painter, {62, 188, 460, 40}, "MARINER CHRONOGRAPH",
          {sans(23, QFont::DemiBold), colour("#e4572e"), Qt::AlignLeft, 22});
    write(painter, {60, 300, 440, 230}, "Some things\nare worth\nwinding.",
          {serif(56, true), Qt::white, Qt::AlignLeft, 0});
    painter.setPen(QPen(colour("#e4572e"), 4));
    painter.drawLine(62, 560, 190, 560);
    write(
        painter, {60, 585, 420, 170},
        "Hand-wound calibre of 212 parts, seventy hours of reserve, sapphire on both sides. Dial in sea, ember or ash.",
        {sans(23), colour("#c8d3d9"), Qt::AlignLeft, 0});
    write(painter, {60, 800, 420, 60}, "orvandel.example  ·  Call for an appointment",
          {sans(19, QFont::Medium), colour("#f7efd8"), Qt::AlignLeft, 0});
    painter.end();
    addGrain(picture, 5, 10);
    return picture;
}

} // namespace Drawing
