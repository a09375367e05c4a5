// Goes before what Qt 6.8 generates to keep a resource in a static library: an object whose making, while the library
// is loaded, does nothing but name the resource. The call that registers it names it, too, so that nothing is left to
// make.
#include <QtCore/qtsymbolmacros.h>

#undef QT_KEEP_RESOURCE
#define QT_KEEP_RESOURCE(resource)
#define resourceReferenceKeeper() constexpr resourceReferenceKeeper()
