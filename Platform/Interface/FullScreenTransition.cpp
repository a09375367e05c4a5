#include "Platform/Interface/FullScreenTransition.h"

#include "Platform/Interface/Window.h"

using namespace std::chrono_literals;

namespace Platform
{

namespace
{

constexpr auto duration = 350ms;
const QColor clear(0, 0, 0, 0);
const QColor dimmed(0, 0, 0, 128);
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
    m_window = window;
    View *layer = window->layer();
    m_container = new InputShield;
    m_container->setFlag(QQuickItem::ItemIsFocusScope);
    m_container->setFrame(layer->bounds());
    m_container->setAutoresizingMask(flexibleSize);
    m_container->setParentItem(layer);
    m_dims = controller->presentingViewController() == window->rootViewController();

    m_stage = new View;
    m_container->addSubview(m_stage);
    fitStage();
    View *screen = controller->view();
    screen->setFrame(m_stage->bounds());
    screen->setAutoresizingMask(flexibleSize);
    m_stage->addSubview(screen);

    m_cover = new InputShield;
    m_cover->setFrame(m_container->bounds());
    m_cover->setAutoresizingMask(flexibleSize);
    m_container->addSubview(m_cover);
    setInputBlocked(true);
    QObject::connect(m_container, &QQuickItem::widthChanged, m_stage, [this] { fitStage(); });
    QObject::connect(m_container, &QQuickItem::heightChanged, m_stage, [this] { fitStage(); });
}

void FullScreenTransition::fitStage()
{
    const QRectF frame = m_window->screenFrame();
    const bool isWhole = frame == m_window->bounds();
    m_stage->setFrame(frame);
    m_stage->setClip(!isWhole);
    m_container->setBackgroundColor(m_dims && !isWhole ? dimmed : clear);
    // On its way out the screen has no place in the new window.
    if (m_isLeaving)
        m_container->setHidden(true);
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
    m_isLeaving = !in;
    if (!m_container || !animated || !View::areAnimationsEnabled()) {
        if (m_container && !in)
            m_container->setHidden(true);
        finish();
        return;
    }
    setInputBlocked(true);
    const bool fades = m_style == ModalTransitionStyle::CrossDissolve;
    const QRectF shown = m_window->screenFrame();
    const QRectF below(QPointF(shown.x(), m_container->bounds().height()), shown.size());
    const QColor ground = m_container->backgroundColor();
    const auto put = [&](bool isIn) {
        m_container->setBackgroundColor(isIn ? ground : clear);
        if (fades)
            m_stage->setAlpha(isIn ? 1 : 0);
        else
            m_stage->setFrame(isIn ? shown : below);
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
    for (View *moved : {static_cast<View *>(m_container.data()), m_stage.data()}) {
        if (moved)
            moved->removeAllAnimations();
    }
    finish();
}

void FullScreenTransition::remove()
{
    if (m_controller && m_controller->isViewLoaded() && m_controller->view()->parentItem() == m_stage)
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
    // The container stays: what it dims shows beside the screens above too.
    if (m_stage)
        m_stage->setHidden(covered);
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
