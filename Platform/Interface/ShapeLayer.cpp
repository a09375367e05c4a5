#include "Platform/Interface/ShapeLayer.h"

#include <QPainter>

namespace Platform
{

ShapeLayer::ShapeLayer(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

template <typename Value>
void ShapeLayer::change(Value &member, const Value &value)
{
    {
        const std::lock_guard lock(m_mutex);
        member = value;
    }
    update();
}

void ShapeLayer::setBounds(const QRectF &bounds)
{
    change(m_bounds, bounds);
    place();
}

void ShapeLayer::setPosition(const QPointF &position)
{
    change(m_position, position);
    place();
}

void ShapeLayer::setPath(const QPainterPath &path)
{
    change(m_path, path);
}

void ShapeLayer::setFillColor(const QColor &color)
{
    change(m_fillColor, color);
}

void ShapeLayer::setStrokeColor(const QColor &color)
{
    change(m_strokeColor, color);
}

void ShapeLayer::setLineWidth(qreal width)
{
    change(m_lineWidth, width);
    place();
}

void ShapeLayer::setLineJoin(Qt::PenJoinStyle join)
{
    change(m_lineJoin, join);
}

void ShapeLayer::setLineDashPattern(const QList<qreal> &lengths)
{
    change(m_lineDashPattern, lengths);
}

void ShapeLayer::paint(QPainter *painter)
{
    const std::lock_guard lock(m_mutex);
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
}

} // namespace Platform
