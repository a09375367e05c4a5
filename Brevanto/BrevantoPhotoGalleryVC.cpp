#include "Brevanto/BrevantoPhotoGalleryVC.h"

#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/CatalogueButton.h"
#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/ThemeColor.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Brevanto/Utils/CustomLabel.h"
#include "Brevanto/WebAction.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Interface/SystemFont.h"

#include <QQuickWindow>

namespace
{

constexpr qreal pageMargin = 5;
constexpr qreal maximumZoom = 2;
constexpr qreal zoomStep = 1.25; // of a key
constexpr qreal captionHeight = 80;
constexpr qreal captionBottom = 20;
constexpr qreal captionMargin = 10;
constexpr QSizeF buySize(80, 45);
constexpr qreal buyBottom = 50;
constexpr qreal buyGap = 10;
constexpr qreal buyCornerRadius = 10;

QString imageKey()
{
    return QStringLiteral("image");
}

QString captionKey()
{
    return QStringLiteral("caption");
}

QString buyKey()
{
    return QStringLiteral("buyURL");
}

Platform::Image placeholder()
{
    return brevantoBundle().imageNamed(QStringLiteral("brevanto_no_image"));
}

} // namespace

BrevantoPhotoGalleryVC::~BrevantoPhotoGalleryVC()
{
    for (Platform::ScrollView *page : std::as_const(m_pages)) {
        if (page)
            page->setDelegate(nullptr);
    }
    if (m_imagesScrollView)
        m_imagesScrollView->setDelegate(nullptr);
}

void BrevantoPhotoGalleryVC::connectOutlets()
{
    m_imagesScrollView = outlet<Platform::ScrollView>(QStringLiteral("imagesScrollView"));
    m_nextButton = outlet<Platform::Button>(QStringLiteral("nextButton"));
    m_prevButton = outlet<Platform::Button>(QStringLiteral("prevButton"));
    m_pageControl = outlet<Platform::PageControl>(QStringLiteral("pageControl"));
    connect(m_nextButton, &Platform::Button::touchUpInside, this, &BrevantoPhotoGalleryVC::nextButtonClicked);
    connect(m_prevButton, &Platform::Button::touchUpInside, this, &BrevantoPhotoGalleryVC::prevButtonClicked);
}

void BrevantoPhotoGalleryVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    BrevantoUtils::customizeNavBarFor(this, QStringLiteral("Gallery"), false, true, false);
    m_prevButton->setImage(BrevantoUtils::backArrowCGImageRef());
    m_nextButton->setImage(BrevantoUtils::forwardArrowCGImageRef());
    m_areImagesLoadedOnce = false;
    m_imagesScrollView->setDelaysContentTouches(false);
    Platform::log(QString::number(m_matchObject ? m_matchObject->galleryDataSource().size() : 0));
    m_galleryImageDictsArray.clear();
    m_imagesScrollView->setScrollEnabled(true);
    m_imagesScrollView->setDelegate(this);
    m_imagesScrollView->setClip(true);
    m_imagesScrollView->setPagingEnabled(true);
    m_prevButton->setHidden(true);
    m_nextButton->setHidden(true);
    m_layoutCount = 0;
}

void BrevantoPhotoGalleryVC::viewDidLayoutSubviews()
{
    ViewController::viewDidLayoutSubviews();
    ++m_layoutCount;
    if (m_layoutCount > 1)
        layOutPages();
    else if (!m_areImagesLoadedOnce)
        loadGalleryViewWithCurrentIndex(0);
}

void BrevantoPhotoGalleryVC::navBarBackButtonAction()
{
    dismiss(true);
}

QList<BrevantoPhotoGalleryVC::Item> BrevantoPhotoGalleryVC::itemsOf(const BrevantoMatch &match)
{
    const QVariantList catalogue = BrevantoFields::list(match.adCatalogue());
    const QVariantList &entries = catalogue.isEmpty() ? match.galleryDataSource() : catalogue;
    QList<Item> items;
    for (const QVariant &entry : entries.first(qMin(entries.size(), qsizetype(mostImages)))) {
        if (const auto product = BrevantoFields::record<BrevantoCatalogueImage>(entry)) {
            items.append({BrevantoFields::text(product->imageURL()), BrevantoFields::shownText(product->captionText()),
                          BrevantoFields::text(product->buyURL())});
        } else if (const auto picture = BrevantoFields::record<BrevantoCaptionedImage>(entry)) {
            items.append(
                {BrevantoFields::text(picture->imageURL()), BrevantoFields::shownText(picture->captionText()), {}});
        } else {
            items.append({BrevantoFields::text(entry), {}, {}});
        }
    }
    return items;
}

