#include "service/tools/drawing/Products.h"

#include "service/tools/drawing/Brush.h"

#include <QtCore/QtMath>

#include <cmath>

namespace Drawing
{

namespace
{

QPointF onCircle(const QPointF &middle, double radius, double degrees)
{
    return middle + radius * QPointF(std::cos(qDegreesToRadians(degrees)), std::sin(qDegreesToRadians(degrees)));
}

QPen round(const QColor &ink, double width)
{
    return {ink, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

// Painters below work on a canvas of 100 by 100 (or the given height) that is laid over the area.
class Canvas
{
public:
    Canvas(QPainter &painter, const QRectF &area, double height = 100)
        : m_painter(painter)
    {
        painter.save();
        painter.translate(area.topLeft());
        painter.scale(area.width() / 100, area.height() / height);
        painter.setPen(Qt::NoPen);
    }
    ~Canvas() { m_painter.restore(); }

    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;

private:
    QPainter &m_painter;
};

} // namespace

void paintBottle(QPainter &painter, const QRectF &area, const QColor &drink, const QColor &label)
{
    const Canvas canvas(painter, area, 260);
    QPainterPath glass(QPointF(36, 22));
    glass.lineTo(64, 22);
    glass.cubicTo(64, 62, 94, 66, 94, 104);
    glass.lineTo(94, 238);
    glass.quadTo(94, 256, 76, 256);
    glass.lineTo(24, 256);
    glass.quadTo(6, 256, 6, 238);
    glass.lineTo(6, 104);
    glass.cubicTo(6, 66, 36, 62, 36, 22);
    QLinearGradient body = across({6, 0, 88, 1}, drink.darker(150), drink.darker(125));
    body.setColorAt(0.18, drink.lighter(125));
    body.setColorAt(0.45, drink);
    painter.fillPath(glass, body);
    painter.fillRect(QRectF(33, 2, 34, 24), across({33, 0, 34, 1}, label.darker(140), label.lighter(120)));
    for (int i = 0; i < 9; ++i)
        painter.fillRect(QRectF(35 + i * 3.6, 3, 1.2, 18), QColor(0, 0, 0, 50));

    painter.setClipPath(glass);
    painter.fillRect(QRectF(0, 122, 100, 92), across({6, 0, 88, 1}, label.darker(112), label.lighter(106)));
    painter.fillRect(QRectF(0, 128, 100, 2), drink.darker(120));
    painter.fillRect(QRectF(0, 206, 100, 2), drink.darker(120));
    paintCitrusSlice(painter, {50, 184}, 17, drink);
    writeWide(painter, {15, 138, 70, 15}, "zumbaro", sans(40, QFont::Black), drink.darker(170));
    write(painter, {10, 156, 80, 10}, "PRESSED AT DAWN",
          {sans(6, QFont::DemiBold), drink.darker(180), Qt::AlignHCenter, 12});
    painter.fillRect(QRectF(14, 70, 6, 180), QColor(255, 255, 255, 105));
    painter.fillRect(QRectF(84, 90, 3, 160), QColor(255, 255, 255, 55));
    painter.setBrush(QColor(255, 255, 255, 150));
    QRandomGenerator random(7);
    for (int i = 0; i < 46; ++i) {
        const double size = 0.5 + random.generateDouble() * 1.6;
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(8 + random.bounded(84.0), 74 + random.bounded(178.0)), size, size * 1.3);
    }
}

void paintCitrusSlice(QPainter &painter, const QPointF &middle, double radius, const QColor &flesh)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(flesh.darker(112));
    painter.drawEllipse(middle, radius, radius);
    painter.setBrush(colour("#fff3d6"));
    painter.drawEllipse(middle, radius * 0.9, radius * 0.9);
    for (int i = 0; i < 9; ++i) {
        QPainterPath wedge(onCircle(middle, radius * 0.1, i * 40 + 20));
        wedge.lineTo(onCircle(middle, radius * 0.8, i * 40 + 4));
        wedge.quadTo(onCircle(middle, radius * 0.88, i * 40 + 20), onCircle(middle, radius * 0.8, i * 40 + 36));
        wedge.closeSubpath();
        painter.fillPath(wedge, glow(middle, radius, flesh.lighter(125), flesh));
    }
}

void paintBicycle(QPainter &painter, const QRectF &area, const QColor &frame, const QColor &ink)
{
    const Canvas canvas(painter, area, 62);
    for (const double x : {21.0, 79.0}) {
        const QPointF hub(x, 41);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(ink, 2.2));
        painter.drawEllipse(hub, 18.5, 18.5);
        painter.setPen(QPen(colour("#d9c6a5"), 0.8));
        painter.drawEllipse(hub, 16.8, 16.8);
        painter.setPen(QPen(QColor(90, 90, 90, 170), 0.25));
        for (int i = 0; i < 28; ++i)
            painter.drawLine(onCircle(hub, 1.5, i * 360 / 28.0 + (i % 2) * 60), onCircle(hub, 16.5, i * 360 / 28.0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(hub, 1.8, 1.8);
    }
    const QPointF rear(21, 41), front(79, 41), crank(46, 42), seat(37, 15), head(68, 14);
    painter.setPen(round(frame.darker(135), 3));
    painter.drawPolyline(QPolygonF({crank, QPointF(67, 18)}));
    painter.drawPolyline(QPolygonF({rear, crank, seat, rear}));
    painter.setPen(round(frame, 2.4));
    painter.drawPolyline(QPolygonF({rear, crank, QPointF(67, 18)}));
    painter.drawPolyline(QPolygonF({rear, QPointF(37.5, 17), crank}));
    painter.drawLine(QPointF(37.5, 17), QPointF(66.5, 16));
    painter.setPen(round(colour("#c9ccd1"), 1.8));
    painter.drawLine(head, QPointF(70, 22));
    painter.setPen(round(frame, 2.2));
    painter.drawPolyline(QPolygonF({QPointF(69, 19), QPointF(75, 32), front}));
    painter.setPen(round(ink, 2));
    QPainterPath bar(QPointF(61, 12));
    bar.quadTo(66, 8, 72, 9);
    bar.cubicTo(80, 9, 80, 18, 73, 17);
    painter.strokePath(bar, round(ink, 1.7));
    painter.setPen(round(ink, 1.4));
    painter.drawLine(QPointF(37, 16), QPointF(35.8, 11));
    QPainterPath saddle(QPointF(28, 9));
    saddle.cubicTo(33, 7, 40, 9, 45, 10.5);
    saddle.cubicTo(40, 13, 33, 13, 28, 9);
    painter.fillPath(saddle, colour("#6b3a1e"));
    painter.setPen(QPen(colour("#b9bcc2"), 1.1));
    painter.setBrush(QColor(0, 0, 0, 60));
    painter.drawEllipse(crank, 5, 5);
    painter.drawLine(QPointF(46, 37), QPointF(21, 39.2));
    painter.drawLine(QPointF(46, 47), QPointF(21, 42.8));
    painter.setPen(round(colour("#8d9096"), 1.3));
    painter.drawLine(crank, QPointF(51, 50));
    painter.setPen(round(ink, 2));
    painter.drawLine(QPointF(48.6, 50.4), QPointF(54, 50.4));
}

void paintHeadphones(QPainter &painter, const QRectF &area, const QColor &shell, const QColor &cushion)
{
    const Canvas canvas(painter, area, 110);
    QPainterPath band;
    band.moveTo(15, 66);
    band.cubicTo(6, -10, 94, -10, 85, 66);
    painter.strokePath(band, round(shell.darker(190), 8.5));
    painter.strokePath(band, round(shell, 6.5));
    painter.strokePath(band.translated(-0.8, -1.2), round(shell.lighter(160), 1));
    for (const int direction : {-1, 1}) {
        painter.save();
        painter.translate(50 + direction * 35, 74);
        painter.rotate(direction * -6);
        painter.setPen(Qt::NoPen);
        painter.setBrush(cushion.darker(150));
        painter.drawRoundedRect(QRectF(direction > 0 ? -15 : 1, -22, 14, 44), 7, 9);
        painter.setBrush(across({-10, 0, 20, 1}, cushion, cushion.lighter(140)));
        painter.drawRoundedRect(QRectF(direction > 0 ? -13 : 1, -24, 12, 48), 6, 8);
        painter.setBrush(across({-14, 0, 28, 1}, shell.lighter(130), shell.darker(150)));
        painter.drawRoundedRect(QRectF(direction > 0 ? -5 : -11, -27, 16, 54), 8, 14);
        painter.setBrush(Qt::NoBrush);
        for (int ring = 0; ring < 4; ++ring) {
            painter.setPen(QPen(shell.lighter(150 - ring * 12), 0.7));
            painter.drawEllipse(QPointF(direction * 3.0, 0), 5.6 - ring * 1.3, 19.0 - ring * 4.4);
        }
        painter.restore();
    }
}

void paintBoot(QPainter &painter, const QRectF &area, const QColor &leather, const QColor &sole)
{
    const Canvas canvas(painter, area, 80);
    QPainterPath upper(QPointF(24, 6));
    upper.cubicTo(34, 9, 44, 8, 52, 4);
    upper.cubicTo(53, 22, 56, 32, 66, 38);
    upper.cubicTo(78, 44, 94, 44, 96, 62);
    upper.lineTo(12, 64);
    upper.cubicTo(10, 52, 20, 44, 20, 32);
    upper.cubicTo(20, 22, 24, 16, 24, 6);
    painter.fillPath(upper, downwards({0, 0, 100, 66}, leather.lighter(128), leather.darker(135)));
    QPainterPath toe(QPointF(76, 44));
    toe.cubicTo(88, 45, 95, 50, 96, 62);
    toe.lineTo(72, 63);
    toe.cubicTo(71, 55, 72, 49, 76, 44);
    painter.fillPath(toe, leather.darker(175));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(leather.darker(190), 0.5, Qt::DashLine));
    painter.drawPath(QPainterPath(upper).subtracted(toe));
    QPainterPath outsole(QPointF(11, 62));
    outsole.lineTo(97, 60);
    outsole.lineTo(98, 71);
    for (int i = 0; i < 14; ++i) {
        outsole.lineTo(96 - i * 6, i % 2 ? 71 : 76);
        outsole.lineTo(93 - i * 6, i % 2 ? 71 : 76);
    }
    outsole.lineTo(11, 74);
    outsole.closeSubpath();
    painter.fillPath(outsole, sole);
    painter.fillRect(QRectF(12, 62.5, 85, 2), sole.lighter(190));
    painter.setPen(round(colour("#f4d35e"), 1.5));
    for (int i = 0; i < 6; ++i) {
        painter.drawLine(QPointF(40 + i * 2.4, 13 + i * 5.4), QPointF(51 + i * 2.6, 10 + i * 5.6));
        painter.drawLine(QPointF(40 + i * 2.4, 13 + i * 5.4), QPointF(52.5 + i * 2.6, 15 + i * 5.6));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(leather.darker(160));
    painter.drawRoundedRect(QRectF(24, 1, 29, 7), 3, 3);
}

void paintFlacon(QPainter &painter, const QRectF &area, const QColor &scent)
{
    const Canvas canvas(painter, area, 130);
    painter.setBrush(across({36, 0, 28, 1}, colour("#8a6a2f"), colour("#f2dda0")));
    painter.drawRoundedRect(QRectF(36, 2, 28, 26), 3, 3);
    for (int i = 0; i < 7; ++i)
        painter.fillRect(QRectF(38 + i * 3.6, 4, 0.8, 22), QColor(70, 45, 10, 90));
    painter.fillRect(QRectF(41, 28, 18, 6), colour("#b5924c"));
    const QPolygonF glass(
        {QPointF(22, 34), QPointF(78, 34), QPointF(96, 54), QPointF(90, 122), QPointF(10, 122), QPointF(4, 54)});
    QLinearGradient body = across({4, 0, 92, 1}, scent.darker(140), scent.darker(120));
    body.setColorAt(0.25, scent.lighter(130));
    body.setColorAt(0.6, scent);
    painter.setBrush(body);
    painter.drawPolygon(glass);
    painter.setBrush(QColor(255, 255, 255, 70));
    painter.drawPolygon(
        QPolygonF({QPointF(22, 34), QPointF(38, 54), QPointF(30, 122), QPointF(10, 122), QPointF(4, 54)}));
    painter.setBrush(QColor(0, 0, 0, 28));
    painter.drawPolygon(
        QPolygonF({QPointF(78, 34), QPointF(64, 54), QPointF(72, 122), QPointF(90, 122), QPointF(96, 54)}));
    painter.fillRect(QRectF(30, 70, 40, 30), colour("#fff9f0", 0.94));
    painter.setPen(QPen(colour("#8a6a2f"), 0.7));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(32, 72, 36, 26));
    writeWide(painter, {36, 78, 28, 6}, "OSTRELLE", serif(30), colour("#4a3418"));
    write(painter, {30, 89, 40, 8}, "eau du soir", {serif(5, true), colour("#8a6a2f"), Qt::AlignHCenter, 0});
}

void paintBlock(QPainter &painter, const QPointF &top, double side, const QColor &shade)
{
    const QPointF right(side * 0.866, side * 0.5);
    const QPointF left(-side * 0.866, side * 0.5);
    const QPointF down(0, side);
    painter.setPen(QPen(shade.darker(170), side * 0.015));
    painter.setBrush(shade.lighter(118));
    painter.drawPolygon(QPolygonF({top, top + right, top + right + left, top + left}));
    painter.setBrush(shade);
    painter.drawPolygon(QPolygonF({top + left, top + left + right, top + left + right + down, top + left + down}));
    painter.setBrush(shade.darker(135));
    painter.drawPolygon(QPolygonF({top + right, top + right + left, top + right + left + down, top + right + down}));
    for (const QPointF &place : {QPointF(0, 0.25), QPointF(0.433, 0.5), QPointF(-0.433, 0.5), QPointF(0, 0.75)}) {
        const QPointF stud = top + place * side;
        painter.setBrush(shade.darker(125));
        painter.drawEllipse(stud, side * 0.2, side * 0.115);
        painter.setBrush(shade.lighter(135));
        painter.drawEllipse(stud - QPointF(0, side * 0.09), side * 0.2, side * 0.115);
    }
}

void paintWatch(QPainter &painter, const QRectF &area, const QColor &dial, const QColor &metal)
{
    const Canvas canvas(painter, area, 160);
    for (const double y : {0.0, 112.0}) {
        for (int link = 0; link < 5; ++link) {
            const QRectF place(31, y + link * 10, 38, 8.6);
            painter.setBrush(across(place, metal.darker(190), metal.lighter(120)));
            painter.drawRoundedRect(place, 2, 2);
            painter.fillRect(QRectF(43, place.y(), 14, 8.6), downwards(place, metal.lighter(135), metal.darker(140)));
        }
    }
    const QPointF middle(50, 80);
    painter.setBrush(metal.darker(120));
    painter.drawRoundedRect(QRectF(92, 75, 6, 10), 1.5, 1.5);
    painter.setBrush(QConicalGradient(middle, 40));
    QConicalGradient steel(middle, 40);
    for (int i = 0; i <= 8; ++i)
        steel.setColorAt(i / 8.0, i % 2 ? metal.lighter(140) : metal.darker(170));
    painter.setBrush(steel);
    painter.drawEllipse(middle, 44, 44);
    painter.setBrush(metal.darker(240));
    painter.drawEllipse(middle, 39, 39);
    painter.setBrush(glow(middle + QPointF(-8, -10), 52, dial.lighter(150), dial.darker(170)));
    painter.drawEllipse(middle, 37, 37);
    for (int minute = 0; minute < 60; ++minute) {
        const bool isHour = minute % 5 == 0;
        painter.setPen(QPen(isHour ? colour("#f7efd8") : colour("#d8d2c0", 0.8), isHour ? 1.8 : 0.5));
        painter.drawLine(onCircle(middle, isHour ? 29 : 33, minute * 6), onCircle(middle, 35, minute * 6));
    }
    for (const QPointF &place : {QPointF(50, 96), QPointF(36, 80)}) {
        painter.setPen(QPen(colour("#f7efd8"), 0.5));
        painter.setBrush(QColor(0, 0, 0, 70));
        painter.drawEllipse(place, 8.5, 8.5);
        for (int i = 0; i < 12; ++i)
            painter.drawLine(onCircle(place, 6.8, i * 30), onCircle(place, 8, i * 30));
        painter.drawLine(place, onCircle(place, 6, 200));
    }
    write(painter, {30, 56, 40, 8}, "ORVANDEL", {sans(5, QFont::DemiBold), colour("#f7efd8"), Qt::AlignHCenter, 14});
    painter.setPen(round(colour("#fffaf0"), 2.6));
    painter.drawLine(middle, onCircle(middle, 20, 208));
    painter.setPen(round(colour("#fffaf0"), 1.8));
    painter.drawLine(middle, onCircle(middle, 30, 332));
    painter.setPen(round(colour("#e4572e"), 0.8));
    painter.drawLine(onCircle(middle, -8, 30), onCircle(middle, 33, 30));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#e4572e"));
    painter.drawEllipse(middle, 2, 2);
}

void paintLeaf(QPainter &painter, const QPointF &foot, double length, double angle, const QColor &green)
{
    painter.save();
    painter.translate(foot);
    painter.rotate(angle);
    painter.scale(length / 100, length / 100);
    QPainterPath leaf(QPointF(0, 0));
    leaf.cubicTo(30, -14, 46, -58, 0, -100);
    leaf.cubicTo(-46, -58, -30, -14, 0, 0);
    painter.fillPath(leaf, across({-35, 0, 70, 1}, green.lighter(135), green.darker(140)));
    painter.setPen(round(green.lighter(175), 1.2));
    painter.drawLine(0, 4, 0, -94);
    painter.setPen(round(green.lighter(160), 0.7));
    for (int i = 1; i < 8; ++i) {
        painter.drawLine(QPointF(0, -i * 11.0), QPointF(22 - std::abs(i - 4) * 3.4, -i * 11.0 - 13));
        painter.drawLine(QPointF(0, -i * 11.0), QPointF(-22 + std::abs(i - 4) * 3.4, -i * 11.0 - 13));
    }
    painter.restore();
}

void paintBowl(QPainter &painter, const QPointF &middle, double radius, const QColor &glaze)
{
    painter.save();
    painter.translate(middle);
    painter.scale(radius / 100, radius / 100);
    addGroundShadow(painter, {8, 14}, 230, 230, 0.6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow({-20, -25}, 130, glaze.lighter(150), glaze.darker(150)));
    painter.drawEllipse(QPointF(0, 0), 100, 100);
    painter.setPen(QPen(colour("#f6ead2"), 2));
    for (int i = 0; i < 40; ++i)
        painter.drawLine(onCircle({0, 0}, 90, i * 9), onCircle({0, 0}, 96, i * 9 + 5));
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow({0, 0}, 86, colour("#c9762b"), colour("#7c3c12")));
    painter.drawEllipse(QPointF(0, 0), 85, 85);
    QRandomGenerator random(11);
    for (int i = 0; i < 44; ++i) {
        const double start = random.bounded(360.0);
        QPainterPath noodle(onCircle({-8, 8}, 20 + random.bounded(44.0), start));
        noodle.cubicTo(onCircle({-8, 8}, 60, start + 30), onCircle({-8, 8}, 30, start + 70),
                       onCircle({-8, 8}, 24 + random.bounded(42.0), start + 100));
        painter.strokePath(noodle, round(colour("#9c6a1e"), 4.6));
        painter.strokePath(noodle, round(colour("#f5d98a"), 3.4));
    }
    for (const QPointF &egg : {QPointF(34, -34), QPointF(54, 2)}) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour("#fffdf5"));
        painter.drawEllipse(egg, 20, 17);
        painter.setBrush(glow(egg + QPointF(-2, -2), 11, colour("#ffc93c"), colour("#f08a12")));
        painter.drawEllipse(egg, 10, 9);
    }
    painter.setBrush(colour("#1d3a2a"));
    painter.drawPolygon(QPolygonF({QPointF(-64, -52), QPointF(-22, -70), QPointF(-10, -22), QPointF(-52, -12)}));
    for (int i = 0; i < 34; ++i) {
        painter.setPen(QPen(i % 2 ? colour("#5fa345") : colour("#8ccf5f"), 2.4));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QPointF(-30 + random.bounded(50.0), 26 + random.bounded(36.0)), 3.6, 3.2);
    }
    painter.restore();
}

