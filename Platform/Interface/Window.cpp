#include "Platform/Interface/Window.h"

#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Presentation.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace Platform
{

namespace
{

// The stock popups stand at 1000001.
constexpr qreal belowPopups = 1000000;
constexpr QSizeF usualPhone(390, 844);
constexpr auto rotationDuration = 300ms;

bool isPhone([[maybe_unused]] const QSizeF &size)
{
#if defined(Q_OS_ANDROID) || defined(Q_OS_IOS)
    return true;
#else
    constexpr QSizeF largestPhone(430, 932);
    return size.width() <= largestPhone.width()
        || (size.height() <= largestPhone.width() && size.width() <= largestPhone.height());
#endif
}

// The contents of a window have no size before it is on the screen.
QSizeF contentSize(const QQuickWindow *window)
{
    const QSizeF size = window->contentItem()->size();
    return size.isEmpty() ? QSizeF(window->size()) : size;
}

bool isPortrait(const QSizeF &size)
{
    return size.height() >= size.width();
}

bool isGoBackKey(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Escape || event->key() == Qt::Key_Back;
}

bool isInside(const QQuickItem *container, const QQuickItem *item)
{
    return item == container || container->isAncestorOf(item);
}

bool isInPopup(const QQuickItem *item)
{
    for (; item; item = item->parentItem()) {
        if (item->inherits("QQuickOverlay"))
            return true;
    }
    return false;
}

// The first or last item inside that Tab reaches; null when there is none.
QQuickItem *tabStop(QQuickItem *container, bool last)
{
    QQuickItem *found = nullptr;
    QQuickItem *item = container->nextItemInFocusChain(true);
    while (item && item != found && container->isAncestorOf(item)) {
        QQuickItem *const next = item->nextItemInFocusChain(true);
        if (!last || next == item)
            return item;
        if (!found)
            found = item;
        if (!next || !container->isAncestorOf(next) || next == found)
            return item;
        item = next;
    }
    return found;
}

} // namespace

Window *Window::keyWindow()
{
    if (auto *focused = qobject_cast<QQuickWindow *>(QGuiApplication::focusWindow()))
        return of(focused);
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        auto *quickWindow = qobject_cast<QQuickWindow *>(window);
        if (quickWindow && quickWindow->isVisible())
            return of(quickWindow);
    }
    return nullptr;
}

Window *Window::of(QQuickWindow *window)
{
    if (auto *existing = window->findChild<Window *>(QString(), Qt::FindDirectChildrenOnly))
        return existing;
    return new Window(window);
}

Window::Window(QQuickWindow *window)
    : QObject(window)
    , m_quickWindow(window)
    , m_root(std::make_unique<ViewController>())
    , m_size(contentSize(window))
{
    View *root = m_root->view();
    root->setSize(m_size);
    root->setZ(belowPopups);
    root->setParentItem(window->contentItem());
    m_root->beginAppearance(true, false);
    m_root->endAppearance();
    connect(window->contentItem(), &QQuickItem::widthChanged, this, &Window::resize);
    connect(window->contentItem(), &QQuickItem::heightChanged, this, &Window::resize);
    connect(window, &QQuickWindow::activeFocusItemChanged, this, [this] {
        if (isPresenting())
            DispatchQueue::mainAsync(this, [this] { keepFocusInside(); });
    });
    window->installEventFilter(this);
}

Window::~Window()
{
    // The presented screens go first: they still reach their presenters.
    m_leaving.clear();
    m_root.reset();
}

QRectF Window::bounds() const
{
    return {QPointF(0, 0), m_size};
}

QRectF Window::screenFrame() const
{
    if (isPhone(m_size))
        return bounds();
    QRectF frame(QPointF(), m_size.boundedTo(usualPhone));
    frame.moveCenter(bounds().center());
    return {QPointF(frame.topLeft().toPoint()), frame.size()};
}

ViewController *Window::topmostViewController() const
{
    ViewController *top = m_root.get();
    while (ViewController *presented = top->presentedViewController())
        top = presented;
    while (ViewController *child = top->shownChild())
        top = child;
    return top;
}

Presentation *Window::topmostPresentation() const
{
    Presentation *top = m_root->m_presentation.get();
    while (top && top->presented()->m_presentation)
        top = top->presented()->m_presentation.get();
    return top;
}

bool Window::isPresenting() const
{
    return m_root && (m_root->m_presentation || !m_leaving.empty());
}