void BrevantoPhotoGalleryVC::loadGalleryViewWithCurrentIndex(int index)
{
    m_items = m_matchObject ? itemsOf(*m_matchObject) : QList<Item>();
    qDeleteAll(m_pages);
    m_pages.fill(nullptr, m_items.size());
    m_galleryImageDictsArray.clear();
    m_entries.clear();
    m_page = qBound(0, index, qMax(0, static_cast<int>(m_items.size()) - 1));
    loadPageControl();
    m_pageControl->setCurrentPage(m_page);
    layOutPages();
    showNearPages();
    connect(m_imagesScrollView, &Platform::ScrollView::tapped, this, &BrevantoPhotoGalleryVC::handleSingleTap,
            Qt::UniqueConnection);
    loadImages();
    m_areImagesLoadedOnce = true;
}

void BrevantoPhotoGalleryVC::loadPageControl()
{
    const bool hasPages = m_items.size() > 1;
    m_pageControl->setHidden(!hasPages);
    m_imagesScrollView->setScrollEnabled(hasPages);
    m_prevButton->setHidden(true);
    m_nextButton->setHidden(!hasPages);
    if (!hasPages)
        return;
    m_pageControl->setNumberOfPages(static_cast<int>(m_items.size()));
    m_pageControl->setCurrentPage(0);
    m_pageControl->setUserInteractionEnabled(false);
}

// The pages follow one another at the paging view's own width, which is the screen's.
QRectF BrevantoPhotoGalleryVC::pageFrame(int index) const
{
    const QSizeF size = m_imagesScrollView->frame().size();
    return {index * size.width() + pageMargin, 0, size.width() - 2 * pageMargin, size.height()};
}

void BrevantoPhotoGalleryVC::addPage(int index)
{
    auto *page = new Platform::ScrollView(pageFrame(index));
    page->setClip(true);
    page->setMinimumZoomScale(1);
    page->setMaximumZoomScale(maximumZoom);
    page->setDelaysContentTouches(false);
    page->setAccessibleName(tr("Image %1 of %2").arg(index + 1).arg(m_items.size()));
    m_pages[index] = page;
    page->setDelegate(this);

    auto *imageView = new Platform::ImageView(page->bounds());
    imageView->setTag(firstImageViewTag + index);
    imageView->setUserInteractionEnabled(true);
    imageView->setAutoresizingMask(Platform::View::FlexibleWidth | Platform::View::FlexibleHeight);
    connect(imageView, &Platform::ImageView::imageFailed, this, [this, index] { imageArrived(index, {}); });
    page->contentView()->addSubview(imageView);
    BrevantoUtils::addSpinnerToView(imageView, Platform::ActivityIndicatorStyle::WhiteLarge);
    m_imagesScrollView->contentView()->addSubview(page);
    if (const auto entry = m_entries.constFind(index); entry != m_entries.cend())
        loadImageForGalleryAtIndex(index, m_galleryImageDictsArray.at(*entry));
}

void BrevantoPhotoGalleryVC::showNearPages()
{
    for (int index = 0; index < m_pages.size(); ++index) {
        const bool isNear = GalleryImageLoader::isNear(index, m_page);
        if (isNear && !m_pages.at(index))
            addPage(index);
        if (!m_pages.at(index))
            continue;
        m_pages.at(index)->setHidden(!isNear);
        imageViewAt(index)->setKeepsPixels(isNear);
    }
}

// The window has another size, as after a rotation: the page on show stays.
void BrevantoPhotoGalleryVC::layOutPages()
{
    const int current = m_page;
    for (int index = 0; index < m_pages.size(); ++index) {
        if (!m_pages.at(index))
            continue;
        m_pages.at(index)->setZoomScale(1, false);
        m_pages.at(index)->setFrame(pageFrame(index));
    }
    const QSizeF size = m_imagesScrollView->frame().size();
    m_imagesScrollView->setContentSize({size.width() * static_cast<qreal>(m_items.size()), size.height()});
    m_imagesScrollView->setContentOffset({current * size.width(), 0}, false);
}

