// Goes before the registration of a QML module's types and the table of its compiled scenes, both as Qt's tools
// generate them. Each registers itself while the library is loaded; here it waits until it is called.
#include <QtCore/qglobal.h>
#include <QtQml/qqmlmoduleregistration.h>

#undef Q_CONSTRUCTOR_FUNCTION
#define Q_CONSTRUCTOR_FUNCTION(function)

struct RegisteredOnDemand {
    constexpr RegisteredOnDemand(const char *, void (*)()) { }
};
#define QQmlModuleRegistration RegisteredOnDemand
