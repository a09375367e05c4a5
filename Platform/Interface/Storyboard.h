#pragma once

#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/ObjectCast.h"
#include "Platform/Interface/ViewController.h"

namespace Platform
{

// A folder of scenes in a bundle: one QML file per identifier, its root a View. A scene and its controller class share
// the identifier.
class Storyboard
{
public:
    // Raises InvalidArgument when the bundle has no storyboard of that name. The bundle must outlive the storyboard.
    Storyboard(const QString &name, const Bundle &bundle);

    // Makes the controller of that identifier; its scene is loaded when its view is first asked for, with the scene's
    // property "controller" set and the outlets connected. Raises InvalidArgument when there is no such scene.
    std::unique_ptr<ViewController> instantiate(const QString &identifier) const;

    // The same, as its class; raises InvalidArgument when the scene's controller is of another class.
    template <typename T>
    std::unique_ptr<T> instantiate(const QString &identifier) const
    {
        std::unique_ptr<ViewController> controller = instantiate(identifier);
        std::unique_ptr<T> typed = takeAs<T>(controller);
        if (!typed)
            throw Exception(Exception::Name::InvalidArgument, identifier + QStringLiteral(" is of another class"));
        return typed;
    }

private:
    QString m_name;
    const Bundle *m_bundle;
};

} // namespace Platform
