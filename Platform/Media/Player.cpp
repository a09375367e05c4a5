#include "Platform/Media/Player.h"

#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Foundation/ShownText.h"
#include "Platform/Network/WebAddress.h"

#include <QMediaMetaData>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace Platform
{

constinit const QLatin1StringView AVPlayerItemDidPlayToEndTimeNotification("AVPlayerItemDidPlayToEndTimeNotification");

namespace
{

constexpr qint64 shortOfEnd = 200; // milliseconds

} // namespace

Player::Player(const QUrl &url)
    : m_url(url)
{
    m_player.setAudioOutput(&m_audio);
    connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, &Player::statusChanged);
    connect(&m_player, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error error) {
        if (error == QMediaPlayer::FormatError)
            fail(tr("Its format is not supported."));
        else if (error != QMediaPlayer::NoError)
            fail(tr("It could not be loaded."));
    });
    connect(&m_player, &QMediaPlayer::positionChanged, this, &Player::positionChanged);
    for (const auto signal :
         {&QMediaPlayer::hasVideoChanged, &QMediaPlayer::hasAudioChanged, &QMediaPlayer::seekableChanged})
        connect(&m_player, signal, this, &Player::changed);
    connect(&m_player, &QMediaPlayer::playbackStateChanged, this, &Player::changed);
    connect(&m_player, &QMediaPlayer::durationChanged, this, &Player::changed);
    connect(&m_player, &QMediaPlayer::metaDataChanged, this, &Player::changed);
    connect(&m_audio, &QAudioOutput::mutedChanged, this, &Player::changed);

    // Clips play in real time, whatever the application's clock says.
    m_progressTimer.setInterval(1s);
    connect(&m_progressTimer, &QTimer::timeout, this, &Player::checkProgress);
    connect(this, &Player::changed, this, [this] {
        if (!isPlaying())
            m_progressTimer.stop();
        else if (!m_progressTimer.isActive())
            m_progressTimer.start();
    });
    if (isWebAddress(url))
        m_player.setSource(url);
    else
        fail(tr("Its address is not one that can be played."));
}

Player::~Player()
{
    // From here on nothing is to be reported.
    m_player.disconnect(this);
    m_audio.disconnect(this);
}

void Player::play()
{
    if (m_errorText.isEmpty())
        m_player.play();
}

void Player::pause()
{
    if (m_errorText.isEmpty())
        m_player.pause();
}

void Player::togglePlaying()
{
    if (isPlaying())
        pause();
    else
        play();
}

void Player::seek(qint64 position)
{
    if (isSeekable())
        m_player.setPosition(std::clamp(position, qint64(0), std::max(qint64(0), duration() - shortOfEnd)));
}

void Player::changeVolume(qreal difference)
{
    m_audio.setMuted(false);
    m_audio.setVolume(static_cast<float>(std::clamp<qreal>(m_audio.volume() + difference, 0, 1)));
}

bool Player::isPlaying() const
{
    return m_errorText.isEmpty() && m_player.playbackState() == QMediaPlayer::PlayingState;
}

bool Player::isWaiting() const
{
    const QMediaPlayer::MediaStatus status = m_player.mediaStatus();
    return m_errorText.isEmpty()
        && (status == QMediaPlayer::LoadingMedia || status == QMediaPlayer::StalledMedia || m_isStuck);
}

bool Player::hasSoundOnly() const
{
    return m_errorText.isEmpty() && m_player.hasAudio() && !m_player.hasVideo();
}

bool Player::isSeekable() const
{
    return m_errorText.isEmpty() && m_player.isSeekable() && duration() > 0;
}

QString Player::title() const
{
    const QString title = m_player.metaData().stringValue(QMediaMetaData::Title);
    return shownText(title.isEmpty() ? m_url.fileName() : title);
}

void Player::statusChanged(QMediaPlayer::MediaStatus status)
{
    if (status == QMediaPlayer::InvalidMedia)
        fail(tr("It could not be loaded."));
    Q_EMIT changed();
    if (status != QMediaPlayer::EndOfMedia || !m_errorText.isEmpty())
        return;
    // Whoever is told may delete the player.
    DispatchQueue::mainAsync(
        this, [this] { NotificationCenter::defaultCenter().post(AVPlayerItemDidPlayToEndTimeNotification, this); });
}

void Player::fail(const QString &text)
{
    if (!m_errorText.isEmpty())
        return;
    m_errorText = text;
    // What was there of a broken clip would play on. Later, for the backend is just telling of the fault.
    DispatchQueue::mainAsync(this, [this] { m_player.pause(); });
    Q_EMIT changed();
}

// A backend that runs out of data in the middle of a clip does not always say so.
void Player::checkProgress()
{
    const bool isStuck = isPlaying() && position() == m_lastPosition;
    m_lastPosition = position();
    if (std::exchange(m_isStuck, isStuck) != isStuck)
        Q_EMIT changed();
}

} // namespace Platform
