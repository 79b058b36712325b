#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;

namespace velmora {

// What CProgressBox shows: a text, a bar and "Cancel", which Escape and the close button press, too. It stays
// open after that, with its button disabled, until the work has stopped. [main]
class CProgressPanel : public QDialog
{
    Q_OBJECT

  public:
    explicit CProgressPanel(QWidget* pWindow);

    void setText(const QString& sText);

    // 0 to 100, or -1 for a bar that only moves.
    void setPercent(int nPercent);

    void reject() override;

  signals:
    void cancelled();

  private:
    QLabel* m_pText;
    QProgressBar* m_pBar;
    QWidget* m_pCancel;
};

} // namespace velmora