void BrevantoPhotoGalleryVC::loadImages()
{
    QStringList addresses;
    for (const Item &item : std::as_const(m_items))
        addresses.append(item.imageURL);
    m_loader = std::make_unique<GalleryImageLoader>(addresses);
    connect(m_loader.get(), &GalleryImageLoader::arrived, this, &BrevantoPhotoGalleryVC::imageArrived);
    connect(m_loader.get(), &GalleryImageLoader::released, this, &BrevantoPhotoGalleryVC::imageReleased);
    m_loader->setPage(m_page);
}

void BrevantoPhotoGalleryVC::imageArrived(int index, const Platform::Image &image)
{
    QVariantMap imageDict{{imageKey(), QVariant::fromValue(image.isNull() ? placeholder() : image)}};
    if (!image.isNull()) {
        imageDict.insert(captionKey(), m_items.at(index).caption);
        imageDict.insert(buyKey(), m_items.at(index).buyURL);
    }
    // An image may arrive anew, or turn out to be none.
    if (const auto entry = m_entries.constFind(index); entry != m_entries.cend()) {
        m_galleryImageDictsArray[*entry] = imageDict;
    } else {
        m_entries.insert(index, m_galleryImageDictsArray.size());
        m_galleryImageDictsArray.append(imageDict);
    }
    loadImageForGalleryAtIndex(index, imageDict);
    updateButtons();
}

void BrevantoPhotoGalleryVC::imageReleased(int index)
{
    m_galleryImageDictsArray[m_entries.value(index)].insert(imageKey(), QVariant::fromValue(Platform::Image()));
    if (Platform::ImageView *imageView = imageViewAt(index)) {
        imageView->setImage({});
        BrevantoUtils::addSpinnerToView(imageView, Platform::ActivityIndicatorStyle::WhiteLarge);
    }
}

Platform::ImageView *BrevantoPhotoGalleryVC::imageViewAt(int index) const
{
    Platform::ScrollView *page = m_pages.value(index);
    return page ? qobject_cast<Platform::ImageView *>(page->viewWithTag(firstImageViewTag + index)) : nullptr;
}

void BrevantoPhotoGalleryVC::loadImageForGalleryAtIndex(int index, const QVariantMap &imageDict)
{
    Platform::ImageView *imageView = imageViewAt(index);
    if (!imageView)
        return;
    const auto image = imageDict.value(imageKey()).value<Platform::Image>();
    if (image.isNull())
        return;
    imageView->setContentMode(image == placeholder() ? Platform::ContentMode::Center
                                                     : Platform::ContentMode::ScaleAspectFit);
    imageView->setImage(image);
    delete imageView->findChild<CatalogueButton *>(QString(), Qt::FindDirectChildrenOnly);
    const Platform::View *strip =
        addCaptionViewAtBottomOfImageView(imageView, imageDict.value(captionKey()).toString());
    if (const QString buyURL = imageDict.value(buyKey()).toString(); !buyURL.isEmpty())
        addBuyButton(imageView, buyURL, strip);
    BrevantoUtils::removeSpinnerFromView(imageView);
}

Platform::View *BrevantoPhotoGalleryVC::addCaptionViewAtBottomOfImageView(Platform::ImageView *imageView,
                                                                          const QString &captionText)
{
    delete imageView->viewWithTag(captionViewTag);
    QString text = BrevantoUtils::stringByRemovingExtraWhiteSpaces(captionText);
    if (text.isEmpty())
        return nullptr;
    const QSizeF size = imageView->bounds().size();
    auto *strip =
        new Platform::ImageView(QRectF(0, size.height() - captionHeight - captionBottom, size.width(), captionHeight));
    strip->setTag(captionViewTag);
    strip->setClip(true);
    strip->setContentMode(Platform::ContentMode::ScaleToFill);
    strip->setAutoresizingMask(Platform::View::FlexibleWidth | Platform::View::FlexibleTopMargin);
    strip->setBackgroundColor(QColor(0, 0, 0, 140));
    auto *label = new CustomLabel(QRectF(captionMargin, 0, size.width() - 2 * captionMargin, captionHeight));
    label->setAutoresizingMask(Platform::View::FlexibleWidth);
    label->setNumberOfLines(3);
    label->setTextColor(Qt::white);
    label->setTextAlignment(Qt::AlignLeft);
    label->setFont(Platform::SystemFont::medium(14));
    label->setText(text.replace(QLatin1StringView("<br>"), QLatin1StringView("\n")));
    strip->addSubview(label);
    imageView->addSubview(strip);
    return strip;
}

