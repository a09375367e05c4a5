#pragma once

#include "Platform/Interface/Presentation.h"

namespace Platform
{

// For a controller whose scene shows itself in a stock popup above the window's contents. The scene's root has the
// properties "popup" (the Popup) and "animated"; the popup brings its own enter and exit transitions.
class PopupTransition : public QObject, public Transition
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

protected:
    // Puts such a scene's root into the window, as large as that is.
    void attach(View *scene, Window *window);
    View *scene() const { return m_scene; }

private:
    Q_SLOT void finish();
    void run(const char *method, bool animated, std::function<void()> done);

    QPointer<View> m_scene;
    QPointer<QObject> m_popup;
    std::function<void()> m_done;
};

} // namespace Platform
