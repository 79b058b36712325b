#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <vector>

namespace velmora {

class CPropertyTable;

enum class EPropertyKind
{
    ReadOnly,
    Text,
    Choice
};

struct CPropertyRow
{
    QString m_sLabel;
    QString m_sText;
    EPropertyKind m_eKind = EPropertyKind::Text;
    QStringList m_choices;  // of a Choice
    bool m_bMarked = false; // the label stands out in the accent colour
};

// The two-column table of the property windows, headed "UI Item" and "Property". Rows count from 1. Up and
// Down go from row to row, Tab too until it leaves at the last one; typing, F2 or a click edits, Enter
// commits, Escape takes back; Space or Alt+Down drops a list down. [main]
class CPropertyGrid : public QWidget
{
    Q_OBJECT

  public:
    explicit CPropertyGrid(QWidget* pParent = nullptr);

    void setHeadings(const QString& sLabels, const QString& sTexts);
    void setRows(const std::vector<CPropertyRow>& rows);
    [[nodiscard]] int rowCount() const;

    // The text of a row, also while it is being typed; empty for a row that does not exist.
    [[nodiscard]] QString text(int nRow) const;

    // Does not emit edited().
    void setText(int nRow, const QString& sText);
    void setChoices(int nRow, const QStringList& choices);
    void setEnabled(int nRow, bool bEnabled);
    using QWidget::setEnabled;
    [[nodiscard]] bool isRowEnabled(int nRow) const;

    // A message below the row's text; an empty one goes away. clearErrors() empties all.
    void setError(int nRow, const QString& sError);
    [[nodiscard]] QString error(int nRow) const;
    void clearErrors();

    // Shows the row and gives it the keyboard, with its text ready to be typed over.
    void select(int nRow);
    [[nodiscard]] int selectedRow() const;

    // Takes over what is being typed.
    void commit();

    [[nodiscard]] QSize sizeHint() const override;

  signals:
    // The user has given a row another text.
    void edited(int nRow, const QString& sText);

    // The user is typing; edited() follows when it is committed.
    void typing(int nRow, const QString& sText);

    // The row that has the keyboard has changed.
    void selected(int nRow);

  private:
    void nameCell(int nRow);

    CPropertyTable* m_pTable;
};

} // namespace velmora
