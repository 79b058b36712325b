#include "project/project_schema.h"

#include "base/text.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace velmora {

namespace {

// One field of the stream, or a run of fields that came together: how it is stored and loaded, the first
// version that has it, and a later one that lacks it again.
template <typename Record>
struct CField
{
    void (*m_transfer)(CArchive& archive, Record& record);
    int m_nSince;
    int m_nLackedBy = 0;

    [[nodiscard]] bool isIn(int nVersion) const { return nVersion >= m_nSince && nVersion != m_nLackedBy; }
};

// Many words or floats. They lie in the file as a little-endian machine has them in memory.
template <typename Value, std::size_t uCount>
void transferWords(CArchive& archive, std::span<Value, uCount> values)
{
    static_assert(sizeof(Value) == 4);
    if constexpr (std::endian::native != std::endian::little) {
        for (Value& value : values)
            archive.transfer(value);
    } else if (archive.isStoring()) {
        archive.writeBytes(std::as_bytes(values));
    } else {
        archive.readBytes(std::as_writable_bytes(values));
    }
}

template <typename Value>
void transferValue(CArchive& archive, Value& value)
{
    if constexpr (requires { std::span(value); } && !std::is_same_v<Value, std::string>)
        transferWords(archive, std::span(value));
    else
        archive.transfer(value);
}

// A member of the record, or a member of that member, stored as its type says.
template <typename Record, auto... pPath>
void transferMember(CArchive& archive, Record& record)
{
    transferValue(archive, (record.*....*pPath));
}

// ------------------------------------------------------------------------------------------------
// Controls
// ------------------------------------------------------------------------------------------------

bool isContinuationByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// What a control can keep of a text: all up to its first zero character, at most 1023 bytes, and of UTF-8 no
// part of a character.
std::string_view keptText(std::string_view sText)
{
    constexpr std::size_t MOST = CONTROL_TEXT_SIZE - 1;
    constexpr std::size_t LONGEST_CHARACTER = 4;
    sText = sText.substr(0, sText.find('\0'));
    if (sText.size() <= MOST)
        return sText;
    std::size_t uCut = MOST;
    while (isContinuationByte(sText[uCut]) && MOST - uCut < LONGEST_CHARACTER)
        --uCut;
    const bool bInsideCharacter = uCut < MOST && static_cast<unsigned char>(sText[uCut]) >= 0xC0;
    return sText.substr(0, bInsideCharacter ? uCut : MOST);
}

template <const char* CUICtrl::*pText, char (CUICtrl::*pBuffer)[CONTROL_TEXT_SIZE]>
void transferText(CArchive& archive, CUICtrl& control)
{
    if (archive.isStoring()) {
        archive.writeString(control.*pText ? control.*pText : "");
        return;
    }
    const std::string sText = archive.readString();
    const std::string_view sKept = keptText(sText);
    std::memcpy(control.*pBuffer, sKept.data(), sKept.size());
    (control.*pBuffer)[sKept.size()] = 0;
    control.*pText = control.*pBuffer;
}

template <auto pText, auto pBuffer>
constexpr CField<CUICtrl> text(int nSince)
{
    return {transferText<pText, pBuffer>, nSince};
}

template <auto... pPath>
constexpr CField<CUICtrl> control(int nSince)
{
    return {transferMember<CUICtrl, pPath...>, nSince};
}

// The order is that of the file, not that of the class.
constexpr CField<CUICtrl> CONTROL_FIELDS[] = {
    text<&CUICtrl::cControlName, &CUICtrl::m_cControlNameText>(1),
    text<&CUICtrl::cControlUnits, &CUICtrl::m_cControlUnitsText>(1),
    text<&CUICtrl::cVariableName, &CUICtrl::m_cVariableNameText>(1),
    control<&CUICtrl::fInitUserDoubleValue>(1),
    control<&CUICtrl::fInitUserFloatValue>(1),
    control<&CUICtrl::fInitUserIntValue>(1),
    control<&CUICtrl::fUserDisplayDataHiLimit>(1),
    control<&CUICtrl::fUserDisplayDataLoLimit>(1),
    control<&CUICtrl::uControlId>(1),
    control<&CUICtrl::uControlType>(1),
    control<&CUICtrl::uUserDataType>(1),
    control<&CUICtrl::fInitUserUINTValue>(4),
    text<&CUICtrl::cEnumeratedList, &CUICtrl::m_cEnumeratedListText>(4),
    text<&CUICtrl::cMeterVariableName, &CUICtrl::m_cMeterVariableNameText>(6),
    control<&CUICtrl::bUseMeter>(6),
    control<&CUICtrl::bUpsideDownMeter>(6),
    control<&CUICtrl::bOwnerControl>(6),
    control<&CUICtrl::uDetectorMode>(7),
    control<&CUICtrl::bLogMeter>(8),
    control<&CUICtrl::uMeterColorScheme>(11),
    control<&CUICtrl::fMeterAttack_ms>(11),
    control<&CUICtrl::fMeterRelease_ms>(11),
    control<&CUICtrl::uControlTheme>(15),
    control<&CUICtrl::nGUIRow>(16),
    control<&CUICtrl::nGUIColumn>(16),
    control<&CUICtrl::bMIDIControl>(17),
    control<&CUICtrl::uMIDIControlCommand>(17),
    control<&CUICtrl::uMIDIControlName>(17),
    control<&CUICtrl::uMIDIControlChannel>(17),
    control<&CUICtrl::bLogSlider>(23),
    control<&CUICtrl::bExpSlider>(24),
    control<&CUICtrl::uFluxCapControl>(24),
    control<&CUICtrl::fFluxCapData>(24),
};

// ------------------------------------------------------------------------------------------------
// Project
// ------------------------------------------------------------------------------------------------

template <std::size_t uFirst, std::size_t uCount>
void transferThemeWords(CArchive& archive, CDSPProject& project)
{
    transferWords(archive, std::span(project.m_uControlTheme).subspan(uFirst, uCount));
}

// The values nFirst to nLast of each step, one step after the other.
template <int nFirst, int nLast>
void transferJoystickProgram(CArchive& archive, CDSPProject& project)
{
    float inFileOrder[MAX_JS_PROGRAM_STEPS * (nLast - nFirst + 1)];
    const float* pProgram = project.m_pVectorJSProgram;
    float* pNext = inFileOrder;
    for (int nStep = 0; nStep < MAX_JS_PROGRAM_STEPS; ++nStep)
        for (int nValue = nFirst; nValue <= nLast; ++nValue)
            *pNext++ = pProgram[JS_PROG_INDEX(nStep, nValue)];
    transferWords(archive, std::span(inFileOrder));
    pNext = inFileOrder;
    for (int nStep = 0; nStep < MAX_JS_PROGRAM_STEPS; ++nStep)
        for (int nValue = nFirst; nValue <= nLast; ++nValue)
            project.m_pVectorJSProgram[JS_PROG_INDEX(nStep, nValue)] = *pNext++;
}

// Storing, the list has an entry for each label, an empty one for a null label. Loading, entries behind the
// last label are passed over, so that a long list of empty texts takes no memory.
void transferLabels(CArchive& archive, CDSPProject& project)
{
    constexpr std::size_t LABELS = std::extent_v<decltype(CPlugIn::m_TextLabels)>;
    constexpr UINT LONG_LIST = 0xFFFF;
    std::vector<std::string>& labels = project.m_TextLabelStrings;
    labels.clear();
    if (archive.isStoring()) {
        for (const char* pLabel : project.m_TextLabels)
            labels.emplace_back(pLabel ? pLabel : "");
        archive.writeStringArray(labels);
        return;
    }
    UINT uCount = archive.readUInt16();
    if (uCount == LONG_LIST)
        uCount = archive.readUInt32();
    archive.checkCount(uCount, 1, "labels");
    labels.reserve(std::min<std::size_t>(uCount, LABELS));
    for (UINT i = 0; i < uCount; ++i) {
        std::string sLabel = archive.readString();
        if (i < LABELS)
            labels.push_back(std::move(sLabel));
    }
}

template <auto... pPath>
constexpr CField<CDSPProject> project(int nSince, int nLackedBy = 0)
{
    return {transferMember<CDSPProject, pPath...>, nSince, nLackedBy};
}

// What stands behind the controls. Version 28 came out of version 26: it lacks what version 27 had added.
constexpr CField<CDSPProject> PROJECT_FIELDS[] = {
    project<&CDSPProject::m_sProjectFolder>(1),
    project<&CDSPProject::m_sProjectFile>(1),
    project<&CDSPProject::m_sProjectName>(1),
    project<&CDSPProject::m_sHeaderFile>(1),
    project<&CDSPProject::m_sSourceFile>(1),
    project<&CDSPProject::m_sSolutionFile>(2),
    project<&CDSPProject::m_bProjectFlagV3>(3),
    project<&CDSPProject::m_uX_TrackPadIndex>(5),
    project<&CDSPProject::m_uY_TrackPadIndex>(5),
    project<&CDSPProject::m_AssignButton1Name>(9),
    project<&CDSPProject::m_AssignButton2Name>(9),
    project<&CDSPProject::m_AssignButton3Name>(9),
    project<&CDSPProject::m_bVSTCompatible>(10),
    project<&CDSPProject::m_bLatchingAssignButton1>(12),
    project<&CDSPProject::m_bLatchingAssignButton2>(12),
    project<&CDSPProject::m_bLatchingAssignButton3>(12),
    project<&CDSPProject::m_bUseCustomVSTGUI>(13),
    project<&CDSPProject::m_nGUIThemeID>(14),
    project<&CDSPProject::m_nGUIType>(14),
    {transferThemeWords<0, 32>, 15},
    {transferThemeWords<32, 32>, 21},
    {transferJoystickProgram<0, 4>, 18},
    project<&CDSPProject::m_bOutputOnlyPlugIn>(19),
    project<&CDSPProject::m_JS_XCtrl, &CUICtrl::uControlId>(20),
    project<&CDSPProject::m_JS_XCtrl, &CUICtrl::bMIDIControl>(20),
    project<&CDSPProject::m_JS_XCtrl, &CUICtrl::uMIDIControlCommand>(20),
    project<&CDSPProject::m_JS_XCtrl, &CUICtrl::uMIDIControlName>(20),
    project<&CDSPProject::m_JS_XCtrl, &CUICtrl::uMIDIControlChannel>(20),
    project<&CDSPProject::m_JS_YCtrl, &CUICtrl::uControlId>(20),
    project<&CDSPProject::m_JS_YCtrl, &CUICtrl::bMIDIControl>(20),
    project<&CDSPProject::m_JS_YCtrl, &CUICtrl::uMIDIControlCommand>(20),
    project<&CDSPProject::m_JS_YCtrl, &CUICtrl::uMIDIControlName>(20),
    project<&CDSPProject::m_JS_YCtrl, &CUICtrl::uMIDIControlChannel>(20),
    {transferJoystickProgram<5, 6>, 22},
    project<&CDSPProject::m_uPlugInEx>(24),
    project<&CDSPProject::m_fPlugInEx>(24),
    {transferLabels, 25},
    project<&CDSPProject::m_uLabelCX>(25),
    project<&CDSPProject::m_uLabelCY>(25),
    project<&CDSPProject::m_bUserCustomGUI>(26),
    project<&CDSPProject::m_sCompanyName>(27, 28),
    project<&CDSPProject::m_sCompanyCode>(27, 28),
    project<&CDSPProject::m_sPlugInCode>(27, 28),
    project<&CDSPProject::m_bWriteAUWrapper>(27, 28),
    project<&CDSPProject::m_bCarbonGUI>(27, 28),
    project<&CDSPProject::m_bCocoaGUI>(27, 28),
    project<&CDSPProject::m_bWriteVSTWrapper>(28),
    project<&CDSPProject::m_sVSTPlugInCode>(28),
    project<&CDSPProject::m_uGUIDWords>(29),
    project<&CDSPProject::m_sSidechainFile>(30),
    project<&CDSPProject::m_bSidechainEnabled>(31),
};

template <typename Transfer, typename Record>
void select(std::vector<Transfer>& transfers, std::span<const CField<Record>> fields, int nVersion)
{
    for (const CField<Record>& field : fields)
        if (field.isIn(nVersion))
            transfers.push_back(field.m_transfer);
}

// How many controls are taken from a file. In memory a control is the contract's record of about 6 KB; in the
// file it takes at least 724 bytes since version 24, but as few as 35 in version 1. So a project of usual
// size is always taken, and a longer one as long as it grows to no more than ten times its file. That refuses
// no file since version 24.
std::size_t mostControls(std::size_t uFileSize)
{
    constexpr std::size_t ALWAYS_TAKEN = 4096;
    constexpr std::size_t GROWTH = 10;
    return std::max(ALWAYS_TAKEN, GROWTH * uFileSize / sizeof(CUICtrl));
}

} // namespace

