// One version of a plug-in that is rebuilt over and over. It tells which version its code is, and how many
// objects that code has made since it was loaded.

#include "plugin.h"

// Two kinds of variable that compilers like to share among all libraries of a process.
inline int g_nInlineCount = 0;
template <typename T>
struct CCounter
{
    static int s_nCount;
};
template <typename T>
int CCounter<T>::s_nCount = 0;

class CReloaded : public CPlugIn
{
  public:
    CReloaded()
    {
        m_PlugInName = "Reloaded";
        ++g_nInlineCount;
        ++CCounter<CReloaded>::s_nCount;
    }
    float getAdditionalPresetValue(int nIndex) override
    {
        const int values[] = {RELOADED_VERSION, g_nInlineCount, CCounter<CReloaded>::s_nCount};
        return static_cast<float>(values[nIndex]);
    }
    int getAdditionalPresetValueCount() override { return 3; }
};

VELMORA_EXPORT_PLUGIN(CReloaded)
