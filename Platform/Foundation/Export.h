#pragma once

#include <QtGlobal>

// Marks what a host application may use. The platform layer is part of the Brevanto library.
#if defined(BREVANTO_STATIC)
#define BREVANTO_EXPORT
#elif defined(BREVANTO_BUILDING)
#define BREVANTO_EXPORT Q_DECL_EXPORT
#else
#define BREVANTO_EXPORT Q_DECL_IMPORT
#endif
