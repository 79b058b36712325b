#pragma once

#include "audio/portaudio_system.h"
#include "cli/command_context.h"
#include "cli/console_view.h"
#include "cli/signal_guard.h"
#include "document/tonbox_doc.h"

#include <functional>
#include <optional>
#include <string_view>

namespace velmora::cli {

// The document of a command, with all that it needs to run without a window. Nothing is started: what a
// command needs of the start-up it asks for, so that one which only processes a file touches nothing else. A
// plug-in that makes its own sound is loaded without a note of it being played.
class CHeadlessDocument
{
  public:
    explicit CHeadlessDocument(CCommandContext& context);

    [[nodiscard]] CTonboxDoc& operator*() { return m_document; }
    [[nodiscard]] CTonboxDoc* operator->() { return &m_document; }

    // Makes the user folder ready and reads the settings. With bRecordCrashes a crash of the last run is
    // told, and one of this run will be. False if the user folder cannot be used; the user has been told.
    [[nodiscard]] bool start(bool bRecordCrashes = false);

    // Loads a plug-in and makes it the current filter; a crash of it is told and ends the program from now
    // on. False if it cannot be loaded; the user has been told.
    [[nodiscard]] bool loadPlugIn(const std::filesystem::path& library);

    // Makes a built-in module the current filter, by its name or a beginning of it that no other has, upper
    // and lower case alike. False for any other name; the user has been told.
    [[nodiscard]] bool selectModule(std::string_view sBeginning);

    // Goes over to a new build of the plug-in that is loaded, while audio runs through it. The values of its
    // controls are carried over. False if it cannot be loaded; the user has been told, and the build of
    // before is still the current filter.
    [[nodiscard]] bool swapPlugIn(const std::filesystem::path& library);

    // From now on a crash inside a plug-in is told under this name and ends the program.
    void guardPlugIn(std::string_view sName);

    // Applies the filter options in the order given; behind the loading of a plug-in comes onLoaded, if
    // given. False if one cannot be applied; the user has been told.
    [[nodiscard]] bool applyFilterOptions(const std::function<bool()>& onLoaded = {});

    // Does work that calls the current filter. What the plug-in throws is told while its library is still
    // there, and makes the result false.
    [[nodiscard]] bool runPlugIn(const std::function<bool()>& work);

  private:
    void tellWhyNotLoaded();
    [[nodiscard]] bool applyPreset(const std::filesystem::path& file);
    [[nodiscard]] bool applyControlOption(const CGivenOption& option);

    CCommandContext& m_context;
    std::optional<CCrashGuard> m_crashGuard; // outlives the document, whose end runs plug-in code
    CPortAudioSystem m_audioSystem;
    CConsoleView m_view;
    CTonboxDoc m_document;
};

} // namespace velmora::cli
