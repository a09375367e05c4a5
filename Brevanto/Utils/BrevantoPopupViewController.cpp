#include "Brevanto/Utils/BrevantoPopupViewController.h"

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

// What a presenter shows and has shown; lives and dies with the presenter.
class Shown final : public QObject
{
    Q_OBJECT

public:
    explicit Shown(QObject *presenter)
        : QObject(presenter)
    {
    }
    ~Shown() override { removeViews(); }

    static Shown *of(const QObject *presenter)
    {
        return presenter->findChild<Shown *>(QString(), Qt::FindDirectChildrenOnly);
    }

    void takeFocus(View *view)
    {
        m_focusBefore = view->window() ? view->window()->activeFocusItem() : nullptr;
        view->forceActiveFocus(Qt::PopupFocusReason);
    }

    void removeViews()
    {
        if (popupView) {
            const bool hadFocus = popupView->hasActiveFocus();
            popupView->removeFromSuperview();
            popupView->setTag(0);
            if (hadFocus && m_focusBefore && m_focusBefore->window())
                m_focusBefore->forceActiveFocus(Qt::PopupFocusReason);
        }
        if (overlay) {
            overlay->removeFromSuperview();
            // One of the popup's own controls may be running.
            overlay->deleteLater();
        }
        popupView = nullptr;
        overlay = nullptr;
        background = nullptr;
        isLeaving = false;
    }

    std::shared_ptr<ViewController> popup;
    QPointer<View> popupView;
    QPointer<View> overlay;
    QPointer<View> background;
    bool isLeaving = false;

private:
    QPointer<QQuickItem> m_focusBefore;
};

Shown *shownBy(ViewController *presenter)
{
    Shown *shown = Shown::of(presenter);
    return shown ? shown : new Shown(presenter);
}

// At once, for the popup that comes in its place.
void removePrevious(Shown *shown)
{
    if (!shown->overlay)
        return;
    const std::shared_ptr<ViewController> popup = shown->popup;
    shown->removeViews();
    if (popup)
        popup->viewDidDisappear(false);
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
        [popup = std::weak_ptr(popup)](bool) {
            if (const auto appeared = popup.lock())
                appeared->viewDidAppear(false);
        });
}

void slideViewIn(Shown *shown, const View *source)
{
    View *popupView = shown->popupView;
    popupView->setFrame(frameAboveTheTop(source, popupView));
    popupView->setAlpha(1);
    viewIn(shown, AnimationCurve::EaseOut, 0, [&] { popupView->setFrame(centredFrame(source, popupView)); });
}

void fadeViewIn(Shown *shown, const View *source)
{
    View *popupView = shown->popupView;
    popupView->setFrame(centredFrame(source, popupView));
    popupView->setAlpha(0);
    viewIn(shown, AnimationCurve::EaseInOut, 0.5, [&] { popupView->setAlpha(1); });
}

void viewOut(Shown *shown, AnimationCurve curve, const std::function<void(View *popupView)> &changes)
{
    shown->isLeaving = shown->overlay != nullptr;
    View::animate(
        {.duration = duration, .curve = curve},
        [&] {
            if (shown->popup)
                shown->popup->viewWillDisappear(false);
            if (shown->background)
                shown->background->setAlpha(0);
            if (shown->popupView)
                changes(shown->popupView);
        },
        [guard = QPointer(shown), overlay = shown->overlay.data()](bool) {
            // Unless the presenter has gone, or shows another popup by now.
            if (!guard || guard->overlay != overlay)
                return;
            const std::shared_ptr<ViewController> popup = guard->popup;
            guard->removeViews();
            if (popup)
                popup->viewDidDisappear(false);
        });
}

void slideViewOut(Shown *shown, const View *source)
{
    viewOut(shown, AnimationCurve::EaseIn,
            [source](View *popupView) { popupView->setFrame(frameAboveTheTop(source, popupView)); });
}

void fadeViewOut(Shown *shown)
{
    viewOut(shown, AnimationCurve::EaseInOut, [](View *popupView) { popupView->setAlpha(0); });
}

} // namespace

void presentPopupViewController(ViewController *presenter, const std::shared_ptr<ViewController> &popup,
                                int animationType)
{
    Shown *shown = shownBy(presenter);
    if (shown->popup != popup)
        removePrevious(shown);
    shown->popup = popup;
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
    removePrevious(shown);
    popupView->setShadow({.color = Qt::black, .opacity = 0.5, .offset = {5, 5}, .radius = 5});

    shown->overlay = new InputShield;
    shown->overlay->setFrame(source->bounds());
    shown->overlay->setAutoresizingMask(flexibleSize);
    shown->overlay->setTag(overlayViewTag);

    shown->background = new View(source->bounds());
    shown->background->setAutoresizingMask(flexibleSize);
    shown->background->setBackgroundColor(Qt::black);
    shown->background->setAlpha(0);
    shown->overlay->addSubview(shown->background);

    shown->popupView = popupView;
    popupView->setAlpha(0);
    shown->overlay->addSubview(popupView);
    source->addSubview(shown->overlay);

    if (animationType == slideAnimation)
        slideViewIn(shown, source);
    else
        fadeViewIn(shown, source);
    shown->takeFocus(popupView);
}

void dismissPopupViewControllerWithanimationType(ViewController *presenter, int animationType)
{
    Shown *shown = shownBy(presenter);
    if (shown->isLeaving)
        return;
    if (animationType == slideAnimation)
        slideViewOut(shown, topView(presenter));
    else
        fadeViewOut(shown);
}

ViewController *zovra_popupViewController(const ViewController *presenter)
{
    const Shown *shown = Shown::of(presenter);
    return shown ? shown->popup.get() : nullptr;
}

View *zovra_popupBackgroundView(const ViewController *presenter)
{
    const Shown *shown = Shown::of(presenter);
    return shown ? shown->background.data() : nullptr;
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
