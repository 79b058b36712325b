#pragma once

#include <QLabel>

namespace velmora {

// A line below a field: why its text would be refused, or what it comes to. It takes no place while it is
// empty, and as many lines as it needs otherwise. [main]
class CFieldNote : public QLabel
{
    Q_OBJECT

  public:
    // pField: the one whose description the note becomes; null for none.
    explicit CFieldNote(QWidget* pField, QWidget* pParent = nullptr);

    void showError(const QString& sText); // empty for none
    void showHint(const QString& sText);

    [[nodiscard]] bool isError() const { return m_bError; }

  protected:
    void resizeEvent(QResizeEvent* pEvent) override;

  private:
    void showText(const QString& sText, bool bError);
    void applyColour();
    void makeRoom();

    QWidget* m_pField;
    bool m_bError = false;
};

} // namespace velmora
