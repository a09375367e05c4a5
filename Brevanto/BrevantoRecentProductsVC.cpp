#include "Brevanto/BrevantoRecentProductsVC.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Window.h"

namespace
{
// Of a cell: the row that it shows, -1 while it is out of sight.
constexpr auto rowProperty = "row";
} // namespace

void BrevantoRecentProductsVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    if (navigationController())
        navigationController()->setNavigationBarHidden(false);
    BrevantoUtils::customizeNavBarFor(this, QStringLiteral("Recent Products"), true, false, false);
    m_listOfMatchGroups =
        BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager().value_or(BrevantoMatchGroupList());
    m_layoutCount = 0;
}

void BrevantoRecentProductsVC::viewWillAppear(bool animated)
{
    ViewController::viewWillAppear(animated);
    Platform::Application::setStatusBarHidden(false);
}

void BrevantoRecentProductsVC::viewDidLayoutSubviews()
{
    ViewController::viewDidLayoutSubviews();
    ++m_layoutCount;
    if (m_layoutCount != 1)
        return;
    Q_EMIT gridBuiltChanged();
    m_recentCollectionView = outlet(QStringLiteral("recentCollectionView"));
}

void BrevantoRecentProductsVC::navBarBackButtonAction()
{
    if (navigationController())
        navigationController()->popViewController(true);
}

QSizeF BrevantoRecentProductsVC::sizeForItem(qreal gridWidth)
{
    return {(qMin(kScreenWidth, gridWidth) - 30) / 2, 210};
}

QString BrevantoRecentProductsVC::titleForItem(int row) const
{
    const std::shared_ptr<BrevantoMatch> match = firstMatchAt(row);
    const QString title = match ? BrevantoFields::shownText(match->title()) : QString();
    return title.isEmpty() ? tr("Ad %1").arg(row + 1) : title;
}

void BrevantoRecentProductsVC::cellForItem(Platform::View *cell, int row)
{
    cell->setBackgroundColor(Qt::white);
    cell->setCornerRadius(2);
    cell->setShadow({.color = Qt::black, .opacity = 0.3, .offset = QSizeF(0, 1), .radius = 2});
    cell->setProperty(rowProperty, row);
    showImage({}, cell);
    const std::shared_ptr<BrevantoMatch> match = firstMatchAt(row);
    if (!match)
        return;

    const QPointer<QObject> self(this);
    const QPointer<Platform::View> requester(cell);
    BrevantoServerManager::sharedServerManager()->getImage(
        BrevantoFields::text(match->backgroundImageUrl()),
        [self, this, requester, row](const Platform::Image &image) {
            Platform::DispatchQueue::mainAsync(self, [this, requester, row, image] {
                if (!image.isNull() && requester && requester->property(rowProperty) == row)
                    showImage(image, requester);
            });
        },
        {});
}

void BrevantoRecentProductsVC::didEndDisplaying(Platform::View *cell)
{
    cell->setProperty(rowProperty, -1);
    showImage({}, cell);
}

void BrevantoRecentProductsVC::didSelectItem(int row)
{
    // Two fingers may select two tiles.
    if (!navigationController() || navigationController()->isInTransition() || row < 0
        || row >= m_listOfMatchGroups.size())
        return;
    auto adScreen = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    adScreen->setMatchGroup(m_listOfMatchGroups.at(row));
    navigationController()->pushViewController(std::move(adScreen), true);
}

std::shared_ptr<BrevantoMatch> BrevantoRecentProductsVC::firstMatchAt(int row) const
{
    const std::shared_ptr<BrevantoMatchGroup> group = m_listOfMatchGroups.value(row);
    return group ? group->listOfMatches().value(0) : nullptr;
}

void BrevantoRecentProductsVC::showImage(const Platform::Image &image, Platform::View *cell)
{
    auto *imageView = qobject_cast<Platform::ImageView *>(cell->viewWithTag(imageViewTag));
    if (imageView)
        imageView->setImage(image);
}
