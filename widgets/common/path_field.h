#pragma once

#include <QString>
#include <QWidget>

class QLineEdit;
class QPushButton;

namespace velmora {

class IUserDialogs;

// A line for the path of a file or folder, with a "Browse" button that asks for one through the dialogs.
// [main]
class CPathField : public QWidget
{
    Q_OBJECT

  public:
    explicit CPathField(IUserDialogs& dialogs, QWidget* pParent = nullptr);

    // What "Browse" asks for: a folder under the title, or an existing file. The filter is in the form
    // "Wave Files (*.wav)|*.wav||". A folder without a title is the state at first.
    void useFolder(const QString& sTitle);
    void useFile(const QString& sFilter);

    // For those who cannot see the label.
    void setName(const QString& sName);

    [[nodiscard]] QString text() const;
    void setText(const QString& sPath); // does not emit edited()
    [[nodiscard]] QLineEdit& line() { return *m_pLine; }

  signals:
    // The user has typed or chosen.
    void edited(const QString& sPath);

  private:
    void browse();

    IUserDialogs& m_dialogs;
    QLineEdit* m_pLine;
    QPushButton* m_pButton;
    QString m_sTitle;
    QString m_sFilter;
    bool m_bFile = false;
};

} // namespace velmora
