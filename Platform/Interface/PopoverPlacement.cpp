#include "Platform/Interface/PopoverPlacement.h"

#include <QtGlobal>

#include <cmath>

namespace Platform
{

namespace
{

using enum PopoverArrowDirection;

constexpr PopoverArrowDirection inOrderOfPreference[] = {Up, Down, Left, Right};
// Contents that would be cut down to less than this stand better over the anchor.
constexpr QSizeF leastSize(200, 100);

QRectF roomBeside(const QRectF &anchor, QRectF room, PopoverArrowDirection direction)
{
    constexpr qreal distance = PopoverPlacement::arrowLength;
    switch (direction) {
    case Up:
        room.setTop(qMax(room.top(), anchor.bottom() + distance));
        break;
    case Down:
        room.setBottom(qMin(room.bottom(), anchor.top() - distance));
        break;
    case Left:
        room.setLeft(qMax(room.left(), anchor.right() + distance));
        break;
    case Right:
        room.setRight(qMin(room.right(), anchor.left() - distance));
        break;
    default:
        break;
    }
    return room;
}

bool holds(const QSizeF &room, const QSizeF &size)
{
    return room.width() >= size.width() && room.height() >= size.height();
}

qreal held(qreal value, qreal least, qreal most)
{
    return qMax(least, qMin(value, most));
}

// Whole points, so that the edges are sharp.
QRectF centredInside(const QRectF &room, const QPointF &center, const QSizeF &size)
{
    return {QPointF(std::round(held(center.x() - size.width() / 2, room.left(), room.right() - size.width())),
                    std::round(held(center.y() - size.height() / 2, room.top(), room.bottom() - size.height()))),
            size};
}

// Off the rounded corners, as near to `wish` as can be.
qreal alongTheEdge(qreal wish, qreal start, qreal end)
{
    constexpr qreal corner = PopoverPlacement::cornerRadius + PopoverPlacement::arrowBase / 2;
    return end - start < 2 * corner ? (start + end) / 2 : held(wish, start + corner, end - corner);
}

QPointF tipOf(const QRectF &frame, const QPointF &target, PopoverArrowDirection direction)
{
    constexpr qreal length = PopoverPlacement::arrowLength;
    const qreal x = alongTheEdge(target.x(), frame.left(), frame.right());
    const qreal y = alongTheEdge(target.y(), frame.top(), frame.bottom());
    switch (direction) {
    case Up:
        return {x, frame.top() - length};
    case Down:
        return {x, frame.bottom() + length};
    case Left:
        return {frame.left() - length, y};
    case Right:
        return {frame.right() + length, y};
    default:
        return frame.center();
    }
}

} // namespace

PopoverPlacement PopoverPlacement::beside(const QRectF &anchor, const QRectF &area, const QSizeF &contentSize,
                                          PopoverArrowDirections permittedArrowDirections)
{
    const QRectF inner = area.adjusted(margin, margin, -margin, -margin);
    PopoverArrowDirection chosen = None;
    QRectF chosenRoom;
    qreal mostShown = 0;
    for (const PopoverArrowDirection direction : inOrderOfPreference) {
        if (!(permittedArrowDirections & direction))
            continue;
        const QRectF room = roomBeside(anchor, inner, direction);
        const QSizeF shown = contentSize.boundedTo(room.size());
        if (!holds(shown, contentSize.boundedTo(leastSize)) || shown.width() * shown.height() <= mostShown)
            continue;
        mostShown = shown.width() * shown.height();
        chosen = direction;
        chosenRoom = room;
    }
    // The sides by preference: a later one shows more only if none before it shows all.
    const QRectF room = chosen == None ? inner : chosenRoom;
    QPointF center = anchor.center();
    const QSizeF size = contentSize.boundedTo(room.size()).expandedTo({0, 0});
    if (chosen == Up)
        center.setY(room.top() + size.height() / 2);
    else if (chosen == Down)
        center.setY(room.bottom() - size.height() / 2);
    else if (chosen == Left)
        center.setX(room.left() + size.width() / 2);
    else if (chosen == Right)
        center.setX(room.right() - size.width() / 2);
    PopoverPlacement placement;
    placement.frame = centredInside(room, center, size);
    placement.arrowDirection = chosen;
    placement.arrowTip = tipOf(placement.frame, anchor.center(), chosen);
    return placement;
}

} // namespace Platform
