#pragma once

#include "widgets/panel/control_props_dialog.h"

namespace velmora {

// Combo Properties: the list of a combo box, which can be imported from a text file. [main]
class CComboPropsDialog : public CControlPropsDialog
{
    Q_OBJECT

  public:
    CComboPropsDialog(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                      QWidget* pParent = nullptr);

  protected:
    void showExtras(int nRow) override;
};

} // namespace velmora
