#include "Brevanto/BrevantoDetailsPopOverVC.h"

#include "Brevanto/BrevantoBundle.h"

void BrevantoDetailsPopOverVC::connectOutlets()
{
    m_popOverTableView = outlet(QStringLiteral("popOverTableView"));
}

void BrevantoDetailsPopOverVC::setTitlesArray(const QStringList &titles)
{
    m_titlesArray = titles;
    Q_EMIT contentsChanged();
}

void BrevantoDetailsPopOverVC::setIconsArray(const std::optional<QStringList> &icons)
{
    m_iconsArray = icons;
    Q_EMIT contentsChanged();
}

QUrl BrevantoDetailsPopOverVC::iconForRow(int row) const
{
    return m_iconsArray ? brevantoBundle().urlForImage(m_iconsArray->value(row)) : QUrl();
}

void BrevantoDetailsPopOverVC::didSelectRow(int row)
{
    if (row < 0 || row >= m_titlesArray.size())
        return;
    if (m_detailsPopoverDelegate.get())
        m_detailsPopoverDelegate.get()->popoverOptionClicked(m_titlesArray.at(row));
    dismiss(true);
}
