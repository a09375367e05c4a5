#include "Brevanto/Utils/BrevantoPopupViewController.h"

#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Interface/InputShield.h"

#include <QQuickWindow>

using namespace Platform;
using namespace std::chrono_literals;

namespace BrevantoPopupViewController
{

namespace
{

constexpr auto duration = 500ms;
constexpr int flexibleMargins =
    View::FlexibleLeftMargin | View::FlexibleRightMargin | View::FlexibleTopMargin | View::FlexibleBottomMargin;
constexpr int flexibleSize = View::FlexibleWidth | View::FlexibleHeight;

// Covers the screen below a popup, and holds the popup and the dark view behind it.
class Overlay final : public InputShield
{
    Q_OBJECT

public:
    void takeFocus(View *popupView)
    {
        m_focusBefore = window() ? window()->activeFocusItem() : nullptr;
        popupView->forceActiveFocus(Qt::PopupFocusReason);
    }

    // The overlay itself goes later: one of the popup's own controls may be running.
    void remove(View *popupView)
    {
        const bool hadFocus = popupView && popupView->hasActiveFocus();
        if (popupView) {
            popupView->removeFromSuperview();
            popupView->setTag(0);
        }
        if (hadFocus && m_focusBefore && m_focusBefore->window())
            m_focusBefore->forceActiveFocus(Qt::PopupFocusReason);
        removeFromSuperview();
        deleteLater();
    }

    bool isLeaving = false;

private:
    QPointer<QQuickItem> m_focusBefore;
};

// What a presenter has shown last; lives and dies with the presenter.
class Shown final : public QObject
{
    Q_OBJECT

public:
    explicit Shown(QObject *presenter)
        : QObject(presenter)
    {
    }
    ~Shown() override
    {
        if (Overlay *overlay = currentOverlay())
            overlay->remove(popupView);
    }

    static Shown *of(const QObject *presenter)
    {
        return presenter->findChild<Shown *>(QString(), Qt::FindDirectChildrenOnly);
    }

    // Null when nothing is shown.
    Overlay *currentOverlay() const
    {
        auto *overlay = background ? qobject_cast<Overlay *>(background->superview()) : nullptr;
        return overlay && overlay->superview() ? overlay : nullptr;
    }

