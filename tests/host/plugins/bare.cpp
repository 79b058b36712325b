// A library without the contract's sources that lacks one export or another, as the build says.

#include "plugin.h"

int presence()
{
    return 1;
}

#if defined(BARE_VERSION)
VELMORA_EXPORT UINT getAPIVersion()
{
    return PLUGIN_API_VERSION;
}
#endif

#if defined(BARE_OBJECT)
VELMORA_EXPORT CPlugIn* createObject()
{
    return NULL;
}
#endif

#if defined(BARE_MISSING)
int functionThatNobodyHas();
VELMORA_EXPORT int callWhatIsMissing()
{
    return functionThatNobodyHas();
}
#endif
