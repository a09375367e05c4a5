#pragma once

#include "Brevanto/OptionListController.h"
#include "Platform/Interface/Delegate.h"

// Told what the user chose in the details popover. Optional: it does nothing unless overridden.
class BrevantoDetailsPopoverDelegate
{
public:
    virtual ~BrevantoDetailsPopoverDelegate() = default;
    virtual void popoverOptionClicked(const QString &title) { Q_UNUSED(title) }
};

// The list of actions that a tapped hotspot offers, shown as a popover next to its marker. It shows what it is given,
// in the given order, reports the chosen row's title and closes.
class BrevantoDetailsPopOverVC : public OptionListController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")

public:
    BrevantoDetailsPopOverVC()
        : OptionListController(heightForRow())
    {
    }

    QQuickItem *popOverTableView() const { return m_popOverTableView; }

    void setDetailsPopoverDelegate(const Platform::Delegate<BrevantoDetailsPopoverDelegate> &delegate)
    {
        m_detailsPopoverDelegate = delegate;
    }

    // In points.
    static qreal heightForRow() { return 50; }

protected:
    void connectOutlets() override;
    void rowSelected(int row) override;

private:
    QPointer<QQuickItem> m_popOverTableView;
    Platform::Delegate<BrevantoDetailsPopoverDelegate> m_detailsPopoverDelegate;
};
