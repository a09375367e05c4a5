#pragma once

#include <QtGui/QColor>
#include <QtGui/QPainter>

namespace Drawing
{

// The invented products of the catalogue. Each is painted into `area`, whose proportions are the product's own
// business.

void paintBottle(QPainter &painter, const QRectF &area, const QColor &drink, const QColor &label);
void paintCitrusSlice(QPainter &painter, const QPointF &middle, double radius, const QColor &flesh);
void paintBicycle(QPainter &painter, const QRectF &area, const QColor &frame, const QColor &ink);
void paintHeadphones(QPainter &painter, const QRectF &area, const QColor &shell, const QColor &cushion);
void paintBoot(QPainter &painter, const QRectF &area, const QColor &leather, const QColor &sole);
void paintFlacon(QPainter &painter, const QRectF &area, const QColor &scent);
/// A cube with studs, seen from above at an angle; `side` is the length of one edge.
void paintBlock(QPainter &painter, const QPointF &top, double side, const QColor &colour);
void paintWatch(QPainter &painter, const QRectF &area, const QColor &dial, const QColor &metal);
void paintLeaf(QPainter &painter, const QPointF &foot, double length, double angle, const QColor &green);
void paintBowl(QPainter &painter, const QPointF &middle, double radius, const QColor &glaze);
void paintTrumpet(QPainter &painter, const QRectF &area, const QColor &brass);

} // namespace Drawing
