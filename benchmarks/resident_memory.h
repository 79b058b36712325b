#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

// Pages of this process that are in memory, in kB; 0 if that is not known.
inline long residentMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string sLine; std::getline(status, sLine);)
        if (sLine.starts_with("VmRSS:"))
            return std::strtol(sLine.c_str() + 6, nullptr, 10);
    return 0;
}
