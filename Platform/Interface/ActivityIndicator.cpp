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
    update();
}

ActivityIndicator::ActivityIndicator(ActivityIndicatorStyle style)
    : ActivityIndicator()
{
    const qreal size = style == ActivityIndicatorStyle::WhiteLarge ? largeSize : smallSize;
    setFrame({0, 0, size, size});
    m_wheel->setProperty("wheelColor", QColor(style == ActivityIndicatorStyle::Gray ? Qt::gray : Qt::white));
}

void ActivityIndicator::startAnimating()
{
    m_isAnimating = true;
    update();
}

void ActivityIndicator::stopAnimating()
{
    m_isAnimating = false;
    update();
}

void ActivityIndicator::setHidesWhenStopped(bool hides)
{
    m_hidesWhenStopped = hides;
    update();
}

void ActivityIndicator::update()
{
    m_wheel->setProperty("running", m_isAnimating);
    if (m_hidesWhenStopped)
        setHidden(!m_isAnimating);
}

} // namespace Platform
