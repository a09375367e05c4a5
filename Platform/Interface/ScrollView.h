#pragma once

#include "Platform/Interface/View.h"

namespace Platform
{

class ScrollView;

// Is told what happens in a scroll view; all of it is optional.
class ScrollViewDelegate
{
public:
    virtual ~ScrollViewDelegate() = default;
    virtual void scrollViewWillBeginDragging(ScrollView *scrollView) { Q_UNUSED(scrollView) }
    virtual void scrollViewDidScroll(ScrollView *scrollView) { Q_UNUSED(scrollView) }
    // The content that two fingers and double taps zoom; null when the scroll view does not zoom.
    virtual View *viewForZoomingInScrollView(ScrollView *scrollView)
    {
        Q_UNUSED(scrollView)
        return nullptr;
    }
    virtual void scrollViewDidEndZooming(ScrollView *scrollView, qreal scale)
    {
        Q_UNUSED(scrollView)
        Q_UNUSED(scale)
    }
};

// Shows a part of its content, which the finger moves: page by page from side to side (the stock ListView), or zoomed
// (the stock Flickable). Those stand only once the view has been visible, which keeps hidden pages light. While the
// content is zoomed or being zoomed, drags move it alone and not the scroll view around. For the main thread only.
class ScrollView : public Platform::View
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ScrollArea)

public:
    explicit ScrollView(QQuickItem *parent = nullptr);
    explicit ScrollView(const QRectF &frame);
    ~ScrollView() override;

    // What is to be shown goes into this view. In a scroll view that zooms it is as large as the scroll view.
    View *contentView() const { return m_content; }

    // Of the content that pages, a whole number of frame widths wide; to be set again when the width changes.
    void setContentSize(const QSizeF &size);

    // Of the content that pages: what is at the left edge, on the way too.
    QPointF contentOffset() const;
    // Where the content will be once it does not move any more by itself.
    QPointF restingOffset() const;
    // To the page nearest to `offset`; the delegate is told.
    void setContentOffset(const QPointF &offset, bool animated);

    // False unless set, which is to be done before the view is visible for the first time.
    void setPagingEnabled(bool enabled) { m_isPagingEnabled = enabled; }
    // True unless set otherwise.
    void setScrollEnabled(bool enabled);
    // Whether a touch waits a moment, in case it becomes a drag, before the content gets it. True unless set otherwise.
    void setDelaysContentTouches(bool delays);

    // Both 1 unless set.
    void setMinimumZoomScale(qreal scale);
    void setMaximumZoomScale(qreal scale);
    qreal zoomScale() const;
    // What the zoom will be once it does not change any more by itself.
    qreal restingZoomScale() const;
    // Kept between the two.
    void setZoomScale(qreal scale, bool animated);

    // Not owned; whoever goes before the scroll view takes itself out.
    ScrollViewDelegate *delegate() const { return m_delegate; }
    void setDelegate(ScrollViewDelegate *delegate);

    // What an assistive technology calls the content.
    void setAccessibleName(const QString &name);

Q_SIGNALS:
    // A single tap, on content that pages, that no control in it took.
    void tapped();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void makeScene();
    void updateScene();
    void findZoomedView();
    Q_SLOT void beginDrag();
    Q_SLOT void reportScroll();
    Q_SLOT void holdAround();
    void letGo();
    void addHolders(int count);
    Q_SLOT void endZoom();

    View *m_content;
    QQuickItem *m_scene = nullptr; // owned as a child; null until the view has been visible
    ScrollViewDelegate *m_delegate = nullptr;
    QSizeF m_contentSize;
    int m_page = 0; // until the scene stands
    bool m_isPagingEnabled = false;
    bool m_isScrollEnabled = true;
    bool m_delaysContentTouches = true;
    int m_holders = 0; // scroll views inside that are zoomed or being zoomed
    QPointer<ScrollView> m_held; // the one around, while this one holds it
    qreal m_minimumZoomScale = 1;
    qreal m_maximumZoomScale = 1;
    QString m_accessibleName;
};

} // namespace Platform
