#pragma once

#include <QMainWindow>
#include <array>

class QTabWidget;

namespace velmora {

// The tabs, from left to right.
enum class EMainTab
{
    Prototype,
    GUIDesigner,
    Count
};

// A main window whose content are tabs, each of which may refuse to be shown.
class CTabMainFrame : public QMainWindow
{
    Q_OBJECT

  public:
    static constexpr int TAB_STRIP_ID = 10001;

    explicit CTabMainFrame(QWidget* pParent = nullptr);

    // Takes the page over. A tab that was given none shows a plain one that says so.
    void setPage(EMainTab eTab, QWidget* pPage);

    // As a click on the tab: a tab that refuses leaves the first one selected.
    void selectTab(EMainTab eTab);
    [[nodiscard]] EMainTab currentTab() const;

  signals:
    void tabSelected(EMainTab eTab);

  protected:
    // Whether a tab may be shown now; tells the user why if not.
    [[nodiscard]] virtual bool mayShowTab(EMainTab) { return true; }

  private:
    void onTabChanged(int nIndex);

    QTabWidget* m_pTabs;
};

} // namespace velmora
