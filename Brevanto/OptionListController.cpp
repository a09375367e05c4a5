#include "Brevanto/OptionListController.h"

#include "Brevanto/BrevantoBundle.h"

void OptionListController::setTitlesArray(const QStringList &titles)
{
    m_titlesArray = titles;
    Q_EMIT titlesArrayChanged();
}

void OptionListController::setIconsArray(const std::optional<QStringList> &icons)
{
    m_iconsArray = icons;
    Q_EMIT iconsArrayChanged();
}

QList<QUrl> OptionListController::iconUrls() const
{
    QList<QUrl> urls;
    for (const QString &icon : m_iconsArray.value_or(QStringList()))
        urls.append(brevantoBundle().urlForImage(icon));
    return urls;
}

void OptionListController::didSelectRow(int row)
{
    if (row >= 0 && row < m_titlesArray.size())
        rowSelected(row);
}
