// The host's half of the agreement, tried on one recorder library: layout, data in both directions, and
// every virtual operation. Plain C++98, so that each compiler builds a host from it.

#ifndef VELMORA_LIBRARY_CHECK_H
#define VELMORA_LIBRARY_CHECK_H

#include <string>

// Empty if host and library agree; else a line for each thing they do not agree on.
std::string checkLibrary(const char* pPath);

#endif
