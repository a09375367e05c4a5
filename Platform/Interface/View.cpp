#include "Platform/Interface/View.h"

#include "Platform/Interface/SceneEngine.h"
#include "Platform/Interface/ViewAnimator.h"

#include <QQuickWindow>

namespace Platform
{

View::View(QQuickItem *parent)
    : QQuickItem(parent)
{
}

View::View(const QRectF &frame)
{
    setPosition(frame.topLeft());
    setSize(frame.size());
}

View::~View()
{
    ViewAnimator::forget(this);
}

void View::setTag(int tag)
{
    if (m_tag == tag)
        return;
    m_tag = tag;
    Q_EMIT tagChanged();
}

QRectF View::frame() const
{
    return std::get<QRectF>(ViewAnimator::instance().value(this, AnimatedProperty::Frame));
}

void View::setFrame(const QRectF &frame)
{
    ViewAnimator::instance().setValue(this, AnimatedProperty::Frame, frame);
}

void View::setCenter(const QPointF &center)
{
    QRectF moved = frame();
    moved.moveCenter(center);
    setFrame(moved);
}

QColor View::backgroundColor() const
{
    return std::get<QColor>(ViewAnimator::instance().value(this, AnimatedProperty::BackgroundColor));
}

void View::setBackgroundColor(const QColor &color)
{
    ViewAnimator::instance().setValue(this, AnimatedProperty::BackgroundColor, color);
}

QColor View::shownBackgroundColor() const
{
    return std::get<QColor>(ViewAnimator::instance().shownValue(this, AnimatedProperty::BackgroundColor));
}

qreal View::cornerRadius() const
{
    return std::get<qreal>(ViewAnimator::instance().value(this, AnimatedProperty::CornerRadius));
}

void View::setCornerRadius(qreal radius)
{
    ViewAnimator::instance().setValue(this, AnimatedProperty::CornerRadius, radius);
}

qreal View::alpha() const
{
    return std::get<qreal>(ViewAnimator::instance().value(this, AnimatedProperty::Alpha));
}

void View::setAlpha(qreal alpha)
{
    ViewAnimator::instance().setValue(this, AnimatedProperty::Alpha, qBound(0.0, alpha, 1.0));
}

qreal View::transformScale() const
{
    return std::get<qreal>(ViewAnimator::instance().value(this, AnimatedProperty::TransformScale));
}

void View::setTransformScale(qreal scale)
{
    ViewAnimator::instance().setValue(this, AnimatedProperty::TransformScale, scale);
}

void View::setShadow(const LayerShadow &shadow)
{
    if (m_shadow == shadow)
        return;
    m_shadow = shadow;
    updateBackground();
}

bool View::isHidden() const
{
    const QQuickItem *parent = parentItem();
    return parent && !parent->isVisible() ? m_hidden : !isVisible();
}

void View::setHidden(bool hidden)
{
    m_hidden = hidden;
    if (hidden)
        passFocusOn();
    setVisible(!hidden);
}

// An item that is hidden would keep the keys, and Tab would lead nowhere.
void View::passFocusOn()
{
    const QQuickItem *focused = window() ? window()->activeFocusItem() : nullptr;
    if (!focused || (focused != this && !isAncestorOf(focused)))
        return;
    const bool isFocusShown = focused->property("visualFocus").toBool();
    QQuickItem *const first = nextItemInFocusChain();
    QQuickItem *next = first;
    while (next && isAncestorOf(next)) {
        next = next->nextItemInFocusChain();
        if (next == first)
            return;
    }
    if (next && next != this)
        next->forceActiveFocus(isFocusShown ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

void View::addSubview(QQuickItem *subview)
{
    const auto *view = qobject_cast<View *>(subview);
    if (!subview->parent() && !(view && view->m_belongsToController))
        subview->setParent(this);
    subview->setParentItem(this);
    bringSubviewToFront(subview);
}

void View::removeFromSuperview()
{
    setParentItem(nullptr);
}

void View::bringSubviewToFront(QQuickItem *subview)
{
    if (subview->parentItem() != this)
        return;
    const QList<QQuickItem *> siblings = childItems();
    for (const QQuickItem *sibling : siblings)
        subview->setZ(qMax(subview->z(), sibling->z()));
    if (siblings.last() != subview)
        subview->stackAfter(siblings.last());
}

QQuickItem *View::viewWithTag(QQuickItem *root, int tag)
{
    if (!root)
        return nullptr;
    const auto *view = qobject_cast<View *>(root);
    const QVariant itemTag = view ? QVariant(view->tag()) : root->property("tag");
    if (itemTag.isValid() && itemTag.toInt() == tag)
        return root;
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = viewWithTag(child, tag))
            return found;
    }
    return nullptr;
}

void View::setNeedsLayout()
{
    m_needsLayout = true;
    if (window())
        polish();
}

void View::layoutIfNeeded()
{
    runLayoutPass();
    const std::function<void(QQuickItem *)> layoutInside = [&layoutInside](QQuickItem *item) {
        const QList<QQuickItem *> children = item->childItems();
        for (QQuickItem *child : children) {
            if (auto *view = qobject_cast<View *>(child))
                view->runLayoutPass();
            layoutInside(child);
        }
    };
    layoutInside(this);
}

void View::runLayoutPass()
{
    if (!m_needsLayout || width() <= 0 || height() <= 0)
        return;
    m_needsLayout = false;
    Q_EMIT didLayoutSubviews();
}

void View::animate(const AnimationOptions &options, const std::function<void()> &changes,
                   std::function<void(bool)> completion)
{
    ViewAnimator::instance().animate(options, changes, std::move(completion));
}

void View::removeAllAnimations()
{
    ViewAnimator::instance().removeAll(this);
}

void View::setAnimationsEnabled(bool enabled)
{
    ViewAnimator::setEnabled(enabled);
}

bool View::areAnimationsEnabled()
{
    return ViewAnimator::isEnabled();
}

void View::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    const QList<QQuickItem *> subviews = childItems();
    for (QQuickItem *subview : subviews) {
        if (auto *view = qobject_cast<View *>(subview); view && view->m_autoresizingMask != 0)
            view->resizeWithSuperview(oldGeometry.size(), newGeometry.size());
    }
    setNeedsLayout();
}

