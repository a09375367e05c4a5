#include "service/tools/drawing/Table.h"

#include "service/tools/drawing/Brush.h"

#include <QtCore/QtMath>

#include <cmath>

namespace Drawing
{

namespace
{

// Wood: long wavering fibres on planks of slightly different tone.
QImage planks(const QSize &size, const QColor &wood, int plankHeight, quint32 seed)
{
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QRandomGenerator random(seed);
    for (int top = 0; top < size.height(); top += plankHeight) {
        painter.setClipRect(QRectF(0, top, size.width(), plankHeight));
        const QColor tone = wood.lighter(92 + random.bounded(18));
        painter.fillRect(0, top, size.width(), plankHeight, tone);
        for (int fibre = 0; fibre < plankHeight; ++fibre) {
            const double y = top + random.bounded(double(plankHeight));
            const double sway = random.bounded(14.0);
            const double phase = random.bounded(6.28);
            QPainterPath path(QPointF(-10, y));
            for (int x = 0; x <= size.width() + 40; x += 40)
                path.lineTo(x, y + sway * std::sin(phase + x * 0.0032));
            QColor ink = random.bounded(3) ? tone.darker(112 + random.bounded(30)) : tone.lighter(112);
            ink.setAlpha(40 + random.bounded(90));
            painter.strokePath(path, QPen(ink, 0.6 + random.bounded(2.4)));
        }
        for (int knot = random.bounded(3); knot > 0; --knot) {
            const QPointF middle(random.bounded(double(size.width())), top + plankHeight * (0.3 + random.bounded(0.4)));
            for (int ring = 8; ring > 0; --ring) {
                QColor ink = tone.darker(105 + (9 - ring) * 11);
                ink.setAlpha(120);
                painter.setPen(Qt::NoPen);
                painter.setBrush(ink);
                painter.drawEllipse(middle, ring * 6.0, ring * 3.2);
            }
        }
        painter.fillRect(QRectF(0, top, size.width(), 3), tone.darker(230));
    }
    return picture;
}

QImage speckled(const QSize &size, const QColor &base, int specks, double largest, quint32 seed)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(base);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QRandomGenerator random(seed);
    for (int i = 0; i < specks; ++i) {
        QColor ink = i % 2 ? base.lighter(108) : base.darker(110);
        ink.setAlpha(20 + random.bounded(60));
        painter.setBrush(ink);
        const double width = 2 + random.bounded(largest);
        painter.drawEllipse(QPointF(random.bounded(double(size.width())), random.bounded(double(size.height()))), width,
                            width * (0.3 + random.bounded(0.9)));
    }
    painter.end();
    addGrain(picture, 7, seed);
    return picture;
}

QImage bricks(const QSize &size, quint32 seed)
{
    QImage picture = speckled(size, colour("#cfc6ba"), 4000, 20, seed);
    QPainter painter(&picture);
    QRandomGenerator random(seed);
    for (int row = 0; row * 92 < size.height(); ++row) {
        for (int x = -(row % 2) * 130; x < size.width(); x += 260) {
            const QRectF brick(x + 6, row * 92 + 6, 248, 80);
            const QColor clay =
                QColor::fromHsv(12 + random.bounded(10), 110 + random.bounded(50), 130 + random.bounded(60));
            painter.fillRect(brick, downwards(brick, clay.lighter(108), clay.darker(115)));
            for (int i = 0; i < 40; ++i) {
                painter.fillRect(QRectF(brick.x() + random.bounded(240.0), brick.y() + random.bounded(76.0),
                                        2 + random.bounded(9.0), 2 + random.bounded(4.0)),
                                 QColor(60, 20, 10, 40));
            }
        }
    }
    painter.end();
    addGrain(picture, 8, seed);
    return picture;
}

QImage linen(const QSize &size, quint32 seed)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour("#d8d2c4"));
    QPainter painter(&picture);
    QRandomGenerator random(seed);
    for (int x = 0; x < size.width(); x += 4)
        painter.fillRect(x, 0, 2, size.height(), QColor(120, 110, 90, 20 + random.bounded(50)));
    for (int y = 0; y < size.height(); y += 4)
        painter.fillRect(0, y, size.width(), 2, QColor(255, 255, 250, 20 + random.bounded(50)));
    for (int stripe = 0; stripe < 3; ++stripe)
        painter.fillRect(QRectF(size.width() * 0.08 + stripe * 26, 0, 12, size.height()), colour("#8d3b3b", 0.55));
    painter.end();
    addGrain(picture, 9, seed);
    return picture;
}

} // namespace

