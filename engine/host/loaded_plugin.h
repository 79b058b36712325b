#pragma once

#include <memory>
#include <string>

class CPlugIn;

namespace velmora {

class CPlugInLibrary;
class CUserDSPFilter;

// A plug-in that came from a library: the library, the object it made, and the filter around the object.
// They are taken apart in the one order that is safe: the filter lets go of the object, the object is
// deleted, the library is freed, and the filter is deleted last. [main]
class CLoadedPlugIn
{
  public:
    // Takes over both and puts a filter around the object. Neither may be null, and the object must be
    // one that this library made.
    [[nodiscard]] static std::unique_ptr<CLoadedPlugIn> create(std::unique_ptr<CPlugInLibrary> pLibrary,
                                                               CPlugIn* pPlugIn);

    ~CLoadedPlugIn();
    CLoadedPlugIn(const CLoadedPlugIn&) = delete;
    CLoadedPlugIn& operator=(const CLoadedPlugIn&) = delete;

    // The filter lives as long as this object, unloaded or not.
    [[nodiscard]] CUserDSPFilter& filter() const { return *m_pFilter; }

    // Null after unload().
    [[nodiscard]] CPlugIn* plugIn() const { return m_pPlugIn; }
    [[nodiscard]] CPlugInLibrary* library() const { return m_pLibrary.get(); }

    // Calls the plug-in's init() unless it has been called before. What it throws is passed on, and the next
    // call tries again.
    void initOnce();

    // Detaches and deletes the object and frees the library, as ahead of a rebuild. The filter stays, with
    // its name and without a plug-in. No audio thread may be inside the filter. False if the library's
    // code is still in memory afterwards, for the reason that pinReason() then tells. Without a library,
    // true.
    bool unload();
    [[nodiscard]] const std::string& pinReason() const { return m_sPinReason; }

  private:
    CLoadedPlugIn(std::unique_ptr<CPlugInLibrary> pLibrary, CPlugIn* pPlugIn);

    std::unique_ptr<CUserDSPFilter> m_pFilter;
    std::unique_ptr<CPlugInLibrary> m_pLibrary;
    CPlugIn* m_pPlugIn;
    bool m_bInitialized = false;
    std::string m_sPinReason;
};

} // namespace velmora
