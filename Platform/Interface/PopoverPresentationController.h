#pragma once

#include "Platform/Interface/Delegate.h"
#include "Platform/Interface/PopoverPlacement.h"
#include "Platform/Interface/View.h"

namespace Platform
{

class PopoverPresentationController;
class ViewController;

// Asked and told when the user, rather than the application, closes a popover. All operations are optional.
class PopoverPresentationControllerDelegate
{
public:
    virtual ~PopoverPresentationControllerDelegate() = default;
    virtual bool popoverPresentationControllerShouldDismissPopover(PopoverPresentationController *) { return true; }
    virtual void popoverPresentationControllerDidDismissPopover(PopoverPresentationController *) { }
};

// How and where a controller is shown as a popover: to be filled in before it is presented. Belongs to that controller.
class PopoverPresentationController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A controller has it")
    Q_PROPERTY(QRectF frame READ frame NOTIFY placementChanged)
    Q_PROPERTY(QPointF arrowTip READ arrowTip NOTIFY placementChanged)
    Q_PROPERTY(QPointF arrowVector READ arrowVector NOTIFY placementChanged)
    Q_PROPERTY(qreal cornerRadius READ cornerRadius CONSTANT)
    Q_PROPERTY(QColor backgroundColor READ backgroundColor NOTIFY backgroundColorChanged)
    Q_PROPERTY(QColor arrowColor READ arrowColor NOTIFY backgroundColorChanged)

public:
    explicit PopoverPresentationController(ViewController *presented);

    // What the arrow points at: a rectangle in the coordinates of the view. Without a view, the middle of the window.
    void setSourceView(View *sourceView) { m_sourceView = sourceView; }
    void setSourceRect(const QRectF &sourceRect) { m_sourceRect = sourceRect; }
    // Any unless set.
    void setPermittedArrowDirections(PopoverArrowDirections directions) { m_permittedArrowDirections = directions; }
    // Behind the contents and on the arrow; white unless set. A transparent one leaves the contents' own, there too.
    QColor backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const QColor &color);
    void setDelegate(const Delegate<PopoverPresentationControllerDelegate> &delegate) { m_delegate = delegate; }

    // Where the popover stands now, in the window. The vector is the arrow's direction, of length 1; zero without one.
    QRectF frame() const { return m_placement.frame; }
    QPointF arrowTip() const { return m_placement.arrowTip; }
    QPointF arrowVector() const;

    // The user wants the popover away: asks the delegate, dismisses and tells it.
    Q_INVOKABLE void requestDismissal();

Q_SIGNALS:
    void placementChanged();
    void backgroundColorChanged();

private:
    friend class PopoverTransition;

    static qreal cornerRadius() { return PopoverPlacement::cornerRadius; }
    QColor arrowColor() const;
    // Finds the place in `scene`, which fills the window.
    void placeIn(const View *scene);

    QPointer<ViewController> m_presented;
    QPointer<View> m_sourceView;
    QRectF m_sourceRect;
    PopoverArrowDirections m_permittedArrowDirections = PopoverArrowDirection::Any;
    QColor m_backgroundColor = Qt::white;
    Delegate<PopoverPresentationControllerDelegate> m_delegate;
    PopoverPlacement m_placement;
};

} // namespace Platform
