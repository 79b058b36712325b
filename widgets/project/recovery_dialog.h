#pragma once

#include <QDialog>

namespace velmora {

struct CRecovery;

enum class ERecoveryAnswer
{
    Recover,
    KeepSaved,
    Later
};

// Offers what an earlier run left of a project: how old it is, and what it holds that the saved file has not.
// [main]
class CRecoveryDialog : public QDialog
{
    Q_OBJECT

  public:
    explicit CRecoveryDialog(const CRecovery& recovery, QWidget* pParent = nullptr);

    // Shows the dialog and waits. Closing it in any other way than by a button is Later.
    [[nodiscard]] ERecoveryAnswer ask();

  private:
    ERecoveryAnswer m_eAnswer = ERecoveryAnswer::Later;
};

} // namespace velmora
