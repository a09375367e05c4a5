#include "Platform/Interface/PopupTransition.h"

#include "Platform/Interface/Window.h"

namespace Platform
{

void PopupTransition::place(ViewController *controller, Window *window)
{
    attach(controller->view(), window);
}

void PopupTransition::attach(View *scene, Window *window)
{
    m_scene = scene;
    scene->setFrame(window->layer()->bounds());
    scene->setAutoresizingMask(View::FlexibleWidth | View::FlexibleHeight);
    window->layer()->addSubview(scene);
    m_popup = scene->property("popup").value<QObject *>();
    Q_ASSERT(m_popup);
    connect(m_popup, SIGNAL(opened()), this, SLOT(finish()));
    connect(m_popup, SIGNAL(closed()), this, SLOT(finish()));
}

void PopupTransition::show(bool animated, std::function<void()> done)
{
    run("open", animated, std::move(done));
}

void PopupTransition::hide(bool animated, std::function<void()> done)
{
    run("close", animated, std::move(done));
}

void PopupTransition::run(const char *method, bool animated, std::function<void()> done)
{
    m_done = std::move(done);
    if (!m_popup || !m_scene) {
        finish();
        return;
    }
    m_scene->setProperty("animated", animated && View::areAnimationsEnabled());
    QMetaObject::invokeMethod(m_popup, method);
}

void PopupTransition::finish()
{
    if (const std::function<void()> done = std::exchange(m_done, nullptr))
        done();
}

void PopupTransition::settle()
{
    finish();
}

void PopupTransition::remove()
{
    if (m_popup)
        m_popup->disconnect(this);
    if (m_scene)
        m_scene->setParentItem(nullptr);
}

void PopupTransition::takeFocus()
{
    if (m_popup && m_popup->property("visible").toBool())
        QMetaObject::invokeMethod(m_popup, "forceActiveFocus", Q_ARG(Qt::FocusReason, Qt::ActiveWindowFocusReason));
}

} // namespace Platform
