#pragma once

#include "Brevanto/Reachability/BrevantoReachability.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

#include <memory>

// The shared client as QML hosts see it:
//     import Brevanto
//     Button { enabled: !BrevantoClient.cameraScreenShown; onClicked: BrevantoClient.showCameraScreen() }
// For the main thread only, as all of QML.
class BrevantoQmlClient : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(BrevantoClient)
    QML_SINGLETON

    // Whether the screens that showCameraScreen() opened stand over the window, their way in and out included.
    Q_PROPERTY(bool cameraScreenShown READ isCameraScreenShown NOTIFY cameraScreenShownChanged)
    // How the network can be reached now.
    Q_PROPERTY(ReachabilityStatus reachabilityStatus READ reachabilityStatus NOTIFY reachabilityStatusChanged)
    // The library's version.
    Q_PROPERTY(double versionNumber READ versionNumber CONSTANT)
    Q_PROPERTY(QString versionString READ versionString CONSTANT)

public:
    enum ReachabilityStatus {
        NotReachable = BrevantoReachabilityStatusNone,
        ReachableViaWiFi = BrevantoReachabilityStatusWiFi,
        ReachableViaWWAN = BrevantoReachabilityStatusWWAN,
    };
    Q_ENUM(ReachabilityStatus)

    explicit BrevantoQmlClient(QObject *parent = nullptr);
    ~BrevantoQmlClient() override;

    // Presents a fresh camera screen over the window that has the focus, else the first visible one. Answers whether it
    // did: false when there is no window or one of the screens stands there already. A library without its screens
    // throws a script error.
    Q_INVOKABLE bool showCameraScreen();

    bool isCameraScreenShown() const { return m_shownScreen != nullptr; }
    ReachabilityStatus reachabilityStatus() const { return m_reachabilityStatus; }
    double versionNumber() const;
    QString versionString() const;

Q_SIGNALS:
    void cameraScreenShownChanged();
    void reachabilityStatusChanged();

private:
    ReachabilityStatus currentReachabilityStatus() const;
    void updateReachabilityStatus();

    const std::unique_ptr<BrevantoReachability> m_reachability; // null when the system gives no target
    ReachabilityStatus m_reachabilityStatus;
    QObject *m_shownScreen = nullptr;
};
