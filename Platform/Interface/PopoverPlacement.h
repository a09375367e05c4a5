#pragma once

#include <QFlags>
#include <QPointF>
#include <QRectF>

namespace Platform
{

// Where the arrow of a popover points.
enum class PopoverArrowDirection { None = 0, Up = 1, Down = 2, Left = 4, Right = 8, Any = 15 };
Q_DECLARE_FLAGS(PopoverArrowDirections, PopoverArrowDirection)
Q_DECLARE_OPERATORS_FOR_FLAGS(PopoverArrowDirections)

// Where a popover stands. Lengths are in points, all in the coordinates of the area that it has for itself.
struct PopoverPlacement {
    static constexpr qreal margin = 10; // to the area's edges
    static constexpr qreal arrowLength = 12;
    static constexpr qreal arrowBase = 24;
    static constexpr qreal cornerRadius = 14;

    QRectF frame; // of the contents, without the arrow
    PopoverArrowDirection arrowDirection = PopoverArrowDirection::None;
    QPointF arrowTip;

    // Beside `anchor`, on the first side that holds contents of that size: below it, above, to the right, to the left.
    // When none does, on the side that shows most of them. Without room on any side the popover covers the anchor and
    // has no arrow.
    static PopoverPlacement beside(const QRectF &anchor, const QRectF &area, const QSizeF &contentSize,
                                   PopoverArrowDirections permittedArrowDirections);
};

} // namespace Platform
