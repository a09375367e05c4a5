#pragma once

#include "Brevanto/BrevantoDetailsPopOverVC.h"
#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Brevanto/SlideDownVC/BrevantoHotspotInfoVC.h"
#include "Platform/Graphics/Image.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/PopoverPresentationController.h"
#include "Platform/Interface/ViewController.h"

#include <memory>

class BrevantoHotspotView;
enum class HotspotAction;
struct HotspotOptions;

// The ad screen: the ad image of one match group and, over it, a pulsing marker for each of its matches. It saves its
// group to the recents once it is laid out. A tapped marker offers the actions for which its match carries data; the
// info button explains them all.
class BrevantoAdVC : public Platform::ViewController,
                     public Platform::PopoverPresentationControllerDelegate,
                     public BrevantoDetailsPopoverDelegate,
                     public BrevantoHotspotInfoDelegate
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")
    // Whether the ad image is on its way.
    Q_PROPERTY(bool isImageLoading READ isImageLoading NOTIFY imageLoadingChanged)

public:
    // Tag of the marker of the first match; the others follow in the order of the matches.
    static constexpr int firstHotspotTag = 11223344;
    // Of more matches the first get a marker each. Ads have a handful.
    static constexpr int mostMarkers = 200;

    // The group shown, never null: to be set, with at least one match, before the view is loaded, and not changed
    // afterwards.
    std::shared_ptr<BrevantoMatchGroup> matchGroup() const { return m_matchGroup; }
    void setMatchGroup(const std::shared_ptr<BrevantoMatchGroup> &matchGroup) { m_matchGroup = matchGroup; }

    // The match whose marker was tapped last; null before the first tap.
    std::shared_ptr<BrevantoMatch> activeMatchObject() const { return m_activeMatchObject; }

    // Dims what lies behind the popover and the info sheet; not on the screen without them.
    Platform::View *dummyPopoverView() const { return m_dummyPopoverView; }

    // Shows the ad image; the markers are its subviews.
    Platform::ImageView *backgroundImageView() const { return m_backgroundImageView; }

    // How many layout passes there were; the first sets the screen up.
    qint64 layoutCount() const { return m_layoutCount; }
    bool isImageLoading() const { return m_isImageLoading; }

    // The rectangle, in the image view's coordinates, that an image covers when it is fitted into the view. Reckoned in
    // single precision. Empty for an image or a view without a size.
    static QRectF frameForImage(const Platform::Image &image, const Platform::ImageView *imageView);

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void viewDidLayoutSubviews() override;
    bool prefersStatusBarHidden() const override { return false; }
    bool goBack() override;

    void doInitialSetup();
    // Lays the markers over the image, pulsing. Without an image there is no place for them, and none appears.
    void addHotspotsToImageView();
    // Starts or stops the pulse of every marker that is on the screen.
    void stopOrStartAnimateHotspotView(bool start);

    void tappedOnHotSpotView(BrevantoHotspotView *hotSpotView);
    // Makes the marker's match the active one and offers what it carries, in a popover next to the marker; says so when
    // that is nothing. Ignored while something is presented.
    void hotSpotViewTapped(BrevantoHotspotView *hotSpotView);
    // Closes the popover and then does what the title stands for.
    void popoverOptionClicked(const QString &title) override;
    bool popoverPresentationControllerShouldDismissPopover(Platform::PopoverPresentationController *) override;
    void popoverPresentationControllerDidDismissPopover(Platform::PopoverPresentationController *) override;
    // Popovers stay popovers on narrow screens.
    static int adaptivePresentationStyleForPresentationController() { return -1; }

    // Shows the sheet that explains the actions.
    Q_INVOKABLE void navBarInfoButtonAction();
    void optionSelectedInActionSheetPopover(int row) override;
    void clickedOnTransparentAreaInActionSheetPopover() override;

    // Shows the page in the web viewer; says so when there is no address.
    void openArticleOnWeb(const QString &urlString);
    // Plays the video or audio clip at that address.
    void openAvPlayerControllerWithUrl(const QString &urlString);
    // A clip was played to its end: takes the player away.
    void itemDidFinishPlaying();

    Q_INVOKABLE void navBarBackButtonAction();

Q_SIGNALS:
    void imageLoadingChanged();

protected:
    void connectOutlets() override;

private:
    std::shared_ptr<BrevantoMatch> firstMatch() const;
    void addHotspot(const BrevantoMatch &match, const QRectF &imageRect, qint32 index);
    void setImageLoading(bool loading);

    void presentOptions(const HotspotOptions &options, const QRectF &sourceRect);
    void performAction(HotspotAction action, const std::shared_ptr<BrevantoMatch> &match);
    void playVideo(const QString &urlString);
    void openGallery(const std::shared_ptr<BrevantoMatch> &match);
    void fitInfoSheet(Platform::View *sheet);
    void showBackdrop(std::chrono::milliseconds duration);
    void hideBackdrop(std::chrono::milliseconds duration);
    void closePopups();

    std::shared_ptr<BrevantoMatchGroup> m_matchGroup = std::make_shared<BrevantoMatchGroup>();
    std::shared_ptr<BrevantoMatch> m_activeMatchObject;
    Platform::View *m_dummyPopoverView = nullptr; // owned as a child
    QPointer<Platform::ImageView> m_backgroundImageView;
    qint64 m_layoutCount = 0;
    bool m_isImageLoading = false;
};
