#include "Platform/Interface/ViewController.h"

#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/ObjectCast.h"
#include "Platform/Interface/FullScreenTransition.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/PopoverPresentationController.h"
#include "Platform/Interface/PopoverTransition.h"
#include "Platform/Interface/Presentation.h"
#include "Platform/Interface/SceneEngine.h"
#include "Platform/Interface/Window.h"

#include <QQmlContext>
#include <QQmlEngine>

namespace Platform
{

ViewController::ViewController(QObject *parent)
    : QObject(parent)
{
}

ViewController::~ViewController()
{
    m_presentation.reset();
    // Not before the bubble, which reads it and may be on its way out.
    if (m_popoverPresentationController)
        m_popoverPresentationController.release()->deleteLater();
    // Without its context the scene's bindings are no longer evaluated: half of what they read is gone by now.
    m_sceneContext.reset();
}

View *ViewController::view()
{
    if (m_view)
        return m_view.get();
    m_view = loadView();
    m_view->m_belongsToController = true;
    m_view->setFlag(QQuickItem::ItemIsFocusScope);
    if (m_view->size().isEmpty())
        m_view->setSize(Screen::mainBounds().size());
    connect(m_view.get(), &View::didLayoutSubviews, this, [this] { viewDidLayoutSubviews(); });
    connectOutlets();
    viewDidLoad();
    return m_view.get();
}

std::unique_ptr<View> ViewController::loadView()
{
    if (m_scene.isEmpty())
        return std::make_unique<View>();
    m_sceneContext = std::make_unique<QQmlContext>(&SceneEngine::engine());
    std::unique_ptr<QQuickItem> root = SceneEngine::loadScene(
        m_scene, {{QStringLiteral("controller"), QVariant::fromValue<QObject *>(this)}}, m_sceneContext.get());
    std::unique_ptr<View> view = takeAs<View>(root);
    if (!view)
        throw Exception(Exception::Name::InvalidArgument, m_scene.toString() + QStringLiteral(": the root is no View"));
    return view;
}

bool ViewController::goBack()
{
    if (m_presentedIn && modalPresentationStyle == ModalPresentationStyle::Popover) {
        popoverPresentationController()->requestDismissal();
        return true;
    }
    NavigationController *navigation = navigationController();
    if (navigation && navigation->topViewController() == this && navigation->viewControllers().size() > 1) {
        navigation->popViewController(true);
        return true;
    }
    if (m_presentedIn)
        dismiss(true);
    return m_presentedIn != nullptr;
}

NavigationController *ViewController::navigationController() const
{
    for (ViewController *ancestor = m_parent; ancestor; ancestor = ancestor->m_parent) {
        if (auto *navigation = qobject_cast<NavigationController *>(ancestor))
            return navigation;
    }
    return nullptr;
}

void ViewController::setToolbarItems(const QList<BarButtonItem> &items)
{
    m_toolbarItems = items;
    Q_EMIT toolbarItemsChanged();
}

ViewController *ViewController::chainRoot() const
{
    auto *root = const_cast<ViewController *>(this);
    while (root->m_parent)
        root = root->m_parent;
    return root;
}

bool ViewController::isOnItsWayOut() const
{
    const ViewController *root = chainRoot();
    return root->m_presentedIn && root->m_presentedIn->isDismissing();
}

ViewController *ViewController::presentedViewController() const
{
    const ViewController *root = chainRoot();
    return root->m_presentation ? root->m_presentation->presented() : nullptr;
}

ViewController *ViewController::presentingViewController() const
{
    const ViewController *root = chainRoot();
    return root->m_presentedIn ? root->m_presentedIn->presenter() : nullptr;
}

void ViewController::present(std::unique_ptr<ViewController> controller, bool animated,
                             std::function<void()> completion)
{
    ViewController *root = chainRoot();
    QQuickWindow *quickWindow = root->isViewLoaded() ? root->view()->window() : nullptr;
    const char *reason = nullptr;
    if (root->m_presentation)
        reason = "another one is presented already";
    else if (!quickWindow)
        reason = "its presenter is not in a window";
    else if (root->isOnItsWayOut())
        reason = "its presenter is on its way out";
    if (reason) {
        log(QStringLiteral("%1 is not presented: %2")
                .arg(QString::fromLatin1(controller->metaObject()->className()), QString::fromLatin1(reason)));
        return;
    }
    root->m_presentation = std::make_unique<Presentation>(root, std::move(controller), Window::of(quickWindow));
    root->m_presentation->begin(animated, std::move(completion));
}

void ViewController::dismiss(bool animated, std::function<void()> completion)
{
    ViewController *root = chainRoot();
    if (!root->m_presentation && root->m_leavingCount > 0)
        return;
    ViewController *presenter = root->m_presentation ? root : root->presentingViewController();
    if (!presenter || !presenter->m_presentation || presenter->isOnItsWayOut())
        return;
    if (presenter != root && presenter->m_presentation->presented() != root)
        return;
    Presentation::end(presenter, animated, std::move(completion));
}

PopoverPresentationController *ViewController::popoverPresentationController()
{
    if (!m_popoverPresentationController)
        m_popoverPresentationController = std::make_unique<PopoverPresentationController>(this);
    return m_popoverPresentationController.get();
}

std::unique_ptr<Transition> ViewController::makeTransition()
{
    if (modalPresentationStyle == ModalPresentationStyle::Popover)
        return std::make_unique<PopoverTransition>();
    return std::make_unique<FullScreenTransition>(modalTransitionStyle);
}

void ViewController::beginAppearance(bool appearing, bool animated)
{
    const bool isDone = appearing ? m_appearance == Appearance::Appearing || m_appearance == Appearance::Visible
                                  : m_appearance == Appearance::Disappearing || m_appearance == Appearance::Gone;
    if (isDone)
        return;
    m_appearance = appearing ? Appearance::Appearing : Appearance::Disappearing;
    m_appearanceAnimated = animated;
    if (appearing)
        viewWillAppear(animated);
    else
        viewWillDisappear(animated);
    // Unless the call has turned the way already.
    if (m_appearance != (appearing ? Appearance::Appearing : Appearance::Disappearing))
        return;
    if (ViewController *child = shownChild())
        child->beginAppearance(appearing, animated);
    else if (const Presentation *presentation = chainRoot()->m_presentedIn;
             presentation && appearing && prefersStatusBarHidden())
        presentation->hideStatusBar();
}

void ViewController::endAppearance()
{
    if (m_appearance == Appearance::Appearing) {
        m_appearance = Appearance::Visible;
        viewDidAppear(m_appearanceAnimated);
    } else if (m_appearance == Appearance::Disappearing) {
        m_appearance = Appearance::Gone;
        viewDidDisappear(m_appearanceAnimated);
    }
    if (ViewController *child = shownChild())
        child->endAppearance();
}

QQuickItem *ViewController::findOutlet(const QString &objectName)
{
    QList<QQuickItem *> level{view()};
    while (!level.isEmpty()) {
        QList<QQuickItem *> next;
        for (QQuickItem *item : std::as_const(level)) {
            if (item->objectName() == objectName)
                return item;
            next += item->childItems();
        }
        level = next;
    }
    return nullptr;
}

void ViewController::throwMissingOutlet(const QString &objectName) const
{
    throw Exception(Exception::Name::InvalidArgument,
                    QStringLiteral("%1: the scene has no outlet \"%2\" of the class asked for")
                        .arg(QString::fromLatin1(metaObject()->className()), objectName));
}

} // namespace Platform
