#pragma once

#include "Platform/Interface/NavigationItem.h"
#include "Platform/Interface/View.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

#include <functional>
#include <memory>
#include <vector>

namespace Platform {

class NavigationController;

enum class ModalTransitionStyle { CoverVertical = 0, FlipHorizontal = 1, CrossDissolve = 2 };
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
    bool isViewLoaded() const { return m_view; }
    // Whether the view is in a window, between viewWillAppear and viewDidDisappear.
    bool isVisible() const;

    virtual void viewDidLoad() { }
    virtual void viewWillAppear(bool animated) { Q_UNUSED(animated) }
    virtual void viewDidAppear(bool animated) { Q_UNUSED(animated) }
    virtual void viewWillDisappear(bool animated) { Q_UNUSED(animated) }
    virtual void viewDidDisappear(bool animated) { Q_UNUSED(animated) }
    virtual void viewDidLayoutSubviews() { }
    // The window turns between portrait and landscape; the view has its new size.
    virtual void willAnimateRotation(std::chrono::milliseconds duration) { Q_UNUSED(duration) }
    virtual bool prefersStatusBarHidden() const { return false; }
    virtual void didReceiveMemoryWarning() { }
    // The user asked to go back (Escape, the back key). True when the screen dealt with it. By default a screen that is
    // not the first of its navigation stack is popped.
    virtual bool goBack();

    // The controller that contains this one; null at the root of a containment chain.
    ViewController *parentViewController() const { return m_parent; }
    NavigationController *navigationController() const;
    NavigationItem *navigationItem() { return &m_navigationItem; }

    // What this controller, or the chain that contains it, presents; null when that is nothing. A controller on its way
    // out no longer counts.
    ViewController *presentedViewController() const;
    // Who presents this controller or the chain that contains it; null when nobody does.
    ViewController *presentingViewController() const;

    // Shows `controller` over the whole window (or by its own style) and takes ownership. Refused, with a line in the
    // log and the controller deleted, while the chain presents another one already or is not in a window.
    void present(std::unique_ptr<ViewController> controller, bool animated, std::function<void()> completion = {});
    // Takes away what this controller presents or, when it presents nothing, the controller itself. The controllers taken
    // away are deleted after `completion`. Without anything to dismiss nothing happens, and no completion.
    void dismiss(bool animated, std::function<void()> completion = {});

    ModalTransitionStyle modalTransitionStyle = ModalTransitionStyle::CoverVertical;
    ModalPresentationStyle modalPresentationStyle = ModalPresentationStyle::FullScreen;
    QSizeF preferredContentSize;

protected:
    // Makes the view; by default a plain one.
    virtual std::unique_ptr<View> loadView();

    // Takes the scene's items that the controller works with, by outlet(); runs before viewDidLoad.
    virtual void connectOutlets() { }
    // The item of that objectName in the scene. Raises InvalidArgument, with the name, when there is none of that class.
    template <typename T = QQuickItem> T *outlet(const QString &objectName)
    {
        auto *item = qobject_cast<T *>(findOutlet(objectName));
        if (!item)
            throwMissingOutlet(objectName);
        return item;
    }

    // Makes `controller` a child in the chain of containment (it keeps its owner).
    void setParentViewController(ViewController *controller, ViewController *parent) { controller->m_parent = parent; }

private:
    friend class Storyboard;
    friend class NavigationController;
    friend class Presentation;

    QQuickItem *findOutlet(const QString &objectName);
    [[noreturn]] void throwMissingOutlet(const QString &objectName) const;

    std::unique_ptr<View> m_view;
    NavigationItem m_navigationItem;
    QPointer<ViewController> m_parent;
    std::unique_ptr<class Presentation> m_presentation;
};

} // namespace Platform
