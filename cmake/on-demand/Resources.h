// Goes before a resource that rcc has generated. The last thing in it is an object named "dummy" whose making registers
// the resource while the library is loaded. It becomes a null pointer: qInitResources_ does the same when it is called.
#define dummy *dummy [[maybe_unused]]
