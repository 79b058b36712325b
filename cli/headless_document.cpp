#include "cli/headless_document.h"

#include "base/text.h"
#include "dsp/modules/module_filter.h"
#include "dsp/modules/module_registry.h"
#include "host/control_walk.h"
#include "host/dsp_filter.h"
#include "host/dsp_filter_control.h"
#include "host/guarded_call.h"
#include "project/preset_file.h"

namespace velmora::cli {

namespace {

std::string listOfControls(CDSPFilter& filter)
{
    const auto controls = controlsOf(filter);
    if (controls.empty())
        return filter.m_sName + " has no controls.";
    std::string sText = "The controls of " + filter.m_sName + " are:";
    for (const CDSPFilterControl* pControl : controls)
        sText += "\n  " + std::to_string(pControl->uControlId) + "  " + pControl->m_sName;
    return sText;
}

std::string noSuchPreset(const CModuleFilter& module, const std::string& sName)
{
    const auto names = module.presetNames();
    if (names.empty())
        return module.m_sName + " has no presets; its controls are set with --set.";
    std::string sText = module.m_sName + " has no preset " + sName + ". Its presets are:";
    for (const std::string& sPreset : names)
        sText += "\n  " + sPreset;
    return sText;
}

// Whether nothing but a number stands there, with or without the control's units behind it. The engine would
// read the number in front and pass over the rest.
bool isNumberWithUnits(std::string_view sText, std::string_view sUnits)
{
    sText = trimmed(sText);
    if (!sUnits.empty() && sText.ends_with(sUnits))
        sText.remove_suffix(sUnits.size());
    return parseNumber(sText).has_value();
}

} // namespace

CHeadlessDocument::CHeadlessDocument(CCommandContext& context)
    : m_context(context), m_view(context.dialogs()), m_document(context.dialogs(), m_audioSystem, m_view)
{
    m_document.transportState().setState(TRANSPORT_STOP);
    m_document.plugInLoader().setPlaysSynths(false);
}

bool CHeadlessDocument::start(bool bRecordCrashes)
{
    CTonboxDoc::CStartUp startUp;
    startUp.m_userFolder = m_context.userFolder();
    startUp.m_bOpenAudioSystem = false;
    startUp.m_bScanPlugIns = false;
    startUp.m_bRecordCrashes = bRecordCrashes;
    watchForExit(); // ahead of the crash recorder
    return m_document.OnNewDocument(startUp);
}

void CHeadlessDocument::guardPlugIn(std::string_view sName)
{
    m_crashGuard.reset();
    m_crashGuard.emplace(sName);
}

bool CHeadlessDocument::loadPlugIn(const std::filesystem::path& library)
{
    guardPlugIn(library.stem().string());
    CPlugInLoader& loader = m_document.plugInLoader();
    if (loader.loadPlugin(library, false))
        return true;
    tellWhyNotLoaded();
    return false;
}

bool CHeadlessDocument::selectModule(std::string_view sBeginning)
{
    CModuleList& modules = m_document.modules();
    if (modules.count() == 0)
        addBuiltInModules(modules);
    const CChosenModule choice = chooseModule(modules, sBeginning);
    if (choice.m_nIndex < 0) {
        m_context.dialogs().showMessage(choice.m_sReason);
        return false;
    }
    CPlugInLoader& loader = m_document.plugInLoader();
    loader.setSelectedModule(choice.m_nIndex);
    loader.selectModule();
    if (m_document.currentFilter() == modules.at(choice.m_nIndex))
        return true;
    m_context.showReason(loader.reason());
    return false;
}

bool CHeadlessDocument::swapPlugIn(const std::filesystem::path& library)
{
    CPlugInLoader& loader = m_document.plugInLoader();
    const bool bDone = runPlugIn([&] {
        if (const CLoadedPlugIn* pOld = loader.current())
            loader.carryOver(CControlValues(*pOld->plugIn()));
        return loader.loadPlugin(library, true) != nullptr;
    });
    if (!bDone)
        tellWhyNotLoaded();
    return bDone;
}

void CHeadlessDocument::tellWhyNotLoaded()
{
    const CPlugInLoader& loader = m_document.plugInLoader();
    m_context.showReason(loader.reason());
    if (loader.isRebuildRequested())
        m_context.dialogs().showMessage("Rebuilding is not possible from here; build the plug-in again with "
                                        "the current files of BaseClassFiles.");
}

bool CHeadlessDocument::runPlugIn(const std::function<bool()>& work)
{
    bool bDone = false;
    if (const auto thrown = thrownBy([&] { bDone = work(); }))
        m_context.dialogs().showMessage("The plug-in " + m_document.currentFilter()->m_sName +
                                        " threw an exception: " + *thrown + ".");
    return bDone;
}

bool CHeadlessDocument::applyFilterOptions(const std::function<bool()>& onLoaded)
{
    if (m_context.line().has("--plugin") && m_context.line().has("--module")) {
        m_context.dialogs().showMessage("Give --plugin or --module, not both.");
        return false;
    }
    for (const CGivenOption& option : m_context.line().options()) {
        const bool bLoads = option.m_sName == "--plugin";
        if (bLoads && (!loadPlugIn(option.m_sValue) || (onLoaded && !runPlugIn(onLoaded))))
            return false;
        if (option.m_sName == "--module" && !selectModule(option.m_sValue))
            return false;
        if (option.m_sName == "--preset" && !runPlugIn([&] { return applyPreset(option.m_sValue); }))
            return false;
        if (option.m_sName.starts_with("--set") && !runPlugIn([&] { return applyControlOption(option); }))
            return false;
    }
    return true;
}

bool CHeadlessDocument::applyPreset(const std::filesystem::path& file)
{
    CDSPFilter* pFilter = m_document.currentFilter();
    if (auto* pModule = dynamic_cast<CModuleFilter*>(pFilter)) {
        const std::string sName = file.filename().string();
        const bool bLoaded = pModule->loadPreset(sName);
        if (!bLoaded)
            m_context.dialogs().showMessage(noSuchPreset(*pModule, sName));
        return bLoaded;
    }
    if (!pFilter || !pFilter->m_pPlugIn) {
        m_context.dialogs().showMessage(
            "The option --preset needs a filter: give --module or --plugin ahead of it.");
        return false;
    }
    if (!loadPreset(*pFilter->m_pPlugIn, file, m_context.dialogs()))
        return false;
    for (const auto& pControl : pFilter->m_ControlList)
        pControl->updateFromVariable();
    return true;
}

bool CHeadlessDocument::applyControlOption(const CGivenOption& option)
{
    const auto fail = [&](const std::string& sText) {
        m_context.dialogs().showMessage(sText);
        return false;
    };
    CDSPFilter* pFilter = m_document.currentFilter();
    if (!pFilter)
        return fail("The option " + option.m_sName +
                    " needs a filter: give --module or --plugin ahead of it.");
    const auto uEquals = option.m_sValue.find('=');
    const std::string sId = option.m_sValue.substr(0, uEquals);
    const std::string sValue = option.m_sValue.substr(uEquals + 1);
    const auto uControlId = static_cast<unsigned>(parseNumber(sId).value_or(0));
    if (!pFilter->getControlById(uControlId))
        return fail("There is no control " + sId + ". " + listOfControls(*pFilter));
    if (option.m_sName == "--set-position") {
        pFilter->setControlPosition(uControlId, static_cast<int>(parseNumber(sValue).value_or(0)));
        return true;
    }
    const CDSPFilterControl& control = *pFilter->getControlById(uControlId);
    if (control.uControlType == FILTER_CONTROL_LED_METER)
        return fail("The control " + sId + " (" + control.m_sName + ") is a meter; it cannot be set.");
    if (!isNumberWithUnits(sValue, control.m_sUnits))
        return fail("The control " + sId + " (" + control.m_sName + ") takes a number, which \"" + sValue +
                    "\" is not. Decimals stand behind a point.");
    return pFilter->setControlText(uControlId, sValue, false) ||
           fail("The control " + sId + " (" + pFilter->getControlById(uControlId)->m_sName +
                ") takes a number, which \"" + sValue + "\" is not.");
}

} // namespace velmora::cli
