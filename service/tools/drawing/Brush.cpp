#include "service/tools/drawing/Brush.h"

#include <QtCore/QtMath>

#include <cmath>

namespace Drawing
{

QColor colour(const char *hexadecimal, double alpha)
{
    QColor result(QString::fromLatin1(hexadecimal));
    result.setAlphaF(float(alpha));
    return result;
}

QLinearGradient downwards(const QRectF &area, const QColor &top, const QColor &bottom)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    return gradient;
}

QLinearGradient across(const QRectF &area, const QColor &left, const QColor &right)
{
    QLinearGradient gradient(area.topLeft(), area.topRight());
    gradient.setColorAt(0, left);
    gradient.setColorAt(1, right);
    return gradient;
}

QRadialGradient glow(const QPointF &middle, double radius, const QColor &inner, const QColor &outer)
{
    QRadialGradient gradient(middle, radius);
    gradient.setColorAt(0, inner);
    gradient.setColorAt(1, outer);
    return gradient;
}

QFont sans(double pixels, int weight)
{
    QFont font(QStringLiteral("Inter Display"));
    font.setWeight(QFont::Weight(weight));
    font.setPixelSize(int(pixels));
    return font;
}

QFont serif(double pixels, bool isItalic)
{
    QFont font(QStringLiteral("DejaVu Serif"));
    font.setItalic(isItalic);
    font.setPixelSize(int(pixels));
    return font;
}

void write(QPainter &painter, const QRectF &area, const char *text, const TextStyle &style)
{
    QFont font = style.font;
    font.setLetterSpacing(QFont::PercentageSpacing, 100 + style.spacing);
    painter.setFont(font);
    painter.setPen(style.ink);
    painter.drawText(area, style.alignment | Qt::TextWordWrap, QString::fromUtf8(text));
}

void writeWide(QPainter &painter, const QRectF &area, const char *text, const QFont &font, const QColor &ink)
{
    QPainterPath path;
    path.addText(0, 0, font, QString::fromUtf8(text));
    const QRectF drawn = path.boundingRect();
    const double factor = area.width() / drawn.width();
    painter.save();
    painter.translate(area.left() - drawn.left() * factor, area.bottom() - drawn.bottom() * factor);
    painter.scale(factor, factor);
    painter.fillPath(path, ink);
    painter.restore();
}

void addGrain(QImage &picture, int strength, quint32 seed)
{
    QRandomGenerator random(seed);
    for (int y = 0; y < picture.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const int change = random.bounded(-strength, strength + 1);
            line[x] = qRgb(qBound(0, qRed(line[x]) + change, 255), qBound(0, qGreen(line[x]) + change, 255),
                           qBound(0, qBlue(line[x]) + change, 255));
        }
    }
}

void addGroundShadow(QPainter &painter, const QPointF &middle, double width, double height, double alpha)
{
    painter.save();
    painter.translate(middle);
    painter.scale(width / 2, height / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow({0, 0}, 1, QColor::fromRgbF(0, 0, 0, float(alpha)), Qt::transparent));
    painter.drawEllipse(QPointF(0, 0), 1, 1);
    painter.restore();
}

void addRays(QPainter &painter, const QPointF &middle, double radius, int count, const QColor &ink)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * M_PI * i / count;
        const double half = M_PI / count / 2;
        painter.drawPolygon(
            QPolygonF({middle, middle + radius * QPointF(std::cos(angle - half), std::sin(angle - half)),
                       middle + radius * QPointF(std::cos(angle + half), std::sin(angle + half))}));
    }
}

QPainterPath ridge(const QRectF &area, double height, double roughness, quint32 seed)
{
    QRandomGenerator random(seed);
    double phases[6];
    for (double &phase : phases)
        phase = random.generateDouble() * 6.28;
    QPainterPath path(area.bottomLeft());
    for (int step = 0; 3 * step <= area.width() + 3; ++step) {
        const double x = area.left() + 3 * step;
        const double t = (x - area.left()) / area.width();
        double level = 0;
        for (int wave = 0; wave < 6; ++wave)
            level += std::pow(roughness, wave) * std::sin(phases[wave] + t * 3.1 * std::pow(2, wave));
        path.lineTo(x, area.top() + height * (0.5 - 0.35 * level));
    }
    path.lineTo(area.bottomRight());
    path.closeSubpath();
    return path;
}

} // namespace Drawing
