#pragma once

#include "Platform/Interface/View.h"

namespace Platform
{

// A row of dots, one for each page, which tells the page on show; the stock page indicator. Where the row is longer
// than the view it moves along with the page. For the main thread only.
class PageControl : public Platform::View
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit PageControl(QQuickItem *parent = nullptr);

    int numberOfPages() const { return m_numberOfPages; }
    void setNumberOfPages(int count);
    // From 0; kept inside the pages.
    int currentPage() const { return m_currentPage; }
    void setCurrentPage(int page);

private:
    int m_numberOfPages = 0;
    int m_currentPage = 0;
    QQuickItem *m_dots;
};

} // namespace Platform
