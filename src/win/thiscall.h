#pragma once
// Microsoft's calling convention for member functions on x86: `this` in ECX,
// the arguments on the stack, the callee pops them. g++ applies it to plain
// functions with this attribute, which is how the plug-in writes the members
// it exports and calls the members of the host's MFC42.DLL.
#define PW_THISCALL __attribute__((thiscall))
