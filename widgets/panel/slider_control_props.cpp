#include "widgets/panel/slider_control_props.h"

#include "base/text.h"
#include "project/control_list.h"
#include "project/menu_groups.h"
#include "widgets/common/property_grid.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/panel/enumerated_list_editor.h"
#include "widgets/panel/slider_control_rows.h"
#include "widgets/panel/slider_preview.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

namespace velmora {

namespace {

constexpr int FIRST_LIMIT_ROW = 7;
constexpr int INITIAL_VALUE_ROW = 9;
constexpr int MIDI_CONTROLLERS = 128;
constexpr UINT PITCH_BEND = 0xE0;

enum ELaw
{
    LINEAR_LAW,
    LOG_LAW,
    VOLT_PER_OCTAVE_LAW
};

bool isEnumerated(const CControlEdit& edit)
{
    return edit.m_record.uUserDataType == UINTData;
}

} // namespace

CSliderControlProps::CSliderControlProps(IUserDialogs& dialogs, QWidget* pParent)
    : CControlPropsDialog(dialogs, pParent), m_pList(new CEnumeratedListEditor(dialogs)),
      m_pMenus(new CMenuGroupBox(dialogs))
{
    setWindowTitle(tr("Slider Properties"));
    extras().addLayout(buildCopy());
    extras().addWidget(buildLaw());
    extras().addWidget(buildMIDI());
    setListEditor(m_pList);
    extras().addWidget(m_pMenus, 1);
    extras().addStretch();
    setMIDIControllerNames({});

    m_pMenus->setChange(
        [this](const std::string& sFrom, const std::string& sTo) { return changeMenuGroup(sFrom, sTo); });
    connect(m_pMenus, &CMenuGroupBox::groupChanged, this, [this] {
        setMenuGroup(editable().m_record, m_pMenus->group());
        refresh();
    });
}

QLayout* CSliderControlProps::buildCopy()
{
    m_pCopy = new QComboBox;
    m_pCopy->setAccessibleName(tr("Copy Existing Sider Control"));
    m_pCopy->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto* pLabel = new QLabel(tr("Co&py Existing Sider Control"));
    pLabel->setBuddy(m_pCopy);
    connect(m_pCopy, &QComboBox::activated, this, &CSliderControlProps::copyFrom);
    auto* pColumn = new QVBoxLayout;
    pColumn->setSpacing(CTheme::SPACING / 2);
    pColumn->addWidget(pLabel);
    pColumn->addWidget(m_pCopy);
    return pColumn;
}

QWidget* CSliderControlProps::buildLaw()
{
    m_pLawBox = new QGroupBox;
    m_pLaws = new QButtonGroup(this);
    auto* pColumn = new QVBoxLayout;
    const std::array<QString, 3> texts = {tr("L&inear Slider"), tr("Lo&g Slider"), tr("1 &volt/oct Slider")};
    for (std::size_t uLaw = 0; uLaw < texts.size(); ++uLaw) {
        auto* pButton = new QRadioButton(texts.at(uLaw));
        m_pLaws->addButton(pButton, static_cast<int>(uLaw));
        pColumn->addWidget(pButton);
    }
    pColumn->addStretch();
    m_pPreview = new CSliderPreview;
    auto* pRow = new QHBoxLayout(m_pLawBox);
    pRow->addLayout(pColumn);
    pRow->addStretch();
    pRow->addWidget(m_pPreview);
    connect(m_pLaws, &QButtonGroup::idClicked, this, &CSliderControlProps::takeLaw);
    connect(m_pPreview, &CSliderPreview::moved, this, &CSliderControlProps::takePreview);
    return m_pLawBox;
}

QWidget* CSliderControlProps::buildMIDI()
{
    auto* pBox = new QGroupBox;
    auto* pRow = new QHBoxLayout(pBox);
    const std::array<QString, 3> texts = {tr("MIDI Channel:"), tr("Command:"), tr("Controller:")};
    for (std::size_t uCaption = 0; uCaption < texts.size(); ++uCaption) {
        m_captions.at(uCaption) = new QLabel;
        pRow->addWidget(new QLabel(texts.at(uCaption)));
        pRow->addWidget(m_captions.at(uCaption));
        if (uCaption + 1 < texts.size())
            pRow->addStretch();
    }
    return pBox;
}

void CSliderControlProps::setMIDIControllerNames(const QStringList& names)
{
    m_controllers.clear();
    for (int nNumber = 0; nNumber < MIDI_CONTROLLERS; ++nNumber) {
        const QString sNumber = QString::number(nNumber);
        const QString sName = names.value(nNumber, sNumber);
        m_controllers.append(m_controllers.contains(sName) ? sName + " (" + sNumber + ")" : sName);
    }
    setRows(sliderControlRows(m_controllers));
}

void CSliderControlProps::showControl(CDSPProject& project, UINT uControlId, std::optional<UINT> uIndex)
{
    std::vector<std::string> groups = menuGroups(project);
    if (this->project() == &project)
        for (const std::string& sGroup : m_pMenus->groups())
            if (std::ranges::find(groups, sGroup) == groups.end())
                groups.push_back(sGroup);
    begin(project, uControlId);
    if (isNew() && uIndex && isAlphaWheelItem())
        editable().m_record.uFluxCapControl[FLUX_SLOT_INDEX] = *uIndex;
    m_pMenus->setGroups(groups);
    fillCopyList();
    refresh();
    grid().select(3);
    show();
    raise();
    activateWindow();
}

void CSliderControlProps::closeProject()
{
    reject();
    end();
}

bool CSliderControlProps::isAlphaWheelItem() const
{
    const CControlSlots* pSlots = findControlSlots(edit().m_record.uControlId);
    return pSlots && pSlots->m_bAlphaWheel;
}

void CSliderControlProps::fillCopyList()
{
    m_pCopy->clear();
    m_pCopy->addItem(tr("none"));
    for (const CUICtrl* pControl : controlsOf(project()->m_UIControlList))
        if (pControl->uControlType == FILTER_CONTROL_CONTINUOUSLY_VARIABLE &&
            pControl->cControlName[0] != '\0' && pControl->cControlUnits[0] != '\0')
            m_pCopy->addItem(qs(pControl->cControlName), pControl->uControlId);
}

void CSliderControlProps::copyFrom(int nEntry)
{
    const QVariant id = m_pCopy->itemData(nEntry);
    const CUICtrl* pControl =
        project() && id.isValid() ? findControl(project()->m_UIControlList, id.toUInt()) : nullptr;
    if (!pControl)
        return;
    CControlEdit copied = controlEditOf(*pControl);
    copied.m_sMeterVariableName = edit().m_sMeterVariableName;
    CUICtrl& to = editable().m_record;
    const CUICtrl& from = copied.m_record;
    to.uUserDataType = from.uUserDataType;
    to.fUserDisplayDataLoLimit = from.fUserDisplayDataLoLimit;
    to.fUserDisplayDataHiLimit = from.fUserDisplayDataHiLimit;
    to.fInitUserIntValue = from.fInitUserIntValue;
    to.fInitUserFloatValue = from.fInitUserFloatValue;
    to.fInitUserDoubleValue = from.fInitUserDoubleValue;
    to.fInitUserUINTValue = from.fInitUserUINTValue;
    to.bOwnerControl = from.bOwnerControl;
    to.bMIDIControl = from.bMIDIControl;
    to.uMIDIControlCommand = from.uMIDIControlCommand;
    to.uMIDIControlName = from.uMIDIControlName;
    to.uMIDIControlChannel = from.uMIDIControlChannel;
    to.bLogSlider = from.bLogSlider;
    to.bExpSlider = from.bExpSlider;
    setMenuGroup(to, menuGroupOf(from));
    copied.m_record = to;
    editable() = copied;
    refresh();
}

void CSliderControlProps::takeLaw(int nLaw)
{
    editable().m_record.bLogSlider = nLaw == LOG_LAW;
    editable().m_record.bExpSlider = nLaw == VOLT_PER_OCTAVE_LAW;
    refresh();
}

void CSliderControlProps::takePreview(int nThumb)
{
    CUICtrl& record = editable().m_record;
    const double dValue = static_cast<double>(CSliderPreview::valueAt(record, nThumb));
    const std::string sText = fixedDecimals(dValue, record.uUserDataType == intData ? 0 : 2);
    initialValueOf(record) = static_cast<float>(parseNumber(sText).value_or(0.0));
    refresh();
    grid().setText(INITIAL_VALUE_ROW, qs(sText));
}

bool CSliderControlProps::changeMenuGroup(const std::string& sFrom, const std::string& sTo)
{
    if (!m_changeMenuGroup || !project())
        return true;
    const auto used = menuGroups(*project());
    return std::ranges::find(used, sFrom) == used.end() || m_changeMenuGroup(sFrom, sTo);
}

void CSliderControlProps::showExtras(int /*nRow*/)
{
    const CUICtrl& record = edit().m_record;
    const bool bEnumerated = isEnumerated(edit());
    for (int nRow = FIRST_LIMIT_ROW; nRow <= INITIAL_VALUE_ROW; ++nRow)
        grid().setEnabled(nRow, !bEnumerated);
    m_pLawBox->setEnabled(!bEnumerated);
    m_pPreview->setVisible(!bEnumerated);
    if (!bEnumerated)
        m_pPreview->setRecord(record);
    int nLaw = record.bExpSlider ? VOLT_PER_OCTAVE_LAW : LINEAR_LAW;
    if (record.bLogSlider)
        nLaw = LOG_LAW;
    m_pLaws->button(nLaw)->setChecked(true);
    m_pList->setVisible(bEnumerated);
    m_pMenus->setVisible(isAlphaWheelItem());
    m_pMenus->setGroup(menuGroupOf(record));
    showMIDI();
}

void CSliderControlProps::showMIDI()
{
    const CUICtrl& record = edit().m_record;
    const QString sNone = QStringLiteral("--n/a--");
    const bool bController = record.uMIDIControlCommand != PITCH_BEND;
    const std::array<QString, 3> texts = {QString::number(record.uMIDIControlChannel + 1),
                                          QString::number(record.uMIDIControlCommand),
                                          bController ? QString::number(record.uMIDIControlName) : sNone};
    for (std::size_t uCaption = 0; uCaption < texts.size(); ++uCaption)
        m_captions.at(uCaption)->setText(record.bMIDIControl ? texts.at(uCaption) : sNone);
}

} // namespace velmora
