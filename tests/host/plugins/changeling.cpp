// A plug-in that behaves as its file is called. The file name up to a hyphen picks the deed, and the whole
// name without the suffix is the plug-in's name, so that one build serves for any number of libraries.

#include "plugin.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

std::string fileStem()
{
    Dl_info information = {};
    dladdr(reinterpret_cast<void*>(&fileStem), &information);
    const std::string sPath = information.dli_fname;
    const std::string sFile = sPath.substr(sPath.rfind('/') + 1);
    return sFile.substr(0, sFile.rfind('.'));
}

std::string deed()
{
    return fileStem().substr(0, fileStem().find('-'));
}

bool isCalled(const char* pDeed)
{
    return deed() == pDeed;
}

// An address that nothing lies at. It is read at run time so that the compiler does not see through it.
volatile std::size_t g_uNowhere = 64;
template <typename T>
T* nowhere()
{
    return reinterpret_cast<T*>(g_uNowhere);
}

void crash()
{
    *nowhere<volatile int>() = 1;
}

int overflowStack(volatile char* pBelow)
{
    volatile char frame[65536];
    frame[0] = *pBelow;
    return g_uNowhere == 0 ? 0 : overflowStack(frame) + frame[0]; // which it never is
}

struct CAtLoad
{
    CAtLoad()
    {
        if (isCalled("crash_at_load"))
            crash();
        if (isCalled("throw_at_load"))
            throw std::runtime_error("no static today");
    }
    ~CAtLoad()
    {
        if (isCalled("crash_at_unload"))
            crash();
    }
} g_atLoad;

void forkAndLinger(const std::string& sFolder, const std::string& sName)
{
    const pid_t nChild = fork();
    if (nChild == 0) {
        for (;;)
            pause();
    }
    std::ofstream(sFolder + "/" + sName + ".pid") << nChild << std::flush;
}

class CChangeling : public CPlugIn
{
  public:
    CChangeling() : m_sName(fileStem()), m_fGain(0.0f)
    {
        if (isCalled("twin"))
            m_sName = "Twin";
        m_PlugInName = m_sName.c_str();
        rememberFolder();
        addControl(&m_fGain);
        m_bOutputOnlyPlugIn = isCalled("synth");
        misbehave();
    }
    virtual ~CChangeling()
    {
        if (isCalled("crash_in_destructor"))
            crash();
        if (isCalled("throw_in_destructor"))
            std::terminate(); // what a destructor that throws comes to
    }

    virtual bool init()
    {
        if (isCalled("throw_in_init"))
            throw std::runtime_error("no init");
        return CPlugIn::init();
    }
    virtual bool prepareForPlay()
    {
        if (isCalled("throw_in_prepare"))
            throw std::runtime_error("no prepare");
        return CPlugIn::prepareForPlay();
    }

  private:
    // Shows a test, as the name of a button, where the plug-in thinks that its library lies.
    void rememberFolder()
    {
        if (char* pFolder = getMyDLLDirectory()) {
            m_sFolder = pFolder;
            delete[] pFolder;
        }
        m_AssignButton1Name = m_sFolder.c_str();
    }

    void addControl(float* pVariable)
    {
        CUICtrl control;
        control.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        control.uControlId = 0;
        control.uUserDataType = floatData;
        control.fUserDisplayDataLoLimit = 0.0f;
        control.fUserDisplayDataHiLimit = 1.0f;
        control.fInitUserFloatValue = 0.5f;
        control.m_pUserCookedFloatData = pVariable;
        m_UIControlList.append(control);
    }

    void misbehave()
    {
        volatile char top = 0;
        if (isCalled("crash_in_constructor"))
            crash();
        if (isCalled("overflow_stack"))
            overflowStack(&top);
        while (isCalled("hang"))
            pause();
        while (isCalled("spin")) {
        }
        if (isCalled("exit_3"))
            exit(3);
        if (isCalled("abort"))
            abort();
        if (isCalled("throw_error"))
            throw std::runtime_error("no constructor, 100 % sure");
        if (isCalled("throw_42"))
            throw 42;
        if (isCalled("print"))
            std::cout << std::string(200000, 'x') << std::endl;
        if (isCalled("close_descriptors"))
            for (int i = 0; i < 1024; ++i)
                close(i);
        if (isCalled("null_name"))
            m_PlugInName = NULL;
        if (isCalled("wild_name"))
            m_PlugInName = nowhere<const char>();
        if (isCalled("wild_variable"))
            addControl(nowhere<float>());
        if (isCalled("linger") || isCalled("linger_and_crash"))
            forkAndLinger(m_sFolder, m_sName);
        if (isCalled("linger_and_crash"))
            crash();
        if (isCalled("leave_thread"))
            std::thread([] {
                for (;;)
                    usleep(100);
            }).detach();
        if (isCalled("hog"))
            m_hog.resize(std::size_t(1) << 40);
    }

    std::string m_sName;
    std::string m_sFolder;
    std::string m_hog;
    float m_fGain;
};

} // namespace

VELMORA_EXPORT CPlugIn* createObject()
{
    return isCalled("null_object") ? NULL : new CChangeling;
}

VELMORA_EXPORT UINT getAPIVersion()
{
    if (isCalled("version_60"))
        return 60;
    if (isCalled("version_62"))
        return 62;
    if (isCalled("throw_at_version"))
        throw std::runtime_error("no version");
    return PLUGIN_API_VERSION;
}
