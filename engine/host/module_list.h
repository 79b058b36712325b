#pragma once

#include "host/dsp_filter.h"

#include <memory>
#include <string_view>
#include <vector>

namespace velmora {

// The built-in modules, in the order in which they are offered. [main]
class CModuleList
{
  public:
    // Appends a module and answers its index.
    int add(std::unique_ptr<CDSPFilter> pModule)
    {
        m_modules.push_back(std::move(pModule));
        return static_cast<int>(m_modules.size()) - 1;
    }

    [[nodiscard]] int count() const { return static_cast<int>(m_modules.size()); }

    // Null outside the list.
    [[nodiscard]] CDSPFilter* at(int nIndex) const
    {
        return nIndex >= 0 && nIndex < count() ? m_modules[static_cast<std::size_t>(nIndex)].get() : nullptr;
    }

    // -1 if there is none of that name.
    [[nodiscard]] int indexOf(std::string_view sName) const
    {
        for (int nIndex = 0; nIndex < count(); ++nIndex)
            if (at(nIndex)->m_sName == sName)
                return nIndex;
        return -1;
    }

    [[nodiscard]] bool holds(const CDSPFilter* pFilter) const
    {
        for (const auto& pModule : m_modules)
            if (pModule.get() == pFilter)
                return true;
        return false;
    }

  private:
    std::vector<std::unique_ptr<CDSPFilter>> m_modules;
};

} // namespace velmora
