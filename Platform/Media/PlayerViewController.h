#pragma once

#include "Platform/Interface/ViewController.h"
#include "Platform/Media/Player.h"

namespace Platform
{

// Shows a player's clip over the whole screen: the video, or a picture for a clip that has sound only, with controls
// that fade out while a video plays and come back on a tap. Says so when the clip cannot be played. The clip pauses
// when the screen goes and ends with it.
class PlayerViewController : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(Platform::Player *player READ player CONSTANT)
    Q_PROPERTY(bool showsPlaybackControls READ showsPlaybackControls CONSTANT)
    Q_PROPERTY(bool controlsShown READ areControlsShown NOTIFY controlsShownChanged)

public:
    PlayerViewController();

    // To be set before the screen is shown.
    Player *player() const { return m_player; }
    void setPlayer(std::unique_ptr<Player> player);
    // True unless set otherwise.
    bool showsPlaybackControls() const { return m_showsPlaybackControls; }
    void setShowsPlaybackControls(bool shows) { m_showsPlaybackControls = shows; }

    bool areControlsShown() const { return m_controlsShown; }
    // The user did something: the controls stay for some seconds more.
    Q_INVOKABLE void keepControls();
    // A tap beside the controls.
    Q_INVOKABLE void toggleControls();
    Q_INVOKABLE void close();
    // Hours only where there are any.
    Q_INVOKABLE static QString timeText(qint64 milliseconds);

    void viewWillDisappear(bool animated) override;
    bool goBack() override;
    bool prefersStatusBarHidden() const override { return true; }

Q_SIGNALS:
    void controlsShownChanged();

protected:
    std::unique_ptr<View> loadView() override;

private:
    void setControlsShown(bool shown);
    void awaitControlsEnd(std::chrono::milliseconds time);
    bool mayHideControls() const { return m_player->isPlaying() && m_player->hasVideo() && !m_player->isWaiting(); }

    Player *m_player = nullptr; // a child, which goes after the scene
    bool m_showsPlaybackControls = true;
    bool m_controlsShown = true;
    bool m_couldHideControls = false;
    bool m_isControlsEndAwaited = false;
    std::chrono::milliseconds m_controlsEnd{0}; // by the clock
};

} // namespace Platform
