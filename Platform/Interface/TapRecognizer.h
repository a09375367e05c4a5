#pragma once

#include "Platform/Interface/View.h"

namespace Platform
{

// Calls back when its view is tapped with one finger or clicked, or activated by the keyboard or an assistive
// technology. Owned by the view.
class TapRecognizer : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(View *view)>;

    // `name` is what an assistive technology calls the view. The touch target is at least `minimumTarget` points wide
    // and high, around the view's centre, without the view itself growing. Where the targets of views in one superview
    // overlap, the view nearest to the finger takes the tap, and of several under it the uppermost.
    TapRecognizer(View *view, const QString &name, Action action, qreal minimumTarget = 44);

    // Of the touch target, which asks this of the points in its own coordinates.
    Q_INVOKABLE bool contains(const QPointF &point) const;

private:
    Q_SLOT void tapped();

    View *m_view;
    QQuickItem *m_target; // owned by the view
    Action m_action;
};

} // namespace Platform
