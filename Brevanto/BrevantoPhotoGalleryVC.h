#pragma once

#include "Brevanto/GalleryImageLoader.h"
#include "Brevanto/Model/BrevantoMatch.h"
#include "Platform/Graphics/Image.h"
#include "Platform/Interface/Button.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/PageControl.h"
#include "Platform/Interface/ScrollView.h"
#include "Platform/Interface/ViewController.h"

#include <QVariantMap>

#include <memory>

class CatalogueButton;

// The photo gallery: pages through the catalogue images of one match or, when it has none, through its gallery images.
// A page can be zoomed and may carry a caption and a button that opens where the product is sold. A page stands once it
// is near the page on show, and shows pixels only while it is; the images arrive in any order. The arrow buttons reckon
// with the images that have arrived, and follow each page turned and each arrival.
class BrevantoPhotoGalleryVC : public Platform::ViewController, public Platform::ScrollViewDelegate
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")

public:
    // Tag of the image view of the first page; the others follow in the order of the images.
    static constexpr int firstImageViewTag = 2000;
    static constexpr int captionViewTag = 601;
    // Of more images the first are shown.
    static constexpr int mostImages = 1000;

    ~BrevantoPhotoGalleryVC() override;

    Platform::ScrollView *imagesScrollView() const { return m_imagesScrollView; }
    Platform::Button *nextButton() const { return m_nextButton; }
    Platform::Button *prevButton() const { return m_prevButton; }
    Platform::PageControl *pageControl() const { return m_pageControl; }

    // The match whose images are shown; to be set before the screen is shown and not changed afterwards.
    std::shared_ptr<BrevantoMatch> matchObject() const { return m_matchObject; }
    void setMatchObject(const std::shared_ptr<BrevantoMatch> &matchObject) { m_matchObject = matchObject; }

    // How many layout passes there were; the first builds the pages.
    qint64 layoutCount() const { return m_layoutCount; }
    bool areImagesLoadedOnce() const { return m_areImagesLoadedOnce; }
    // One entry for each image that has finished loading, in the order in which they finished: "image", and of those
    // that succeeded also "caption" and "buyURL". The image is null while it is let go because there are too many.
    QList<QVariantMap> galleryImageDictsArray() const { return m_galleryImageDictsArray; }

    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    // Closes the gallery.
    Q_INVOKABLE void navBarBackButtonAction();

    // Builds the pages anew and asks for their images, beginning with the page of that index.
    void loadGalleryViewWithCurrentIndex(int index);
    void loadPageControl();
    // Shows what has been loaded on the page of that index, if it stands.
    void loadImageForGalleryAtIndex(int index, const QVariantMap &imageDict);
    // The strip with the text, in place of the one before; null, and no strip, when the text is blank.
    Platform::View *addCaptionViewAtBottomOfImageView(Platform::ImageView *imageView, const QString &captionText);

    Q_INVOKABLE void nextButtonClicked();
    Q_INVOKABLE void prevButtonClicked();
    // The page on show, by one step of the keyboard.
    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();
    void buyButtonClicked(CatalogueButton *button);
    // Opens the page in the web viewer; an empty address is answered with an alert.
    void openArticleOnWeb(const QString &urlString);
    // Single taps have no effect.
    void handleSingleTap() { }

    Platform::View *viewForZoomingInScrollView(Platform::ScrollView *scrollView) override;
    void scrollViewDidScroll(Platform::ScrollView *scrollView) override;
    void scrollViewDidEndZooming(Platform::ScrollView *scrollView, qreal scale) override;

protected:
    void connectOutlets() override;

private:
    struct Item {
        QString imageURL;
        QString caption;
        QString buyURL;
    };
    static QList<Item> itemsOf(const BrevantoMatch &match);

    QRectF pageFrame(int index) const;
    void addPage(int index);
    void showNearPages();
    void layOutPages();
    Platform::ImageView *imageViewAt(int index) const;
    // Above the strip when there is one.
    void addBuyButton(Platform::ImageView *imageView, const QString &buyURL, const Platform::View *strip);

    void loadImages();
    void imageArrived(int index, const Platform::Image &image);
    void imageReleased(int index);

    void scrollByPages(int count);
    void turnTo(int page);
    void zoomBy(qreal factor);
    void updateButtons();
    void setArrowHidden(Platform::Button *arrow, bool hidden);

    std::shared_ptr<BrevantoMatch> m_matchObject;
    QPointer<Platform::ScrollView> m_imagesScrollView;
    QPointer<Platform::Button> m_nextButton;
    QPointer<Platform::Button> m_prevButton;
    QPointer<Platform::PageControl> m_pageControl;
    qint64 m_layoutCount = 0;
    bool m_areImagesLoadedOnce = false;
    QList<QVariantMap> m_galleryImageDictsArray;

    QList<Item> m_items;
    QList<Platform::ScrollView *> m_pages; // owned by the view; null until a page stands
    QHash<int, qsizetype> m_entries; // where in galleryImageDictsArray the image of an index is
    std::unique_ptr<GalleryImageLoader> m_loader;
    int m_page = 0;
};
