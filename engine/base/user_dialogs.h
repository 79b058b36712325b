#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// Port: how the engine talks to the person at the screen. The windows and the command line each supply
// one; tests supply one that records. All operations are called on the main thread, but note(), which
// may be called on any thread but the audio thread.
class IUserDialogs
{
  public:
    virtual ~IUserDialogs() = default;

    // A message with an OK button; returns when it has been read.
    virtual void showMessage(std::string_view sText) = 0;

    // A question with Yes and No; true is Yes.
    [[nodiscard]] virtual bool askYesNo(std::string_view sText) = 0;

    // A question with OK and Cancel; true is OK.
    [[nodiscard]] virtual bool askOKCancel(std::string_view sText) = 0;

    // A file to save into; none when the user cancels. sFilter is in the form
    // "Wave Files (*.wav)|*.wav||".
    [[nodiscard]] virtual std::optional<std::filesystem::path>
    chooseSaveFile(std::string_view sFilter, const std::filesystem::path& suggestedName) = 0;

    // An existing file; none when the user cancels. sFilter as above; the chooser opens at startFolder if
    // that is given and exists.
    [[nodiscard]] virtual std::optional<std::filesystem::path>
    chooseOpenFile(std::string_view sFilter, const std::filesystem::path& startFolder = {}) = 0;

    // A folder; none when the user cancels, as always where nobody sits at a window.
    [[nodiscard]] virtual std::optional<std::filesystem::path>
    chooseFolder(std::string_view /*sTitle*/, const std::filesystem::path& /*startFolder*/)
    {
        return std::nullopt;
    }

    // A line for the status window; never waits for a person.
    virtual void note(std::string_view sText) = 0;
};

} // namespace velmora
