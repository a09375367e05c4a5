#include "Platform/Media/PlayerViewController.h"

#include "Platform/Foundation/Clock.h"

using namespace std::chrono_literals;

namespace Platform
{

namespace
{

constexpr auto controlsTime = 3s;

} // namespace

PlayerViewController::PlayerViewController()
{
    setScene(QUrl(QStringLiteral("qrc:/qt/qml/Brevanto/Platform/Media/Scenes/PlayerScene.qml")));
}

void PlayerViewController::setPlayer(std::unique_ptr<Player> player)
{
    delete m_player;
    m_player = player.release();
    m_player->setParent(this);
    connect(m_player, &Player::changed, this, [this] {
        // Each time a video starts or stops.
        if (std::exchange(m_couldHideControls, mayHideControls()) != mayHideControls())
            keepControls();
    });
}

std::unique_ptr<View> PlayerViewController::loadView()
{
    if (!m_player)
        setPlayer(std::make_unique<Player>(QUrl()));
    return ViewController::loadView();
}

void PlayerViewController::keepControls()
{
    setControlsShown(true);
    m_controlsEnd = Clock::current().now() + controlsTime;
    if (!std::exchange(m_isControlsEndAwaited, true))
        awaitControlsEnd(controlsTime);
}

// One wait at a time, however many movements of a mouse there are.
void PlayerViewController::awaitControlsEnd(std::chrono::milliseconds time)
{
    Clock::current().after(time, this, [this] {
        const auto left = m_controlsEnd - Clock::current().now();
        if (left > 0ms) {
            awaitControlsEnd(left);
            return;
        }
        m_isControlsEndAwaited = false;
        if (mayHideControls())
            setControlsShown(false);
    });
}

void PlayerViewController::toggleControls()
{
    if (m_controlsShown && mayHideControls())
        setControlsShown(false);
    else
        keepControls();
}

void PlayerViewController::setControlsShown(bool shown)
{
    if (m_controlsShown == shown)
        return;
    m_controlsShown = shown;
    Q_EMIT controlsShownChanged();
}

void PlayerViewController::close()
{
    dismiss(true);
}

bool PlayerViewController::goBack()
{
    close();
    return true;
}

void PlayerViewController::viewWillDisappear(bool animated)
{
    ViewController::viewWillDisappear(animated);
    m_player->pause();
}

QString PlayerViewController::timeText(qint64 milliseconds)
{
    const qint64 seconds = qMax(qint64(0), milliseconds) / 1000;
    const QString rest = QStringLiteral(":%1").arg(seconds % 60, 2, 10, QLatin1Char('0'));
    if (seconds < 3600)
        return QString::number(seconds / 60) + rest;
    return QStringLiteral("%1:%2").arg(seconds / 3600).arg(seconds / 60 % 60, 2, 10, QLatin1Char('0')) + rest;
}

} // namespace Platform
