// Compiled into every application that links Brevanto::Qml. Such an application names nothing of the module in C++, and
// linkers leave out what nobody names.

#if defined(__clang__) && defined(__ELF__)
#define BREVANTO_KEEP [[gnu::used, gnu::retain]]
#elif defined(__GNUC__)
#define BREVANTO_KEEP [[gnu::used]]
#else
#define BREVANTO_KEEP
#endif

extern void qml_register_types_Brevanto();

// A constant: nothing runs for it while the application is loaded.
extern void (*const brevantoQmlReference)();
BREVANTO_KEEP void (*const brevantoQmlReference)() = &qml_register_types_Brevanto;