const CProjectSchema& CProjectSchema::of(int nVersion)
{
    static const std::vector<CProjectSchema> s_schemas = [] {
        std::vector<CProjectSchema> schemas;
        for (int n = FIRST_SCHEMA; n <= NEWEST_SCHEMA; ++n)
            schemas.push_back(CProjectSchema(n));
        return schemas;
    }();
    const bool bKnown = nVersion >= FIRST_SCHEMA && nVersion <= NEWEST_SCHEMA;
    return bKnown ? s_schemas[static_cast<std::size_t>(nVersion - FIRST_SCHEMA)] : s_schemas.back();
}

CProjectSchema::CProjectSchema(int nVersion)
{
    select(m_controlFields, std::span<const CField<CUICtrl>>(CONTROL_FIELDS), nVersion);
    select(m_projectFields, std::span<const CField<CDSPProject>>(PROJECT_FIELDS), nVersion);

    std::string sEmptyControl;
    CArchive archive(sEmptyControl);
    CUICtrl control;
    for (const auto transferField : m_controlFields)
        transferField(archive, control);
    m_uSmallestControl = sEmptyControl.size();
}

void CProjectSchema::transfer(CArchive& archive, CDSPProject& project) const
{
    if (archive.isStoring())
        storeControls(archive, project);
    else
        loadControls(archive, project);
    for (const auto transferField : m_projectFields)
        transferField(archive, project);
}

