#include "project/preset_file.h"

#include "base/safe_file.h"
#include "base/text.h"
#include "host/guarded_call.h"
#include "project/control_list.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <fstream>
#include <limits>
#include <unordered_map>

namespace velmora {

namespace {

constexpr std::uintmax_t MAX_FILE_SIZE = 64 << 20; // bytes; every id there is takes less than 20 million

// The variable may be in use on the audio thread.
template <typename T>
std::optional<T> load(T* pVariable)
{
    if (!pVariable)
        return std::nullopt;
    return std::atomic_ref<T>(*pVariable).load(std::memory_order_relaxed);
}

template <typename T>
bool store(T* pVariable, double dValue)
{
    constexpr double LOWEST = std::numeric_limits<T>::lowest();
    constexpr double HIGHEST = std::numeric_limits<T>::max();
    if (!pVariable)
        return false;
    const double dRounded = std::numeric_limits<T>::is_integer ? std::round(dValue) : dValue;
    std::atomic_ref<T>(*pVariable)
        .store(static_cast<T>(std::clamp(dRounded, LOWEST, HIGHEST)), std::memory_order_relaxed);
    return true;
}

// The present value as the file shows it; empty for a control without a variable.
std::string valueText(const CUICtrl& control)
{
    switch (control.uUserDataType) {
    case intData:
        if (const auto nValue = load(control.m_pUserCookedIntData))
            return formatted("%d", *nValue);
        break;
    case floatData:
        if (const auto fValue = load(control.m_pUserCookedFloatData))
            return formatted("%.6f", *fValue);
        break;
    case doubleData:
        if (const auto dValue = load(control.m_pUserCookedDoubleData))
            return formatted("%.6f", *dValue);
        break;
    case UINTData:
        if (const auto uValue = load(control.m_pUserCookedUINTData))
            return formatted("%u", *uValue);
        break;
    default:
        break;
    }
    return {};
}

bool setValue(CUICtrl& control, double dValue)
{
    switch (control.uUserDataType) {
    case intData:
        return store(control.m_pUserCookedIntData, dValue);
    case floatData:
        return store(control.m_pUserCookedFloatData, dValue);
    case doubleData:
        return store(control.m_pUserCookedDoubleData, dValue);
    case UINTData:
        return store(control.m_pUserCookedUINTData, dValue);
    default:
        return false;
    }
}

enum class ERead
{
    Done,
    NotOpened,
    NotRead
};

ERead readContents(const std::filesystem::path& path, std::string& sContents)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return ERead::NotOpened;
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return ERead::NotOpened;
    const auto uSize = std::filesystem::file_size(path, error);
    if (error || uSize > MAX_FILE_SIZE)
        return ERead::NotRead;
    sContents.resize(static_cast<std::size_t>(uSize));
    stream.read(sContents.data(), static_cast<std::streamsize>(sContents.size()));
    return stream ? ERead::Done : ERead::NotRead;
}

} // namespace

CPreset readPreset(const std::filesystem::path& path)
{
    std::string sContents;
    return readContents(path, sContents) == ERead::Done ? CPreset(sContents) : CPreset();
}

