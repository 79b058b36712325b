#pragma once

namespace velmora {

class CDSPProject;

// Port: the compiler's editor, which has the same files open as the workbench writes. [main]
class ICompilerAccess
{
  public:
    virtual ~ICompilerAccess() = default;

    // The editor is there, or is being started for the project. False if it cannot be started.
    [[nodiscard]] virtual bool makeAvailable(const CDSPProject& project) = 0;

    // Has the editor write what the user typed, and returns when that is on disc. False if it could not be
    // told.
    virtual bool saveAll() = 0;

    // Brings the main window back to the front.
    virtual void returnFocus() = 0;
};

} // namespace velmora
