#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/NavigationItem.h"
#include "Platform/Interface/SystemFont.h"

#include <QPointer>

using namespace Platform;

namespace
{

constexpr QSizeF buttonSize(35, 35);
constexpr qreal edgeSpace = -6; // moves the icon towards the edge

BarButtonItem makeButton(ViewController *controller, const QString &imageName, const QString &name, const char *action)
{
    BarButtonItem item;
    item.image = brevantoBundle().urlForImage(imageName);
    item.accessibleName = name;
    item.size = buttonSize;
    item.action = [target = QPointer(controller), action] {
        if (target)
            QMetaObject::invokeMethod(target, action);
    };
    return item;
}

} // namespace

void BrevantoUtils::customizeNavBarThroughOutApp()
{
    NavigationBarAppearance &bar = NavigationBarAppearance::appearance();
    bar.style = NavigationBarAppearance::Style::Black;
    bar.translucent = false;
    bar.barTintColor = Qt::black;
    bar.tintColor = Qt::white;
    bar.titleFont = SystemFont::medium(16);
    bar.titleColor = Qt::white;
}

void BrevantoUtils::customizeNavBarFor(ViewController *controller, const QString &title, bool customBackButton,
                                       bool closeButton, bool infoButton)
{
    // The style of the bar comes from the application's appearance; only systems older than any with Qt 6 had none.
    if (NavigationController *navigation = controller->navigationController())
        navigation->setNavigationBarShadow({.color = Qt::black, .opacity = 0.3, .offset = QSizeF(0, 2)});

    NavigationItem *item = controller->navigationItem();
    item->setTitle(QString());
    if (!title.isEmpty())
        item->setTitle(title);
    if (customBackButton || closeButton) {
        const auto button = customBackButton
            ? makeButton(controller, QStringLiteral("ic_back"), QStringLiteral("Back"), "navBarBackButtonAction")
            : makeButton(controller, QStringLiteral("ic_close"), QStringLiteral("Close"), "navBarBackButtonAction");
        item->setLeftBarButtonItems({BarButtonItem::fixedSpace(edgeSpace), button});
        controller->allowsInteractivePop = true;
    }
    if (infoButton) {
        item->setRightBarButtonItems({makeButton(controller, QStringLiteral("ic_why"), QStringLiteral("Information"),
                                                 "navBarInfoButtonAction")});
    }
}
