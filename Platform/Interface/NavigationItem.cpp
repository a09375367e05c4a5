#include "Platform/Interface/NavigationItem.h"

#include "Platform/Interface/ImageProvider.h"

#include <QPainter>
#include <QPainterPath>

namespace Platform
{

namespace
{

// A glyph of lines in a square of 27 points.
template <typename Draw>
Image lineGlyph(Draw draw)
{
    constexpr int points = 27;
    constexpr int scale = 4; // the finest screens
    QImage bitmap(points * scale, points * scale, QImage::Format_ARGB32_Premultiplied);
    bitmap.fill(Qt::transparent);
    QPainter painter(&bitmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(QPen(Qt::black, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    draw(painter);
    painter.end();
    return Image(bitmap, scale);
}

Image refreshGlyph()
{
    static const Image glyph = lineGlyph([](QPainter &painter) {
        painter.drawArc(QRectF(5, 5.5, 17, 17), 60 * 16, 300 * 16);
        painter.drawPolyline(QPolygonF{{13.2, 2.6}, {17.75, 6.6}, {13.8, 11.2}});
    });
    return glyph;
}

Image actionGlyph()
{
    static const Image glyph = lineGlyph([](QPainter &painter) {
        painter.drawPolyline(QPolygonF{{10.5, 10.5}, {6, 10.5}, {6, 24}, {21, 24}, {21, 10.5}, {16.5, 10.5}});
        painter.drawLine(QPointF(13.5, 2.8), QPointF(13.5, 16));
        painter.drawPolyline(QPolygonF{{9.2, 7}, {13.5, 2.6}, {17.8, 7}});
    });
    return glyph;
}

} // namespace

QUrl BarButtonItem::source(const QColor &tintColor) const
{
    return image.isEmpty() ? ImageProvider::url(picture, tintColor) : image;
}

BarButtonItem BarButtonItem::fixedSpace(qreal width)
{
    BarButtonItem space;
    space.isSpace = true;
    space.size = QSizeF(width, 0);
    return space;
}

BarButtonItem BarButtonItem::flexibleSpace()
{
    BarButtonItem space = fixedSpace(0);
    space.isFlexible = true;
    return space;
}

BarButtonItem BarButtonItem::systemItem(SystemItem item, std::function<void()> action)
{
    if (item == SystemItem::FlexibleSpace)
        return flexibleSpace();
    BarButtonItem button;
    button.picture = item == SystemItem::Refresh ? refreshGlyph() : actionGlyph();
    button.accessibleName = item == SystemItem::Refresh ? NavigationItem::tr("Reload") : NavigationItem::tr("Share");
    button.action = std::move(action);
    return button;
}

void BarButtonItem::activate(const QList<BarButtonItem> &items, int index)
{
    if (index < 0 || index >= items.size())
        return;
    // The action may replace the list that holds it.
    const std::function<void()> action = items.at(index).enabled ? items.at(index).action : nullptr;
    if (action)
        action();
}

void NavigationItem::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    Q_EMIT changed();
}

void NavigationItem::setLeftBarButtonItems(const QList<BarButtonItem> &items)
{
    m_left = items;
    Q_EMIT changed();
}

void NavigationItem::setRightBarButtonItems(const QList<BarButtonItem> &items)
{
    m_right = items;
    Q_EMIT changed();
}

void NavigationItem::activateLeft(int index)
{
    BarButtonItem::activate(m_left, index);
}

void NavigationItem::activateRight(int index)
{
    BarButtonItem::activate(m_right, index);
}

} // namespace Platform
