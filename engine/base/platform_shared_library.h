#pragma once

#include <filesystem>
#include <string>

namespace velmora {

// A shared library of the system that is opened while the program runs, so that the program also runs
// where it is missing. [main], or one thread at a time
class CSharedLibrary
{
  public:
    // Where the system finds a library of that name ("libm.so.6"); empty with the reason in sError if it
    // does not.
    [[nodiscard]] static std::filesystem::path find(const char* pName, std::string& sError);

    CSharedLibrary() = default;

    // Closes the library.
    ~CSharedLibrary();

    CSharedLibrary(const CSharedLibrary&) = delete;
    CSharedLibrary& operator=(const CSharedLibrary&) = delete;

    // Opens the file, all symbols bound, none visible to others. False with the reason in sError.
    [[nodiscard]] bool open(const std::filesystem::path& file, std::string& sError);

    // From now on the library stays, whatever becomes of this object.
    void keepForEver() { m_pHandle = nullptr; }

    // Sets pFunction to the library's function of that name; false, and null, if it has none.
    template <typename TFunction>
    bool get(const char* pName, TFunction*& pFunction) const
    {
        pFunction = reinterpret_cast<TFunction*>(address(pName));
        return pFunction != nullptr;
    }

    // Lets what this library imports under that name, and only this library, be pReplacement: a function, or
    // the address of a variable. Returns what it was, null if the library imports no such name.
    //
    // How it works: the dynamic linker has written the address of each import into a table of the library,
    // which its relocations describe; the entry is written once more. Done right after open().
    void* redirect(const char* pName, void* pReplacement);

    template <typename TFunction>
    TFunction* redirect(const char* pName, TFunction* pReplacement)
    {
        return reinterpret_cast<TFunction*>(redirect(pName, reinterpret_cast<void*>(pReplacement)));
    }

  private:
    [[nodiscard]] void* address(const char* pName) const;

    void* m_pHandle = nullptr;
};

} // namespace velmora
