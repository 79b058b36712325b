#include "widgets/panel/list_control_rows.h"

namespace velmora {

std::vector<CControlRow> listControlRows(bool bFixedName)
{
    return {
        controlTypeRow(),
        controlIdRow(),
        controlNameRow(QStringLiteral("Control Name"), bFixedName),
        {.m_sLabel = QStringLiteral("DataType"),
         .m_read = [](const CControlEdit&) { return QStringLiteral("enum"); }},
        textRow(QStringLiteral("Variable Name"), EControlField::VariableName, &CControlEdit::m_sVariableName),
        controlMethodRow(),
    };
}

} // namespace velmora
