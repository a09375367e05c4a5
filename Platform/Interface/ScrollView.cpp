#include "Platform/Interface/ScrollView.h"

#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

namespace
{

constexpr int touchDelay = 150; // milliseconds

} // namespace

ScrollView::ScrollView(QQuickItem *parent)
    : View(parent)
    , m_content(new View(this))
{
    m_content->setParent(this);
    connect(m_content, &QQuickItem::childrenChanged, this, &ScrollView::findZoomedView);
}

ScrollView::ScrollView(const QRectF &frame)
    : ScrollView()
{
    setFrame(frame);
}

ScrollView::~ScrollView()
{
    letGo();
}

void ScrollView::setContentSize(const QSizeF &size)
{
    m_contentSize = size;
    updateScene();
}

QPointF ScrollView::contentOffset() const
{
    return {m_scene && m_isPagingEnabled ? m_scene->property("offset").toReal() : m_page * width(), 0};
}

QPointF ScrollView::restingOffset() const
{
    return {(m_scene && m_isPagingEnabled ? m_scene->property("currentIndex").toInt() : m_page) * width(), 0};
}

void ScrollView::setContentOffset(const QPointF &offset, bool animated)
{
    const int last = width() > 0 ? qMax(0, qRound(m_contentSize.width() / width()) - 1) : 0;
    m_page = width() > 0 ? qBound(0, qRound(offset.x() / width()), last) : 0;
    if (m_scene && m_isPagingEnabled)
        QMetaObject::invokeMethod(m_scene, "showPage", Q_ARG(int, m_page), Q_ARG(bool, animated));
    else
        reportScroll();
}

void ScrollView::setScrollEnabled(bool enabled)
{
    m_isScrollEnabled = enabled;
    updateScene();
}

void ScrollView::setDelaysContentTouches(bool delays)
{
    m_delaysContentTouches = delays;
    updateScene();
}

void ScrollView::setMinimumZoomScale(qreal scale)
{
    m_minimumZoomScale = scale;
    updateScene();
}

void ScrollView::setMaximumZoomScale(qreal scale)
{
    m_maximumZoomScale = scale;
    updateScene();
}

qreal ScrollView::zoomScale() const
{
    return m_scene && !m_isPagingEnabled ? m_scene->property("zoom").toReal() : m_minimumZoomScale;
}

qreal ScrollView::restingZoomScale() const
{
    return m_scene && !m_isPagingEnabled ? m_scene->property("restingZoom").toReal() : m_minimumZoomScale;
}

void ScrollView::setZoomScale(qreal scale, bool animated)
{
    if (m_scene && !m_isPagingEnabled)
        QMetaObject::invokeMethod(m_scene, "zoomTo", Q_ARG(double, scale), Q_ARG(bool, animated));
}

void ScrollView::setDelegate(ScrollViewDelegate *delegate)
{
    m_delegate = delegate;
    findZoomedView();
}

void ScrollView::setAccessibleName(const QString &name)
{
    m_accessibleName = name;
    updateScene();
}

void ScrollView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    View::geometryChange(newGeometry, oldGeometry);
    m_content->setSize(newGeometry.size());
}

void ScrollView::itemChange(ItemChange change, const ItemChangeData &data)
{
    View::itemChange(change, data);
    const bool isShown =
        change == ItemVisibleHasChanged ? data.boolValue : change == ItemSceneChange && data.window && isVisible();
    if (isShown && !m_scene && window())
        makeScene();
}

void ScrollView::makeScene()
{
    const QString name = m_isPagingEnabled ? QStringLiteral("PagingContent") : QStringLiteral("ZoomingContent");
    m_scene =
        SceneEngine::makeItem(name, this, {{QStringLiteral("content"), QVariant::fromValue<QQuickItem *>(m_content)}});
    updateScene();
    if (m_isPagingEnabled) {
        connect(m_scene, SIGNAL(tapped()), this, SIGNAL(tapped()));
        connect(m_scene, SIGNAL(dragStarted()), this, SLOT(beginDrag()));
        setContentOffset({m_page * width(), 0}, false);
        connect(m_scene, SIGNAL(offsetChanged()), this, SLOT(reportScroll()));
    } else {
        connect(m_scene, SIGNAL(isHoldingChanged()), this, SLOT(holdAround()));
        connect(m_scene, SIGNAL(zoomEnded()), this, SLOT(endZoom()));
        findZoomedView();
    }
}

void ScrollView::updateScene()
{
    if (!m_scene)
        return;
    m_scene->setProperty("scrolls", m_isScrollEnabled && m_holders == 0);
    m_scene->setProperty("pressDelay", m_delaysContentTouches ? touchDelay : 0);
    m_scene->setProperty("accessibleName", m_accessibleName);
    if (m_isPagingEnabled) {
        m_scene->setProperty("pageCount", width() > 0 ? qRound(m_contentSize.width() / width()) : 0);
    } else {
        m_scene->setProperty("minimumZoom", m_minimumZoomScale);
        m_scene->setProperty("maximumZoom", m_maximumZoomScale);
    }
}

void ScrollView::findZoomedView()
{
    if (!m_scene || m_isPagingEnabled)
        return;
    View *zoomed = m_delegate ? m_delegate->viewForZoomingInScrollView(this) : nullptr;
    if (zoomed)
        zoomed->setTransformOrigin(QQuickItem::TopLeft);
    m_scene->setProperty("zoomed", QVariant::fromValue<QQuickItem *>(zoomed));
}

void ScrollView::beginDrag()
{
    if (m_delegate)
        m_delegate->scrollViewWillBeginDragging(this);
}

void ScrollView::reportScroll()
{
    if (m_delegate)
        m_delegate->scrollViewDidScroll(this);
}

void ScrollView::endZoom()
{
    if (m_delegate)
        m_delegate->scrollViewDidEndZooming(this, zoomScale());
}

void ScrollView::holdAround()
{
    letGo();
    if (!m_scene->property("isHolding").toBool())
        return;
    for (QQuickItem *around = parentItem(); around && !m_held; around = around->parentItem())
        m_held = qobject_cast<ScrollView *>(around);
    if (m_held)
        m_held->addHolders(1);
}

void ScrollView::letGo()
{
    if (m_held)
        m_held->addHolders(-1);
    m_held = nullptr;
}

void ScrollView::addHolders(int count)
{
    m_holders += count;
    updateScene();
}

} // namespace Platform
