#include "Brevanto/Qml/BrevantoQmlClient.h"

#include "Brevanto/BrevantoClient.h"
#include "Brevanto/BrevantoShownScreen.h"
#include "Brevanto/BrevantoVersion.h"
#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/NotificationCenter.h"

#include <QQmlEngine>

#include <utility>

BrevantoQmlClient::BrevantoQmlClient(QObject *parent)
    : QObject(parent)
    , m_reachability(BrevantoReachability::reachabilityForInternetConnection())
    , m_reachabilityStatus(currentReachabilityStatus())
{
    Platform::NotificationCenter::defaultCenter().addObserver(
        this, kBrevantoReachabilityChangedNotification,
        [this](const Platform::Notification &) { updateReachabilityStatus(); }, m_reachability.get());
    if (m_reachability)
        m_reachability->startNotifier();
}

BrevantoQmlClient::~BrevantoQmlClient()
{
    Platform::NotificationCenter::defaultCenter().removeObserver(this, kBrevantoReachabilityChangedNotification);
}

bool BrevantoQmlClient::showCameraScreen()
{
    const QObject *before = brevantoShownScreen();
    try {
        BrevantoClient::sharedClient()->showCameraScreen();
    } catch (const Platform::Exception &exception) {
        if (QJSEngine *engine = qjsEngine(this))
            engine->throwError(exception.reason());
        return false;
    }
    QObject *shown = brevantoShownScreen();
    if (!shown || shown == before)
        return false;
    m_shownScreen = shown;
    connect(shown, &QObject::destroyed, this, [this, shown] {
        if (m_shownScreen != shown)
            return; // another window's stand since then
        m_shownScreen = nullptr;
        Q_EMIT cameraScreenShownChanged();
    });
    Q_EMIT cameraScreenShownChanged();
    return true;
}

double BrevantoQmlClient::versionNumber() const
{
    return BrevantoVersionNumber;
}

QString BrevantoQmlClient::versionString() const
{
    return QString::fromLatin1(BrevantoVersionString).trimmed();
}

BrevantoQmlClient::ReachabilityStatus BrevantoQmlClient::currentReachabilityStatus() const
{
    return m_reachability ? static_cast<ReachabilityStatus>(m_reachability->currentReachabilityStatus()) : NotReachable;
}

void BrevantoQmlClient::updateReachabilityStatus()
{
    const ReachabilityStatus status = currentReachabilityStatus();
    if (status == std::exchange(m_reachabilityStatus, status))
        return;
    Q_EMIT reachabilityStatusChanged();
}
