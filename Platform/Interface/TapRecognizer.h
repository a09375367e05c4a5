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
    // and high, around the view's centre, without the view itself growing.
    TapRecognizer(View *view, const QString &name, Action action, qreal minimumTarget = 44);

private:
    Q_SLOT void tapped();

    View *m_view;
    Action m_action;
};

} // namespace Platform
