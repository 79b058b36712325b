#pragma once

#include "host/settings_table.h"
#include "host/settings_value.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

namespace velmora {

// The program's settings: the 71 lines of the file "socket.log" in the user folder. settings_table.h says
// what each line holds. Lines count from 1. [main]
class CSettings
{
  public:
    // All values at their defaults, which depend on the user folder.
    explicit CSettings(const std::filesystem::path& userFolder = {});

    // Reads the file over the defaults for this user folder, clears the default wave file if it is gone,
    // and writes the file back. A file that is shorter, missing or unreadable leaves the defaults of the
    // lines that were not reached. False with the reason in sError if the file could not be written, or if
    // it cannot be a settings file (above 1 MiB, a line above 8192 bytes, not a regular file): such a file
    // is neither read nor replaced, here or by save(), and the defaults stand.
    [[nodiscard]] bool load(const std::filesystem::path& file, const std::filesystem::path& userFolder,
                            std::string& sError);

    // Writes all lines; the folder is made if it is missing. On failure the old file stands as it was.
    [[nodiscard]] bool save(const std::filesystem::path& file, std::string& sError) const;

    // A value as it stands in the file; empty outside 1 to 71.
    [[nodiscard]] std::string text(int nLine) const;

    // Sets a line from text, which must be of the line's type as it stands. False with a message in sError
    // that says what is wrong; nothing has changed then.
    [[nodiscard]] bool set(int nLine, std::string_view sText, std::string& sError);

    // A line's value. The line must be of that type.
    [[nodiscard]] unsigned unsignedValue(int nLine) const { return value<unsigned>(nLine); }
    [[nodiscard]] int signedValue(int nLine) const { return value<int>(nLine); }
    [[nodiscard]] bool boolValue(int nLine) const { return value<bool>(nLine); }
    [[nodiscard]] double doubleValue(int nLine) const { return value<double>(nLine); }
    [[nodiscard]] const std::string& stringValue(int nLine) const { return value<std::string>(nLine); }

    // What the engine uses, by name.
    [[nodiscard]] const std::string& defaultProjectFolder() const
    {
        return stringOf("m_sDefaultProjectFolder");
    }
    [[nodiscard]] const std::string& defaultWAVFolder() const { return stringOf("m_sDefaultWAVFolder"); }
    [[nodiscard]] const std::string& codeBlocksFolder() const { return stringOf("m_sCodeBlocksFolder"); }
    [[nodiscard]] unsigned compilerId() const { return unsignedValue(settingLine("m_uCompilerId")); }
    [[nodiscard]] const std::string& defaultWAVFile() const { return stringOf("m_sDefaultWAVFile"); }
    [[nodiscard]] unsigned framesPerBuffer() const
    {
        return unsignedValue(settingLine("m_uFramesPerBuffer"));
    }
    [[nodiscard]] bool useLowLatency() const { return boolValue(settingLine("m_bUseLowLatency")); }
    [[nodiscard]] unsigned latencyMultiplier() const
    {
        return unsignedValue(settingLine("m_uLatencyMultiplier"));
    }
    [[nodiscard]] const std::string& inputDeviceName() const { return stringOf("m_sInputDeviceName"); }
    [[nodiscard]] const std::string& outputDeviceName() const { return stringOf("m_sOutputDeviceName"); }
    [[nodiscard]] const std::string& DUTDeviceName() const { return stringOf("m_sDUTDeviceName"); }
    [[nodiscard]] double sampleRate() const { return doubleValue(settingLine("m_dSampleRate")); } // Hz
    [[nodiscard]] const std::string& companyName() const { return stringOf("m_sCompanyName"); }

    // A line end or an overlong text in a name is dropped, so that the file stays readable.
    void setInputDeviceName(std::string_view sName) { setName("m_sInputDeviceName", sName); }
    void setOutputDeviceName(std::string_view sName) { setName("m_sOutputDeviceName", sName); }
    void setDUTDeviceName(std::string_view sName) { setName("m_sDUTDeviceName", sName); }
    void setCompilerId(unsigned uId) { at("m_uCompilerId") = uId; }
    void setSampleRate(double dHz) { at("m_dSampleRate") = dHz; }

    // The format version that the file read last began with; 4098 before. It is compared with nothing, and
    // 4098 is what is written.
    [[nodiscard]] unsigned formatVersionRead() const { return m_uFormatVersionRead; }

  private:
    template <typename T>
    [[nodiscard]] const T& value(int nLine) const
    {
        return std::get<T>(m_values.at(static_cast<std::size_t>(nLine) - 1));
    }
    [[nodiscard]] const std::string& stringOf(std::string_view sName) const
    {
        return stringValue(settingLine(sName));
    }
    [[nodiscard]] CSettingValue& at(std::string_view sName);

    void setName(std::string_view sSetting, std::string_view sName);
    void setDefaults(const std::filesystem::path& userFolder);
    bool refuse(const std::filesystem::path& file, const std::string& sReason, std::string& sError);
    void readLines(std::string_view sContents);

    std::array<CSettingValue, SETTING_COUNT> m_values;
    unsigned m_uFormatVersionRead = SETTINGS_FORMAT_VERSION;
    std::filesystem::path m_refusedFile; // what save() must not replace
};

} // namespace velmora
