#pragma once

#include "Brevanto/Reachability/BrevantoReachability.h"

#include <QObject>
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
    // The major version of the library.
    Q_PROPERTY(double versionNumber READ versionNumber CONSTANT)
    // The same in the form that the `what` tool finds in a binary.
    Q_PROPERTY(QString versionString READ versionString CONSTANT)

public:
    // How the network can be reached.
    enum ReachabilityStatus {
        NotReachable = BrevantoReachabilityStatusNone, // not at all, or the system does not tell
        ReachableViaWiFi = BrevantoReachabilityStatusWiFi, // over a local network or Wi-Fi
        ReachableViaWWAN = BrevantoReachabilityStatusWWAN, // over the cellular network
    };
    Q_ENUM(ReachabilityStatus)

    // Made by the QML engine; begins to watch the network.
    explicit BrevantoQmlClient(QObject *parent = nullptr);
    ~BrevantoQmlClient() override;

    // Presents a fresh camera screen over the window that has the focus, else the first visible one. Answers whether it
    // did: false when there is no window or one of the screens stands there already. A library without its screens
    // throws a script error.
    Q_INVOKABLE bool showCameraScreen();

    bool isCameraScreenShown() const { return m_shownScreen != nullptr; } // reads its property
    ReachabilityStatus reachabilityStatus() const { return m_reachabilityStatus; } // reads its property
    double versionNumber() const; // reads its property
    QString versionString() const; // reads its property

Q_SIGNALS:
    void cameraScreenShownChanged(); // the screens have come, or have gone
    void reachabilityStatusChanged(); // the network can be reached in another way

private:
    ReachabilityStatus currentReachabilityStatus() const;
    void updateReachabilityStatus();

    const std::unique_ptr<BrevantoReachability> m_reachability; // null when the system gives no target
    ReachabilityStatus m_reachabilityStatus;
    QObject *m_shownScreen = nullptr;
};
