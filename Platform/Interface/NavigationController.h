#pragma once

#include "Platform/Interface/ViewController.h"

#include <QFont>

namespace Platform
{

// How a navigation bar looks: the application-wide appearance, which each bar starts from.
struct NavigationBarAppearance {
    enum class Style { Default = 0, Black = 1 };
    Style style = Style::Default;
    bool translucent = true;
    QColor barTintColor = Qt::white;
    QColor tintColor = Qt::black; // the buttons' glyphs
    QFont titleFont;
    QColor titleColor = Qt::black;

    static NavigationBarAppearance &appearance();
};

// A stack of screens under one navigation bar, shown with the stock StackView. Owns the controllers on it. A push or
// pop during the transition of another finishes that one first.
class NavigationController : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(Platform::NavigationItem *topItem READ topItem NOTIFY topChanged)
    Q_PROPERTY(bool canPop READ canPop NOTIFY topChanged)
    Q_PROPERTY(QList<Platform::BarButtonItem> toolbarItems READ topToolbarItems NOTIFY topChanged)
    Q_PROPERTY(bool navigationBarHidden READ isNavigationBarHidden NOTIFY barChanged)
    Q_PROPERTY(bool toolbarHidden READ isToolbarHidden NOTIFY barChanged)
    Q_PROPERTY(qreal safeAreaTop READ safeAreaTop NOTIFY barChanged)
    Q_PROPERTY(QColor barColor READ barColor NOTIFY barChanged)
    Q_PROPERTY(QColor tintColor READ tintColor NOTIFY barChanged)
    Q_PROPERTY(QColor titleColor READ titleColor NOTIFY barChanged)
    Q_PROPERTY(QFont titleFont READ titleFont NOTIFY barChanged)
    Q_PROPERTY(QColor toolbarColor READ toolbarColor NOTIFY barChanged)
    Q_PROPERTY(QColor toolbarTintColor READ toolbarTintColor NOTIFY barChanged)
    Q_PROPERTY(Platform::LayerShadow shadow READ navigationBarShadow NOTIFY barChanged)

public:
    // Height of either bar in points, without the safe area.
    static constexpr qreal barHeight = 44;

    explicit NavigationController(std::unique_ptr<ViewController> rootViewController);
    ~NavigationController() override;

    ViewController *topViewController() const;
    std::vector<ViewController *> viewControllers() const;

    void pushViewController(std::unique_ptr<ViewController> controller, bool animated);
    // Pops the top screen and deletes it once it has disappeared; the first screen stays.
    void popViewController(bool animated);
    // Whether a push or pop is under way on the screen.
    bool isInTransition() const;

    // The bars are changed at once; `animated` is there for the platform's spelling.
    bool isNavigationBarHidden() const;
    void setNavigationBarHidden(bool hidden, bool animated = false);
    void setNavigationBarShadow(const LayerShadow &shadow);
    LayerShadow navigationBarShadow() const;

    // The toolbar at the bottom, with the top screen's toolbarItems; hidden unless set otherwise.
    bool isToolbarHidden() const;
    void setToolbarHidden(bool hidden, bool animated = false);
    void setToolbarStyle(NavigationBarAppearance::Style style);
    Q_INVOKABLE void activateToolbarItem(int index);

    // The user has swiped from the edge: the top screen goes back, where it allows that.
    Q_INVOKABLE void interactivePop();

    void viewDidLoad() override;

Q_SIGNALS:
    void topChanged();
    void barChanged();

protected:
    ViewController *shownChild() const override { return topViewController(); }

private:
    NavigationItem *topItem() const { return topViewController()->navigationItem(); }
    QList<BarButtonItem> topToolbarItems() const { return topViewController()->toolbarItems(); }
    bool canPop() const { return viewControllers().size() > 1; }
    qreal safeAreaTop() const;
    QColor barColor() const;
    QColor tintColor() const;
    QColor titleColor() const;
    QFont titleFont() const;
    QColor toolbarColor() const;
    QColor toolbarTintColor() const;

    bool stands() const;
    QRectF contentFrame() const;
    void stack(ViewController *controller);
    void place(ViewController *controller);
    void exchangeTop(ViewController *from, ViewController *to, bool forward, bool animated);
    void slide(View *from, View *to, bool forward);
    void transitionEnded();
    void finishTransition();
    void setBarHidden(bool &flag, bool hidden);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Platform