QImage ground(Ground kind, const QSize &size, quint32 seed)
{
    switch (kind) {
    case Ground::Oak:
        return planks(size, colour("#c49a6c"), 330, seed);
    case Ground::Walnut:
        return planks(size, colour("#6e4a33"), 420, seed);
    case Ground::Plaster:
        return speckled(size, colour("#dcd9d2"), 9000, 46, seed);
    case Ground::Slate:
        return speckled(size, colour("#4a4f55"), 9000, 60, seed);
    case Ground::Linen:
        return linen(size, seed);
    case Ground::Brick:
        return bricks(size, seed);
    }
    return {};
}

void paintSheetShadow(QPainter &painter, const QRectF &sheet)
{
    painter.setPen(Qt::NoPen);
    for (int step = 14; step > 0; --step) {
        painter.setBrush(QColor(0, 0, 0, 11));
        painter.drawRoundedRect(sheet.adjusted(-step + 7, -step + 9, step + 9, step + 12), 8, 8);
    }
}

void paintSheetGloss(QPainter &painter, const QRectF &sheet, bool isFolded)
{
    QLinearGradient sheen(sheet.topLeft(), sheet.bottomRight());
    sheen.setColorAt(0, QColor(255, 255, 255, 34));
    sheen.setColorAt(0.35, QColor(255, 255, 255, 0));
    sheen.setColorAt(0.6, QColor(255, 255, 255, 30));
    sheen.setColorAt(1, QColor(0, 0, 0, 40));
    painter.fillRect(sheet, sheen);
    if (!isFolded)
        return;
    const double x = sheet.center().x();
    painter.fillRect(QRectF(x - 46, sheet.top(), 46, sheet.height()),
                     across({x - 46, 0, 46, 1}, QColor(0, 0, 0, 0), QColor(0, 0, 0, 70)));
    painter.fillRect(QRectF(x, sheet.top(), 40, sheet.height()),
                     across({x, 0, 40, 1}, QColor(255, 255, 255, 80), QColor(255, 255, 255, 0)));
}

