// VelmoraDLL.h: what the plug-in's library offers to the host.

#ifndef VelmoraDLL_h
#define VelmoraDLL_h

#include "volumeplugin.h"

// Kept free for Velmora.
// **--0xFEED--**

// **--0xDEEF--**

// A new plug-in object, which the host deletes.
VELMORA_EXPORT CPlugIn* createObject();

// The contract version that the library was built against. The host loads no other than its own.
VELMORA_EXPORT UINT getAPIVersion();

// Who made the plug-in.
VELMORA_EXPORT const char* getCompanyName();

// Memory, in kB, that the members of the objects made so far take together: a first look at what many
// copies of the plug-in would cost.
VELMORA_EXPORT float getMemoryUse();

#endif
