#include "host/plugin_library.h"

#include "host/guarded_call.h"
#include "host/plugin_library_copy.h"
#include "host/plugin_library_image.h"

#include <dlfcn.h>

namespace velmora {

namespace {

namespace fs = std::filesystem;

// What the dynamic linker says, in terms of the original file. Its name at the very beginning is left out.
std::string linkerError(const fs::path& copy, const fs::path& file)
{
    const char* pError = ::dlerror();
    std::string sError = pError ? pError : "cannot be opened";
    const std::string sCopy = copy.string();
    if (sError.starts_with(sCopy + ": "))
        sError.erase(0, sCopy.size() + 2);
    for (auto uAt = sError.find(sCopy); uAt != std::string::npos; uAt = sError.find(sCopy, uAt)) {
        sError.replace(uAt, sCopy.size(), file.string());
        uAt += file.string().size();
    }
    return sError;
}

} // namespace

std::unique_ptr<CPlugInLibrary> CPlugInLibrary::load(const fs::path& file, std::string& sError)
{
    std::error_code error;
    fs::path absolute = fs::absolute(file, error);
    if (error)
        absolute = file;

    const auto pCopy = CPlugInLibraryCopy::make(absolute, CPlugInLibraryCopy::usualFolders(), sError);
    if (!pCopy)
        return nullptr;
    void* pHandle = ::dlopen(pCopy->path().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!pHandle) {
        sError = linkerError(pCopy->path(), absolute);
        return nullptr;
    }

    std::unique_ptr<CPlugInLibrary> pLibrary(new CPlugInLibrary(absolute, pCopy->path(), pHandle));
    if (const auto pSetLibraryPath = pLibrary->find<setLibraryPathFunction>("setLibraryPath"))
        pSetLibraryPath(absolute.c_str());
    return pLibrary;
}

CPlugInLibrary::CPlugInLibrary(fs::path file, fs::path copy, void* pHandle)
    : m_file(std::move(file)), m_copy(std::move(copy)), m_pHandle(pHandle),
      m_pCreateObject(find<createObjectFunction>("createObject")),
      m_pGetAPIVersion(find<getAPIVersionFunction>("getAPIVersion"))
{
}

CPlugInLibrary::~CPlugInLibrary()
{
    unload();
}

template <typename Function>
Function CPlugInLibrary::find(const char* pName) const
{
    return reinterpret_cast<Function>(::dlsym(m_pHandle, pName));
}

std::optional<UINT> CPlugInLibrary::version() const
{
    std::optional<UINT> version;
    if (m_pGetAPIVersion && thrownBy([&] { version = m_pGetAPIVersion(); }))
        version.reset();
    return version;
}

CPlugIn* CPlugInLibrary::makeObject(std::string& sError) const
{
    if (!m_pCreateObject) {
        sError = "has no createObject()";
        return nullptr;
    }
    CPlugIn* pPlugIn = nullptr;
    if (const auto thrown = thrownBy([&] { pPlugIn = m_pCreateObject(); })) {
        sError = "threw an exception while it was being created: " + *thrown;
        return nullptr;
    }
    if (!pPlugIn)
        sError = "returned null from createObject()";
    return pPlugIn;
}

std::string CPlugInLibrary::buildId() const
{
    const auto image = m_pHandle ? CPlugInLibraryImage::find(m_copy) : std::nullopt;
    return image ? image->buildId() : std::string();
}

bool CPlugInLibrary::unload()
{
    if (!m_pHandle)
        return true;
    m_pCreateObject = nullptr;
    m_pGetAPIVersion = nullptr;
    const int nResult = ::dlclose(m_pHandle);
    m_pHandle = nullptr;
    const auto left = CPlugInLibraryImage::find(m_copy);
    if (left)
        m_sPinReason = left->pinReason();
    return nResult == 0 && !left;
}

} // namespace velmora