void paintMug(QPainter &painter, const QPointF &middle, double radius, const QColor &glaze)
{
    addGroundShadow(painter, middle + QPointF(radius * 0.25, radius * 0.25), radius * 3.1, radius * 3.1, 0.6);
    painter.setPen(QPen(glaze.darker(118), radius * 0.24, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(middle + QPointF(radius * 1.05, -radius * 0.5), radius * 0.4, radius * 0.4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(
        glow(middle - QPointF(radius * 0.3, radius * 0.4), radius * 1.7, glaze.lighter(125), glaze.darker(135)));
    painter.drawEllipse(middle, radius, radius);
    painter.setBrush(glaze.darker(165));
    painter.drawEllipse(middle, radius * 0.88, radius * 0.88);
    painter.setBrush(glow(middle + QPointF(radius * 0.2, radius * 0.2), radius, colour("#5b3418"), colour("#2a1509")));
    painter.drawEllipse(middle + QPointF(0, radius * 0.03), radius * 0.82, radius * 0.82);
    painter.setPen(QPen(colour("#b98a5a", 0.8), radius * 0.04));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(middle, radius * 0.76, radius * 0.76);
}

void paintPen(QPainter &painter, const QPointF &middle, double length, double angle, const QColor &barrel)
{
    painter.save();
    painter.translate(middle);
    painter.rotate(angle);
    painter.setPen(Qt::NoPen);
    const double half = length / 2;
    painter.setBrush(QColor(0, 0, 0, 70));
    painter.drawRoundedRect(QRectF(-half + 8, 4, length, 22), 11, 11);
    const QRectF body(-half, -12, length * 0.86, 24);
    painter.setBrush(downwards(body, barrel.lighter(150), barrel.darker(160)));
    painter.drawRoundedRect(body, 10, 10);
    painter.setBrush(colour("#c9ccd1"));
    painter.drawPolygon(QPolygonF(
        {QPointF(half - length * 0.15, -11), QPointF(half, -2), QPointF(half, 2), QPointF(half - length * 0.15, 11)}));
    painter.fillRect(QRectF(-half + 20, -17, length * 0.3, 6), colour("#d8dade"));
    painter.restore();
}

void paintNote(QPainter &painter, const QPointF &middle, double side, double angle, const QColor &paper)
{
    painter.save();
    painter.translate(middle);
    painter.rotate(angle);
    const QRectF sheet(-side / 2, -side / 2, side, side);
    paintSheetShadow(painter, sheet);
    painter.fillRect(sheet, downwards(sheet, paper, paper.darker(108)));
    write(painter, sheet.adjusted(side * 0.1, side * 0.1, 0, 0), "milk\nbread\nstamps\nring Jo",
          {serif(side * 0.14, true), colour("#2f3e63"), Qt::AlignLeft, 0});
    painter.restore();
}

void paintTape(QPainter &painter, const QPointF &middle, double length, double angle)
{
    painter.save();
    painter.translate(middle);
    painter.rotate(angle);
    const QRectF strip(-length / 2, -length * 0.17, length, length * 0.34);
    painter.fillRect(strip, QColor(240, 230, 190, 150));
    painter.fillRect(strip.adjusted(0, 0, 0, -strip.height() * 0.7), QColor(255, 255, 255, 60));
    painter.restore();
}

void paintKeys(QPainter &painter, const QPointF &middle, double size, double angle)
{
    painter.save();
    painter.translate(middle);
    painter.rotate(angle);
    painter.scale(size / 100, size / 100);
    addGroundShadow(painter, {10, 20}, 190, 130, 0.35);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour("#9aa0a8"), 5));
    painter.drawEllipse(QPointF(0, 0), 26, 26);
    for (const int turn : {-28, 12, 50}) {
        painter.save();
        painter.rotate(turn);
        painter.setPen(QPen(colour("#7d6a35"), 1.5));
        painter.setBrush(across({-18, 0, 36, 1}, colour("#e6cf86"), colour("#a2853b")));
        painter.drawEllipse(QPointF(0, 42), 19, 19);
        painter.drawPolygon(
            QPolygonF({QPointF(-6, 58), QPointF(6, 58), QPointF(6, 122), QPointF(0, 130), QPointF(-6, 122),
                       QPointF(-12, 116), QPointF(-6, 108), QPointF(-11, 98), QPointF(-6, 90)}));
        painter.setBrush(colour("#4d4224"));
        painter.drawEllipse(QPointF(0, 34), 5, 5);
        painter.restore();
    }
    painter.restore();
}

void paintThumb(QPainter &painter, const QPointF &tip, double width, double angle, const QColor &skin)
{
    painter.save();
    painter.translate(tip);
    painter.rotate(angle);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 50));
    painter.drawRoundedRect(QRectF(-width / 2 + 9, 9, width, width * 6), width / 2, width / 2);
    QLinearGradient tone = across({-width / 2, 0, width, 1}, skin.darker(125), skin.darker(118));
    tone.setColorAt(0.4, skin.lighter(108));
    painter.setBrush(tone);
    painter.drawRoundedRect(QRectF(-width / 2, 0, width, width * 6), width / 2, width / 2);
    painter.setBrush(skin.lighter(122));
    painter.drawRoundedRect(QRectF(-width * 0.3, width * 0.1, width * 0.6, width * 0.7), width * 0.28, width * 0.28);
    painter.setPen(QPen(skin.darker(135), width * 0.025));
    for (int crease = 0; crease < 3; ++crease)
        painter.drawLine(QPointF(-width * 0.28, width * (1.35 + crease * 0.09)),
                         QPointF(width * 0.28, width * (1.38 + crease * 0.09)));
    painter.restore();
}

} // namespace Drawing
