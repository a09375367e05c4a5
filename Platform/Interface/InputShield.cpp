#include "Platform/Interface/InputShield.h"

namespace Platform
{

InputShield::InputShield(QQuickItem *parent)
    : View(parent)
{
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptTouchEvents(true);
    setAcceptHoverEvents(true);
}

void InputShield::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void InputShield::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

void InputShield::touchEvent(QTouchEvent *event)
{
    event->accept();
}

void InputShield::hoverEnterEvent(QHoverEvent *event)
{
    event->accept();
}

void InputShield::hoverMoveEvent(QHoverEvent *event)
{
    event->accept();
}

} // namespace Platform
