#pragma once

#include "Platform/Graphics/Image.h"

#include <QHash>
#include <QMutex>
#include <QUrl>

#include <functional>
#include <memory>

class QObject;

namespace Platform
{

// A folder of resources and the classes that belong to them. A library makes one for itself.
class Bundle
{
public:
    using ClassTable = QHash<QString, std::function<std::unique_ptr<QObject>()>>;

    // `resourceRoot` is a resource path such as ":/qt/qml/Example"; images stand in its folder "Assets".
    Bundle(QString resourceRoot, ClassTable classes);

    // The application's version as users know it ("CFBundleShortVersionString" of an Apple bundle); empty when it has
    // none.
    static QString mainBundleShortVersion();

    QString resourceRoot() const { return m_resourceRoot; }

    // A new object of the named class; null when the bundle has no such class.
    std::unique_ptr<QObject> instantiate(const QString &className) const;

    // The image asset of that name, the same image on every call; null when there is none.
    Image imageNamed(const QString &name) const;
    // Address of that asset for a scene; empty when there is none.
    QUrl urlForImage(const QString &name) const;

private:
    QString m_resourceRoot;
    ClassTable m_classes;
    mutable QMutex m_mutex;
    mutable QHash<QString, Image> m_images;
};

} // namespace Platform
