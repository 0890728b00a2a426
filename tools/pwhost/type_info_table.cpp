// The MSVC exception tables of our throws and catches point at type_info's
// table of virtual functions, which a program normally takes from the
// compiler's static run-time library. We link none: matching a catch only
// compares the type names, so an empty table serves.
extern "C" const void* const kTypeInfoVftable[2] __asm__("??_7type_info@@6B@") = {nullptr, nullptr};
