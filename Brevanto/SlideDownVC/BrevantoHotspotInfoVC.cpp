#include "Brevanto/SlideDownVC/BrevantoHotspotInfoVC.h"

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

void BrevantoHotspotInfoVC::rowSelected(int row)
{
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
