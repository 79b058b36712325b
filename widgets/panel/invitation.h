#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace velmora {

// What stands in the middle of the form while no project is open: the ways to begin. [main]
class CInvitation : public QWidget
{
    Q_OBJECT

  public:
    explicit CInvitation(QWidget* pParent);

    [[nodiscard]] QPushButton& newProject() { return *m_pNew; }

  signals:
    void newProjectRequested();
    void openProjectRequested();

  protected:
    void changeEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

  private:
    void dressTitle();

    QLabel* m_pTitle;
    QPushButton* m_pNew;
    QPushButton* m_pOpen;
};

} // namespace velmora
