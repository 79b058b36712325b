#include "project/dsp_project.h"

#include "base/archive.h"
#include "project/control_list.h"
#include "project/project_schema.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

namespace velmora {

namespace {

constexpr int NO_CLASSIC_GUI = -1;
constexpr int LEGACY_GUI = 68; // a type of the classic GUI that brought menus of its own
constexpr std::string_view LEGACY_MENUS[] = {"~Menu~", "-- Menu --"};
constexpr std::size_t CONTROL_THEME_WORDS = std::extent_v<decltype(CUICtrl::uControlTheme)>;

// The newest stream of a project that nothing was done to: the start value of every field.
std::span<const std::byte> freshStream()
{
    static const std::string s_sStream = [] {
        std::string sStream;
        CArchive archive(sStream);
        CDSPProject fresh;
        CProjectSchema::of(NEWEST_SCHEMA).transfer(archive, fresh);
        return sStream;
    }();
    return std::as_bytes(std::span(s_sStream));
}

} // namespace

CDSPProject::CDSPProject() : m_nLoadedSchema(NEWEST_SCHEMA) {}

CDSPProject::~CDSPProject()
{
    freeLabels();
}

void CDSPProject::Serialize(CArchive& archive)
{
    m_TextLabelStrings.clear();
    if (archive.isStoring()) {
        storeProject(archive, *this);
        return;
    }
    clear();
    try {
        load(archive);
    } catch (...) {
        clear();
        throw;
    }
}

void CDSPProject::clear()
{
    m_UIControlList.clear();
    CArchive archive(freshStream());
    CProjectSchema::of(NEWEST_SCHEMA).transfer(archive, *this);
    m_TextLabelStrings.clear();
    freeLabels();
    m_UserVariables.clear();
    m_nLoadedSchema = NEWEST_SCHEMA;
}

void CDSPProject::load(CArchive& archive)
{
    const int nVersion = archive.readInt32();
    CProjectSchema::of(nVersion).transfer(archive, *this);
    if (m_sCompanyName.empty())
        m_sCompanyName = "Velmora User";
    dropClassicGUI();
    for (CUICtrl* pControl : controlsOf(m_UIControlList))
        if (pControl->uControlType != FILTER_CONTROL_LED_METER) {
            pControl->bUseMeter = false;
            pControl->bUpsideDownMeter = false;
            pControl->bLogMeter = false;
        }
    takeLabels();
    m_nLoadedSchema = nVersion;
}

// No choice of a classic GUI survives a load. The legacy one goes with all that it left in the controls.
void CDSPProject::dropClassicGUI()
{
    const bool bLegacy = m_nGUIType == LEGACY_GUI;
    m_nGUIType = NO_CLASSIC_GUI;
    m_nGUIThemeID = NO_CLASSIC_GUI;
    if (!bLegacy)
        return;
    std::ranges::fill(std::span(m_uControlTheme).first<CONTROL_THEME_WORDS>(), 0);
    std::vector<CUICtrl*> kept;
    for (CUICtrl* pControl : controlsOf(m_UIControlList)) {
        pControl->nGUIRow = -1;
        pControl->nGUIColumn = -1;
        if (std::ranges::find(LEGACY_MENUS, pControl->cControlName) != std::end(LEGACY_MENUS))
            continue;
        std::ranges::fill(pControl->uControlTheme, 0);
        kept.push_back(pControl);
    }
    arrangeControls(m_UIControlList, kept);
}

void CDSPProject::takeLabels()
{
    if (m_TextLabelStrings.empty())
        return; // an old file
    if (m_TextLabelStrings.size() < std::size(m_TextLabels))
        throw CArchiveError(std::to_string(m_TextLabelStrings.size()) + " labels were found in place of " +
                            std::to_string(std::size(m_TextLabels)) + ". The file is damaged.");
    for (std::size_t i = 0; i < std::size(m_TextLabels); ++i)
        setTextLabel(i, m_TextLabelStrings[i]);
}

void CDSPProject::freeLabels()
{
    for (const char*& pLabel : m_TextLabels) {
        delete[] pLabel;
        pLabel = nullptr;
    }
}

void CDSPProject::setTextLabel(std::size_t uIndex, const std::string& sText)
{
    char* pLabel = nullptr;
    if (const std::size_t uLength = std::strlen(sText.c_str())) {
        pLabel = new char[uLength + 1];
        std::memcpy(pLabel, sText.c_str(), uLength + 1);
    }
    delete[] m_TextLabels[uIndex];
    m_TextLabels[uIndex] = pLabel;
}

void CDSPProject::GetUserVariableNames(std::vector<std::string>& names) const
{
    for (const CUICtrl* pControl : controlsOf(m_UIControlList))
        if (pControl->uControlId >= FIRST_USER_VARIABLE_ID)
            names.emplace_back(pControl->cVariableName);
}

void CDSPProject::GetControlVariableNames(std::vector<std::string>& names) const
{
    for (const CUICtrl* pControl : controlsOf(m_UIControlList))
        if (pControl->uControlId < FIRST_USER_VARIABLE_ID)
            names.emplace_back(pControl->cVariableName);
}

} // namespace velmora
