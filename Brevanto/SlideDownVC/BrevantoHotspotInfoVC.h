#pragma once

#include "Brevanto/OptionListController.h"
#include "Platform/Interface/Delegate.h"

// Told how the user leaves the legend. All operations are optional: they do nothing unless overridden.
class BrevantoHotspotInfoDelegate
{
public:
    virtual ~BrevantoHotspotInfoDelegate() = default;
    virtual void optionSelectedInActionSheetPopover(int row) { Q_UNUSED(row) }
    virtual void clickedOnTransparentAreaInActionSheetPopover() { }
};

// The legend of the hotspot actions: a sheet with one row per kind of action over a transparent area. It reports every
// touch to its delegate, which takes it away; it never dismisses itself.
class BrevantoHotspotInfoVC : public OptionListController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")
    Q_PROPERTY(qreal tableViewHeightConstraint READ tableViewHeightConstraint NOTIFY tableViewHeightConstraintChanged)

public:
    BrevantoHotspotInfoVC()
        : OptionListController(heightForRow())
    {
    }

    QQuickItem *dataTableView() const { return m_dataTableView; }
    // The area around the sheet; a touch on it closes the sheet.
    Platform::View *transparentView() const { return m_transparentView; }
    // The sheet's top bar.
    Platform::View *topView() const { return m_topView; }
    // Height of the list in points, from the row count; zero before the first layout pass.
    qreal tableViewHeightConstraint() const { return m_tableViewHeightConstraint; }

    void setHotspotInfoDelegate(const Platform::Delegate<BrevantoHotspotInfoDelegate> &delegate)
    {
        m_hotspotInfoDelegate = delegate;
    }
    // How many layout passes there were; the first configures the sheet.
    qint64 layoutCount() const { return m_layoutCount; }

    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    void initializePopOverActionSheet();

    // In points.
    static qreal heightForRow() { return 56; }

    Q_INVOKABLE void handleTapOnTransparentView();
    Q_INVOKABLE void arrowButtonAction();

Q_SIGNALS:
    void tableViewHeightConstraintChanged();

protected:
    void connectOutlets() override;
    void rowSelected(int row) override;

private:
    QPointer<QQuickItem> m_dataTableView;
    QPointer<Platform::View> m_transparentView;
    qreal m_tableViewHeightConstraint = 0;
    QPointer<Platform::View> m_topView;
    Platform::Delegate<BrevantoHotspotInfoDelegate> m_hotspotInfoDelegate;
    qint64 m_layoutCount = 0;
};
