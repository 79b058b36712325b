#pragma once

#include "widgets/panel/control_props_dialog.h"

class QButtonGroup;

namespace velmora {

class CRadioBank;

// Button Properties: a radio bank with its list of up to eight strings and a preview of them, or a switch,
// whose two strings are fixed, with its default. [main]
class CButtonPropsDialog : public CControlPropsDialog
{
    Q_OBJECT

  public:
    CButtonPropsDialog(CDSPProject& project, IUserDialogs& dialogs, UINT uControlId,
                       QWidget* pParent = nullptr);

  protected:
    void showExtras(int nRow) override;

  private:
    void buildBank();
    void buildSwitch();

    CRadioBank* m_pPreview = nullptr;   // of a radio bank
    QButtonGroup* m_pDefault = nullptr; // of a switch
};

} // namespace velmora
