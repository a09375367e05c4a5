#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Platform/Graphics/Image.h"
#include "Platform/Interface/ViewController.h"

// The grid of the ads that the user has seen, most recent first; a tapped tile opens the ad screen again. The list is
// read once, when the screen is made.
class BrevantoRecentProductsVC : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")
    // Set on the first layout pass: the scene builds its grid then.
    Q_PROPERTY(bool isGridBuilt READ isGridBuilt NOTIFY gridBuiltChanged)

public:
    // Tag of the image view in a tile.
    static constexpr int imageViewTag = 1213;

    const BrevantoMatchGroupList &listOfMatchGroups() const { return m_listOfMatchGroups; }
    // The grid; null before the first layout pass.
    QQuickItem *recentCollectionView() const { return m_recentCollectionView; }
    bool isGridBuilt() const { return m_layoutCount > 0; }

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidLayoutSubviews() override;

    Q_INVOKABLE void navBarBackButtonAction();

    // What the grid asks. Lengths are in points.
    Q_INVOKABLE int numberOfItemsInSection() const { return static_cast<int>(m_listOfMatchGroups.size()); }
    // Two columns on the screen as it was when the SDK came, or on the grid where that is narrower.
    Q_INVOKABLE static QSizeF sizeForItem(qreal gridWidth);
    Q_INVOKABLE static qreal insetForSection() { return 10; } // on all four sides
    Q_INVOKABLE static qreal minimumLineSpacingForSection() { return 10; }
    // What a screen reader says of a tile.
    Q_INVOKABLE QString titleForItem(int row) const;
    // Gives `cell` the look of a tile and makes it show the group at `row` from now on. Its image comes later, unless
    // the cell has gone or shows another group by then.
    Q_INVOKABLE void cellForItem(Platform::View *cell, int row);
    // `cell` is out of sight: it drops its image and waits for another row.
    Q_INVOKABLE void didEndDisplaying(Platform::View *cell);
    Q_INVOKABLE void didSelectItem(int row);

Q_SIGNALS:
    void gridBuiltChanged();

private:
    std::shared_ptr<BrevantoMatch> firstMatchAt(int row) const;
    void showImage(const Platform::Image &image, Platform::View *cell);

    qint32 m_layoutCount = 0;
    BrevantoMatchGroupList m_listOfMatchGroups;
    QPointer<QQuickItem> m_recentCollectionView;
};
