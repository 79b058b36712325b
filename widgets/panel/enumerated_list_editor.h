#pragma once

#include <QWidget>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace velmora {

class CFieldNote;
class IUserDialogs;

// The part of a property dialog that edits an enumerated list: the lists that the project has, the edit box
// of this one, and the sharing of an existing one. While a list is shared the edit box is read-only.
// [main]
class CEnumeratedListEditor : public QWidget
{
    Q_OBJECT

  public:
    explicit CEnumeratedListEditor(IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // What is shown as "Existing enum Lists". Sharing ends.
    void setLists(const std::vector<std::string>& lists);

    // The most strings of a list, for the note below the edit box.
    void setMaximum(std::size_t uMaximum);

    // A line above the maximum's note; empty for none.
    void setNote(const QString& sNote);

    // Shows the button "Import .txt", which reads a text file with one entry a line.
    void setImportOffered(bool bOffered);

    // The list as it stands in the edit box, with commas for line ends. setText() is silent.
    void setText(std::string_view sList);
    [[nodiscard]] std::string text() const;
    [[nodiscard]] bool isSharing() const;

    // Why the list would be refused; empty for nothing.
    void setError(const QString& sText);

    // Gives the edit box the focus with all of its text selected.
    void selectAll();

  signals:
    // The user has changed the list.
    void changed();

  protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

  private:
    void share(bool bShare);
    void importFile();

    IUserDialogs& m_dialogs;
    QListWidget* m_pLists;
    QPushButton* m_pShareButton;
    QPushButton* m_pImportButton;
    QPlainTextEdit* m_pEdit;
    CFieldNote* m_pNote;
    CFieldNote* m_pMaximumNote;
    CFieldNote* m_pError;
};

} // namespace velmora
