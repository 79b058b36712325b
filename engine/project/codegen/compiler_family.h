#pragma once

namespace velmora {

// What compilers of one generation have in common: the project files that they read and the libraries that
// they link. Only the Visual Studio families have a form of the .sln and the .vcxproj of their own.
enum class ECompilerFamily
{
    visualStudio2008,
    visualStudio2010,
    visualStudio2012,
    visualStudio2013,
    visualStudio2015,
    codeBlocks,
    commandLine
};

} // namespace velmora
