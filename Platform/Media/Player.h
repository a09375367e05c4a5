#pragma once

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <QtQmlIntegration>

namespace Platform
{

// Posted by the default notification center, with the Player as its object, when a clip has played to its end.
extern const QLatin1StringView AVPlayerItemDidPlayToEndTimeNotification;

// Plays one clip, video or sound, from an http or https address. Loading begins at once, playing with play(). What
// cannot be played ends in an error text and stays silent otherwise. For the main thread only.
class Player : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool playing READ isPlaying NOTIFY changed)
    Q_PROPERTY(bool waiting READ isWaiting NOTIFY changed)
    Q_PROPERTY(bool hasVideo READ hasVideo NOTIFY changed)
    Q_PROPERTY(bool hasSoundOnly READ hasSoundOnly NOTIFY changed)
    Q_PROPERTY(bool seekable READ isSeekable NOTIFY changed)
    Q_PROPERTY(bool muted READ isMuted WRITE setMuted NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed)
    Q_PROPERTY(qreal duration READ duration NOTIFY changed)
    Q_PROPERTY(qreal position READ position NOTIFY positionChanged)

public:
    explicit Player(const QUrl &url);
    ~Player() override;

    Q_INVOKABLE void play();
    Q_INVOKABLE void pause();
    // Plays from the start again when the clip is at its end.
    Q_INVOKABLE void togglePlaying();
    // Milliseconds from the start, held to the clip and short of its end, which is for playing to reach.
    Q_INVOKABLE void seek(qint64 position);
    Q_INVOKABLE void changeVolume(qreal difference);

    // Whether it plays or will as soon as enough has come.
    bool isPlaying() const;
    // Whether more has to come first.
    bool isWaiting() const;
    bool hasVideo() const { return m_player.hasVideo(); }
    bool hasSoundOnly() const;
    bool isSeekable() const;
    bool isMuted() const { return m_audio.isMuted(); }
    void setMuted(bool muted) { m_audio.setMuted(muted); }
    // Milliseconds; 0 while unknown.
    qint64 duration() const { return m_player.duration(); }
    qint64 position() const { return m_player.position(); }
    // The clip's own title or else its file's name.
    QString title() const;
    // Why the clip cannot be played, for the user; empty when nothing is wrong.
    QString errorText() const { return m_errorText; }

    // The VideoOutput of a scene; null takes it away.
    Q_INVOKABLE void setVideoOutput(QObject *output) { m_player.setVideoOutput(output); }

Q_SIGNALS:
    void changed();
    void positionChanged();

private:
    void statusChanged(QMediaPlayer::MediaStatus status);
    void fail(const QString &text);
    void checkProgress();

    QUrl m_url;
    QAudioOutput m_audio;
    QMediaPlayer m_player;
    QString m_errorText;
    QTimer m_progressTimer;
    qint64 m_lastPosition = -1;
    bool m_isStuck = false;
};

} // namespace Platform
