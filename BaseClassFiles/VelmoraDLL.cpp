// VelmoraDLL.cpp: the functions that the host calls in the plug-in's library.

#include "VelmoraDLL.h"

// What getMemoryUse() answers; behind it stand the ids of the plug-in's VST3 classes.
static float g_fMUResult;
CPlugIn* createObject()
{
	CPlugIn* pPlugIn = new CVolumePlugIn;
	g_fMUResult += sizeof(CVolumePlugIn) / 1024.0f;
	return pPlugIn;
}

UINT getAPIVersion()
{
	return PLUGIN_API_VERSION;
}

const char* getCompanyName()
{
	return "Velmora User";
}

float getMemoryUse()
{
	return g_fMUResult;
}
