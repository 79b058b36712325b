#pragma once

#include "widgets/shell/workbench_commands.h"

#include <QObject>
#include <QWidget>
#include <memory>

namespace velmora {

class CBlockDiagramDialog;
class CDSPFilter;
class CMessageDialogs;
class COscDialog;
class CStatusWindow;
class CTonboxDoc;
class SidechainInputDlg;

// The windows that stay open beside the main window, each made at its first use. [main]
class CToolWindows : public QObject
{
    Q_OBJECT

  public:
    struct CParts
    {
        CTonboxDoc& m_document;
        CMessageDialogs& m_dialogs;
        QWidget* m_pParent;
    };

    explicit CToolWindows(const CParts& parts);
    ~CToolWindows() override;

    void show(EToolWindow eWindow, bool bShow);
    [[nodiscard]] bool isShown(EToolWindow eWindow) const;

    // Some 30 times a second.
    void tick();

    // The filter whose coefficients the block diagram shows; null for none.
    void setFilter(CDSPFilter* pFilter);
    void refreshBlockDiagram();

    void startOscillator();
    void stopOscillator();
    void setOscillatorFrequency(double dHz);

    // Modal dialogs.
    void setUpSoundCard();
    void about();

  signals:
    void shownChanged();

  private:
    [[nodiscard]] QWidget* find(EToolWindow eWindow) const; // null if it was not made yet
    void make(EToolWindow eWindow);
    [[nodiscard]] COscDialog& oscillator();
    template <typename TWindow>
    [[nodiscard]] std::unique_ptr<TWindow> prepare(std::unique_ptr<TWindow> pWindow);
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

    CParts m_parts;
    CDSPFilter* m_pFilter = nullptr;
    std::unique_ptr<CStatusWindow> m_pStatus; // from the start, as lines come in
    std::unique_ptr<COscDialog> m_pOscillator;
    std::unique_ptr<SidechainInputDlg> m_pSidechain;
    std::unique_ptr<CBlockDiagramDialog> m_pBlockDiagram;
};

} // namespace velmora
