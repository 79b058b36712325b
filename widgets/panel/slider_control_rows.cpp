#include "widgets/panel/slider_control_rows.h"

#include "base/text.h"
#include "widgets/common/qt_text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

using enum EControlField;

constexpr UINT CONTROL_CHANGE = 0xB0;
constexpr UINT PITCH_BEND = 0xE0;

// The data types in the order of the row's list.
constexpr std::array<UINT, 4> DATA_TYPES = {floatData, doubleData, intData, UINTData};

bool isEnumerated(const CControlEdit& edit)
{
    return edit.m_record.uUserDataType == UINTData;
}

CControlRow dataTypeRow()
{
    CControlRow row = choiceRow(
        QStringLiteral("DataType"),
        {QStringLiteral("float"), QStringLiteral("double"), QStringLiteral("integer"),
         QStringLiteral("enum")},
        [](const CControlEdit& edit) {
            const auto found = std::ranges::find(DATA_TYPES, edit.m_record.uUserDataType);
            return found == DATA_TYPES.end() ? 0U : static_cast<UINT>(found - DATA_TYPES.begin());
        },
        [](CControlEdit& edit, UINT uChoice) { edit.m_record.uUserDataType = DATA_TYPES.at(uChoice); });
    row.m_bAccent = true;
    return row;
}

CControlRow initialValueRow()
{
    CControlRow row = numberRow(QStringLiteral("Initial Value"), InitialValue,
                                [](CControlEdit& edit) -> float& { return initialValueOf(edit.m_record); });
    const auto isWhole = [](const CControlEdit& edit) {
        return edit.m_record.uUserDataType == intData || isEnumerated(edit);
    };
    row.m_read = [isWhole, read = row.m_read](const CControlEdit& edit) {
        CControlEdit copy = edit;
        const float fValue = initialValueOf(copy.m_record);
        return isWhole(edit) ? qs(fixedDecimals(std::trunc(static_cast<double>(fValue)), 0)) : read(edit);
    };
    row.m_write = [isWhole, write = row.m_write](CControlEdit& edit, const QString& sText) {
        const QString sReason = write(edit, sText);
        const float fValue = initialValueOf(edit.m_record);
        if (sReason.isEmpty() && isWhole(edit) && fValue != std::trunc(fValue))
            return QStringLiteral("\"%1\" is not a whole number. Please type one, such as 5.").arg(sText);
        return sReason;
    };
    return row;
}

QStringList numbersFrom1(int nLast)
{
    QStringList numbers;
    for (int nNumber = 1; nNumber <= nLast; ++nNumber)
        numbers.append(QString::number(nNumber));
    return numbers;
}

} // namespace

std::vector<CControlRow> sliderControlRows(const QStringList& controllers)
{
    const auto command = [](const CControlEdit& edit) {
        return edit.m_record.uMIDIControlCommand == PITCH_BEND ? 1U : 0U;
    };
    return {
        controlTypeRow(),
        controlIdRow(),
        controlNameRow(QStringLiteral("Control Name")),
        textRow(QStringLiteral("Units"), Units, &CControlEdit::m_sUnits),
        dataTypeRow(),
        textRow(QStringLiteral("Variable Name"), VariableName, &CControlEdit::m_sVariableName),
        numberRow(QStringLiteral("Control Low Limit"), LowLimit,
                  [](CControlEdit& edit) -> float& { return edit.m_record.fUserDisplayDataLoLimit; }),
        numberRow(QStringLiteral("Control High Limit"), None,
                  [](CControlEdit& edit) -> float& { return edit.m_record.fUserDisplayDataHiLimit; }),
        initialValueRow(),
        choiceRow(
            QStringLiteral("MIDI Control"), {QStringLiteral("false"), QStringLiteral("true")},
            [](const CControlEdit& edit) { return edit.m_record.bMIDIControl ? 1U : 0U; },
            [](CControlEdit& edit, UINT uChoice) { edit.m_record.bMIDIControl = uChoice == 1; }, MIDIControl),
        choiceRow(
            QStringLiteral("MIDI Control Channel"), numbersFrom1(16),
            [](const CControlEdit& edit) { return edit.m_record.uMIDIControlChannel; },
            [](CControlEdit& edit, UINT uChoice) { edit.m_record.uMIDIControlChannel = uChoice; }),
        choiceRow(QStringLiteral("MIDI Control Type"),
                  {QStringLiteral("Continous Controller"), QStringLiteral("Pitch Bend")}, command,
                  [](CControlEdit& edit, UINT uChoice) {
                      edit.m_record.uMIDIControlCommand = uChoice == 1 ? PITCH_BEND : CONTROL_CHANGE;
                  }),
        choiceRow(
            QStringLiteral("MIDI Controller"), controllers,
            [](const CControlEdit& edit) { return edit.m_record.uMIDIControlName; },
            [](CControlEdit& edit, UINT uChoice) { edit.m_record.uMIDIControlName = uChoice; }),
        controlMethodRow(),
    };
}

} // namespace velmora
