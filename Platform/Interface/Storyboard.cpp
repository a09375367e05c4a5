#include "Platform/Interface/Storyboard.h"

#include <QDir>
#include <QFile>

namespace Platform
{

namespace
{

[[noreturn]] void refuse(const QString &reason)
{
    throw Exception(Exception::Name::InvalidArgument, reason);
}

} // namespace

Storyboard::Storyboard(const QString &name, const Bundle &bundle)
    : m_name(name)
    , m_bundle(&bundle)
{
    if (!QDir(bundle.resourceRoot() + u'/' + name).exists())
        refuse(QStringLiteral("There is no storyboard named \"%1\" in the bundle").arg(name));
}

std::unique_ptr<ViewController> Storyboard::instantiate(const QString &identifier) const
{
    const QString path = QStringLiteral("%1/%2/%3.qml").arg(m_bundle->resourceRoot(), m_name, identifier);
    std::unique_ptr<QObject> object = m_bundle->instantiate(identifier);
    std::unique_ptr<ViewController> controller = takeAs<ViewController>(object);
    if (!controller || !QFile::exists(path))
        refuse(QStringLiteral("Storyboard \"%1\" has no scene \"%2\"").arg(m_name, identifier));
    controller->setScene(QUrl(QStringLiteral("qrc") + path));
    return controller;
}

} // namespace Platform
