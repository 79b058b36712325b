#include "widgets/panel/led_meter_props_dlg.h"

#include "widgets/common/property_grid.h"

namespace velmora {

namespace {

using enum EControlField;

constexpr int ROOM_FOR_ERRORS = 48; // in logical pixels

CControlRow yesNoRow(const QString& sLabel, bool CUICtrl::*pFlag,
                     const QStringList& choices = {QStringLiteral("false"), QStringLiteral("true")})
{
    return choiceRow(
        sLabel, choices, [pFlag](const CControlEdit& edit) { return edit.m_record.*pFlag ? 1U : 0U; },
        [pFlag](CControlEdit& edit, UINT uChoice) { edit.m_record.*pFlag = uChoice == 1; });
}

CControlRow numberedRow(const QString& sLabel, const QStringList& choices, UINT CUICtrl::*pNumber)
{
    return choiceRow(
        sLabel, choices, [pNumber](const CControlEdit& edit) { return edit.m_record.*pNumber; },
        [pNumber](CControlEdit& edit, UINT uChoice) { edit.m_record.*pNumber = uChoice; });
}

// A time below zero is refused at its own row.
CControlRow timeRow(const QString& sLabel, float CUICtrl::*pTime_ms)
{
    CControlRow row = numberRow(sLabel, MeterTimes,
                                [pTime_ms](CControlEdit& edit) -> float& { return edit.m_record.*pTime_ms; });
    row.m_write = [pTime_ms, write = row.m_write](CControlEdit& edit, const QString& sText) {
        CControlEdit typed = edit;
        QString sReason = write(typed, sText);
        const float fTime_ms = typed.m_record.*pTime_ms;
        if (sReason.isEmpty() && fTime_ms < 0.0F)
            sReason = QStringLiteral("Please type 0 or more milliseconds.");
        if (sReason.isEmpty())
            edit.m_record.*pTime_ms = fTime_ms;
        return sReason;
    };
    return row;
}

std::vector<CControlRow> meterRows()
{
    return {
        controlTypeRow(),
        controlIdRow(),
        controlNameRow(QStringLiteral("Meter Blurb")),
        yesNoRow(QStringLiteral("Enable Meter"), &CUICtrl::bUseMeter),
        yesNoRow(QStringLiteral("Invert Meter"), &CUICtrl::bUpsideDownMeter),
        yesNoRow(QStringLiteral("Meter Cal"), &CUICtrl::bLogMeter,
                 {QStringLiteral("linear"), QStringLiteral("logarithmic")}),
        numberedRow(QStringLiteral("Detect Mode"),
                    {QStringLiteral("PEAK"), QStringLiteral("MS"), QStringLiteral("RMS"),
                     QStringLiteral("None (advanced)")},
                    &CUICtrl::uDetectorMode),
        numberedRow(QStringLiteral("Color Scheme"), {QStringLiteral("VU Meter")},
                    &CUICtrl::uMeterColorScheme),
        timeRow(QStringLiteral("Meter Attack Time (mSec)"), &CUICtrl::fMeterAttack_ms),
        timeRow(QStringLiteral("Meter Release Time (mSec)"), &CUICtrl::fMeterRelease_ms),
        textRow(QStringLiteral("Meter Variable"), VariableName, &CControlEdit::m_sMeterVariableName),
        controlMethodRow(),
    };
}

} // namespace

CLEDMeterPropsDlg::CLEDMeterPropsDlg(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                                     QWidget* pParent)
    : CControlPropsDialog(project, dialogs, uControlId, pParent)
{
    setWindowTitle(tr("LED Meter Properties"));
    setRows(meterRows());
    grid().setMinimumSize(fontMetrics().averageCharWidth() * 70,
                          grid().sizeHint().height() + ROOM_FOR_ERRORS);
    grid().select(3);
}

void CLEDMeterPropsDlg::showExtras(int /*nRow*/) {}

} // namespace velmora
