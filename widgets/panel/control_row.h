#pragma once

#include "project/control_properties.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace velmora {

// One row of a property dialog's table: what it shows of the edited control, and what typing into it changes.
// Rows are numbered from 1 in the order of the table.
struct CControlRow
{
    QString m_sLabel;
    EControlField m_eField = EControlField::None; // refusals that point here
    std::function<QString(const CControlEdit&)> m_read;

    // Null: read-only. Answers why the text can not be taken, and is empty if it was.
    std::function<QString(CControlEdit&, const QString&)> m_write = nullptr;

    QStringList m_choices = {}; // none: typed text
    bool m_bAccent = false;     // the label stands out
};

// Rows that several dialogs have.
[[nodiscard]] CControlRow controlTypeRow(); // "uControlType", read-only
[[nodiscard]] CControlRow controlIdRow();   // "uControlID", read-only
[[nodiscard]] CControlRow controlNameRow(QString sLabel, bool bFixed = false);
[[nodiscard]] CControlRow controlMethodRow(); // "Control Method"

// Texts, by a member of CControlEdit.
[[nodiscard]] CControlRow textRow(QString sLabel, EControlField eField, std::string CControlEdit::*pText);

// A choice whose number is that of the entry; read gives the number, write takes it.
[[nodiscard]] CControlRow choiceRow(QString sLabel, QStringList choices,
                                    std::function<UINT(const CControlEdit&)> read,
                                    std::function<void(CControlEdit&, UINT)> write,
                                    EControlField eField = EControlField::None);

// A number with six decimals. An unreadable text is refused with a message.
[[nodiscard]] CControlRow numberRow(QString sLabel, EControlField eField,
                                    std::function<float&(CControlEdit&)> value);

} // namespace velmora
