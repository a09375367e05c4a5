#include "Brevanto/BrevantoDetailsPopOverVC.h"

void BrevantoDetailsPopOverVC::connectOutlets()
{
    m_popOverTableView = outlet(QStringLiteral("popOverTableView"));
}

void BrevantoDetailsPopOverVC::rowSelected(int row)
{
    // A copy: whoever is told may set other titles.
    const QString title = titlesArray().at(row);
    if (m_detailsPopoverDelegate.get())
        m_detailsPopoverDelegate.get()->popoverOptionClicked(title);
    dismiss(true);
}