std::string presetText(CPlugIn& plugIn, std::string_view sName)
{
    std::string sControls;
    int nControls = 0;
    for (const CUICtrl* pControl : controlsOf(plugIn.m_UIControlList))
        if (const std::string sValue = valueText(*pControl); !sValue.empty()) {
            sControls += std::to_string(pControl->uControlId) + ':' + sValue + '\n';
            ++nControls;
        }

    std::string sText = presetNameLine(sName) + '\n' + std::to_string(nControls) + '\n' + sControls;
    sText += formatted("%d\n%d\n%d\n", static_cast<int>(plugIn.m_uX_TrackPadIndex),
                       static_cast<int>(plugIn.m_uY_TrackPadIndex), MAX_JS_PROGRAM_STEPS);
    for (int nStep = 0; nStep < MAX_JS_PROGRAM_STEPS; ++nStep)
        for (int nVariable = 0; nVariable < MAX_JS_PROGRAM_STEP_VARS; ++nVariable) {
            const float* pProgram = plugIn.m_pVectorJSProgram;
            sText += formatted("%.6f\n", pProgram ? pProgram[JS_PROG_INDEX(nStep, nVariable)] : 0.0F);
        }

    const int nCount =
        std::min(plugIn.getAdditionalPresetValueCount(), static_cast<int>(MAX_ADDITIONAL_PRESET_VALUES));
    for (int i = 0; i < nCount; ++i)
        sText += formatted("%u:%.6f\n", static_cast<UINT>(i), plugIn.getAdditionalPresetValue(i));
    return sText;
}

bool savePreset(CPlugIn& plugIn, const std::filesystem::path& path, std::string_view sName,
                IUserDialogs& dialogs)
{
    std::string sText;
    const auto sThrown = thrownBy([&] { sText = presetText(plugIn, sName); });
    if (sThrown) {
        dialogs.showMessage("The plug-in failed to tell its values (" + *sThrown + "); nothing was saved.");
        return false;
    }
    return writePreset(path, sText, dialogs);
}

bool writePreset(const std::filesystem::path& path, std::string_view sText, IUserDialogs& dialogs)
{
    CSafeFile file(path);
    std::ofstream stream(file.path(), std::ios::binary);
    if (!stream) {
        dialogs.showMessage(path.string() + " could not be opened for saving!");
        return false;
    }
    stream << sText;
    stream.close();
    if (!stream || !file.commit()) {
        dialogs.showMessage("Error while writing preset file; WriteFile() failed.");
        return false;
    }
    return true;
}

bool loadPreset(CPlugIn& plugIn, const std::filesystem::path& path, IUserDialogs& dialogs)
{
    std::string sContents;
    const ERead eRead = readContents(path, sContents);
    if (eRead != ERead::Done) {
        dialogs.showMessage(path.string() + (eRead == ERead::NotOpened ? " could not be opened for reading!"
                                                                       : ": Error while reading file."));
        return false;
    }
    const auto sThrown = thrownBy([&] { applyPreset(CPreset(sContents), plugIn); });
    if (sThrown)
        dialogs.showMessage("The plug-in failed to take the preset (" + *sThrown + ").");
    return !sThrown;
}

void applyPreset(const CPreset& preset, CPlugIn& plugIn)
{
    std::unordered_map<UINT, CUICtrl*> controls;
    for (CUICtrl* pControl : controlsOf(plugIn.m_UIControlList))
        controls.try_emplace(pControl->uControlId, pControl);

    for (const CPreset::CValue& value : preset.controlValues()) {
        const auto found = controls.find(value.m_uId);
        if (found != controls.end() && setValue(*found->second, value.m_dValue))
            plugIn.userInterfaceChange(static_cast<int>(value.m_uId));
    }
    if (!preset.hasAllControls())
        return;
    plugIn.userInterfaceChange(-1);

    plugIn.m_uX_TrackPadIndex = preset.trackPadX().value_or(plugIn.m_uX_TrackPadIndex);
    plugIn.m_uY_TrackPadIndex = preset.trackPadY().value_or(plugIn.m_uY_TrackPadIndex);
    const auto& joystick = preset.joystickValues();
    for (std::size_t i = 0; plugIn.m_pVectorJSProgram && i < joystick.size(); ++i)
        if (joystick[i]) {
            const std::size_t uStep = i / MAX_JS_PROGRAM_STEP_VARS;
            const std::size_t uVariable = i % MAX_JS_PROGRAM_STEP_VARS;
            plugIn.m_pVectorJSProgram[JS_PROG_INDEX(uStep, uVariable)] = *joystick[i];
        }
}

} // namespace velmora
