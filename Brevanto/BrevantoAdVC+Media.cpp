#include "Brevanto/BrevantoAdVC.h"

#include "Platform/Interface/AlertController.h"

void BrevantoAdVC::openArticleOnWeb(const QString &urlString)
{
    if (urlString.isEmpty())
        showOptionNotAvailable();
}

void BrevantoAdVC::openAvPlayerControllerWithUrl(const QString &urlString)
{
    Q_UNUSED(urlString)
}

void BrevantoAdVC::itemDidFinishPlaying() { }

void BrevantoAdVC::showOptionNotAvailable()
{
    auto alert = std::make_unique<Platform::AlertController>(QStringLiteral("Sorry!"),
                                                             QStringLiteral("This option is not available."));
    alert->addAction({QStringLiteral("Ok"), Platform::AlertActionStyle::Default, {}});
    present(std::move(alert), true);
}
