#pragma once

#include <QStringList>
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

    // The button for examples is there only when there are some.
    void setExamples(const QStringList& names);

    [[nodiscard]] QPushButton& newProject() { return *m_pNew; }

  signals:
    void newProjectRequested();
    void openProjectRequested();
    void exampleRequested(int nExample);

  protected:
    void changeEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

  private:
    void dressTitle();

    QLabel* m_pTitle;
    QPushButton* m_pNew;
    QPushButton* m_pOpen;
    QPushButton* m_pExamples;
};

} // namespace velmora
