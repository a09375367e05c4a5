#include "Brevanto/BrevantoAdVC.h"

#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/BrevantoPhotoGalleryVC.h"
#include "Brevanto/HotspotOptions.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoPopupViewController.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Brevanto/WebAction.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/PopoverPresentationController.h"
#include "Platform/Interface/Window.h"

using namespace std::chrono_literals;
using namespace BrevantoPopupViewController;

namespace
{

constexpr qreal popoverWidth = 250;
constexpr QColor backdropColor(0, 0, 0, 102); // black at alpha 0.4
constexpr auto popoverFadeIn = 300ms;
constexpr auto popoverFadeOut = 200ms;
constexpr auto sheetFade = 500ms;
constexpr QLatin1StringView youTubeHost("youtube.com");

} // namespace

void BrevantoAdVC::hotSpotViewTapped(BrevantoHotspotView *hotSpotView)
{
    // Another tap came first, as with two fingers.
    if (presentedViewController() || zovra_popupBackgroundView(this))
        return;
    BrevantoReachabilityManager *reachability = BrevantoReachabilityManager::instance();
    if (reachability->currentReachabilityStatus() == BrevantoReachabilityStatusNone)
        reachability->animateNoInternetConnectionLabel();
    m_activeMatchObject = m_matchGroup->listOfMatches().value(hotSpotView->tag() - firstHotspotTag);
    if (!m_activeMatchObject)
        return;
    const HotspotOptions offered = HotspotOptions::offeredBy(*m_activeMatchObject);
    if (offered.titles.isEmpty()) {
        present(BrevantoUtils::getAlertController(QStringLiteral("Brevanto"),
                                                  QStringLiteral("Hotspot data not available.")),
                true);
        return;
    }
    stopOrStartAnimateHotspotView(false);
    presentOptions(offered, hotSpotView->frame());
}

void BrevantoAdVC::presentOptions(const HotspotOptions &options, const QRectF &sourceRect)
{
    auto popover =
        brevantoStoryboard().instantiate<BrevantoDetailsPopOverVC>(QStringLiteral("BrevantoDetailsPopOverVC"));
    popover->modalPresentationStyle = Platform::ModalPresentationStyle::Popover;
    popover->setTitlesArray(options.titles);
    popover->setIconsArray(options.icons);
    popover->preferredContentSize =
        QSizeF(popoverWidth,
               popover->numberOfRowsInSection() * BrevantoDetailsPopOverVC::heightForRow()
                   + BrevantoDetailsPopOverVC::heightForHeader() + BrevantoDetailsPopOverVC::heightForFooter());
    popover->setDetailsPopoverDelegate(this);
    Platform::PopoverPresentationController *presentation = popover->popoverPresentationController();
    presentation->setDelegate(this);
    presentation->setSourceView(view());
    presentation->setSourceRect(sourceRect);
    presentation->setPermittedArrowDirections(Platform::PopoverArrowDirection::Any);
    presentation->setBackgroundColor(Qt::transparent);
    showBackdrop(popoverFadeIn);
    present(std::move(popover), true);
}

bool BrevantoAdVC::popoverPresentationControllerShouldDismissPopover(Platform::PopoverPresentationController *)
{
    hideBackdrop(popoverFadeOut);
    return true;
}

void BrevantoAdVC::popoverPresentationControllerDidDismissPopover(Platform::PopoverPresentationController *)
{
    stopOrStartAnimateHotspotView(true);
}

void BrevantoAdVC::popoverOptionClicked(const QString &title)
{
    // A second tap, on a popover that is on its way out.
    if (!qobject_cast<BrevantoDetailsPopOverVC *>(presentedViewController()))
        return;
    hideBackdrop(popoverFadeOut);
    // A marker tapped until then makes another match the active one.
    presentedViewController()->dismiss(true, [self = QPointer(this), title, match = m_activeMatchObject] {
        if (!self)
            return;
        if (!self->presentedViewController())
            self->stopOrStartAnimateHotspotView(true);
        self->performAction(HotspotOptions::action(title), match);
    });
}

void BrevantoAdVC::performAction(HotspotAction action, const std::shared_ptr<BrevantoMatch> &activeMatch)
{
    const BrevantoMatch &match = *activeMatch;
    switch (action) {
    case HotspotAction::MoreInformation:
        openArticleOnWeb(BrevantoFields::text(match.reviewUrl()));
        break;
    case HotspotAction::Video:
        playVideo(BrevantoFields::text(match.youTubeVideoUrl()));
        break;
    case HotspotAction::Audio:
        openAvPlayerControllerWithUrl(BrevantoFields::text(match.audioUrl()));
        break;
    case HotspotAction::MakeCall:
        Platform::Application::openURL(QUrl(QStringLiteral("tel:") + BrevantoFields::text(match.phoneNumber())));
        break;
    case HotspotAction::PhotoGallery:
        openGallery(activeMatch);
        break;
    case HotspotAction::BuyItNow:
        openArticleOnWeb(BrevantoFields::text(match.buyUrl()));
        break;
    }
}

