#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

inline constexpr std::size_t MAX_PRESET_NAME_LENGTH = 1023; // bytes
inline constexpr std::size_t MAX_ADDITIONAL_PRESET_VALUES = 65536;

// What a preset file holds, as far as it can be read. The file is text, one of these a line:
//     name; N; N times "id:value"; track pad index x; y; number of joystick steps, 16;
//     the joystick program, step by step, 7 values each; "index:value" for each additional value
// The last byte of the file, its final line end, is not read. [any]
class CPreset
{
  public:
    // A value that is no finite number is left out, and so is a line without a number before its colon.
    struct CValue
    {
        std::uint32_t m_uId;
        double m_dValue;
    };

    CPreset() = default;

    // Reads a file's contents, whatever they are. Memory taken is a few times their size.
    explicit CPreset(std::string_view sContents);

    [[nodiscard]] const std::string& name() const { return m_sName; }

    // Of the control with this id, the first if the file has several; 0.0 if it has none. Fast.
    [[nodiscard]] double controlValue(std::uint32_t uControlId) const;

    // 0.0 beyond 16 steps of 7 variables, and for what the file does not hold.
    [[nodiscard]] float joystickValue(std::size_t uStep, std::size_t uVariable) const;

    // Lines with additional values, at most MAX_ADDITIONAL_PRESET_VALUES, and the value with an index.
    [[nodiscard]] std::size_t additionalCount() const { return m_uAdditionalCount; }
    [[nodiscard]] float additionalValue(std::uint32_t uIndex) const;

    // All control values in the order of the file, and whether the file holds as many lines as it says.
    [[nodiscard]] const std::vector<CValue>& controlValues() const { return m_values; }
    [[nodiscard]] bool hasAllControls() const { return m_bHasAllControls; }

    [[nodiscard]] std::optional<std::uint32_t> trackPadX() const { return m_uTrackPadX; }
    [[nodiscard]] std::optional<std::uint32_t> trackPadY() const { return m_uTrackPadY; }

    // Values of the joystick program in the order of the file, seven a step, none where the file has no
    // number; ends where the file does.
    [[nodiscard]] const std::vector<std::optional<float>>& joystickValues() const { return m_joystick; }

  private:
    class CLines;

    void readControls(CLines& lines);
    void readJoystick(CLines& lines);
    void readAdditional(CLines& lines);

    std::string m_sName;
    std::vector<CValue> m_values;
    std::vector<CValue> m_sortedValues; // by id, one each
    bool m_bHasAllControls = false;
    std::optional<std::uint32_t> m_uTrackPadX;
    std::optional<std::uint32_t> m_uTrackPadY;
    std::vector<std::optional<float>> m_joystick;
    std::size_t m_uAdditionalCount = 0;
    std::vector<CValue> m_sortedAdditional;
};

// A name that fits into a preset's first line: line ends and zero bytes become blanks, what is too long is
// cut.
[[nodiscard]] std::string presetNameLine(std::string_view sName);

} // namespace velmora
