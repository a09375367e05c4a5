#pragma once

#include "Platform/Interface/Presentation.h"

namespace Platform
{

// For a controller whose scene shows itself in a stock popup above the window's contents. The scene's root has the
// properties "popup" (the Popup) and "animated"; the popup brings its own enter and exit transitions.
class PopupTransition final : public QObject, public Transition
{
    Q_OBJECT

public:
    bool coversPresenter() const override { return false; }
    void place(ViewController *controller, Window *window) override;
    void show(bool animated, std::function<void()> done) override;
    void hide(bool animated, std::function<void()> done) override;
    void settle() override;
    void remove() override;
    void setCovered(bool) override { }
    void takeFocus() override;
    QQuickItem *container() const override { return nullptr; }

private:
    Q_SLOT void finish();
    void run(const char *method, bool animated, std::function<void()> done);

    QPointer<ViewController> m_controller;
    QPointer<QObject> m_popup;
    std::function<void()> m_done;
};

} // namespace Platform
