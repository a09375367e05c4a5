#pragma once

#include <QtGui/QImage>
#include <QtGui/QPainter>

namespace Drawing
{

enum class Ground { Oak, Walnut, Plaster, Linen, Slate, Brick };

/// A ground seen from straight above.
QImage ground(Ground kind, const QSize &size, quint32 seed);

/// The soft shadow that a sheet of this outline throws on what it lies on.
void paintSheetShadow(QPainter &painter, const QRectF &sheet);
/// A sheet's own look over what is printed on it: a fold, a curl of light, worn edges.
void paintSheetGloss(QPainter &painter, const QRectF &sheet, bool isFolded);

void paintMug(QPainter &painter, const QPointF &middle, double radius, const QColor &glaze);
void paintPen(QPainter &painter, const QPointF &middle, double length, double angle, const QColor &barrel);
void paintNote(QPainter &painter, const QPointF &middle, double side, double angle, const QColor &paper);
void paintTape(QPainter &painter, const QPointF &middle, double length, double angle);
void paintKeys(QPainter &painter, const QPointF &middle, double size, double angle);
/// The end of a hand that holds the sheet from the given side.
void paintThumb(QPainter &painter, const QPointF &tip, double width, double angle, const QColor &skin);

} // namespace Drawing
