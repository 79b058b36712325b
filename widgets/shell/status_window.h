#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QVBoxLayout;

namespace velmora {

class CStatusLines;

// The modeless list of status lines, the newest at the bottom. It follows them unless the user has scrolled
// up. Ctrl+F searches, F3 and Shift+F3 go on, Ctrl+C copies the selected lines. [main]
class CStatusWindow : public QWidget
{
    Q_OBJECT

  public:
    explicit CStatusWindow(QWidget* pParent = nullptr);

    [[nodiscard]] int lineCount() const;

    // Of one line, from 0.
    [[nodiscard]] QString line(int nLine) const;

  public slots:
    // A text of several lines becomes as many. Beyond 10000 lines the oldest go.
    void addLine(const QString& sText);
    void clear();
    void copySelected();
    void copyAll();
    void setTimesShown(bool bShown);

  signals:
    // The window was shown or closed: for the menu's check mark.
    void shownChanged(bool bShown);

  protected:
    void keyPressEvent(QKeyEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;

  private:
    void makeSearchRow(QVBoxLayout& layout);
    void makeButtonRow(QVBoxLayout& layout);
    void makeList();
    void settle();
    void search();
    void goToHit(int nStep);
    void showHits();
    void enableButtons();

    CStatusLines* m_pLines;
    QListView* m_pView;
    QLabel* m_pEmpty;
    QLineEdit* m_pSearch;
    QLabel* m_pHits;
    QPushButton* m_pPrevious;
    QPushButton* m_pNext;
    QPushButton* m_pCopy;
    QPushButton* m_pCopyAll;
    QPushButton* m_pClear;
    QCheckBox* m_pTimes;
    QTimer m_settleTimer;
    bool m_bFollow = true;
};

} // namespace velmora