void BrevantoAdVC::openArticleOnWeb(const QString &urlString)
{
    ::openArticleOnWeb(this, urlString);
}

void BrevantoAdVC::playVideo(const QString &urlString)
{
    if (urlString.isNull())
        return;
    if (urlString.contains(youTubeHost))
        openArticleOnWeb(urlString);
    else
        openAvPlayerControllerWithUrl(urlString);
}

void BrevantoAdVC::openGallery(const std::shared_ptr<BrevantoMatch> &match)
{
    if (BrevantoFields::list(match->adCatalogue()).isEmpty() && match->galleryDataSource().isEmpty()) {
        presentOptionNotAvailable(this);
        return;
    }
    auto gallery = brevantoStoryboard().instantiate<BrevantoPhotoGalleryVC>(QStringLiteral("BrevantoPhotoGalleryVC"));
    gallery->setMatchObject(match);
    auto stack = std::make_unique<Platform::NavigationController>(std::move(gallery));
    stack->modalTransitionStyle = Platform::ModalTransitionStyle::CrossDissolve;
    present(std::move(stack), true);
}

void BrevantoAdVC::navBarInfoButtonAction()
{
    if (presentedViewController() || zovra_popupBackgroundView(this))
        return;
    showBackdrop(sheetFade);
    const std::shared_ptr<BrevantoHotspotInfoVC> sheet =
        brevantoStoryboard().instantiate<BrevantoHotspotInfoVC>(QStringLiteral("BrevantoHotspotInfoVC"));
    const HotspotOptions explained = HotspotOptions::explained();
    sheet->setTitlesArray(explained.titles);
    sheet->setIconsArray(explained.icons);
    sheet->view()->setFrame(QRectF(0, 0, kScreenWidth, kScreenHeight));
    sheet->view()->layoutIfNeeded();
    sheet->setHotspotInfoDelegate(this);
    fitInfoSheet(sheet->view());
    presentPopupViewController(this, sheet, slideAnimation);
}

// The window may have turned since the size of the screen was noted.
void BrevantoAdVC::fitInfoSheet(Platform::View *sheet)
{
    const QRectF screen = topView(this)->bounds();
    if (sheet->frame().size() != screen.size())
        sheet->setFrame(screen);
}

void BrevantoAdVC::optionSelectedInActionSheetPopover(int)
{
    clickedOnTransparentAreaInActionSheetPopover();
}

void BrevantoAdVC::clickedOnTransparentAreaInActionSheetPopover()
{
    dismissPopupViewControllerWithanimationType(this, slideAnimation);
    hideBackdrop(sheetFade);
}

void BrevantoAdVC::showBackdrop(std::chrono::milliseconds duration)
{
    if (!navigationController())
        return;
    Platform::View *screen = navigationController()->view();
    m_dummyPopoverView->setFrame(screen->bounds());
    screen->addSubview(m_dummyPopoverView);
    Platform::View::animate({.duration = duration}, [this] { m_dummyPopoverView->setBackgroundColor(backdropColor); });
}

void BrevantoAdVC::hideBackdrop(std::chrono::milliseconds duration)
{
    if (m_dummyPopoverView->backgroundColor().alpha() == 0)
        return;
    Platform::View::animate(
        {.duration = duration}, [this] { m_dummyPopoverView->setBackgroundColor(Qt::transparent); },
        [backdrop = QPointer(m_dummyPopoverView)](bool) {
            // Unless it is wanted again.
            if (backdrop && backdrop->backgroundColor().alpha() == 0)
                backdrop->removeFromSuperview();
        });
}

bool BrevantoAdVC::goBack()
{
    if (!zovra_popupBackgroundView(this))
        return ViewController::goBack();
    clickedOnTransparentAreaInActionSheetPopover();
    return true;
}

// What stands beside or over this screen makes no sense without it.
void BrevantoAdVC::closePopups()
{
    auto *popover = qobject_cast<BrevantoDetailsPopOverVC *>(presentedViewController());
    if (popover) {
        hideBackdrop(popoverFadeOut);
        popover->dismiss(true, [self = QPointer(this)] {
            if (self)
                self->stopOrStartAnimateHotspotView(true);
        });
    }
    if (isPopupShown(this))
        clickedOnTransparentAreaInActionSheetPopover();
}
