#include "Platform/Interface/PopoverPresentationController.h"

#include "Platform/Interface/Presentation.h"
#include "Platform/Interface/ViewController.h"

namespace Platform
{

PopoverPresentationController::PopoverPresentationController(ViewController *presented)
    : m_presented(presented)
{
}

QPointF PopoverPresentationController::arrowVector() const
{
    switch (m_placement.arrowDirection) {
    case PopoverArrowDirection::Up:
        return {0, -1};
    case PopoverArrowDirection::Down:
        return {0, 1};
    case PopoverArrowDirection::Left:
        return {-1, 0};
    case PopoverArrowDirection::Right:
        return {1, 0};
    default:
        return {};
    }
}

void PopoverPresentationController::setBackgroundColor(const QColor &color)
{
    m_backgroundColor = color;
    Q_EMIT backgroundColorChanged();
}

QColor PopoverPresentationController::arrowColor() const
{
    return m_backgroundColor.alpha() > 0 || !m_presented ? m_backgroundColor : m_presented->view()->backgroundColor();
}

void PopoverPresentationController::requestDismissal()
{
    if (!m_presented || m_presented->isOnItsWayOut())
        return;
    const QPointer<PopoverPresentationController> self(this);
    const Delegate<PopoverPresentationControllerDelegate> delegate = m_delegate;
    if (delegate.get() && !delegate.get()->popoverPresentationControllerShouldDismissPopover(this))
        return;
    if (!self || !m_presented)
        return;
    m_presented->dismiss(true, [self, delegate] {
        if (delegate.get())
            delegate.get()->popoverPresentationControllerDidDismissPopover(self);
    });
}

void PopoverPresentationController::placeIn(const View *scene)
{
    if (!m_presented)
        return;
    const QRectF area = scene->bounds();
    const QRectF anchor = m_sourceView && m_sourceView->window() ? m_sourceView->mapRectToItem(scene, m_sourceRect)
                                                                 : QRectF(area.center(), QSizeF());
    m_placement = PopoverPlacement::beside(anchor, area, m_presented->preferredContentSize, m_permittedArrowDirections);
    Q_EMIT placementChanged();
}

} // namespace Platform
