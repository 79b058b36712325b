#pragma once

#include <QTableWidget>

namespace velmora {

// The keyboard and the mouse of the property table: one row after the other, the right cell only. [main]
class CPropertyTable : public QTableWidget
{
    Q_OBJECT

  public:
    explicit CPropertyTable(QWidget* pParent = nullptr);

    // The editor that is open, or null; and its row, or -1.
    [[nodiscard]] QWidget* editor() const;
    [[nodiscard]] int editedRow() const;

    // Opens the editor of a row, a list with its choices dropped down if told so. False for a row without
    // one.
    bool editRow(int nRow, bool bDropDown);

    // Takes over what the open editor shows and closes it.
    void commitEditor();

  protected:
    QModelIndex moveCursor(CursorAction eAction, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint eHint) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool focusNextPrevChild(bool bNext) override;
    void focusInEvent(QFocusEvent* pEvent) override;

  private:
    // The enabled row that lies nStep rows on, or the last one before the end; -1 if there is none.
    [[nodiscard]] int rowFrom(int nRow, int nStep) const;
    bool goToRow(int nRow);
};

} // namespace velmora
