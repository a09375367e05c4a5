#include "Platform/Interface/ActivityIndicator.h"

#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

namespace
{

constexpr qreal smallSize = 20;
constexpr qreal largeSize = 37;

} // namespace

ActivityIndicator::ActivityIndicator(QQuickItem *parent)
    : View(parent)
    , m_wheel(SceneEngine::makeItem(QStringLiteral("ActivityWheel"), this))
{
    showState();
}

ActivityIndicator::ActivityIndicator(ActivityIndicatorStyle style)
    : ActivityIndicator()
{
    const qreal size = style == ActivityIndicatorStyle::WhiteLarge ? largeSize : smallSize;
    setFrame({0, 0, size, size});
    m_wheel->setProperty("wheelColor", QColor(style == ActivityIndicatorStyle::Gray ? Qt::gray : Qt::white));
}

void ActivityIndicator::setAnimating(bool animating)
{
    m_isAnimating = animating;
    showState();
    Q_EMIT animatingChanged();
}

void ActivityIndicator::setHidesWhenStopped(bool hides)
{
    m_hidesWhenStopped = hides;
    showState();
}

void ActivityIndicator::showState()
{
    m_wheel->setProperty("running", m_isAnimating);
    setHidden(m_hidesWhenStopped && !m_isAnimating);
}

} // namespace Platform