void paintTrumpet(QPainter &painter, const QRectF &area, const QColor &brass)
{
    const Canvas canvas(painter, area, 46);
    QPainterPath bell(QPointF(4, 2));
    bell.cubicTo(12, 14, 22, 17, 44, 17.5);
    bell.lineTo(44, 22.5);
    bell.cubicTo(22, 23, 12, 27, 4, 38);
    bell.quadTo(0, 20, 4, 2);
    painter.fillPath(bell, downwards({0, 2, 1, 36}, brass.lighter(150), brass.darker(160)));
    painter.strokePath(
        [] {
            QPainterPath tube(QPointF(44, 20));
            tube.lineTo(78, 20);
            tube.cubicTo(92, 20, 92, 38, 78, 38);
            tube.lineTo(36, 38);
            tube.cubicTo(26, 38, 26, 29, 36, 29);
            tube.lineTo(96, 29);
            return tube;
        }(),
        round(brass, 3.2));
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(across({49.0 + i * 8, 0, 6, 1}, brass.lighter(150), brass.darker(150)));
        painter.drawRoundedRect(QRectF(49 + i * 8, 14, 6, 28), 2, 2);
        painter.fillRect(QRectF(51.2 + i * 8, 6, 1.6, 8), brass.darker(130));
        painter.setBrush(colour("#fff6df"));
        painter.drawEllipse(QPointF(52 + i * 8, 5), 2.6, 1.6);
    }
    painter.setBrush(brass.darker(130));
    painter.drawPolygon(QPolygonF({QPointF(94, 27), QPointF(100, 25.5), QPointF(100, 32.5), QPointF(94, 31)}));
}

} // namespace Drawing
