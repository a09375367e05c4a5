#pragma once

#include "Platform/Interface/PopupTransition.h"

namespace Platform
{

// In a bubble beside what its popover presentation controller names, in a stock popup over the whole window: what lies
// below gets no input, and a tap outside of the bubble asks for dismissal.
class PopoverTransition final : public PopupTransition
{
    Q_OBJECT

public:
    void place(ViewController *controller, Window *window) override;
    void remove() override;

private:
    QPointer<ViewController> m_popover;
};

} // namespace Platform
