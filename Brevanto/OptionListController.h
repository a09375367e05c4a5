#pragma once

#include "Platform/Interface/ViewController.h"

#include <QStringList>

#include <optional>

// A screen that lists titles, each with an icon where there are icons, and is told which one the user chose.
class OptionListController : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens derive from it")
    Q_PROPERTY(QStringList titlesArray READ titlesArray NOTIFY titlesArrayChanged)
    Q_PROPERTY(QList<QUrl> iconUrls READ iconUrls NOTIFY iconsArrayChanged)
    Q_PROPERTY(qreal rowHeight READ rowHeight CONSTANT)
    Q_PROPERTY(qreal headerHeight READ heightForHeader CONSTANT)
    Q_PROPERTY(qreal footerHeight READ heightForFooter CONSTANT)

public:
    QStringList titlesArray() const { return m_titlesArray; }
    void setTitlesArray(const QStringList &titles);
    // Names of image assets, parallel to the titles; without a value rows have no icons.
    std::optional<QStringList> iconsArray() const { return m_iconsArray; }
    void setIconsArray(const std::optional<QStringList> &icons);

    int numberOfRowsInSection() const { return static_cast<int>(m_titlesArray.size()); }
    // In points.
    static qreal heightForHeader() { return 8; }
    static qreal heightForFooter() { return 8; }

    // The user chose that row; what is no row is ignored.
    Q_INVOKABLE void didSelectRow(int row);

Q_SIGNALS:
    void titlesArrayChanged();
    void iconsArrayChanged();

protected:
    explicit OptionListController(qreal rowHeight)
        : m_rowHeight(rowHeight)
    {
    }
    virtual void rowSelected(int row) = 0;

private:
    qreal rowHeight() const { return m_rowHeight; }
    // Addresses of the icons, empty ones for names without an asset; none when rows have no icons.
    QList<QUrl> iconUrls() const;

    qreal m_rowHeight;
    QStringList m_titlesArray;
    std::optional<QStringList> m_iconsArray;
};
