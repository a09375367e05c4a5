#include "Platform/Foundation/Bundle.h"

#include <QCoreApplication>
#include <QFile>
#include <QMutexLocker>
#include <QObject>

#ifdef Q_OS_DARWIN
#include <CoreFoundation/CoreFoundation.h>
#endif

namespace Platform
{

namespace
{

QString assetPath(const QString &root, const QString &name)
{
    for (const QLatin1String suffix : {QLatin1String("svg"), QLatin1String("png")}) {
        QString path = QStringLiteral("%1/Assets/%2.%3").arg(root, name, suffix);
        if (QFile::exists(path))
            return path;
    }
    return {};
}

} // namespace

Bundle::Bundle(QString resourceRoot, ClassTable classes)
    : m_resourceRoot(std::move(resourceRoot))
    , m_classes(std::move(classes))
{
}

QString Bundle::mainBundleShortVersion()
{
#ifdef Q_OS_DARWIN
    // What Qt calls the application's version is another one there, that of the build.
    const CFTypeRef version =
        CFBundleGetValueForInfoDictionaryKey(CFBundleGetMainBundle(), CFSTR("CFBundleShortVersionString"));
    if (version && CFGetTypeID(version) == CFStringGetTypeID())
        return QString::fromCFString(static_cast<CFStringRef>(version));
    return {};
#else
    return QCoreApplication::applicationVersion();
#endif
}

std::unique_ptr<QObject> Bundle::instantiate(const QString &className) const
{
    const auto make = m_classes.value(className);
    return make ? make() : nullptr;
}

Image Bundle::imageNamed(const QString &name) const
{
    const QMutexLocker lock(&m_mutex);
    auto known = m_images.find(name);
    if (known == m_images.end())
        known = m_images.insert(name, Image::withContentsOfFile(assetPath(m_resourceRoot, name)));
    return *known;
}

QUrl Bundle::urlForImage(const QString &name) const
{
    const QString path = assetPath(m_resourceRoot, name);
    return path.isEmpty() ? QUrl() : QUrl(QStringLiteral("qrc") + path);
}

} // namespace Platform
