#pragma once

#include "dsp/modules/block_diagram_table.h"

#include <QDialog>

class QLabel;
class QTableWidget;

namespace velmora {

class CDSPFilter;
class CModuleFilter;

// "Block Diagram": the coefficients of a built-in filter as a table that follows the filter's controls.
// [main]
class CBlockDiagramDialog : public QDialog
{
    Q_OBJECT

  public:
    explicit CBlockDiagramDialog(QWidget* pParent = nullptr);

    // Null, or one that outlives the window or is taken away before its end; a filter without coefficients,
    // such as a plug-in, leaves the table empty.
    void setFilter(CDSPFilter* pFilter);

    // A control of the filter has moved: without rows they are made; else, if there are as many as
    // coefficients, their values are written anew.
    void refresh();

  protected:
    void showEvent(QShowEvent* pEvent) override;

  private:
    void takeCoefficients();
    void rebuild();
    void showRows();
    void copySelection() const;

    CBlockDiagramTable m_coefficients;
    CDSPFilter* m_pFilter = nullptr;
    QLabel* m_pName;
    QTableWidget* m_pTable;
    QLabel* m_pEmpty;
};

} // namespace velmora
