#include "Brevanto/BrevantoBundle.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoCameraVC.h"
#include "Brevanto/BrevantoDetailsPopOverVC.h"
#include "Brevanto/BrevantoPhotoGalleryVC.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Brevanto/SlideDownVC/BrevantoHotspotInfoVC.h"

// Made by the build: registers the module's types and resources.
extern void registerBrevantoCore();

namespace
{

template <typename Controller>
std::unique_ptr<QObject> make()
{
    return std::make_unique<Controller>();
}

} // namespace

const Platform::Bundle &brevantoBundle()
{
    static const Platform::Bundle bundle = [] {
        registerBrevantoCore();
        return Platform::Bundle(QStringLiteral(":/qt/qml/Brevanto/StoryBoard"),
                                {{QStringLiteral("BrevantoAdVC"), make<BrevantoAdVC>},
                                 {QStringLiteral("BrevantoCameraVC"), make<BrevantoCameraVC>},
                                 {QStringLiteral("BrevantoDetailsPopOverVC"), make<BrevantoDetailsPopOverVC>},
                                 {QStringLiteral("BrevantoHotspotInfoVC"), make<BrevantoHotspotInfoVC>},
                                 {QStringLiteral("BrevantoPhotoGalleryVC"), make<BrevantoPhotoGalleryVC>},
                                 {QStringLiteral("BrevantoRecentProductsVC"), make<BrevantoRecentProductsVC>}});
    }();
    return bundle;
}

Platform::Storyboard brevantoStoryboard()
{
    return {QStringLiteral("BrevantoStoryBoard"), brevantoBundle()};
}
