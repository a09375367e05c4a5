#pragma once

#include <QtCore/QRandomGenerator>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace Drawing
{

QColor colour(const char *hexadecimal, double alpha = 1);

QLinearGradient downwards(const QRectF &area, const QColor &top, const QColor &bottom);
QLinearGradient across(const QRectF &area, const QColor &left, const QColor &right);
QRadialGradient glow(const QPointF &middle, double radius, const QColor &inner, const QColor &outer);

/// A display face in the given height (pixels) and weight (QFont::Weight).
QFont sans(double pixels, int weight = QFont::Normal);
QFont serif(double pixels, bool isItalic = false);

struct TextStyle {
    QFont font;
    QColor ink;
    int alignment = Qt::AlignLeft | Qt::AlignTop;
    /// Extra space between letters in percent of a letter.
    double spacing = 0;
};

/// Writes into the area, broken into lines at words.
void write(QPainter &painter, const QRectF &area, const char *text, const TextStyle &style);
/// Writes one line as wide as the area.
void writeWide(QPainter &painter, const QRectF &area, const char *text, const QFont &font, const QColor &ink);

/// Paper grain over everything painted so far.
void addGrain(QImage &picture, int strength, quint32 seed);
/// Soft shadow on the ground below a thing.
void addGroundShadow(QPainter &painter, const QPointF &middle, double width, double height, double alpha = 0.45);
/// The rays of a sun around `middle`.
void addRays(QPainter &painter, const QPointF &middle, double radius, int count, const QColor &ink);
/// The rising and falling outline of hills from one side of the area to the other, closed at its bottom.
QPainterPath ridge(const QRectF &area, double height, double roughness, quint32 seed);

} // namespace Drawing