bool Window::isInTransition() const
{
    if (!m_leaving.empty())
        return true;
    const Presentation *top = topmostPresentation();
    if (!top)
        return false;
    const auto *navigation = qobject_cast<const NavigationController *>(top->presented());
    return !top->isPresented() || (navigation && navigation->isInTransition());
}

void Window::resize()
{
    if (!m_root || !m_quickWindow->contentItem())
        return;
    const QSizeF size = m_quickWindow->contentItem()->size();
    if (size == m_size)
        return;
    const QSizeF before = screenFrame().size();
    m_size = size;
    const bool turns = isPortrait(screenFrame().size()) != isPortrait(before) && !before.isEmpty();
    layer()->setSize(size);
    if (!turns)
        return;
    std::vector<QPointer<ViewController>> turned;
    for (ViewController *shown = m_root->presentedViewController(); shown; shown = shown->presentedViewController()) {
        for (ViewController *child = shown; child; child = child->shownChild())
            turned.emplace_back(child);
    }
    for (const QPointer<ViewController> &controller : turned) {
        if (controller && controller->isVisible())
            controller->willAnimateRotation(rotationDuration);
    }
}

void Window::presentationBegan()
{
    if (topmostPresentation()->presenter() != m_root.get() || !m_leaving.empty())
        return;
    m_hostFocus = m_quickWindow->activeFocusItem();
    m_hostVisibility = m_quickWindow->visibility();
    m_hostHidesStatusBar = Application::isStatusBarHidden();
}

void Window::presentationEnded()
{
    if (Presentation *top = topmostPresentation()) {
        top->takeFocus();
        return;
    }
    if (!m_leaving.empty())
        return;
    if (m_hostFocus && m_hostFocus->window() == m_quickWindow)
        m_hostFocus->forceActiveFocus(Qt::ActiveWindowFocusReason);
    m_hostFocus = nullptr;
    Application::setStatusBarHidden(m_hostHidesStatusBar);
#if defined(Q_OS_ANDROID) || defined(Q_OS_IOS)
    m_quickWindow->setVisibility(m_hostVisibility);
#endif
}

void Window::keepUntilGone(std::unique_ptr<Presentation> presentation)
{
    m_leaving.push_back(std::move(presentation));
}

std::unique_ptr<Presentation> Window::takeGone(const Presentation *presentation)
{
    const auto found = std::find_if(m_leaving.begin(), m_leaving.end(),
                                    [presentation](const auto &leaving) { return leaving.get() == presentation; });
    if (found == m_leaving.end())
        return nullptr;
    std::unique_ptr<Presentation> gone = std::move(*found);
    m_leaving.erase(found);
    return gone;
}

// The window's chain of Tab stops leads through the host's controls too.
void Window::keepFocusInside()
{
    const Presentation *top = topmostPresentation();
    QQuickItem *container = top ? top->transition()->container() : nullptr;
    const QQuickItem *focused = m_quickWindow->activeFocusItem();
    const Qt::Key tabKey = std::exchange(m_tabKey, Qt::Key_unknown);
    if (!container || !focused || isInside(container, focused) || isInPopup(focused))
        return;
    const bool isBackwards = tabKey == Qt::Key_Backtab;
    QQuickItem *stop = tabKey == Qt::Key_unknown ? nullptr : tabStop(container, isBackwards);
    if (stop)
        stop->forceActiveFocus(isBackwards ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    else
        container->forceActiveFocus(Qt::ActiveWindowFocusReason);
}

bool Window::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease
        || event->type() == QEvent::ShortcutOverride;
    if (!isKey || !isPresenting())
        return QObject::eventFilter(watched, event);
    const auto *key = static_cast<const QKeyEvent *>(event);
    if (event->type() == QEvent::ShortcutOverride) {
        // The host's shortcuts rest.
        event->accept();
        return true;
    }
    if (isInTransition()) {
        event->accept();
        return true;
    }
    if (isGoBackKey(key)) {
        event->accept();
        if (event->type() == QEvent::KeyPress && !key->isAutoRepeat())
            goBack();
        return true;
    }
    const bool isTab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    const bool isBackwards = key->key() == Qt::Key_Backtab || key->modifiers().testFlag(Qt::ShiftModifier);
    if (event->type() == QEvent::KeyPress)
        m_tabKey = !isTab ? Qt::Key_unknown : isBackwards ? Qt::Key_Backtab : Qt::Key_Tab;
    return false;
}

void Window::goBack()
{
    for (ViewController *controller = topmostViewController(); controller;
         controller = controller->parentViewController()) {
        if (controller->goBack())
            return;
    }
}

} // namespace Platform
