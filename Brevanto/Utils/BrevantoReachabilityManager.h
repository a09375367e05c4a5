#pragma once

#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Platform/Interface/Label.h"
#include "Platform/Interface/View.h"
#include "Platform/Interface/ViewController.h"

#include <QObject>
#include <QPointer>

#include <memory>

// The SDK's one watcher of the network, and the banner that it shows on top of the visible screen while there is none.
// Lives from its first use to the end of the application. For the main thread only.
class BrevantoReachabilityManager : public QObject
{
    Q_OBJECT

public:
    // The first call takes the banner's width from kScreenWidth, for good.
    static BrevantoReachabilityManager *instance();
    ~BrevantoReachabilityManager() override;

    // Null when the system gives no monitor.
    BrevantoReachability *reachabilty() const { return m_reachabilty.get(); }
    // What the monitor says; None without one.
    BrevantoReachabilityStatus currentReachabilityStatus() const;
    Platform::View *noNetworkView() const { return m_noNetworkView; }
    Platform::Label *noNetworkLabel() const { return m_noNetworkLabel; }
    // The screen that registered last, after it has unregistered too; null when it is gone.
    Platform::ViewController *visibleViewController() const { return m_visibleViewController; }

    // From now on `controller` shows the banner, at once when there is no network.
    void addObserverForReachability(Platform::ViewController *controller);
    void removeObserverForReachability();

    // Shows or removes the banner according to the network's present state.
    void reachabiltyChangedNotification();

    // Draws the eye to the banner's text, whether the banner is shown or not.
    void animateNoInternetConnectionLabel();

private:
    BrevantoReachabilityManager();
    bool isBannerShown() const;
    void scaleLabel(qreal scale, std::function<void(bool)> completion);

    std::unique_ptr<BrevantoReachability> m_reachabilty;
    Platform::View *m_noNetworkView;
    Platform::Label *m_noNetworkLabel;
    int m_pulseCount = 0;
    // A screen belongs to its navigation stack or presenter. Held by this manager it would live on without one, its
    // camera running, so it is only remembered.
    QPointer<Platform::ViewController> m_visibleViewController;
};
