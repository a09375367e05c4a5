#include "Platform/Interface/PageControl.h"

#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

PageControl::PageControl(QQuickItem *parent)
    : View(parent)
    , m_dots(SceneEngine::makeItem(QStringLiteral("PageDots"), this))
{
}

void PageControl::setNumberOfPages(int count)
{
    m_numberOfPages = qMax(0, count);
    m_dots->setProperty("count", m_numberOfPages);
    setCurrentPage(m_currentPage);
}

void PageControl::setCurrentPage(int page)
{
    m_currentPage = qBound(0, page, qMax(0, m_numberOfPages - 1));
    m_dots->setProperty("currentPage", m_currentPage);
}

} // namespace Platform
