// Compiled into every application that links Brevanto::Qml. Such an application names nothing of the module in C++, and
// linkers leave out what nobody names.

extern void qml_register_types_Brevanto();

namespace
{

struct ModuleReference {
    ModuleReference()
        : types(&qml_register_types_Brevanto)
    {
    }
    void (*volatile types)();
} const reference;

} // namespace
