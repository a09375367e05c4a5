#include "Platform/Interface/ShapeLayer.h"

#include <QPainter>

namespace Platform
{

ShapeLayer::ShapeLayer(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void ShapeLayer::setBounds(const QRectF &bounds)
{
    m_bounds = bounds;
    place();
}

void ShapeLayer::setPosition(const QPointF &position)
{
    m_position = position;
    place();
}

void ShapeLayer::setPath(const QPainterPath &path)
{
    m_path = path;
    update();
}

void ShapeLayer::setFillColor(const QColor &color)
{
    m_fillColor = color;
    update();
}

void ShapeLayer::setStrokeColor(const QColor &color)
{
    m_strokeColor = color;
    update();
}

void ShapeLayer::setLineWidth(qreal width)
{
    m_lineWidth = width;
    place();
}

void ShapeLayer::setLineJoin(Qt::PenJoinStyle join)
{
    m_lineJoin = join;
    update();
}

void ShapeLayer::setLineDashPattern(const QList<qreal> &lengths)
{
    m_lineDashPattern = lengths;
    update();
}

void ShapeLayer::paint(QPainter *painter)
{
    QPen pen(m_strokeColor, m_lineWidth, Qt::SolidLine, Qt::FlatCap, m_lineJoin);
    if (!m_lineDashPattern.isEmpty()) {
        QList<qreal> inPenWidths = m_lineDashPattern;
        for (qreal &length : inPenWidths)
            length /= m_lineWidth;
        pen.setDashPattern(inPenWidths);
    }
    painter->translate(QPointF(m_lineWidth, m_lineWidth) - m_bounds.topLeft());
    painter->setPen(pen);
    painter->setBrush(m_fillColor);
    painter->drawPath(m_path);
}

// The item is a line's width larger than the bounds on every side: painting ends at an item's edge.
void ShapeLayer::place()
{
    const QRectF extent = m_bounds.adjusted(-m_lineWidth, -m_lineWidth, m_lineWidth, m_lineWidth);
    QQuickPaintedItem::setPosition(m_position - QPointF(extent.width(), extent.height()) / 2);
    setSize(extent.size());
    update();
}

} // namespace Platform
