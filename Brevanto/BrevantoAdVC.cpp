#include "Brevanto/BrevantoAdVC.h"

#include "Brevanto/HotspotPlacement.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoPopupViewController.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/TapRecognizer.h"
#include "Platform/Interface/Window.h"

namespace
{

std::optional<float> percent(const QVariant &field)
{
    const std::optional<double> number = BrevantoFields::number(field);
    return number ? std::optional(static_cast<float>(*number)) : std::nullopt;
}

} // namespace

void BrevantoAdVC::connectOutlets()
{
    m_backgroundImageView = outlet<Platform::ImageView>(QStringLiteral("backgroundImageView"));
}

void BrevantoAdVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    if (navigationController())
        navigationController()->setNavigationBarHidden(false);
    m_layoutCount = 0;
    const std::shared_ptr<BrevantoMatch> first = firstMatch();
    const QString title = first ? BrevantoFields::shownText(first->title()) : QString();
    BrevantoUtils::customizeNavBarFor(this, title, true, false, true);
    m_dummyPopoverView = new Platform::View(view()->bounds());
    m_dummyPopoverView->setParent(this);
    m_dummyPopoverView->setBackgroundColor(Qt::transparent);
    m_dummyPopoverView->setAutoresizingMask(Platform::View::FlexibleWidth | Platform::View::FlexibleHeight);
}

void BrevantoAdVC::viewWillAppear(bool animated)
{
    ViewController::viewWillAppear(animated);
    BrevantoReachabilityManager::instance()->addObserverForReachability(this);
    if (navigationController())
        navigationController()->setNavigationBarHidden(false);
    Platform::Application::setStatusBarHidden(false);
}

void BrevantoAdVC::viewWillDisappear(bool animated)
{
    ViewController::viewWillDisappear(animated);
    BrevantoReachabilityManager::instance()->removeObserverForReachability();
    closePopups();
}

void BrevantoAdVC::viewDidLayoutSubviews()
{
    ViewController::viewDidLayoutSubviews();
    if (!m_dummyPopoverView->superview())
        m_dummyPopoverView->setFrame(view()->bounds());
    if (BrevantoPopupViewController::isPopupShown(this))
        fitInfoSheet(BrevantoPopupViewController::zovra_popupViewController(this)->view());
    ++m_layoutCount;
    if (m_layoutCount == 1)
        doInitialSetup();
}

void BrevantoAdVC::doInitialSetup()
{
    m_backgroundImageView->setClip(true);
    m_backgroundImageView->setContentMode(Platform::ContentMode::ScaleAspectFit);
    const std::shared_ptr<BrevantoMatch> first = firstMatch();
    setImageLoading(true);
    const QPointer<QObject> self(this);
    BrevantoServerManager::sharedServerManager()->getImage(
        first ? BrevantoFields::text(first->backgroundImageUrl()) : QString(),
        // On the session's thread, where no item may be touched: accepting taps waits for the main thread as well.
        [self, this](const Platform::Image &image) {
            Platform::DispatchQueue::mainAsync(self, [this, image] {
                setImageLoading(false);
                m_backgroundImageView->setUserInteractionEnabled(true);
                if (!image.isNull())
                    m_backgroundImageView->setImage(image);
                addHotspotsToImageView();
            });
        },
        [self, this](const std::optional<Platform::URLError> &) {
            Platform::DispatchQueue::mainAsync(self, [this] { setImageLoading(false); });
        });
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager({m_matchGroup});
}

QRectF BrevantoAdVC::frameForImage(const Platform::Image &image, const Platform::ImageView *imageView)
{
    return HotspotPlacement::aspectFitRect(image.size(), imageView->frame().size());
}

void BrevantoAdVC::addHotspotsToImageView()
{
    const QRectF imageRect = frameForImage(m_backgroundImageView->image(), m_backgroundImageView);
    if (imageRect.isEmpty())
        return;
    const BrevantoMatchList matches = m_matchGroup->listOfMatches();
    const auto count = static_cast<qint32>(qMin(matches.size(), qsizetype(mostMarkers)));
    for (qint32 index = 0; index < count; ++index)
        addHotspot(*matches.at(index), imageRect, index);
}

void BrevantoAdVC::addHotspot(const BrevantoMatch &match, const QRectF &imageRect, qint32 index)
{
    const QPointF center =
        HotspotPlacement::markerCenter(imageRect, percent(match.xPercent()), percent(match.yPercent()), index);
    constexpr qreal size = HotspotPlacement::markerSize;
    auto *hotspot = new BrevantoHotspotView(QRectF(center.x() - size / 2, center.y() - size / 2, size, size));
    hotspot->setTag(firstHotspotTag + index);
    const QString title = BrevantoFields::shownText(match.title());
    const QString name = title.isEmpty() ? tr("Hotspot %1").arg(index + 1) : title;
    new Platform::TapRecognizer(hotspot, name, [this, hotspot](Platform::View *) { tappedOnHotSpotView(hotspot); });
    m_backgroundImageView->addSubview(hotspot);
    hotspot->startAnimating();
}

void BrevantoAdVC::stopOrStartAnimateHotspotView(bool start)
{
    const QList<QQuickItem *> subviews = m_backgroundImageView->childItems();
    for (QQuickItem *subview : subviews) {
        auto *hotspot = qobject_cast<BrevantoHotspotView *>(subview);
        if (!hotspot)
            continue;
        if (start)
            hotspot->startAnimating();
        else
            hotspot->stopAnimating();
    }
}

void BrevantoAdVC::tappedOnHotSpotView(BrevantoHotspotView *hotSpotView)
{
    hotSpotViewTapped(hotSpotView);
}

void BrevantoAdVC::navBarBackButtonAction()
{
    if (navigationController())
        navigationController()->popViewController(true);
}

std::shared_ptr<BrevantoMatch> BrevantoAdVC::firstMatch() const
{
    return m_matchGroup->listOfMatches().value(0);
}

void BrevantoAdVC::setImageLoading(bool loading)
{
    if (m_isImageLoading == loading)
        return;
    m_isImageLoading = loading;
    Q_EMIT imageLoadingChanged();
}
