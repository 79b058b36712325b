#include "widgets/panel/control_row.h"

#include "base/text.h"
#include "project/control_slots.h"
#include "widgets/common/qt_text.h"

#include <cmath>

namespace velmora {

namespace {

QString typeText(const CControlEdit& edit)
{
    switch (edit.m_record.uControlType) {
    case FILTER_CONTROL_CONTINUOUSLY_VARIABLE:
        return QStringLiteral("Slider");
    case FILTER_CONTROL_LED_METER:
        return QStringLiteral("LED Meter");
    case FILTER_CONTROL_COMBO_VARIABLE:
        return QStringLiteral("Combo Box");
    default:
        return QStringLiteral("Radio Buttons");
    }
}

} // namespace

CControlRow controlTypeRow()
{
    return {.m_sLabel = QStringLiteral("uControlType"), .m_read = typeText};
}

CControlRow controlIdRow()
{
    return {.m_sLabel = QStringLiteral("uControlID"),
            .m_read = [](const CControlEdit& edit) { return QString::number(edit.m_record.uControlId); }};
}

CControlRow controlNameRow(QString sLabel, bool bFixed)
{
    CControlRow row = textRow(std::move(sLabel), EControlField::ControlName, &CControlEdit::m_sName);
    if (bFixed)
        row.m_write = nullptr;
    return row;
}

CControlRow controlMethodRow()
{
    return choiceRow(
        QStringLiteral("Control Method"),
        {QStringLiteral("automatic (recommended)"), QStringLiteral("owner control (advanced)")},
        [](const CControlEdit& edit) { return edit.m_record.bOwnerControl ? 1U : 0U; },
        [](CControlEdit& edit, UINT uChoice) { edit.m_record.bOwnerControl = uChoice == 1; });
}

CControlRow textRow(QString sLabel, EControlField eField, std::string CControlEdit::*pText)
{
    return {.m_sLabel = std::move(sLabel),
            .m_eField = eField,
            .m_read = [pText](const CControlEdit& edit) { return qs(edit.*pText); },
            .m_write =
                [pText](CControlEdit& edit, const QString& sText) {
                    edit.*pText = utf8(sText);
                    return QString();
                }};
}

CControlRow choiceRow(QString sLabel, QStringList choices, std::function<UINT(const CControlEdit&)> read,
                      std::function<void(CControlEdit&, UINT)> write, EControlField eField)
{
    return {.m_sLabel = std::move(sLabel),
            .m_eField = eField,
            .m_read = [choices, read](
                          const CControlEdit& edit) { return choices.value(static_cast<int>(read(edit))); },
            .m_write =
                [choices, write](CControlEdit& edit, const QString& sText) {
                    const auto nChoice = choices.indexOf(sText);
                    if (nChoice >= 0)
                        write(edit, static_cast<UINT>(nChoice));
                    return QString();
                },
            .m_choices = choices};
}

CControlRow numberRow(QString sLabel, EControlField eField, std::function<float&(CControlEdit&)> value)
{
    return {
        .m_sLabel = std::move(sLabel),
        .m_eField = eField,
        .m_read =
            [value](const CControlEdit& edit) {
                CControlEdit copy = edit;
                return qs(fixedDecimals(static_cast<double>(value(copy)), 6));
            },
        .m_write =
            [value](CControlEdit& edit, const QString& sText) {
                const auto number = parseNumber(utf8(sText));
                const auto fNumber = static_cast<float>(number.value_or(0.0));
                if (!number || !std::isfinite(fNumber))
                    return QStringLiteral("\"%1\" is not a number. Please type one, such as 0.5.").arg(sText);
                value(edit) = fNumber;
                return QString();
            }};
}

} // namespace velmora
