#pragma once

#include "Platform/Interface/View.h"

namespace Platform
{

// Takes every touch, click, wheel turn and hover that nothing above it has taken, so that what lies below gets none.
class InputShield : public View
{
    Q_OBJECT

public:
    explicit InputShield(QQuickItem *parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void touchEvent(QTouchEvent *event) override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverMoveEvent(QHoverEvent *event) override;
};

} // namespace Platform