void CProjectSchema::storeControls(CArchive& archive, CDSPProject& project) const
{
    CUIControlList& list = project.m_UIControlList;
    archive.writeUInt32(list.count());
    for (CUICtrl* pControl = list.next(nullptr); pControl; pControl = list.next(pControl))
        for (const auto transferField : m_controlFields)
            transferField(archive, *pControl);
}

void CProjectSchema::loadControls(CArchive& archive, CDSPProject& project) const
{
    const UINT uCount = archive.readUInt32();
    archive.checkCount(uCount, m_uSmallestControl, "controls");
    const std::size_t uMost = mostControls(archive.remaining());
    if (uCount > uMost)
        throw CArchiveError(formatted("%u controls were announced, but a file of this size and age is taken "
                                      "with at most %zu. The file is damaged.",
                                      uCount, uMost));
    const CUICtrl fresh;
    CUICtrl* pLast = nullptr;
    for (UINT i = 0; i < uCount; ++i) {
        pLast = project.m_UIControlList.insertBehind(pLast, fresh);
        for (const auto transferField : m_controlFields)
            transferField(archive, *pLast);
    }
}

void storeProject(CArchive& archive, CDSPProject& project, int nVersion)
{
    archive.writeInt32(nVersion);
    CProjectSchema::of(nVersion).transfer(archive, project);
}

} // namespace velmora