void BrevantoPhotoGalleryVC::addBuyButton(Platform::ImageView *imageView, const QString &buyURL,
                                          const Platform::View *strip)
{
    const QSizeF size = imageView->bounds().size();
    const qreal bottom = strip ? strip->frame().top() - buyGap : size.height() - buyBottom;
    auto *button =
        new CatalogueButton(QRectF(QPointF((size.width() - buySize.width()) / 2, bottom - buySize.height()), buySize));
    button->setAutoresizingMask(Platform::View::FlexibleLeftMargin | Platform::View::FlexibleRightMargin
                                | Platform::View::FlexibleTopMargin);
    button->setBackgroundColor(ThemeColor::parsed(BrevantoFields::text(m_matchObject->adthemeColorString())));
    button->setCornerRadius(buyCornerRadius);
    button->setTitle(QStringLiteral("Buy"));
    button->setBuyURL(buyURL);
    connect(button, &Platform::Button::touchUpInside, this, [this, button] { buyButtonClicked(button); });
    imageView->addSubview(button);
}

void BrevantoPhotoGalleryVC::nextButtonClicked()
{
    scrollByPages(1);
}

void BrevantoPhotoGalleryVC::prevButtonClicked()
{
    scrollByPages(-1);
}

void BrevantoPhotoGalleryVC::scrollByPages(int count)
{
    if (Platform::ScrollViewDelegate *delegate = m_imagesScrollView->delegate())
        delegate->scrollViewWillBeginDragging(m_imagesScrollView);
    const QPointF step(count * m_imagesScrollView->frame().width(), 0);
    // While a move is under way, from where that leads: two quick taps are two pages.
    m_imagesScrollView->setContentOffset(m_imagesScrollView->restingOffset() + step, true);
}

void BrevantoPhotoGalleryVC::zoomIn()
{
    zoomBy(zoomStep);
}

void BrevantoPhotoGalleryVC::zoomOut()
{
    zoomBy(1 / zoomStep);
}

void BrevantoPhotoGalleryVC::zoomBy(qreal factor)
{
    if (Platform::ScrollView *page = m_pages.value(m_page))
        page->setZoomScale(page->restingZoomScale() * factor, true);
}

void BrevantoPhotoGalleryVC::buyButtonClicked(CatalogueButton *button)
{
    if (!button->buyURL().isEmpty())
        openArticleOnWeb(button->buyURL());
}

void BrevantoPhotoGalleryVC::openArticleOnWeb(const QString &urlString)
{
    ::openArticleOnWeb(this, urlString);
}

Platform::View *BrevantoPhotoGalleryVC::viewForZoomingInScrollView(Platform::ScrollView *scrollView)
{
    return imageViewAt(static_cast<int>(m_pages.indexOf(scrollView)));
}

void BrevantoPhotoGalleryVC::scrollViewDidEndZooming(Platform::ScrollView *scrollView, qreal scale)
{
    if (Platform::ImageView *imageView = imageViewAt(static_cast<int>(m_pages.indexOf(scrollView))))
        imageView->setDetail(scale);
}

void BrevantoPhotoGalleryVC::scrollViewDidScroll(Platform::ScrollView *scrollView)
{
    const qreal width = scrollView->frame().width();
    if (scrollView != m_imagesScrollView || width <= 0 || m_items.isEmpty())
        return;
    // What the division of a whole number of pages loses must not lead to the page before.
    constexpr qreal rounding = 1e-3;
    m_pageControl->setCurrentPage(static_cast<int>(scrollView->contentOffset().x() / width + rounding));
    if (const int page = m_pageControl->currentPage(); page != m_page)
        turnTo(page);
    updateButtons();
}

void BrevantoPhotoGalleryVC::turnTo(int page)
{
    if (Platform::ScrollView *left = m_pages.value(std::exchange(m_page, page)))
        left->setZoomScale(1, true);
    showNearPages();
    if (m_loader)
        m_loader->setPage(page);
}

void BrevantoPhotoGalleryVC::updateButtons()
{
    const qsizetype loaded = m_galleryImageDictsArray.size();
    if (loaded <= 1)
        return;
    setArrowHidden(m_prevButton, m_page == 0);
    setArrowHidden(m_nextButton, m_page > 0 && m_page == loaded - 1);
}

void BrevantoPhotoGalleryVC::setArrowHidden(Platform::Button *arrow, bool hidden)
{
    // The keys go on turning pages, and do not press whatever control comes next.
    if (hidden && arrow->window() && arrow->isAncestorOf(arrow->window()->activeFocusItem()))
        m_imagesScrollView->forceActiveFocus();
    arrow->setHidden(hidden);
}
