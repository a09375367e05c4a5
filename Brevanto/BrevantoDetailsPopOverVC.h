#pragma once

#include "Platform/Interface/Delegate.h"
#include "Platform/Interface/ViewController.h"

#include <QStringList>

#include <optional>

// Told what the user chose in the details popover. Optional: it does nothing unless overridden.
class BrevantoDetailsPopoverDelegate
{
public:
    virtual ~BrevantoDetailsPopoverDelegate() = default;
    virtual void popoverOptionClicked(const QString &title) { Q_UNUSED(title) }
};

// The list of actions that a tapped hotspot offers, shown as a popover next to its marker. It shows what it is given,
// in the given order, reports the chosen row's title and closes.
class BrevantoDetailsPopOverVC : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")
    Q_PROPERTY(QStringList titlesArray READ titlesArray WRITE setTitlesArray NOTIFY contentsChanged)

public:
    QQuickItem *popOverTableView() const { return m_popOverTableView; }

    QStringList titlesArray() const { return m_titlesArray; }
    void setTitlesArray(const QStringList &titles);

    // Names of image assets, parallel to the titles; without a value rows have no icons.
    std::optional<QStringList> iconsArray() const { return m_iconsArray; }
    void setIconsArray(const std::optional<QStringList> &icons);

    void setDetailsPopoverDelegate(const Platform::Delegate<BrevantoDetailsPopoverDelegate> &delegate)
    {
        m_detailsPopoverDelegate = delegate;
    }

    // What the list asks. Lengths are in points.
    Q_INVOKABLE int numberOfRowsInSection() const { return static_cast<int>(m_titlesArray.size()); }
    Q_INVOKABLE static qreal heightForRow() { return 50; }
    Q_INVOKABLE static qreal heightForHeader() { return 8; }
    Q_INVOKABLE static qreal heightForFooter() { return 8; }
    // The icon's address; empty for a row without icon.
    Q_INVOKABLE QUrl iconForRow(int row) const;
    Q_INVOKABLE void didSelectRow(int row);

Q_SIGNALS:
    void contentsChanged();

protected:
    void connectOutlets() override;

private:
    QPointer<QQuickItem> m_popOverTableView;
    QStringList m_titlesArray;
    Platform::Delegate<BrevantoDetailsPopoverDelegate> m_detailsPopoverDelegate;
    std::optional<QStringList> m_iconsArray;
};