// Along each axis what is flexible shares the difference, in proportion to its length.
void View::resizeWithSuperview(const QSizeF &before, const QSizeF &after)
{
    const auto resized = [this](qreal start, qreal length, qreal total, qreal newTotal, int startFlag, int lengthFlag,
                                int endFlag) {
        const qreal end = total - start - length;
        const bool isStartFlexible = m_autoresizingMask & startFlag;
        const bool isLengthFlexible = m_autoresizingMask & lengthFlag;
        const bool isEndFlexible = m_autoresizingMask & endFlag;
        const qreal flexible =
            (isStartFlexible ? start : 0) + (isLengthFlexible ? length : 0) + (isEndFlexible ? end : 0);
        const int parts = isStartFlexible + isLengthFlexible + isEndFlexible;
        const auto share = [&](bool isFlexible, qreal size) {
            if (!isFlexible)
                return 0.0;
            return (newTotal - total) * (flexible != 0 ? size / flexible : 1.0 / parts);
        };
        return std::pair(start + share(isStartFlexible, start), length + share(isLengthFlexible, length));
    };
    const QRectF old = frame();
    const auto [x, width] = resized(old.x(), old.width(), before.width(), after.width(), FlexibleLeftMargin,
                                    FlexibleWidth, FlexibleRightMargin);
    const auto [y, height] = resized(old.y(), old.height(), before.height(), after.height(), FlexibleTopMargin,
                                     FlexibleHeight, FlexibleBottomMargin);
    setFrame({x, y, width, height});
}

void View::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange && data.window && m_needsLayout)
        polish();
    if ((change == ItemVisibleHasChanged && data.boolValue) || (change == ItemSceneChange && data.window))
        ViewAnimator::wake();
}

void View::updatePolish()
{
    if (window())
        runLayoutPass();
}

AnimatedValue View::shownValue(AnimatedProperty property) const
{
    switch (property) {
    case AnimatedProperty::Frame:
        return QRectF(x(), y(), width(), height());
    case AnimatedProperty::BackgroundColor:
        return m_backgroundColor;
    case AnimatedProperty::CornerRadius:
        return m_cornerRadius;
    case AnimatedProperty::Alpha:
        return opacity();
    case AnimatedProperty::TransformScale:
        return scale();
    }
    Q_UNREACHABLE();
}

void View::showValue(AnimatedProperty property, const AnimatedValue &value)
{
    if (shownValue(property) == value)
        return;
    switch (property) {
    case AnimatedProperty::Frame:
        setPosition(std::get<QRectF>(value).topLeft());
        setSize(std::get<QRectF>(value).size());
        break;
    case AnimatedProperty::BackgroundColor:
        m_backgroundColor = std::get<QColor>(value);
        updateBackground();
        Q_EMIT backgroundColorChanged();
        break;
    case AnimatedProperty::CornerRadius:
        m_cornerRadius = std::get<qreal>(value);
        updateBackground();
        Q_EMIT cornerRadiusChanged();
        break;
    case AnimatedProperty::Alpha:
        setOpacity(std::get<qreal>(value));
        break;
    case AnimatedProperty::TransformScale:
        setScale(std::get<qreal>(value));
        break;
    }
}

void View::updateBackground()
{
    const QColor opaqueColor(m_backgroundColor.rgb());
    if (!m_background && m_backgroundColor.alpha() > 0)
        m_background = m_isDisc
            ? SceneEngine::makeItem(QStringLiteral("DiscBackground"), this, {{QStringLiteral("color"), opaqueColor}})
            : SceneEngine::makeItem(QStringLiteral("ViewBackground"), this);
    if (m_background && m_isDisc) {
        m_background->setOpacity(m_backgroundColor.alphaF());
        m_background->setProperty("color", opaqueColor);
    } else if (m_background) {
        m_background->setProperty("color", m_backgroundColor);
        m_background->setProperty("radius", m_cornerRadius);
    }
    if (!m_shadowItem && m_shadow.opacity > 0)
        m_shadowItem = SceneEngine::makeItem(QStringLiteral("ViewShadow"), this);
    if (m_shadowItem) {
        // What is not there throws no shadow.
        m_shadowItem->setVisible(m_backgroundColor.alpha() > 0);
        m_shadowItem->setProperty("shadow", QVariant::fromValue(m_shadow));
        m_shadowItem->setProperty("cornerRadius", m_cornerRadius);
    }
}

} // namespace Platform
