#include "Platform/Interface/TapRecognizer.h"

#include "Platform/Interface/SceneEngine.h"

#include <algorithm>
#include <cmath>

namespace Platform
{

namespace
{

// How far the point, in the view's coordinates, lies outside of the view; 0 inside. A rounded corner is outside.
qreal distanceTo(const View *view, const QPointF &point)
{
    const QSizeF half = view->size() / 2;
    const qreal radius = qMin(view->cornerRadius(), qMin(half.width(), half.height()));
    const qreal x = qAbs(point.x() - half.width()) - half.width() + radius;
    const qreal y = qAbs(point.y() - half.height()) - half.height() + radius;
    return qMax(0.0, std::hypot(qMax(0.0, x), qMax(0.0, y)) - radius);
}

} // namespace

TapRecognizer::TapRecognizer(View *view, const QString &name, Action action, qreal minimumTarget)
    : QObject(view)
    , m_view(view)
    , m_action(std::move(action))
{
    m_target = SceneEngine::makeItem(QStringLiteral("TapTarget"), view,
                                     {{QStringLiteral("name"), name}, {QStringLiteral("minimumSize"), minimumTarget}});
    m_target->setContainmentMask(this);
    connect(m_target, SIGNAL(activated()), this, SLOT(tapped()));
}

bool TapRecognizer::contains(const QPointF &point) const
{
    if (!m_target->boundingRect().contains(point))
        return false;
    const QPointF place = m_target->mapToItem(m_view, point);
    const qreal distance = distanceTo(m_view, place);
    if (distance <= 0 || !m_view->superview())
        return true;
    const QList<QQuickItem *> siblings = m_view->superview()->childItems();
    return std::none_of(siblings.begin(), siblings.end(), [&](QQuickItem *sibling) {
        const auto *view = qobject_cast<const View *>(sibling);
        return view && view != m_view && view->isVisible() && view->isEnabled()
            && distanceTo(view, m_view->mapToItem(view, place)) < distance
            && view->findChild<TapRecognizer *>(QString(), Qt::FindDirectChildrenOnly);
    });
}

void TapRecognizer::tapped()
{
    m_action(m_view);
}

} // namespace Platform
