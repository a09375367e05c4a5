#include "Platform/Interface/FullScreenTransition.h"

#include "Platform/Interface/Window.h"

using namespace std::chrono_literals;

namespace Platform
{

namespace
{

constexpr auto duration = 350ms;
constexpr int flexibleSize = View::FlexibleWidth | View::FlexibleHeight;

} // namespace

FullScreenTransition::FullScreenTransition(ModalTransitionStyle style)
    : m_style(style)
{
}

FullScreenTransition::~FullScreenTransition()
{
    remove();
}

void FullScreenTransition::place(ViewController *controller, Window *window)
{
    m_controller = controller;
    View *layer = window->layer();
    m_container = new InputShield;
    m_container->setFlag(QQuickItem::ItemIsFocusScope);
    m_container->setFrame(layer->bounds());
    m_container->setAutoresizingMask(flexibleSize);
    m_container->setParentItem(layer);

    View *screen = controller->view();
    screen->setFrame(m_container->bounds());
    screen->setAutoresizingMask(flexibleSize);
    m_container->addSubview(screen);

    m_cover = new InputShield;
    m_cover->setFrame(m_container->bounds());
    m_cover->setAutoresizingMask(flexibleSize);
    m_container->addSubview(m_cover);
    setInputBlocked(true);
}

void FullScreenTransition::show(bool animated, std::function<void()> done)
{
    move(true, animated, std::move(done));
}

void FullScreenTransition::hide(bool animated, std::function<void()> done)
{
    move(false, animated, std::move(done));
}

void FullScreenTransition::move(bool in, bool animated, std::function<void()> done)
{
    auto call = std::make_shared<std::function<void()>>(std::move(done));
    m_done = call;
    if (!m_container || !animated || !View::areAnimationsEnabled()) {
        if (m_container && !in)
            m_container->setHidden(true);
        finish();
        return;
    }
    setInputBlocked(true);
    const bool fades = m_style == ModalTransitionStyle::CrossDissolve;
    const QRectF shown = m_container->bounds();
    const QRectF below = shown.translated(0, shown.height());
    const auto put = [container = m_container.data(), fades, shown, below](bool isIn) {
        if (fades)
            container->setAlpha(isIn ? 1 : 0);
        else
            container->setFrame(isIn ? shown : below);
    };
    if (in)
        put(false);
    View::animate(
        {.duration = duration, .curve = fades ? AnimationCurve::EaseInOut : AnimationCurve::EaseOut}, [&] { put(in); },
        [this, alive = std::weak_ptr(call)](bool) {
            if (const auto current = alive.lock(); current && current == m_done)
                finish();
        });
}

void FullScreenTransition::finish()
{
    setInputBlocked(false);
    if (const auto done = std::exchange(m_done, nullptr))
        (*done)();
}

void FullScreenTransition::settle()
{
    if (!m_done)
        return;
    if (m_container)
        m_container->removeAllAnimations();
    finish();
}

void FullScreenTransition::remove()
{
    if (m_controller && m_controller->isViewLoaded() && m_controller->view()->parentItem() == m_container)
        m_controller->view()->setParentItem(nullptr);
    if (!m_container)
        return;
    m_container->setParentItem(nullptr);
    // One of its screen's controls may be running.
    m_container.data()->deleteLater();
    m_container = nullptr;
}

void FullScreenTransition::setCovered(bool covered)
{
    if (m_container)
        m_container->setHidden(covered);
}

void FullScreenTransition::takeFocus()
{
    if (!m_container || !m_controller)
        return;
    m_controller->view()->setFocus(true);
    m_container->forceActiveFocus(Qt::ActiveWindowFocusReason);
}

void FullScreenTransition::setInputBlocked(bool blocked)
{
    if (m_cover)
        m_cover->setHidden(!blocked);
}

} // namespace Platform
