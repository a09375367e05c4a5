#include "Platform/Interface/NavigationController.h"

#include "Platform/Interface/InputShield.h"
#include "Platform/Interface/SceneEngine.h"
#include "Platform/Interface/SystemFont.h"

#include <QQuickWindow>

using namespace std::chrono_literals;

namespace Platform
{

namespace
{

constexpr auto slideDuration = 350ms;
// How far the screen below lags behind the one that slides over it.
constexpr qreal parallax = 0.3;

} // namespace

struct NavigationController::Private {
    struct Transition {
        QPointer<ViewController> from;
        QPointer<ViewController> to;
        bool forward;
    };

    std::vector<std::unique_ptr<ViewController>> stack;
    std::unique_ptr<ViewController> leaving; // popped, still on the screen
    std::shared_ptr<Transition> transition;
    NavigationBarAppearance look;
    NavigationBarAppearance::Style toolbarStyle = NavigationBarAppearance::Style::Default;
    LayerShadow shadow;
    bool isBarHidden = false;
    bool isToolbarHidden = true;
    QPointer<InputShield> cover; // above all while screens move
};

NavigationBarAppearance &NavigationBarAppearance::appearance()
{
    static NavigationBarAppearance appearance = [] {
        NavigationBarAppearance initial;
        initial.titleFont = SystemFont::medium(17);
        return initial;
    }();
    return appearance;
}

NavigationController::NavigationController(std::unique_ptr<ViewController> rootViewController)
    : d(std::make_unique<Private>())
{
    setScene(SceneEngine::sceneUrl(QStringLiteral("NavigationScene")));
    adopt(rootViewController.get());
    connect(rootViewController.get(), &ViewController::toolbarItemsChanged, this, &NavigationController::topChanged);
    d->stack.push_back(std::move(rootViewController));
}

NavigationController::~NavigationController() = default;

void NavigationController::viewDidLoad()
{
    ViewController::viewDidLoad();
    connect(view(), &QQuickItem::widthChanged, this, [this] { place(topViewController()); });
    connect(view(), &QQuickItem::heightChanged, this, [this] { place(topViewController()); });
    // The first screen may set the appearance while it loads; the bar's look decides where the screens stand. A screen
    // may also push and pop meanwhile, which a range of the stack would not outlive.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t index = 0; index < d->stack.size(); ++index)
        d->stack[index]->view();
    d->look = NavigationBarAppearance::appearance();
    Q_EMIT barChanged();
    for (const auto &controller : d->stack)
        stack(controller.get());
    topViewController()->view()->setFocus(true);
    d->cover = new InputShield;
    d->cover->setFrame(view()->bounds());
    d->cover->setAutoresizingMask(View::FlexibleWidth | View::FlexibleHeight);
    d->cover->setHidden(true);
    view()->addSubview(d->cover);
}

ViewController *NavigationController::topViewController() const
{
    return d->stack.back().get();
}

std::vector<ViewController *> NavigationController::viewControllers() const
{
    std::vector<ViewController *> controllers;
    for (const auto &controller : d->stack)
        controllers.push_back(controller.get());
    return controllers;
}

bool NavigationController::isInTransition() const
{
    return d->transition != nullptr;
}

void NavigationController::pushViewController(std::unique_ptr<ViewController> controller, bool animated)
{
    finishTransition();
    ViewController *from = topViewController();
    ViewController *to = controller.get();
    adopt(to);
    connect(to, &ViewController::toolbarItemsChanged, this, &NavigationController::topChanged);
    d->stack.push_back(std::move(controller));
    if (!stands())
        return;
    stack(to);
    exchangeTop(from, to, true, animated);
}

void NavigationController::popViewController(bool animated)
{
    finishTransition();
    if (d->stack.size() < 2)
        return;
    d->leaving = std::move(d->stack.back());
    d->stack.pop_back();
    if (stands())
        exchangeTop(d->leaving.get(), topViewController(), false, animated);
    else
        d->leaving.release()->deleteLater(); // it may be the caller
}

void NavigationController::interactivePop()
{
    if (!isInTransition() && topViewController()->allowsInteractivePop)
        topViewController()->goBack();
}

// Whether all screens are in the stock stack: from the end of viewDidLoad on.
bool NavigationController::stands() const
{
    return d->cover != nullptr;
}

void NavigationController::exchangeTop(ViewController *from, ViewController *to, bool forward, bool animated)
{
    const bool isShown = m_appearance == Appearance::Appearing || m_appearance == Appearance::Visible;
    const bool slides = animated && m_appearance == Appearance::Visible && View::areAnimationsEnabled();
    const auto transition = std::make_shared<Private::Transition>(Private::Transition{from, to, forward});
    d->transition = transition;
    const QPointer<NavigationController> self(this);
    from->beginAppearance(false, animated);
    if (isShown)
        to->beginAppearance(true, animated);
    // The screens may have gone elsewhere from these calls.
    if (!self || d->transition != transition)
        return;
    Q_EMIT topChanged();
    to->view()->setVisible(true);
    place(to);
    to->view()->layoutIfNeeded();
    if (!slides) {
        transitionEnded();
        return;
    }
    if (d->cover) {
        d->cover->setHidden(false);
        view()->bringSubviewToFront(d->cover);
    }
    slide(from->view(), to->view(), forward);
}

void NavigationController::slide(View *from, View *to, bool forward)
{
    const QRectF shown = to->frame();
    const QRectF leavingFrame = from->frame();
    const qreal width = shown.width();
    from->setVisible(true);
    (forward ? to : from)->setZ(1);
    to->setFrame(shown.translated(forward ? width : -parallax * width, 0));
    View::animate(
        {.duration = slideDuration, .curve = AnimationCurve::EaseOut},
        [&] {
            to->setFrame(shown);
            from->setFrame(leavingFrame.translated(forward ? -parallax * width : width, 0));
        },
        [self = QPointer(this), transition = d->transition](bool) {
            if (self && self->d->transition == transition)
                self->transitionEnded();
        });
}

void NavigationController::transitionEnded()
{
    const auto transition = std::exchange(d->transition, nullptr);
    const std::shared_ptr<ViewController> leaving(d->leaving.release(), [](ViewController *controller) {
        // One of its own controls may have asked for this and be running still.
        if (controller)
            controller->deleteLater();
    });
    if (d->cover)
        d->cover->setHidden(true);
    const QPointer<NavigationController> self(this);
    if (transition->from) {
        if (transition->forward)
            transition->from->view()->setVisible(false);
        else
            QMetaObject::invokeMethod(view(), "popItem");
        transition->from->view()->setZ(0);
        transition->from->endAppearance();
    }
    if (!self)
        return;
    if (transition->to) {
        transition->to->view()->setZ(0);
        transition->to->view()->setFocus(true);
        if (m_appearance == Appearance::Visible)
            transition->to->endAppearance();
    }
    if (leaving)
        release(leaving.get());
}

void NavigationController::finishTransition()
{
    const auto transition = d->transition;
    if (!transition)
        return;
    transitionEnded();
    for (const QPointer<ViewController> &controller : {transition->from, transition->to}) {
        if (controller)
            controller->view()->removeAllAnimations();
    }
}

QRectF NavigationController::contentFrame() const
{
    QRectF content = m_view->bounds();
    if (!d->isBarHidden && !d->look.translucent)
        content.setTop(barHeight + safeAreaTop());
    if (!d->isToolbarHidden)
        content.setBottom(content.bottom() - barHeight);
    return content;
}

// Puts the controller's view on top of the stock stack. With its size set the stack leaves it alone.
void NavigationController::stack(ViewController *controller)
{
    place(controller);
    QMetaObject::invokeMethod(view(), "pushItem", Q_ARG(QQuickItem *, controller->view()));
}

void NavigationController::place(ViewController *controller)
{
    controller->view()->setFrame(contentFrame());
}

void NavigationController::setBarHidden(bool &flag, bool hidden)
{
    if (flag == hidden)
        return;
    flag = hidden;
    Q_EMIT barChanged();
    if (stands())
        place(topViewController());
}

bool NavigationController::isNavigationBarHidden() const
{
    return d->isBarHidden;
}

void NavigationController::setNavigationBarHidden(bool hidden, bool)
{
    setBarHidden(d->isBarHidden, hidden);
}

bool NavigationController::isToolbarHidden() const
{
    return d->isToolbarHidden;
}

void NavigationController::setToolbarHidden(bool hidden, bool)
{
    setBarHidden(d->isToolbarHidden, hidden);
}

void NavigationController::setToolbarStyle(NavigationBarAppearance::Style style)
{
    d->toolbarStyle = style;
    Q_EMIT barChanged();
}

void NavigationController::activateToolbarItem(int index)
{
    BarButtonItem::activate(topToolbarItems(), index);
}

void NavigationController::setNavigationBarShadow(const LayerShadow &shadow)
{
    d->shadow = shadow;
    Q_EMIT barChanged();
}

LayerShadow NavigationController::navigationBarShadow() const
{
    return d->shadow;
}

qreal NavigationController::safeAreaTop() const
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
    if (isViewLoaded() && m_view->window())
        return m_view->window()->safeAreaMargins().top();
#endif
    return 0;
}

QColor NavigationController::barColor() const
{
    QColor color = d->look.barTintColor;
    if (d->look.translucent)
        color.setAlphaF(0.85f);
    return color;
}

QColor NavigationController::tintColor() const
{
    return d->look.tintColor;
}

QColor NavigationController::titleColor() const
{
    return d->look.titleColor;
}

QFont NavigationController::titleFont() const
{
    return d->look.titleFont;
}

QColor NavigationController::toolbarColor() const
{
    return d->toolbarStyle == NavigationBarAppearance::Style::Black ? Qt::black : Qt::white;
}

QColor NavigationController::toolbarTintColor() const
{
    return d->toolbarStyle == NavigationBarAppearance::Style::Black ? Qt::white : Qt::black;
}

} // namespace Platform
