// The lines that the library writes to standard error while it loads, which is before main.
#ifndef ORVANE_TOOLS_SUPPORT_LIBRARY_LINES_H
#define ORVANE_TOOLS_SUPPORT_LIBRARY_LINES_H

#include <string>

namespace OrvaneTools {

using PreInitialiser = void (*)(int count, char** words, char** environment);

// Sends standard error nowhere, and gives a descriptor of the true one; standard error itself where that cannot be.
// Before any other thread runs.
int HideLibraryLines();

// Holds what goes to standard error until TakeLibraryLines. Before any other thread runs. A process that dies meanwhile
// takes it along.
void HoldLibraryLines();
// Gives standard error back, and what was held; empty where nothing was.
std::string TakeLibraryLines();

// Whether one of the words behind the program's name is this one.
bool HasWord(int count, char** words, const char* word);

}  // namespace OrvaneTools

// Has a program call this function before the libraries load that it links. At namespace scope; C++ objects of the
// program do not stand yet.
#define ORVANE_BEFORE_LIBRARIES(function) \
    __attribute__((section(".preinit_array"), used)) const ::OrvaneTools::PreInitialiser kBeforeLibraries = function

#endif
