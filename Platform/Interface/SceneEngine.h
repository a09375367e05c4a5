#pragma once

#include <QQuickItem>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQmlContext;
class QQmlEngine;

namespace Platform
{

// The one QML engine that shows the platform's and the storyboards' scenes, in whatever window of the host they stand.
// Made on first use, gone before the application object. For the main thread only.
class SceneEngine
{
public:
    static QQmlEngine &engine();

    // A new item from a scene's file, in `context` (the engine's own when null), without an owner. Raises
    // InternalInconsistency with the engine's words when the scene has errors or its root is no item.
    static std::unique_ptr<QQuickItem> loadScene(const QUrl &url, const QVariantMap &properties,
                                                 QQmlContext *context = nullptr);

    // An item of one of the platform's own scene files, put into and owned by `owner`.
    static QQuickItem *makeItem(const QString &name, QQuickItem *owner, QVariantMap properties = {});
    static QUrl sceneUrl(const QString &name);
};

} // namespace Platform
