#include "Brevanto/WebAction.h"

#include "Brevanto/BrevantoWebVC.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"

void openArticleOnWeb(Platform::ViewController *presenter, const QString &urlString)
{
    if (urlString.isEmpty()) {
        presentOptionNotAvailable(presenter);
        return;
    }
    if (Platform::NavigationController *stack = presenter->navigationController())
        stack->present(std::make_unique<Platform::NavigationController>(BrevantoWebVC::initWithUrlString(urlString)),
                       true);
}

void presentOptionNotAvailable(Platform::ViewController *presenter)
{
    auto alert = std::make_unique<Platform::AlertController>(QStringLiteral("Sorry!"),
                                                             QStringLiteral("This option is not available."));
    alert->addAction({QStringLiteral("Ok"), Platform::AlertActionStyle::Default, {}});
    presenter->present(std::move(alert), true);
}
