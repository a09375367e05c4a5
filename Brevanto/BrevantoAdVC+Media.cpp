#include "Brevanto/BrevantoAdVC.h"

#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Media/PlayerViewController.h"

void BrevantoAdVC::openAvPlayerControllerWithUrl(const QString &urlString)
{
    auto screen = std::make_unique<Platform::PlayerViewController>();
    screen->setShowsPlaybackControls(true);
    screen->setPlayer(std::make_unique<Platform::Player>(QUrl(urlString)));
    Platform::NotificationCenter &center = Platform::NotificationCenter::defaultCenter();
    center.removeObserver(this, Platform::AVPlayerItemDidPlayToEndTimeNotification);
    center.addObserver(this, Platform::AVPlayerItemDidPlayToEndTimeNotification,
                       [this](const Platform::Notification &) { itemDidFinishPlaying(); });
    const QPointer<Platform::Player> player(screen->player());
    present(std::move(screen), true);
    if (player)
        player->play();
}

void BrevantoAdVC::itemDidFinishPlaying()
{
    if (presentedViewController())
        dismiss(true);
}
