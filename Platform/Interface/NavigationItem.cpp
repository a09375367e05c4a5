#include "Platform/Interface/NavigationItem.h"

#include "Platform/Interface/ImageProvider.h"

namespace Platform
{

QUrl BarButtonItem::source() const
{
    return image.isEmpty() ? ImageProvider::url(picture) : image;
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
