#pragma once

#include <QColor>
#include <QList>
#include <QPainterPath>
#include <QQuickPaintedItem>

#include <mutex>

namespace Platform
{

// A path drawn with a pen, laid over a view. Lengths are points; the pen's outer half may reach beyond the bounds. For
// the main thread only.
class ShapeLayer : public QQuickPaintedItem
{
    Q_OBJECT

public:
    explicit ShapeLayer(QQuickItem *parent = nullptr);

    // The part of the path's coordinates that stands at position().
    QRectF bounds() const { return m_bounds; }
    void setBounds(const QRectF &bounds);
    // Where the centre of the bounds stands in the view.
    QPointF position() const { return m_position; }
    void setPosition(const QPointF &position);

    QPainterPath path() const { return m_path; }
    void setPath(const QPainterPath &path);
    // Transparent unless set, both.
    void setFillColor(const QColor &color);
    void setStrokeColor(const QColor &color);
    qreal lineWidth() const { return m_lineWidth; }
    void setLineWidth(qreal width);
    void setLineJoin(Qt::PenJoinStyle join);
    // Lengths drawn and left out in turn; empty for an unbroken line.
    QList<qreal> lineDashPattern() const { return m_lineDashPattern; }
    void setLineDashPattern(const QList<qreal> &lengths);

    void removeFromSuperlayer() { setParentItem(nullptr); }

    void paint(QPainter *painter) override;

private:
    template <typename Value>
    void change(Value &member, const Value &value);
    void place();

    // Painting happens on the renderer's thread, while the main thread waits for it.
    std::mutex m_mutex;
    QRectF m_bounds;
    QPointF m_position;
    QPainterPath m_path;
    QColor m_fillColor = Qt::transparent;
    QColor m_strokeColor = Qt::transparent;
    qreal m_lineWidth = 1;
    Qt::PenJoinStyle m_lineJoin = Qt::MiterJoin;
    QList<qreal> m_lineDashPattern;
};

} // namespace Platform
