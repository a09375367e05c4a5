#pragma once

#include "Platform/Interface/NavigationItem.h"
#include "Platform/Interface/View.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

#include <QUrl>

#include <functional>
#include <memory>
#include <vector>

class QQmlContext;

namespace Platform
{

class NavigationController;
class PopoverPresentationController;
class Presentation;
class Transition;
class Window;

enum class ModalTransitionStyle { CoverVertical = 0, CrossDissolve = 2 };
enum class ModalPresentationStyle { FullScreen = 0, Popover = 7 };

// One screen: state and decisions. It owns its view and whoever it presents. The platform calls its life:
//   viewDidLoad            once, when the view and its outlets stand
//   viewWillAppear,        around every push, pop, present and dismiss, animated or not; between the first two the view
//   viewDidAppear,         is in the window at its final size and has had a layout pass
//   viewWillDisappear,
//   viewDidDisappear
//   viewDidLayoutSubviews  after each layout pass of the view
// Overrides of these call the base. For the main thread only.
class ViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A storyboard makes controllers")

public:
    explicit ViewController(QObject *parent = nullptr);
    ~ViewController() override;

    // The root of the screen, made on first use.
    View *view();
    bool isViewLoaded() const { return m_view != nullptr; }
    // Whether the view is on the screen or on its way: between viewWillAppear and viewDidDisappear.
    bool isVisible() const { return m_appearance != Appearance::Gone; }

    virtual void viewDidLoad() { }
    virtual void viewWillAppear(bool animated) { Q_UNUSED(animated) }
    virtual void viewDidAppear(bool animated) { Q_UNUSED(animated) }
    virtual void viewWillDisappear(bool animated) { Q_UNUSED(animated) }
    virtual void viewDidDisappear(bool animated) { Q_UNUSED(animated) }
    virtual void viewDidLayoutSubviews() { }
    // The window turns between portrait and landscape; the view has its new size.
    virtual void willAnimateRotation(std::chrono::milliseconds duration) { Q_UNUSED(duration) }
    // Whether the status bar goes away when the screen appears over the whole window; else it stays as it is.
    virtual bool prefersStatusBarHidden() const { return false; }
    // The user asked to go back (Escape, the back key). True when the screen dealt with it. By default a screen that is
    // not the first of its navigation stack is popped, a popover asks for its dismissal, and what else is presented
    // itself is dismissed.
    virtual bool goBack();

    // The controller that contains this one; null at the root of a containment chain.
    ViewController *parentViewController() const { return m_parent; }
    NavigationController *navigationController() const;
    NavigationItem *navigationItem() { return &m_navigationItem; }
    // What the screen shows in the toolbar of its navigation stack.
    QList<BarButtonItem> toolbarItems() const { return m_toolbarItems; }
    void setToolbarItems(const QList<BarButtonItem> &items);

    // What this controller, or the chain that contains it, presents; null when that is nothing. A controller on its way
    // out no longer counts.
    ViewController *presentedViewController() const;
    // Who presents this controller or the chain that contains it; null when nobody does.
    ViewController *presentingViewController() const;

    // Shows `controller` over the whole window (or by its own style) and takes ownership. Refused, with a line in the
    // log and the controller deleted, while the chain presents another one already, is not in a window, or is on its
    // way out. `completion` runs after viewDidAppear; without animation that is before present() returns.
    void present(std::unique_ptr<ViewController> controller, bool animated, std::function<void()> completion = {});
    // Takes away what this controller presents, with all that is presented above it, or, when it presents nothing, the
    // controller itself. `completion` runs after viewDidDisappear; the controllers taken away are deleted after it.
    // Without anything to dismiss, or while what this controller presented is on its way out still, nothing happens,
    // and no completion.
    void dismiss(bool animated, std::function<void()> completion = {});

    ModalTransitionStyle modalTransitionStyle = ModalTransitionStyle::CoverVertical;
    ModalPresentationStyle modalPresentationStyle = ModalPresentationStyle::FullScreen;
    // In points; the size of a popover, where there is room.
    QSizeF preferredContentSize;
    // How the controller is shown when it is presented as a popover. Made on first use and owned.
    PopoverPresentationController *popoverPresentationController();
    // Whether a swipe from the left edge goes back, as the back button does.
    bool allowsInteractivePop = false;

Q_SIGNALS:
    void toolbarItemsChanged();

protected:
    // The scene that the view is loaded from; its property "controller" is this controller.
    void setScene(const QUrl &scene) { m_scene = scene; }
    // Makes the view: the scene's root or, without a scene, a plain one.
    virtual std::unique_ptr<View> loadView();

    // Takes the scene's items that the controller works with, by outlet(); runs before viewDidLoad.
    virtual void connectOutlets() { }
    // The item of that objectName in the scene. Raises InvalidArgument, with the name, when there is none of that
    // class.
    template <typename T = QQuickItem>
    T *outlet(const QString &objectName)
    {
        auto *item = qobject_cast<T *>(findOutlet(objectName));
        if (!item)
            throwMissingOutlet(objectName);
        return item;
    }

    // Makes `controller` a child of this one in the chain of containment; its owner stays as it is.
    void adopt(ViewController *controller) { controller->m_parent = this; }
    static void release(ViewController *controller) { controller->m_parent = nullptr; }

    // How the controller comes onto the screen and leaves it when it is presented.
    virtual std::unique_ptr<Transition> makeTransition();
    // Whether this controller, or the chain that contains it, is being dismissed.
    bool isOnItsWayOut() const;
    // The contained controller whose view is shown inside this one's, which gets the appearance calls too; null when
    // there is none.
    virtual ViewController *shownChild() const { return nullptr; }

    // Calls viewWillAppear or viewWillDisappear, here and in the shown child, unless that has been done.
    void beginAppearance(bool appearing, bool animated);
    // Calls viewDidAppear or viewDidDisappear, whichever is due.
    void endAppearance();

private:
    friend class Storyboard;
    friend class NavigationController;
    friend class PopoverPresentationController;
    friend class Presentation;
    friend class Window;

    enum class Appearance { Gone, Appearing, Visible, Disappearing };

    ViewController *chainRoot() const;
    QQuickItem *findOutlet(const QString &objectName);
    [[noreturn]] void throwMissingOutlet(const QString &objectName) const;

    QUrl m_scene;
    std::unique_ptr<View> m_view;
    std::unique_ptr<QQmlContext> m_sceneContext;
    NavigationItem m_navigationItem;
    QList<BarButtonItem> m_toolbarItems;
    QPointer<ViewController> m_parent;
    Appearance m_appearance = Appearance::Gone;
    bool m_appearanceAnimated = false;
    std::unique_ptr<Presentation> m_presentation; // of what this controller, the root of a chain, presents
    int m_leavingCount = 0; // what this controller presented and is on its way out
    QPointer<Presentation> m_presentedIn; // what shows this controller
    std::unique_ptr<PopoverPresentationController> m_popoverPresentationController;
};

} // namespace Platform
