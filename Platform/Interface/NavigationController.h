#pragma once

#include "Platform/Interface/ViewController.h"

#include <QFont>

namespace Platform {

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

struct LayerShadow {
    QColor color = Qt::black;
    qreal opacity = 0;
    QSizeF offset;
    qreal radius = 3;
};

// A stack of screens under one navigation bar, shown with the stock StackView. Owns the controllers on it.
class NavigationController : public ViewController
{
    Q_OBJECT

public:
    explicit NavigationController(std::unique_ptr<ViewController> rootViewController);
    ~NavigationController() override;

    ViewController *topViewController() const;
    std::vector<ViewController *> viewControllers() const;

    void pushViewController(std::unique_ptr<ViewController> controller, bool animated);
    // Pops the top screen and deletes it once it has disappeared; the first screen stays.
    void popViewController(bool animated);

    bool isNavigationBarHidden() const;
    void setNavigationBarHidden(bool hidden, bool animated = false);
    void setNavigationBarShadow(const LayerShadow &shadow);

    bool goBack() override;

protected:
    std::unique_ptr<View> loadView() override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Platform
