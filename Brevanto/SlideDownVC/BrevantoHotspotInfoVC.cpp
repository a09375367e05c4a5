#include "Brevanto/SlideDownVC/BrevantoHotspotInfoVC.h"

#include "Brevanto/BrevantoBundle.h"

void BrevantoHotspotInfoVC::connectOutlets()
{
    m_dataTableView = outlet(QStringLiteral("dataTableView"));
    m_transparentView = outlet<Platform::View>(QStringLiteral("transparentView"));
    m_topView = outlet<Platform::View>(QStringLiteral("topView"));
}

void BrevantoHotspotInfoVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    m_layoutCount = 0;
    m_topView->setShadow({.color = Qt::black, .opacity = 0.3, .offset = {0, 2}});
}

void BrevantoHotspotInfoVC::viewDidLayoutSubviews()
{
    ViewController::viewDidLayoutSubviews();
    ++m_layoutCount;
    if (m_layoutCount == 1)
        initializePopOverActionSheet();
}

void BrevantoHotspotInfoVC::initializePopOverActionSheet()
{
    m_transparentView->setBackgroundColor(Qt::transparent);
    m_tableViewHeightConstraint = numberOfRowsInSection() * heightForRow() + heightForHeader() + heightForFooter();
    Q_EMIT tableViewHeightConstraintChanged();
}

void BrevantoHotspotInfoVC::setTitlesArray(const QStringList &titles)
{
    m_titlesArray = titles;
    Q_EMIT contentsChanged();
}

void BrevantoHotspotInfoVC::setIconsArray(const QStringList &icons)
{
    m_iconsArray = icons;
    Q_EMIT contentsChanged();
}

QUrl BrevantoHotspotInfoVC::iconForRow(int row) const
{
    return brevantoBundle().urlForImage(m_iconsArray.value(row));
}

void BrevantoHotspotInfoVC::didSelectRow(int row)
{
    if (row < 0 || row >= m_titlesArray.size())
        return;
    if (m_hotspotInfoDelegate.get())
        m_hotspotInfoDelegate.get()->optionSelectedInActionSheetPopover(row);
}

void BrevantoHotspotInfoVC::handleTapOnTransparentView()
{
    if (m_hotspotInfoDelegate.get())
        m_hotspotInfoDelegate.get()->clickedOnTransparentAreaInActionSheetPopover();
}

void BrevantoHotspotInfoVC::arrowButtonAction()
{
    handleTapOnTransparentView();
}
