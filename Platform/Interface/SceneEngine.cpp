#include "Platform/Interface/SceneEngine.h"

#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/ObjectCast.h"
#include "Platform/Interface/ImageProvider.h"

#include <QCoreApplication>
#include <QHash>
#include <QQmlComponent>
#include <QQmlEngine>

// Made by the build: registers the module's types and resources.
extern void registerBrevantoPlatform();

namespace Platform
{

namespace
{

struct Scenes {
    QQmlEngine engine;
    QHash<QUrl, QQmlComponent *> components;
};

Scenes &currentScenes()
{
    // Goes with the application. exit() in its midst takes no application down, and the items live on.
    static auto &scenes = *new std::unique_ptr<Scenes>;
    if (scenes)
        return *scenes;
    registerBrevantoPlatform();
    scenes = std::make_unique<Scenes>();
    scenes->engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    scenes->engine.addImageProvider(ImageProvider::name(), new ImageProvider);
    scenes->engine.addImageProvider(ShadowProvider::name(), new ShadowProvider);
    scenes->engine.addImageProvider(DiscProvider::name(), new DiscProvider);
    qAddPostRoutine([] { scenes.reset(); });
    return *scenes;
}

} // namespace

QQmlEngine &SceneEngine::engine()
{
    return currentScenes().engine;
}

std::unique_ptr<QQuickItem> SceneEngine::loadScene(const QUrl &url, const QVariantMap &properties, QQmlContext *context)
{
    Scenes &current = currentScenes();
    QQmlComponent *&component = current.components[url];
    if (!component)
        component = new QQmlComponent(&current.engine, url, QQmlComponent::PreferSynchronous, &current.engine);
    QQmlComponent *const ready = component; // loading a scene may load others, which moves the table's entries
    std::unique_ptr<QObject> object;
    if (ready->isReady())
        object.reset(ready->createWithInitialProperties(properties, context));
    std::unique_ptr<QQuickItem> item = takeAs<QQuickItem>(object);
    if (!item || ready->isError())
        throw Exception(Exception::Name::InternalInconsistency,
                        ready->isError() ? ready->errorString() : url.toString() + QStringLiteral(" is no item"));
    QQmlEngine::setObjectOwnership(item.get(), QQmlEngine::CppOwnership);
    return item;
}

QQuickItem *SceneEngine::makeItem(const QString &name, QQuickItem *owner, QVariantMap properties)
{
    properties.insert(QStringLiteral("parent"), QVariant::fromValue(owner));
    QQuickItem *item = loadScene(sceneUrl(name), properties).release();
    item->setParent(owner);
    return item;
}

QUrl SceneEngine::sceneUrl(const QString &name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Brevanto/Platform/Interface/Scenes/%1.qml").arg(name));
}

} // namespace Platform
