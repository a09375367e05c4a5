#include "Platform/Interface/PopoverTransition.h"

#include "Platform/Interface/PopoverPresentationController.h"
#include "Platform/Interface/SceneEngine.h"
#include "Platform/Interface/Window.h"

namespace Platform
{

void PopoverTransition::place(ViewController *controller, Window *window)
{
    m_popover = controller;
    PopoverPresentationController *popover = controller->popoverPresentationController();
    View *contents = controller->view();
    std::unique_ptr<QQuickItem> root =
        SceneEngine::loadScene(SceneEngine::sceneUrl(QStringLiteral("PopoverScene")),
                               {{QStringLiteral("controller"), QVariant::fromValue<QObject *>(popover)}});
    auto *scene = qobject_cast<View *>(root.release());
    Q_ASSERT(scene);
    attach(scene, window);
    popover->placeIn(scene);
    connect(scene, &View::didLayoutSubviews, popover, [popover, scene] { popover->placeIn(scene); });

    auto *room = scene->property("contents").value<View *>();
    Q_ASSERT(room);
    contents->setCornerRadius(PopoverPlacement::cornerRadius);
    contents->setFrame(room->bounds());
    contents->setAutoresizingMask(View::FlexibleWidth | View::FlexibleHeight);
    room->addSubview(contents);
    contents->setFocus(true);
}

void PopoverTransition::remove()
{
    if (m_popover && m_popover->isViewLoaded())
        m_popover->view()->setParentItem(nullptr);
    View *const removed = scene();
    PopupTransition::remove();
    // One of the popover's own controls may be running.
    if (removed)
        removed->deleteLater();
}

} // namespace Platform
