#include "widgets/panel/combo_props_dialog.h"

#include "project/control_slots.h"
#include "widgets/common/property_grid.h"
#include "widgets/panel/enumerated_list_editor.h"
#include "widgets/panel/list_control_rows.h"

namespace velmora {

CComboPropsDialog::CComboPropsDialog(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                                     QWidget* pParent)
    : CControlPropsDialog(project, dialogs, uControlId, pParent)
{
    setWindowTitle(tr("Combo Properties"));
    auto* pList = new CEnumeratedListEditor(dialogs);
    pList->setNote(tr("All underscores (_) will become SPACES in the combobox, so Grand_Piano will appear "
                      "\"Grand Piano\""));
    pList->setImportOffered(true);
    setListEditor(pList);
    const CControlSlots* pSlots = findControlSlots(uControlId);
    const bool bFixedName = pSlots && pSlots->m_bFixedName;
    setRows(listControlRows(bFixedName));
    grid().select(bFixedName ? 5 : 3);
}

void CComboPropsDialog::showExtras(int /*nRow*/) {}

} // namespace velmora
