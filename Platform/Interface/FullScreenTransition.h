#pragma once

#include "Platform/Interface/InputShield.h"
#include "Platform/Interface/Presentation.h"

namespace Platform
{

// Over the area of the window that screens fill, dimming what is left of the host: slides up from below and down again,
// or fades. From the first moment to the last the window below gets no input, and the screen itself none while it
// moves.
class FullScreenTransition final : public Transition
{
public:
    explicit FullScreenTransition(ModalTransitionStyle style);
    ~FullScreenTransition() override;

    bool coversPresenter() const override { return true; }
    void place(ViewController *controller, Window *window) override;
    void show(bool animated, std::function<void()> done) override;
    void hide(bool animated, std::function<void()> done) override;
    void settle() override;
    void remove() override;
    void setCovered(bool covered) override;
    void takeFocus() override;
    QQuickItem *container() const override { return m_container; }

private:
    void move(bool in, bool animated, std::function<void()> done);
    void finish();
    void fitStage();
    void setInputBlocked(bool blocked);

    ModalTransitionStyle m_style;
    QPointer<ViewController> m_controller;
    QPointer<Window> m_window;
    QPointer<InputShield> m_container; // stands still over the whole window
    QPointer<View> m_stage; // in the container: holds the screen and moves with it
    QPointer<InputShield> m_cover; // above the screen while it moves
    bool m_dims = false; // no other screen dims the host
    bool m_isLeaving = false;
    std::shared_ptr<std::function<void()>> m_done;
};

} // namespace Platform
