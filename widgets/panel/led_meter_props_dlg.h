#pragma once

#include "widgets/panel/control_props_dialog.h"

namespace velmora {

// LED Meter Properties. [main]
class CLEDMeterPropsDlg : public CControlPropsDialog
{
    Q_OBJECT

  public:
    CLEDMeterPropsDlg(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                      QWidget* pParent = nullptr);

  protected:
    void showExtras(int nRow) override;
};

} // namespace velmora