    std::shared_ptr<ViewController> popup;
    QPointer<View> popupView;
    QPointer<View> background;
};

Shown *shownBy(ViewController *presenter)
{
    Shown *shown = Shown::of(presenter);
    return shown ? shown : new Shown(presenter);
}

// At once, for the popup that comes in its place.
void removePrevious(Shown *shown, std::shared_ptr<ViewController> next)
{
    const std::shared_ptr<ViewController> popup = std::exchange(shown->popup, std::move(next));
    Overlay *overlay = shown->currentOverlay();
    if (!overlay)
        return;
    if (popup && !overlay->isLeaving)
        popup->viewWillDisappear(false);
    overlay->remove(shown->popupView);
    if (popup)
        popup->viewDidDisappear(false);
    // One of its own controls may have asked for the next popup.
    DispatchQueue::mainAsync([popup] {});
}

QRectF centredFrame(const View *source, const View *popupView)
{
    const QSizeF room = source->bounds().size();
    const QSizeF size = popupView->bounds().size();
    return {QPointF((room.width() - size.width()) / 2, (room.height() - size.height()) / 2), size};
}

QRectF frameAboveTheTop(const View *source, const View *popupView)
{
    QRectF frame = centredFrame(source, popupView);
    frame.moveTop(-frame.height());
    return frame;
}

void viewIn(Shown *shown, AnimationCurve curve, qreal backgroundAlpha, const std::function<void()> &changes)
{
    const std::shared_ptr<ViewController> popup = shown->popup;
    View::animate(
        {.duration = duration, .curve = curve},
        [&] {
            if (popup)
                popup->viewWillAppear(false);
            if (shown->background)
                shown->background->setAlpha(backgroundAlpha);
            changes();
        },
        [overlay = QPointer(shown->currentOverlay()), popup = std::weak_ptr(popup)](bool) {
            const auto appeared = popup.lock();
            if (appeared && overlay && overlay->superview() && !overlay->isLeaving)
                appeared->viewDidAppear(false);
        });
}

void slideViewIn(Shown *shown, View *popupView, const View *source)
{
    popupView->setFrame(frameAboveTheTop(source, popupView));
    popupView->setAlpha(1);
    viewIn(shown, AnimationCurve::EaseOut, 0, [&] { popupView->setFrame(centredFrame(source, popupView)); });
}

void fadeViewIn(Shown *shown, View *popupView, const View *source)
{
    popupView->setFrame(centredFrame(source, popupView));
    popupView->setAlpha(0);
    viewIn(shown, AnimationCurve::EaseInOut, 0.5, [&] { popupView->setAlpha(1); });
}

void viewOut(Shown *shown, View *popupView, Overlay *overlay, AnimationCurve curve,
             const std::function<void()> &changes)
{
    if (overlay)
        overlay->isLeaving = true;
    View::animate(
        {.duration = duration, .curve = curve},
        [&] {
            if (shown->popup)
                shown->popup->viewWillDisappear(false);
            if (shown->background)
                shown->background->setAlpha(0);
            if (popupView)
                changes();
        },
        [guard = QPointer(shown), popupView = QPointer(popupView), overlay = QPointer(overlay),
         hadOverlay = overlay != nullptr](bool) {
            // Another popup may have come in its place by now.
            if (hadOverlay && (!overlay || !overlay->superview()))
                return;
            if (overlay)
                overlay->remove(popupView);
            if (const std::shared_ptr<ViewController> popup = guard ? guard->popup : nullptr)
                popup->viewDidDisappear(false);
        });
}

void slideViewOut(Shown *shown, View *popupView, const View *source, Overlay *overlay)
{
    viewOut(shown, popupView, overlay, AnimationCurve::EaseIn,
            [&] { popupView->setFrame(frameAboveTheTop(source, popupView)); });
}

void fadeViewOut(Shown *shown, View *popupView, Overlay *overlay)
{
    viewOut(shown, popupView, overlay, AnimationCurve::EaseInOut, [&] { popupView->setAlpha(0); });
}

} // namespace

void presentPopupViewController(ViewController *presenter, const std::shared_ptr<ViewController> &popup,
                                int animationType)
{
    Shown *shown = shownBy(presenter);
    if (shown->popup != popup)
        removePrevious(shown, popup);
    presentPopupView(presenter, popup->view(), animationType);
}

void presentPopupView(ViewController *presenter, View *popupView, int animationType)
{
    View *source = topView(presenter);
    source->setTag(sourceViewTag);
    popupView->setAutoresizingMask(flexibleMargins);
    popupView->setTag(popupViewTag);
    if (source->isAncestorOf(popupView))
        return;

    Shown *shown = shownBy(presenter);
    removePrevious(shown, shown->popup);
    popupView->setClip(false);
    popupView->setShadow({.color = Qt::black, .opacity = 0.5, .offset = {5, 5}, .radius = 5});

    auto *overlay = new Overlay;
    overlay->setFrame(source->bounds());
    overlay->setAutoresizingMask(flexibleSize);
    overlay->setTag(overlayViewTag);

    shown->background = new View(source->bounds());
    shown->background->setAutoresizingMask(flexibleSize);
    shown->background->setBackgroundColor(Qt::black);
    shown->background->setAlpha(0);
    overlay->addSubview(shown->background);

    shown->popupView = popupView;
    popupView->setAlpha(0);
    overlay->addSubview(popupView);
    source->addSubview(overlay);

    if (animationType == slideAnimation)
        slideViewIn(shown, popupView, source);
    else
        fadeViewIn(shown, popupView, source);
    overlay->takeFocus(popupView);
}

void dismissPopupViewControllerWithanimationType(ViewController *presenter, int animationType)
{
    View *source = topView(presenter);
    auto *overlay = qobject_cast<Overlay *>(source->viewWithTag(overlayViewTag));
    if (overlay && overlay->isLeaving)
        return;
    auto *popupView = qobject_cast<View *>(source->viewWithTag(popupViewTag));
    Shown *shown = shownBy(presenter);
    if (animationType == slideAnimation)
        slideViewOut(shown, popupView, source, overlay);
    else
        fadeViewOut(shown, popupView, overlay);
}

bool isPopupShown(const ViewController *presenter)
{
    const Shown *shown = Shown::of(presenter);
    const Overlay *overlay = shown ? shown->currentOverlay() : nullptr;
    return overlay && !overlay->isLeaving;
}

ViewController *zovra_popupViewController(const ViewController *presenter)
{
    const Shown *shown = Shown::of(presenter);
    return shown ? shown->popup.get() : nullptr;
}

View *zovra_popupBackgroundView(const ViewController *presenter)
{
    const Shown *shown = Shown::of(presenter);
    return shown && shown->currentOverlay() ? shown->background.data() : nullptr;
}

View *topView(ViewController *presenter)
{
    ViewController *root = presenter;
    while (ViewController *parent = root->parentViewController())
        root = parent;
    return root->view();
}

} // namespace BrevantoPopupViewController

#include "BrevantoPopupViewController.moc"
